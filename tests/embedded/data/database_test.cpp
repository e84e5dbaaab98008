// Tables whose types stand in their files: databases and Parquet.
#include <sstream>

#include "Support.h"
#include "embedded/data/EngineMessages.h"
#include "embedded/data/TableSource.h"

namespace embedded::data {
namespace {

using Arguments = std::vector<std::string>;

class Databases : public DataTest {
 protected:
  // Makes a database, called d there, by these statements; its path.
  std::string make(std::vector<std::string> statements) const {
    statements.insert(statements.begin(), "ATTACH " + duckDbDialect.text(file_) + " AS d");
    Engine({}).rows(statements);
    return file_;
  }
  std::vector<SeenCase> casesOf(const std::string& table) const {
    return readAll(optionsFor(file_ + "?table=" + table, CaseMode::CaseByCase)).cases;
  }

  std::string file_ = path("d.duckdb");
};

TEST_F(Databases, EnumerationsAreTexts) {
  make(
      {"CREATE TABLE d.t AS SELECT v::ENUM('low', 'high') AS e FROM (VALUES ('high'), (NULL)) "
       "t(v)"});
  EXPECT_EQ(casesOf("t"), (std::vector<SeenCase>{{"[high]", "1"}, {"[0000]", "1"}, {}}));
}

TEST_F(Databases, ColumnsWithoutATypeAreMissingNumbers) {
  make({"CREATE VIEW d.v AS SELECT NULL AS a, 1 AS b"});
  EXPECT_EQ(casesOf("v"), (std::vector<SeenCase>{{".", "1", "1"}, {}}));
}

TEST_F(Databases, TablesOfOtherSchemasAreCalledByBothNames) {
  make({"CREATE TABLE d.t AS SELECT 1 AS a", "CREATE SCHEMA d.other",
        "CREATE TABLE d.other.t AS SELECT 2 AS a"});
  EXPECT_EQ(casesOf("other.t"), (std::vector<SeenCase>{{"2", "1"}, {}}));
  const Failure failure = failureOf([&] { readAll(optionsFor(file_)); });
  EXPECT_EQ(failure.id, messages::tableWanted.id);
  EXPECT_EQ(failure.arguments, (Arguments{file_, "t, other.t"}));
}

TEST_F(Databases, AFileThatIsNoneIsRefused) {
  const std::string file = write("n.duckdb", std::string(10000, 'x'));
  const Failure failure = failureOf([&] { readAll(optionsFor(file + "?table=t")); });
  EXPECT_EQ(failure.id, messages::unreadable.id);
  EXPECT_EQ(failure.arguments.at(0), file);
}

TEST_F(Databases, TextsAreReadAsASchemaSaysAndABadOneIsNamed) {
  make(
      {"CREATE TABLE d.good AS SELECT * FROM (VALUES (1, 'x', '1'), (2, 'y', 'NA'), "
       "(3, 'z', NULL), (4, '', '2.5')) t(k, s, n)",
       "CREATE TABLE d.bad AS SELECT k, s, CASE WHEN k = 4 THEN 'four' ELSE n END AS n FROM "
       "d.good"});
  write("d.schema.json",
        R"({"fields": [{"name": "n", "type": "number", "missingValues": ["NA"]}]})");
  EXPECT_EQ(casesOf("good"), (std::vector<SeenCase>{{"1", "[x]", "1", "1"},
                                                    {"2", "[y]", ".", "1"},
                                                    {"3", "[z]", ".", "1"},
                                                    {"4", "[ ]", "2.5", "1"},
                                                    {}}));
  const Failure failure = failureOf([&] { casesOf("bad"); });
  EXPECT_EQ(failure.id, messages::badValue.id);
  EXPECT_EQ(failure.arguments, (Arguments{file_ + "?table=bad", "4", "n", "four"}));
}

// The engine would call the second one otherwise.
TEST_F(Databases, ParquetColumnsOfTheSameNameAreRefused) {
  const std::string file = parquet("p.parquet", "SELECT 1 AS name_a, 2 AS name_b");
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  std::string bytes = content.str();
  int renamed = 0;
  for (std::size_t at = 0; (at = bytes.find("name_b", at)) != std::string::npos; ++renamed)
    bytes.replace(at, 6, "name_a");
  ASSERT_GT(renamed, 0);
  const Failure failure = failureOf([&] { readAll(optionsFor(write("p.parquet", bytes))); });
  EXPECT_EQ(failure.id, messages::duplicateColumn.id);
  EXPECT_EQ(failure.arguments, (Arguments{"name_a", file}));
}

TEST(EngineTypeNames, SayWhatAColumnIs) {
  EXPECT_EQ(kindOfType("ENUM('a', 'b')"), ColumnKind::Text);
  EXPECT_EQ(kindOfType("DECIMAL(9,2)"), ColumnKind::Real);
  EXPECT_EQ(kindOfType("INTEGER[]"), ColumnKind::Unsupported);
  EXPECT_EQ(kindOfType(""), ColumnKind::Unsupported);
  EXPECT_EQ(sqlType(ColumnKind::Unsupported), "VARCHAR");
}

TEST(EngineLimits, AreToldWithWhatHelps) {
  const auto failureWith = [](const char* words) {
    return failureOf([&] { explainLimit(EngineFailure(words), "d.csv"); });
  };
  EXPECT_EQ(failureWith("IO Error: Could not write to \"x/duckdb_temp_storage_DEFAULT-0.tmp\"").id,
            messages::noRoomToSpill.id);
  EXPECT_EQ(failureWith("Out of Memory Error: limit by max_temp_directory_size reached").id,
            messages::noRoomToSpill.id);
  EXPECT_EQ(failureWith("Out of Memory Error: could not allocate").id, messages::memoryTooSmall.id);
  EXPECT_EQ(failureWith("Conversion Error: Out of Memory Error").id, "");
}

}  // namespace
}  // namespace embedded::data
