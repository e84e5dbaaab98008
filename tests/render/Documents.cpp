#include "Documents.h"

#include <cmath>
#include <limits>
#include <map>

namespace samples {

namespace {

using embedded::output::Meaning;
using embedded::output::Role;
using embedded::output::Severity;

class English : public embedded::output::Sentences {
 public:
  std::string_view sentence(std::string_view identifier) const override {
    const auto found = sentences_.find(identifier);
    return found == sentences_.end() ? identifier : std::string_view(found->second);
  }

 private:
  std::map<std::string, std::string, std::less<>> sentences_{
      {"Stat miss not enough cases ...",
       "The statistic could not be computed from the available cases."},
      {"Clopper-Pearson Exact ...", "Clopper-Pearson exact"},
      {"MISSING is EXCLUDE ...", "User-defined missing values are treated as missing."},
      {"Subcom ^1, duplicate var names ...", "/^1 names a variable more than once."},
      {"Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...",
       "There are no valid cases of ^1 in the group [%1 = %2:, ^1 = ^2:]2."},
      {"Parameter unknown ^1 ^2 ...", "/^2 has no parameter ^1."},
      {"Nearest name ^1", "Did you mean ^1?"},
      {"Cases read ^1", "^1 read"},
      {"Read as patterns by sample ^1 ^2 ...",
       "As ^1 patterns: of ^2 sampled cases at most a quarter are distinct."},
      {"Cases of invalid weight ^1", "^1 of invalid weight"},
      {"Missing system ^1 user ^2", "^1 system-missing, ^2 user-missing"},
      {"Differences are taken as ^1", "Differences are taken as ^1."},
      {"Variant of method ^1: ^2", "^1: ^2."},
      {"A success is [%1:, ^1:]1", "Success: [%1:, ^1:]1."},
      {"Sentence of ^1: [%1:, ^1:]2", "^1: [%1:, ^1:]2."},
      {"Sentence of ^1 by ^2: [%1:, ^1:]3", "^1: [%1:, ^1:]3 (^2)."},
      {"Count ^1 of ^2", "^1 of ^2"},
      {"Interval ^1 from ^2 to ^3", "^1 from ^2 to ^3"},
      {"Statistic ^1 is ^2", "^1 = ^2"},
      {"Statistic ^1 is less than ^2", "^1 < ^2"},
      {"Difference ^1 taken as ^2 is ^3", "^1 (^2) = ^3"},
      {"Statistic ^1 is missing because ^2", "^1 is missing (^2)"},
      {"Reading of ^1: ^2 is ^3, by ^4 in ^6 of 1000 if it were ^5",
       "^1: ^2 is ^3 in these data. If it were ^5 in truth, then by the reckoning of the ^4 test "
       "about ^6 of 1000 samples like this one would show a value at least as far from ^5, in "
       "either direction."},
      {"Reading of ^1: ^2 is ^3, by ^4 rare if it were ^5",
       "^1: ^2 is ^3 in these data. If it were ^5 in truth, then by the reckoning of the ^4 test "
       "fewer than 1 of 1000 samples like this one would show a value at least as far from ^5, in "
       "either direction."},
      {"Reading of ^1: ^2 not computed because ^3", "^1: the ^2 test has no result. ^3."},
      {"Statistic ^1 is not a number", "^1 is not a number"},
      {"Estimate ^1 with bounds ^2 and ^3", "^1 [^2, ^3]"},
      {"No interval because ^1", "No interval: ^1"},
      {"Axis ^1 taken as ^2", "^1 (^2)"},
      {"No effect at ^1", "No difference: ^1"},
      {"Forest plot of ^1 with ^2", "^1 with ^2"},
      {"At the end of its range", "At the end of its possible range."}};
};

Meaning role(Role role) {
  Meaning meaning;
  meaning.role = role;
  return meaning;
}

Meaning within(Role role, double low, double high) {
  Meaning meaning;
  meaning.role = role;
  meaning.rangeLow = low;
  meaning.rangeHigh = high;
  return meaning;
}

Description makeDescription() {
  Description about;
  about.command = "PROPORTIONS";
  about.title = "Proportions";
  about.labels["^1 = ^2"] = role(Role::Outcome);
  about.labels["Pair ^1"] = role(Role::Comparison);
  about.labels["Pair ^1 vars ^2 ^3 ..."] = role(Role::Comparison);
  about.labels["Successes"] = role(Role::Count);
  about.labels["Trials"] = role(Role::Trials);
  about.labels["Proportion"] = within(Role::Estimate, 0.0, 1.0);
  about.labels["Asymptotic Standard Error"] = role(Role::StandardError);
  about.labels["Difference in Proportions"] = within(Role::Difference, -1.0, 1.0);
  about.labels["^1% Confidence Interval"] = role(Role::Level);
  about.labels["Lower"] = within(Role::Lower, 0.0, 1.0);
  about.labels["Upper"] = within(Role::Upper, 0.0, 1.0);
  about.labels["Z"] = role(Role::Statistic);
  about.labels["One-Sided p"] = role(Role::POneSided);
  about.labels["Two-Sided p"] = role(Role::PTwoSided);
  about.labels["Wilson Score"].note = "no continuity correction";
  about.labels["Observed - Test Value"] = within(Role::Difference, -1.0, 1.0);
  about.labels["Observed - Test Value"].direction = "observed minus test value";
  about.labels["Observed - Test Value"].reference = 0.0;
  auto& intervals = about.tables["One-Sample Proportions Confidence Intervals"];
  intervals.holds = "intervals";
  intervals.estimate = "Proportion";
  intervals.labels["Lower"].referenceArgumentOf = "Test Value = ^1";
  intervals.labels["Upper"].referenceArgumentOf = "Test Value = ^1";
  auto& tests = about.tables["One-Sample Proportions Tests"];
  tests.holds = "tests";
  tests.estimate = "Observed - Test Value";
  auto& differences = about.tables["Paired-Samples Proportions Confidence Intervals"];
  differences.holds = "intervals";
  differences.direction = "first minus second";
  differences.estimate = "Difference in Proportions";
  for (const char* bound : {"Lower", "Upper"}) {
    differences.labels[bound].rangeLow = -1.0;
    differences.labels[bound].rangeHigh = 1.0;
    differences.labels[bound].reference = 0.0;
  }
  return about;
}

TextPtr level(double percent) {
  return Text::composite("^1% Confidence Interval",
                         {Text::number(percent, NumberFormat::SigDigit)});
}

// One row of an interval table.
struct Interval {
  const char* method;
  double lower;
  double upper;
};

void addIntervals(Builder& builder, const TextPtr& variable, double successes, double trials,
                  std::initializer_list<Interval> rows) {
  const Index table = builder.table("One-Sample Proportions Confidence Intervals",
                                    {id("Interval Type"), id("Variables")}, id("Statistics"));
  const double p = successes / trials;
  for (const Interval& row : rows) {
    const auto at = [&](std::vector<TextPtr> statistic) {
      return std::vector<Builder::Path>{{id(row.method)}, {variable}, std::move(statistic)};
    };
    builder.cell(table, at({id("Observed"), id("Successes")}), successes, NumberFormat::Count);
    builder.cell(table, at({id("Observed"), id("Trials")}), trials, NumberFormat::Count);
    builder.cell(table, at({id("Observed"), id("Proportion")}), p);
    builder.cell(table, at({id("Asymptotic Standard Error")}), std::sqrt(p * (1 - p) / trials));
    const std::pair<const char*, double> bounds[] = {{"Lower", row.lower}, {"Upper", row.upper}};
    for (const auto& [name, bound] : bounds) {
      if (bound == missing) {
        builder.cell(table, at({level(95), id(name)}), bound, "Stat miss not enough cases ...");
      } else {
        builder.cell(table, at({level(95), id(name)}), bound);
      }
    }
  }
}

void addTests(Builder& builder, const TextPtr& variable) {
  const Index table = builder.table("One-Sample Proportions Tests",
                                    {id("Test Type"), id("Variables")}, id("Statistics"));
  const auto at = [&](const char* test, std::vector<TextPtr> statistic) {
    return std::vector<Builder::Path>{{id(test)}, {variable}, std::move(statistic)};
  };
  const TextPtr difference = id("Observed - Test Value");
  const std::pair<const char*, double> tests[] = {
      {"Mid-p Adjusted Binomial", 0.00004}, {"Score", 0.0415}, {"Wald", missing}};
  for (const auto& [test, p] : tests) {
    builder.cell(table, at(test, {difference}), -0.0001);
    const TextPtr testValue =
        Text::composite("Test Value = ^1", {Text::number(0.3, NumberFormat::SigDigit)});
    builder.writer.categoryNote(table, 2, builder.category(table, 2, {difference}), testValue);
    builder.category(table, 2, {id("Z")});
    if (p == missing) {
      builder.cell(table, at(test, {id("Z")}), p, "Stat miss not enough cases ...");
    } else if (std::string(test) == "Score") {
      builder.cell(table, at(test, {id("Z")}), -2.038);
    }
    builder.cell(table, at(test, {id("Significance"), id("One-Sided p")}), p == missing ? nan : p);
    builder.cell(table, at(test, {id("Significance"), id("Two-Sided p")}),
                 p == missing ? 1.0 : 2 * p);
  }
}

void describeRun(Document& document) {
  document.procedure = "Proportions";
  document.version = "0.1.0";
  document.command = "PROPORTIONS /ONESAMPLE smoker";
  document.accepted = true;
  document.data.source = "trial.csv";
  document.data.fingerprint = "sha256:9f86d081";
  document.data.cases.read = 24;
  document.notes.push_back({4, id("Definition of Missing"), id("MISSING is EXCLUDE ...")});
}

VariablePtr region() {
  VariableInfo info;
  info.name = "region";
  info.label = "Region of residence";
  info.kind = embedded::output::ValueKind::String;
  info.stringLabels = {{"N", "North"}, {"S", "South"}};
  return std::make_shared<const VariableInfo>(std::move(info));
}

void addGroups(Builder& builder, bool separateTables) {
  const VariablePtr where = region();
  const VariablePtr sex = yesNo("sex=;", "", "male", "female");
  builder.document.data.splits = {where, sex};
  const VariablePtr smoker = yesNo("smoker", "", "no", "yes");
  double count = 3.0;
  const RawValue regions[] = {std::string("N"), std::string("S; east=west\\x")};
  for (const RawValue& value : regions) {
    for (const double code : {0.0, missing}) {
      builder.split({Text::ofValue(where, value, true), Text::ofValue(sex, code, true)},
                    separateTables);
      addIntervals(builder, success(smoker, 1.0), count, 12.0,
                   {{"Jeffreys", count / 30, count / 10}, {"Wilson Score", 0.0, count / 12}});
      count += 1.0;
    }
  }
}

}  // namespace

const double missing = std::numeric_limits<double>::lowest();
const double nan = std::numeric_limits<double>::quiet_NaN();

const embedded::output::Sentences& english() {
  static const English sentences;
  return sentences;
}

const Description& description() {
  static const Description about = makeDescription();
  return about;
}

VariablePtr variable(std::string name, std::string label) {
  VariableInfo info;
  info.name = std::move(name);
  info.label = std::move(label);
  return std::make_shared<const VariableInfo>(std::move(info));
}

VariablePtr yesNo(std::string name, std::string label, std::string no, std::string yes) {
  VariableInfo info;
  info.name = std::move(name);
  info.label = std::move(label);
  info.numberLabels = {{0.0, std::move(no)}, {1.0, std::move(yes)}};
  return std::make_shared<const VariableInfo>(std::move(info));
}

TextPtr id(std::string identifier) {
  return Text::string(std::move(identifier));
}

TextPtr success(const VariablePtr& variable, RawValue value) {
  return Text::composite(
      "^1 = ^2", {Text::ofVariable(variable), Text::ofValue(variable, std::move(value), true)});
}

Builder::Builder() {
  describeRun(document);
}

Index Builder::table(const std::string& title, std::vector<TextPtr> rows, TextPtr columns) {
  const Index table = writer.table(id(title));
  int level = 0;
  for (const TextPtr& row : rows) {
    writer.position(table, writer.dimension(table, row), Axis::Row, ++level, false, false);
  }
  writer.position(table, writer.dimension(table, columns), Axis::Column, 1, true, false);
  return table;
}

Index Builder::category(Index table, Index dimension, const Path& path) {
  Index node = 0;
  for (const TextPtr& label : path) {
    node = writer.node(table, dimension, node, label, label != path.back());
  }
  return node;
}

void Builder::cell(Index table, const std::vector<Path>& at, double value, NumberFormat format) {
  for (Index d = 0; d < at.size(); ++d) {
    writer.select(table, d, category(table, d, at[d]));
  }
  writer.cell(table, value, format);
}

void Builder::cell(Index table, const std::vector<Path>& at, double value,
                   const std::string& footnote) {
  cell(table, at, value);
  writer.cellNote(table, id(footnote));
}

void Builder::split(std::vector<TextPtr> values, bool separateTables) {
  document.splits.push_back({std::move(values)});
  writer.beginSplit(static_cast<Index>(document.splits.size() - 1), separateTables);
}

Document oneSample() {
  Builder builder;
  builder.document.data.weight = "w";
  builder.document.data.seed = 42;
  builder.document.data.reading =
      Text::composite("Read as patterns by sample ^1 ^2 ...",
                      {Text::number(5, embedded::output::NumberFormat::Count),
                       Text::number(24, embedded::output::NumberFormat::Count)});
  builder.document.data.cases.invalidWeight = 1;
  builder.document.data.cases.missing = {{"smoker", {2, 1}}, {"rare", {0, 0}}};
  const VariablePtr smoker = yesNo("smoker", "Smokes daily", "no", "yes");
  const VariablePtr rare = yesNo("rare", "", "no", "yes");
  addIntervals(builder, success(smoker, 1.0), 7.0, 20.0,
               {{"Clopper-Pearson Exact ...", 0.15390920, 0.59218870},
                {"Logit", missing, missing},
                {"Wald", nan, 0.9999},
                {"Wilson Score", 0.18119, 1.0}});
  addIntervals(builder, success(rare, 1.0), 1.0, 100000.0,
               {{"Clopper-Pearson Exact ...", 0.0, 0.00005571},
                {"Wald", 0.00001, 0.0000100004},
                {"Wilson Score", 1e-20, 3e-20}});
  addTests(builder, success(smoker, 1.0));
  embedded::output::Message warning;
  warning.severity = Severity::Warning;
  warning.text =
      Text::composite("Subcom ^1, duplicate var names ...", {Text::string("ONESAMPLE", false)});
  warning.show = 2;
  warning.level = 3;
  builder.document.messages.push_back(std::move(warning));
  return std::move(builder.document);
}

Document splitRows() {
  Builder builder;
  addGroups(builder, false);
  const auto& group = builder.document.splits[1].values;
  std::vector<TextPtr> pairs;
  for (const TextPtr& value : group) {
    pairs.push_back(Text::ofVariable(value->variable));
    pairs.push_back(value);
  }
  embedded::output::Message warning;
  warning.severity = Severity::Warning;
  warning.text =
      Text::composite("Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...",
                      {Text::ofVariable(variable("other")), Text::list(std::move(pairs))});
  warning.show = 2;
  warning.level = 2;
  warning.split = 1;
  builder.document.messages.push_back(std::move(warning));
  builder.document.data.casesBySplit.push_back({1, {.read = 6, .missing = {{"smoker", {1, 0}}}}});
  return std::move(builder.document);
}

Document splitTables() {
  Builder builder;
  addGroups(builder, true);
  return std::move(builder.document);
}

Document pairs() {
  Builder builder;
  const VariablePtr before = yesNo("before", "Approval, first survey", "no", "yes");
  const VariablePtr after = yesNo("after", "", "no", "yes");
  const Index table =
      builder.table("Paired-Samples Proportions Statistics", {id("Variables")}, id("Statistics"));
  for (const double pair : {1.0, 2.0}) {
    const TextPtr group = Text::composite("Pair ^1", {Text::number(pair, NumberFormat::Count)});
    for (const VariablePtr& one : {before, after}) {
      const Builder::Path row{group, success(one, pair - 1.0)};
      builder.cell(table, {row, {id("Successes")}}, 944.0 - pair, NumberFormat::Count);
      builder.cell(table, {row, {id("Trials")}}, 1600.0, NumberFormat::Count);
      builder.cell(table, {row, {id("Proportion")}}, 0.59);
    }
  }
  const Index empty = builder.table("Paired-Samples Proportions Tests",
                                    {id("Test Type"), id("Variables")}, id("Statistics"));
  builder.category(empty, 1, {id("never filled")});
  const Index differences = builder.table("Paired-Samples Proportions Confidence Intervals",
                                          {id("Interval Type"), id("Variables")}, id("Statistics"));
  builder.category(differences, 0, {id("a method without cells")});
  const Builder::Path method{id("Wald")};
  const Builder::Path row{Text::composite(
      "Pair ^1 vars ^2 ^3 ...",
      {Text::number(1.0, NumberFormat::Count), Text::ofVariable(before), Text::ofVariable(after)})};
  builder.cell(differences, {method, row, {id("Difference in Proportions")}}, 0.04);
  builder.cell(differences, {method, row, {level(99.5), id("Lower")}}, -1.0);
  builder.cell(differences, {method, row, {level(99.5), id("Upper")}}, 0.0806);
  return std::move(builder.document);
}

Document wide() {
  Builder builder;
  const VariablePtr smoker =
      yesNo("smoker", "Smoked at least one cigarette on every day of the last month", "no", "yes");
  const Index table = builder.table("One-Sample Proportions Confidence Intervals",
                                    {id("Interval Type"), id("Variables")}, id("Statistics"));
  for (const char* method : {"Jeffreys", "Wilson Score"}) {
    const std::vector<std::vector<TextPtr>> statistics{{id("Observed"), id("Successes")},
                                                       {id("Observed"), id("Proportion")},
                                                       {id("Asymptotic Standard Error")},
                                                       {level(95), id("Lower")},
                                                       {level(95), id("Upper")}};
    double value = 0.25;
    for (const auto& statistic : statistics) {
      const auto at = [&](const std::vector<TextPtr>& path) {
        return std::vector<Builder::Path>{{id(method)}, {success(smoker, 1.0)}, path};
      };
      builder.cell(table, at(statistic), value += 0.01);
      for (const char* part : {"Bias", "Std. Error", "Lower", "Upper"}) {
        auto path = statistic;
        path.push_back(id("Bootstrap"));
        path.push_back(id(part));
        builder.cell(table, at(path), value / 10);
      }
    }
  }
  return std::move(builder.document);
}

Document refused() {
  Builder builder;
  Document& document = builder.document;
  document.accepted = false;
  document.notes.clear();
  document.command =
      "PROPORTIONS\n  /ONESAMPLE \xE5\x96\xAB\xE7\x85\x99 TESTVALL=0.3\n  /CRITERIA CILEVEL=99\n";
  embedded::output::Message error;
  error.text = Text::composite("Parameter unknown ^1 ^2 ...",
                               {Text::string("TESTVALL", false), Text::string("ONESAMPLE", false)});
  error.nearest = "TESTVAL";
  error.where = {2, 17, 8, "  /ONESAMPLE \xE5\x96\xAB\xE7\x85\x99 TESTVALL=0.3"};
  document.messages.push_back(std::move(error));
  return std::move(document);
}

Document hostile() {
  Builder builder;
  builder.document.data.source = "<img src=x onerror=alert(1)>.csv";
  builder.document.command = "PROPORTIONS # </script><script>alert(2)</script>";
  const VariablePtr evil =
      yesNo("=cmd|' /C calc'!A0", "<script>alert(\"3\")</script> & $x_1^2$ {\\bf}", "*no*",
            "a|b [link](javascript:x) `code` \x1b[31m\nnew line # 50% ~");
  addIntervals(builder, success(evil, 1.0), 7.0, 20.0, {{"=HYPERLINK(\"http://x\")", 0.1, 0.5}});
  builder.cell(
      0,
      {{id("=HYPERLINK(\"http://x\")")}, {success(evil, 1.0)}, {id("Observed"), id("Proportion")}},
      0.35, "<b>note</b> with | and \\ and & and \"quotes\", commas");
  return std::move(builder.document);
}

Document eastAsian() {
  Builder builder;
  const VariablePtr smoker =
      yesNo("smoker", "\xE5\x96\xAB\xE7\x85\x99", "\xE3\x81\x84\xE3\x81\x84\xE3\x81\x88",
            "\xE3\x81\xAF\xE3\x81\x84");
  const VariablePtr cafe = yesNo("cafe\xCC\x81", "", "no", "yes");
  addIntervals(builder, success(smoker, 1.0), 7.0, 20.0,
               {{"\xE3\x82\xA6\xE3\x82\xA3\xE3\x83\xAB\xE3\x82\xBD\xE3\x83\xB3", 0.1, 0.5}});
  addIntervals(builder, success(cafe, 0.0), 7.0, 20.0, {{"Jeffreys", 0.1, 0.5}});
  return std::move(builder.document);
}

}  // namespace samples
