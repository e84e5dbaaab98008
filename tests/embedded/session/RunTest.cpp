// A run as a program that embeds the host asks for it: a request in, a document out.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"
#include "embedded/session/Run.h"
#include "render/Renderer.h"

namespace embedded {
namespace {

const Module& module() {
  static const Module loaded = Module::load(BUILD_ROOT "/lib/proportions.module.json", false);
  return loaded;
}

class Run : public testing::Test {
 protected:
  Run() {
    std::string name = (std::filesystem::temp_directory_path() / "run-test-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~Run() override { std::filesystem::remove_all(folder_); }

  Request request(const std::string& csv) const {
    std::ofstream(folder_ / "data.csv") << csv;
    Request request;
    request.data = (folder_ / "data.csv").string();
    request.command =
        "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE /SUCCESS VALUE=LEVEL(1)";
    return request;
  }

  std::filesystem::path folder_;
};

constexpr const char* imputed = "imp,v\n0,1\n0,0\n1,1\n1,0\n1,1\n2,0\n2,0\n2,1\n3,1\n3,1\n3,0\n";

// The raw values of the outermost split variable of the document's groups.
std::vector<std::string> outermost(const output::Document& document) {
  std::vector<std::string> values;
  for (const auto& group : document.splits) {
    values.push_back(output::machineText(*group.values.front()));
  }
  return values;
}

TEST_F(Run, PoolsImputations) {
  Request asked = request(imputed);
  asked.imputation = Imputation{.number = "IMP"};
  const auto session = run(asked, module());
  const output::Document& document = session->document;
  ASSERT_TRUE(document.accepted);
  EXPECT_EQ(outermost(document), (std::vector<std::string>{"0", "1", "2", "3", "pooled"}));
  ASSERT_EQ(document.data.splits.size(), 1U);
  EXPECT_EQ(document.data.splits[0]->name, "imputation");
  ASSERT_FALSE(document.tables.empty());
  EXPECT_TRUE(document.tables[0].splitRows);
  EXPECT_TRUE(std::any_of(document.tables[0].cells.begin(), document.tables[0].cells.end(),
                          [](const output::Cell& cell) { return cell.split == 4; }));
}

// The procedure is asked for rows while the imputations are pooled; tables come afterwards.
TEST_F(Run, LaysPooledGroupsOutAsTablesOfTheirOwn) {
  Request asked = request(imputed);
  asked.imputation = Imputation{.number = "imp"};
  asked.splitLayout = SplitLayout::Tables;
  const auto session = run(asked, module());
  std::set<output::Index> groups;
  for (const output::Table& table : session->document.tables) {
    EXPECT_FALSE(table.splitRows);
    groups.insert(table.split);
  }
  EXPECT_EQ(groups, (std::set<output::Index>{0, 1, 2, 3, 4}));
}

TEST_F(Run, ThrowsWhatIsWrongWithImputations) {
  Request asked = request("imp,v\n0,1\n1,0\n");
  asked.imputation = Imputation{.number = "imp"};
  try {
    run(asked, module());
    FAIL() << "one imputation is not enough";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Data);
    EXPECT_EQ(error.identifier(), "Imputation too few ^1 ^2 ...");
    EXPECT_EQ(error.arguments(), (std::vector<std::string>{"imp", "1"}));
  }
}

// What cannot be read by the command is not looked at either.
TEST_F(Run, DoesNotLookAtImputationsOfARefusedCommand) {
  Request asked = request("imp,v\n0,1\n1,0\n");
  asked.imputation = Imputation{.number = "imp"};
  asked.command = "PROPORTIONS /ONESAMPLE none";
  EXPECT_FALSE(run(asked, module())->document.accepted);
}

TEST_F(Run, WarnsOfASplitVariableThatIsAnalysed) {
  Request asked = request("g,v\na,1\nb,0\n");
  asked.splits = {"v"};
  asked.splitsGiven = true;
  const auto session = run(asked, module());
  ASSERT_EQ(session->document.messages.size(), 1U);
  EXPECT_EQ(session->document.messages[0].severity, output::Severity::Warning);
  EXPECT_EQ(session->document.messages[0].text->id, "Split variable analysed ^1 ...");
}

// The rows that a part adds to csv.
std::string csvRows(const output::Document& part) {
  std::ostringstream out;
  render::findFormat("csv")->part(part, {}, out);
  return out.str();
}

std::string csv(const output::Document& document) {
  std::ostringstream out;
  render::findFormat("csv")->render(document, {}, out);
  return out.str();
}

class HandedOnGroups : public Run, public testing::WithParamInterface<SplitLayout> {
 protected:
  // 3,000 groups of 30 cells and more.
  Request manyGroups() const {
    std::string data = "g,v\n";
    for (int i = 0; i < 12000; ++i) {
      data += std::to_string(i / 4) + "," + std::to_string(i % 7 % 2) + "\n";
    }
    Request asked = request(data);
    asked.command = "PROPORTIONS /ONESAMPLE v TESTVAL=0.4 CITYPES=ALL /SUCCESS VALUE=LEVEL(1)";
    asked.splits = {"g"};
    asked.splitsGiven = true;
    asked.splitLayout = GetParam();
    return asked;
  }
};

TEST_P(HandedOnGroups, AddUpToTheWholeDocument) {
  Request asked = manyGroups();
  const std::string whole = csv(run(asked, module())->document);
  std::string parts;
  std::size_t most = 0;
  int times = 0;
  asked.finishedGroups = [&](const output::Document& part) {
    std::size_t cells = 0;
    for (const output::Table& table : part.tables) {
      cells += table.cells.size();
    }
    most = std::max(most, cells);
    parts += csvRows(part);
    ++times;
  };
  const auto session = run(asked, module());
  EXPECT_GE(times, 2);
  EXPECT_LT(most, 70000U);
  EXPECT_EQ(csv({}) + parts + csvRows(session->document), whole);
  EXPECT_EQ(session->document.splits.size(), 3000U);
}

TEST_P(HandedOnGroups, EndTheRunWhenTheyCannotBeTaken) {
  Request asked = manyGroups();
  int times = 0;
  asked.finishedGroups = [&](const output::Document&) {
    ++times;
    throw Error(ErrorKind::Output, "Cannot write ^1: ^2 ...", {"it", "full"});
  };
  try {
    run(asked, module());
    FAIL() << "what could not be written is lost";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Output);
  }
  EXPECT_EQ(times, 1);
}

TEST_P(HandedOnGroups, WaitForOneAnotherWhereTheirResultsAreTakenTogether) {
  Request asked = manyGroups();
  asked.bootstrap.emplace().samples = 2;
  asked.finishedGroups = [](const output::Document&) { FAIL() << "a group was handed on"; };
  EXPECT_FALSE(run(asked, module())->document.tables.empty());
}

INSTANTIATE_TEST_SUITE_P(Layouts, HandedOnGroups,
                         testing::Values(SplitLayout::Rows, SplitLayout::Tables));

// What the module's description says of pooling is what there are rules for.
TEST(ModuleDescription, NamesTheMethodsThatCanBePooled) {
  std::set<std::string> rules;
  for (const auto& [title, table] : module().description().tables) {
    for (const auto& [label, meaning] : table.labels) {
      if (meaning.role == output::Role::Method && !meaning.pooling.empty()) {
        rules.insert(title + " | " + label + " | " + meaning.pooling);
      }
    }
  }
  EXPECT_EQ(rules, (std::set<std::string>{
                       "One-Sample Proportions Confidence Intervals | Wald | wald",
                       "One-Sample Proportions Confidence Intervals | Wilson Score | wilson",
                       "One-Sample Proportions Tests | Wald | wald",
                       "Paired-Samples Proportions Confidence Intervals | Wald | wald",
                       "Paired-Samples Proportions Tests | Wald | wald",
                       "Independent-Samples Proportions Confidence Intervals | Wald | wald",
                       "Independent-Samples Proportions Confidence Intervals | Newcombe | newcombe",
                       "Independent-Samples Proportions Tests | Wald | wald"}));
}

}  // namespace
}  // namespace embedded
