// The order of groups and cases, end marks, and the classes that a procedure reads them through.
#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "host/data/ObsVecMap.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

using Order = DataTest;

std::vector<SeenCase> casesOf(const std::string& file, std::vector<std::string> splits,
                              CaseMode mode = CaseMode::CaseByCase,
                              const std::string& collation = "") {
  DataOptions options = optionsFor(file, mode);
  options.splits = std::move(splits);
  options.cases.collation = collation;
  return readAll(options).cases;
}

TEST_F(Order, MissingFirstThenNumbersAscendingThenAsInTheData) {
  const std::string file = write("a.csv", "g,v\n10,1\n2,2\n,3\n2,4\n-1,5\n,6\n");
  EXPECT_EQ(casesOf(file, {"g"}), (std::vector<SeenCase>{{".", "3", "1"},
                                                         {".", "6", "1"},
                                                         {},
                                                         {"-1", "5", "1"},
                                                         {},
                                                         {"2", "2", "1"},
                                                         {"2", "4", "1"},
                                                         {},
                                                         {"10", "1", "1"},
                                                         {}}));
}

TEST_F(Order, StringsByCodePointsOrByTheLanguage) {
  const std::string file = write("a.csv", "g\nb\nB\n\xC3\xA4\na\n\"\"\n\n");
  const auto order = [&](const std::string& collation) {
    std::string text;
    for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
      text += mode == CaseMode::Patterns ? " = " : "";
      for (const SeenCase& seen : casesOf(file, {"g"}, mode, collation))
        if (!seen.empty()) text += seen[0];
    }
    return text;
  };
  EXPECT_EQ(order(""), "[00][  ][B ][a ][b ][\xC3\xA4] = [00][  ][B ][a ][b ][\xC3\xA4]");
  EXPECT_EQ(order("de"), "[00][  ][a ][\xC3\xA4][b ][B ] = [00][  ][a ][\xC3\xA4][b ][B ]");
}

TEST_F(Order, TrailingBlanksMakeNoGroupAndNullIsNotBlank) {
  const std::string file = write("a.csv", "g,v\n\"x \",1\nx,2\n\" \",3\n\"\",4\n,5\n");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns})
    EXPECT_EQ(casesOf(file, {"g"}, mode), (std::vector<SeenCase>{{"[0]", "5", "1"},
                                                                 {},
                                                                 {"[ ]", "3", "1"},
                                                                 {"[ ]", "4", "1"},
                                                                 {},
                                                                 {"[x]", "1", "1"},
                                                                 {"[x]", "2", "1"},
                                                                 {}}));
}

TEST_F(Order, TwoSplitVariablesTheFirstOutermost) {
  const std::string file = write("a.csv", "g,h\n2,x\n1,y\n2,w\n1,x\n");
  EXPECT_EQ(casesOf(file, {"g", "h"}), (std::vector<SeenCase>{{"1", "[x]", "1"},
                                                              {},
                                                              {"1", "[y]", "1"},
                                                              {},
                                                              {"2", "[w]", "1"},
                                                              {},
                                                              {"2", "[x]", "1"},
                                                              {}}));
}

TEST_F(Order, BooleansAndTimesAscend) {
  const std::string file =
      parquet("b.parquet",
              "SELECT * FROM (VALUES (true, TIME '00:00:02', 1), (NULL, NULL, 2), "
              "(false, TIME '00:00:03', 3), (true, TIME '00:00:01', 4)) t(b, t, v)");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns})
    EXPECT_EQ(casesOf(file, {"b", "t"}, mode), (std::vector<SeenCase>{{".", ".", "2", "1"},
                                                                      {},
                                                                      {"0", "3", "3", "1"},
                                                                      {},
                                                                      {"1", "1", "4", "1"},
                                                                      {},
                                                                      {"1", "2", "1", "1"},
                                                                      {}}));
}

TEST_F(Order, WideRowsComeInPiecesOfAChunk) {
  std::string columns = "i";
  for (int c = 1; c < 60; ++c)
    columns += ", i + " + std::to_string(c) + " AS c" + std::to_string(c);
  const std::vector<SeenCase> cases =
      casesOf(parquet("w.parquet", "SELECT " + columns + " FROM range(3000) t(i)"), {});
  ASSERT_EQ(cases.size(), 3001U);
  for (std::size_t i = 0; i < 3000; ++i) {
    ASSERT_EQ(cases[i].front(), std::to_string(i));
    ASSERT_EQ(cases[i][59], std::to_string(i + 59));
  }
}

TEST_F(Order, TiesStayInTheOrderOfTheData) {
  const std::string file =
      parquet("t.parquet", "SELECT (i * 7919) % 3 AS g, i AS v FROM range(100000) t(i)");
  const std::vector<SeenCase> cases = casesOf(file, {"g"});
  double last = -1;
  for (const SeenCase& seen : cases) {
    const double value = seen.empty() ? -1 : std::stod(seen[1]);
    ASSERT_TRUE(seen.empty() || value > last);
    last = value;
  }
  EXPECT_EQ(cases.size(), 100003U);
}

TEST_F(Order, AGroupMayRunThroughManyBlocks) {
  const std::string file = parquet("g.parquet", "SELECT i // 5000 AS g FROM range(20000) t(i)");
  std::vector<std::size_t> sizes;
  std::size_t size = 0;
  for (const SeenCase& seen : casesOf(file, {"g"})) {
    if (!seen.empty()) ++size;
    if (seen.empty()) sizes.push_back(std::exchange(size, 0));
  }
  EXPECT_EQ(sizes, (std::vector<std::size_t>{5000, 5000, 5000, 5000}));
}

TEST_F(Order, CountsOfCasesByGroup) {
  DataOptions options = optionsFor(write("a.csv", "g,v,w\n1,5,1\n1,,0.4\n2,6,\n2,,2\n"));
  options.splits = {"g"};
  options.weight = "w";
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    options.cases.mode = mode;
    const output::DataInfo data = readAll(options, {"v"}).document.data;
    EXPECT_EQ(data.cases.read, 4U);
    EXPECT_EQ(data.cases.invalidWeight, 2U);
    EXPECT_EQ(data.cases.missing.at(0).first, "v");
    EXPECT_EQ(data.cases.missing.at(0).second.system, 2U);
    ASSERT_EQ(data.casesBySplit.size(), 2U);
    EXPECT_EQ(data.casesBySplit[0].second.read, 2U);
    EXPECT_EQ(data.casesBySplit[1].second.missing.at(0).second.system, 1U);
  }
}

TEST_F(Order, WeightsAreRawCaseByCase) {
  DataOptions options =
      optionsFor(write("a.csv", "v,w\n1,0.49\n1,2.5\n1,\n1,-3\n"), CaseMode::CaseByCase);
  options.weight = "w";
  const std::vector<SeenCase> cases = readAll(options, {"v"}).cases;
  EXPECT_EQ(cases[0][1], "0.49");
  EXPECT_EQ(cases[1][1], "2.5");
  EXPECT_EQ(cases[2][1], output::shortest(MCMV::Missing));
  EXPECT_EQ(cases[3][1], "-3");
}

TEST_F(Order, AFailureWhileReadingIsKeptForTheHost) {
  std::string content = "a\n";
  for (int i = 0; i < 30000; ++i) content += "1\n";
  OpenedData opened = openData(optionsFor(write("v.csv", content + "x\n"), CaseMode::CaseByCase));
  Session session;
  const Session::Scope scope(session);
  session.dictionary = std::move(opened.dictionary);
  session.cases = std::move(opened.cases);
  session.useColumn(0);
  ProcedureDataSource source;
  const auto iterator = source.MakeIterator(nullptr);
  while (iterator->NextCase()) continue;
  EXPECT_TRUE(source.FatalError());
  EXPECT_FALSE(iterator->NextCase());
  EXPECT_FALSE(source.MakeIterator(nullptr)->NextCase());
}

TEST_F(Order, TheSplitLayoutQueryAnswersRowsWhileResampling) {
  OpenedData opened = openData(optionsFor(write("a.csv", "a\n1\n")));
  Session session;
  const Session::Scope scope(session);
  session.dictionary = std::move(opened.dictionary);
  session.splitLayout = SplitLayout::Tables;
  const ProcedureDataSource source;
  EXPECT_TRUE(source.SplitsAsSeparateTables());
  EXPECT_FALSE(QBOOTSTRAPPING());
  session.bootstrapping = true;
  EXPECT_FALSE(source.SplitsAsSeparateTables());
  EXPECT_TRUE(QBOOTSTRAPPING());
  EXPECT_EQ(source.GetNSplitVars(), 0);
  EXPECT_LT(source.GetWeightVarIndex(), 0);
}

TEST(ObsVecMap, KeepsItsPayload) {
  const std::vector<std::int16_t> spec{8, 3, 9};
  ObsVecMap map(spec, 1);
  EXPECT_EQ(map.CellSize(), 5);
  const std::vector<OBS> one{{1.0}, {2.0}, {3.0}, {4.0}};
  const std::vector<OBS> other{{1.0}, {2.0}, {3.0}, {5.0}};
  EXPECT_FALSE(map.Contains(one.data()));
  double* cell = map.Insert(one.data());
  EXPECT_EQ(*cell, 0.0);
  *cell = 7.0;
  map.Insert(other.data());
  EXPECT_EQ(map.Insert(one.data()), cell);
  EXPECT_EQ(*map.Insert(one.data()), 7.0);
  EXPECT_TRUE(map.Contains(other.data()));
}

TEST_F(Order, KeySpecsHaveAnEntryForEachVariable) {
  OpenedData opened = openData(optionsFor(write("a.csv", "a,b,c\n1,x,0123456789\n")));
  Session session;
  const Session::Scope scope(session);
  session.dictionary = std::move(opened.dictionary);
  session.dictionary.variables[2].type = 10;
  const ProcedureDataSource source;
  const std::vector<std::int32_t> variables{0, 1, 2};
  EXPECT_EQ(ObsVecMap::MakeKeySpec(source, variables), (std::vector<std::int16_t>{8, 1, 10}));
}

}  // namespace
}  // namespace embedded::data
