// Whole runs on small data sets: notes, messages, warnings, tables label for label, the order of
// events, and what the analysis objects counted.
#include "ModuleTest.h"
#include "proportions/PRPAlgorithm.h"
#include "proportions/proportionsFlags.h"
#include "reference/Lines.h"
#include "scripted_host/json/ReadScript.h"

namespace module_tests {
namespace {

using nlohmann::json;
using scripted::Line;

scripted::Script scriptOf(const json& given) {
  return {.data = scripted::readDataSet(given["dataset"]),
          .command = scripted::readRunCommand(given["command"])};
}

// --- Reading dumps ------------------------------------------------------------------------------

using Block = std::vector<Line>;

// The dumps between these start and end lines, without them.
std::vector<Block> blocks(const Block& lines, const std::string& name) {
  std::vector<Block> found;
  bool inside = false;
  for (const Line& line : lines) {
    if (line.label == name + " display end") inside = false;
    if (inside) found.back().push_back(line);
    if (line.label == name + " display start") {
      inside = true;
      found.emplace_back();
    }
  }
  return found;
}

json valueOf(const Block& block, const std::string& label) {
  for (const Line& line : block) {
    if (line.label != label) continue;
    if (!line.texts.empty()) return line.texts.at(0);
    if (line.writer == "B") return line.numbers.at(0) != 0.0;
    return line.numbers.empty() ? json("") : scripted::writeNumber(line.numbers.at(0));
  }
  return "no line " + label;
}

json countsOf(const Block& dump) {
  return {{"all", valueOf(dump, "Number of all cases")},
          {"valid", valueOf(dump, "Number of valid cases")},
          {"invalid", valueOf(dump, "Number of invalid cases")},
          {"w_all", valueOf(dump, "Weighted number of all cases")},
          {"w_valid", valueOf(dump, "Weighted number of valid cases")},
          {"w_invalid", valueOf(dump, "Weighted number of invalid cases")}};
}

json tallyOf(const Block& dump) {
  return {{"has", valueOf(dump, "Has valid value flag")},
          {"min_n", valueOf(dump, "Minimum numeric value")},
          {"max_n", valueOf(dump, "Maximum numeric value")},
          {"mid", valueOf(dump, "Middle point")},
          {"min_s", valueOf(dump, "Minimum string value")},
          {"max_s", valueOf(dump, "Maximum string value")}};
}

using Labels = std::vector<std::pair<const char*, const char*>>;

json recordOf(const Block& dump, const Labels& labels) {
  json record;
  for (const auto& [field, label] : labels) record[field] = valueOf(dump, label);
  return record;
}

const Labels oneSampleLabels = {{"_varInd", "Local variable index"},
                                {"_nSucc", "Number of successes"},
                                {"_nFail", "Number of failures"},
                                {"_nTrials", "Number of trials"},
                                {"_prop", "Population proportion"},
                                {"_estDiff", "Estimated difference"},
                                {"_aseDiff0", "_aseDiff0"},
                                {"_aseDiff1", "_aseDiff1"},
                                {"_bGoodData", "Good Data indicator"},
                                {"_bCompleteData", "Complete Data indicator"}};

const Labels pairedLabels = {{"_pairInd", "Variable pair index"},
                             {"_varInd1", "First local variable index"},
                             {"_varInd2", "Second local variable index"},
                             {"_n11", "_n11"},
                             {"_n10", "_n10"},
                             {"_n01", "_n01"},
                             {"_n00", "_n00"},
                             {"_n1p", "_n1p"},
                             {"_np1", "_np1"},
                             {"_n0p", "_n0p"},
                             {"_np0", "_np0"},
                             {"_nObs", "Number of observations"},
                             {"_p11", "_p11"},
                             {"_p10", "_p10"},
                             {"_p01", "_p01"},
                             {"_p00", "_p00"},
                             {"_prop1", "Proportion for the first measurement"},
                             {"_prop2", "Proportion for the second measurement"},
                             {"_estDiff", "Estimated difference"},
                             {"_ase1", "Asymtotic standard error for the first proportion"},
                             {"_ase2", "Asymtotic standard error for the second proportion"},
                             {"_aseDiff0", "_aseDiff0"},
                             {"_aseDiff1", "_aseDiff1"},
                             {"_bGoodData", "Good Data indicator"},
                             {"_bCompleteData", "Complete Data indicator"}};

const Labels independentLabels = {{"_varInd", "Local variable index"},
                                  {"s1", "Number of successes for group 1"},
                                  {"f1", "Number of failures for group 1"},
                                  {"n1", "Number of trials for group 1"},
                                  {"s2", "Number of successes for group 2"},
                                  {"f2", "Number of failures for group 2"},
                                  {"n2", "Number of trials for group 2"},
                                  {"N", "Number of observations"},
                                  {"p1", "Population proportion for group 1"},
                                  {"p2", "Population proportion for group 2"},
                                  {"d", "Estimated difference"},
                                  {"se1", "Asymtotic standard error for the first proportion"},
                                  {"se2", "Asymtotic standard error for the second proportion"},
                                  {"_aseDiff0", "_aseDiff0"},
                                  {"_aseDiff1", "_aseDiff1"},
                                  {"good", "Good Data indicator"},
                                  {"complete", "Complete Data indicator"}};

json recordsOf(const Block& dump) {
  json records = json::array();
  for (const auto& [name, labels] : {std::pair("PropZOneSamp", &oneSampleLabels),
                                     {"PropZPairSamp", &pairedLabels},
                                     {"PropZIndSamp", &independentLabels}})
    for (const Block& block : blocks(dump, name)) records.push_back(recordOf(block, *labels));
  return records;
}

// --- Tests --------------------------------------------------------------------------------------

class ReferenceRun : public testing::TestWithParam<reference::Line> {
 protected:
  const json given = GetParam().parsed();
};

TEST_P(ReferenceRun, WritesTheTablesAsStated) {
  const json& expect = given["expect"];
  Host host(scriptOf(given));
  host.run();
  EXPECT_EQ(difference(scripted::writeNotes(host.log), expect["notes"], "notes"), "");
  EXPECT_EQ(difference(scripted::writeWarnings(host.log), expect["warnings"], "warnings"), "");
  EXPECT_EQ(difference(scripted::writeEvents(host.log), expect["events"], "events"), "");
  json messages = scripted::writeMessages(host.log);
  for (json& message : messages) message.erase("kind");
  EXPECT_EQ(difference(messages, expect["messages"], "messages"), "");
  ASSERT_EQ(host.log.tables.size(), expect["tables"].size());
  for (std::size_t i = 0; i < host.log.tables.size(); ++i) {
    json table = scripted::writeTable(*host.log.tables[i]);
    EXPECT_EQ(difference(table, expect["tables"][i], "tables[" + std::to_string(i) + "]"), "");
  }
}

TEST_P(ReferenceRun, LeavesTheObjectsAsStated) {
  const json& expect = given["expect"]["groups"];
  Host host(scriptOf(given));
  gDisplayAlgorithm = true;
  host.run();
  gDisplayAlgorithm = false;
  const std::vector<Block> dumps = blocks(host.log.lines, "PRPAlgorithm");
  ASSERT_EQ(dumps.size(), expect.size());
  for (std::size_t i = 0; i < dumps.size(); ++i) {
    const json& group = expect[i];
    EXPECT_EQ(difference(countsOf(dumps[i]), group["counts_end"], "counts"), "");
    EXPECT_EQ(valueOf(dumps[i], "Good Data indicator"), group["good_data"]);
    EXPECT_EQ(valueOf(dumps[i], "Pooling Sample Index"), group["pooling_index"]);
    if (!group["records"].empty()) {
      EXPECT_EQ(difference(recordsOf(dumps[i]), group["records"], "records"), "");
    }
    json tallies = json::array();
    for (const Block& tally : blocks(dumps[i], "VarCatInfo")) tallies.push_back(tallyOf(tally));
    json wanted = group["tallies"];
    for (const json& tally : group["tallies2"]) wanted.push_back(tally);
    EXPECT_EQ(difference(tallies, wanted, "tallies"), "");
  }
}

TEST_P(ReferenceRun, CountsTheCasesOfTheFirstPassAsStated) {
  const json& expect = given["expect"]["groups"];
  Host host(scriptOf(given));
  Parsed parsed;
  ASSERT_TRUE(parsed.accepted);
  PRPAggregation aggregation;
  const auto iterator = parsed.source.MakeIterator(nullptr);
  auto& cases = dynamic_cast<ProcDSIterator&>(*iterator);
  for (const json& group : expect) {
    host.log.lines.clear();
    PRPAlgorithm algorithm(parsed.source, parsed.output, parsed.specs);
    EXPECT_TRUE(algorithm.InitialPass(cases, aggregation));
    algorithm.Display();
    EXPECT_EQ(difference(countsOf(host.log.lines), group["counts_pass1"], "counts"), "");
  }
  PRPAlgorithm beyond(parsed.source, parsed.output, parsed.specs);
  EXPECT_FALSE(beyond.InitialPass(cases, aggregation));
}

std::string nameOf(const testing::TestParamInfo<reference::Line>& info) {
  return identifier(info.param.id) + "_" + std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(Reference, ReferenceRun,
                         testing::ValuesIn(reference::readLines("procedure.jsonl")), nameOf);

}  // namespace
}  // namespace module_tests
