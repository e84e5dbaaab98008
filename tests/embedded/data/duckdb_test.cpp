// The embedded engine's owners: every refusal is an EngineFailure in its own words.
#include "Support.h"

namespace embedded::data {
namespace {

// What the engine says of some work; empty when it does it.
template <class Work>
std::string refusalOf(const Work& work) {
  try {
    work();
  } catch (const EngineFailure& failure) {
    return failure.what();
  }
  return "";
}

TEST(DuckDb, AQueryThatCannotBeUnderstoodIsRefused) {
  Engine engine({});
  EXPECT_NE(refusalOf([&] { engine.query("SELECT nothing"); }).find("nothing"), std::string::npos);
  EXPECT_NE(refusalOf([&] { engine.rows("SELECT nothing"); }).find("nothing"), std::string::npos);
}

TEST(DuckDb, AQueryWithoutItsParametersIsRefused) {
  Engine engine({});
  EXPECT_NE(refusalOf([&] { engine.query("SELECT $1"); }).find("parameters: 1"), std::string::npos);
  EXPECT_EQ(refusalOf([&] { engine.query("SELECT $1", {"given"}); }), "");
}

TEST(DuckDb, AQueryThatFailsLateIsRefusedWhereItFails) {
  Engine engine({});
  const auto query = engine.query(
      "SELECT CASE WHEN i = 500000 THEN error('the late one') ELSE i::VARCHAR END "
      "FROM range(600000) t(i)");
  Chunk chunk;
  std::size_t rows = 0;
  const std::string refusal = refusalOf([&] {
    while (query->next(chunk)) rows += chunk.size();
  });
  EXPECT_NE(refusal.find("the late one"), std::string::npos);
  EXPECT_LE(rows, 500000U);
}

TEST(DuckDb, FunctionsWithoutANameAreRefused) {
  Engine engine({});
  duckdb_aggregate_function aggregate = duckdb_create_aggregate_function();
  EXPECT_NE(refusalOf([&] { engine.add(aggregate); }), "");
  duckdb_destroy_aggregate_function(&aggregate);
  duckdb_scalar_function scalar = duckdb_create_scalar_function();
  EXPECT_NE(refusalOf([&] { engine.add(scalar); }), "");
  duckdb_destroy_scalar_function(&scalar);
}

TEST(DuckDb, AFailureInBriefIsItsFirstLineWithoutItsClass) {
  EXPECT_EQ(EngineFailure("Binder Error: no such thing\nLINE 1: ...").brief(), "no such thing");
  EXPECT_EQ(EngineFailure("no connection").brief(), "no connection");
}

TEST(DuckDb, TellsHowFarAQueryHasCome) {
  std::vector<Progress> told;
  EngineOptions options;
  options.progress = [&](const Progress& progress) { told.push_back(progress); };
  Engine engine(options);
  const auto query = engine.query("SELECT sum(hash(i) % 7) FROM range(3000000) t(i)");
  Chunk chunk;
  ASSERT_TRUE(query->next(chunk));
  EXPECT_EQ(chunk.size(), 1U);
  ASSERT_FALSE(told.empty());
  for (const Progress& progress : told)
    if (progress.total > 0) {
      EXPECT_LE(progress.rows, progress.total);
    }
}

}  // namespace
}  // namespace embedded::data
