// The SQL that a server is asked, where a request has little in it.
#include <gtest/gtest.h>

#include "embedded/data/SqlQueries.h"

namespace embedded::data {
namespace {

// A table "t" with a number, a text, and a column whose name looks like an alias.
class PaperServer final : public SqlServer {
 public:
  const SqlDialect& dialect() const override { return postgreSqlDialect; }
  const std::string& table() const override { return table_; }
  const std::vector<Column>& columns() const override { return columns_; }
  SqlColumn column(const Column& column, bool asText) const override {
    const std::string name = dialect().identifier(column.name);
    if (asText || isText(column.kind)) return {name + "::text", "text", name + "::text", ""};
    return {name, column.typeName, name, filled(dialect().real, name)};
  }
  bool isSnapshot() const override { return true; }
  std::unique_ptr<SqlResult> query(const SqlQuery&) override { return nullptr; }

 private:
  std::string table_ = "\"t\"";
  std::vector<Column> columns_{{"n", "float8", ColumnKind::Real},
                               {"s", "text", ColumnKind::Text},
                               {"V_1", "float8", ColumnKind::Real}};
};

ColumnRead readOf(int column, ColumnKind kind, int width = 0) {
  ColumnRead read;
  read.column = column;
  read.as = kind;
  read.width = width;
  return read;
}

class Queries : public testing::Test {
 protected:
  PaperServer server_;
  SqlQueries queries_{server_};
  ScanRequest request_;
};

TEST_F(Queries, WithoutColumnsStillCountTheRows) {
  EXPECT_EQ(queries_.rows(request_, {}).text, "SELECT (1)::float8 FROM \"t\"");
  EXPECT_EQ(queries_.patterns(request_, {}).text, "SELECT count(*) FROM \"t\"");
  EXPECT_EQ(queries_.sample(request_, 10).text,
            "SELECT (coalesce(sum(n), 0))::float8, count(*) FROM (SELECT count(*) AS n FROM "
            "(SELECT 1 AS v__0 FROM \"t\" LIMIT 10) AS some_rows GROUP BY v__0) AS "
            "their_patterns");
}

// A weight that is a text on the server is none that it can add up.
TEST_F(Queries, GroupByAWeightThatIsAText) {
  request_.columns = {readOf(0, ColumnKind::Real), readOf(1, ColumnKind::Real)};
  request_.weight = 1;
  EXPECT_FALSE(queries_.isNumber(request_.columns[1]));
  EXPECT_EQ(queries_.patterns(request_, {}).text,
            "SELECT \"n\" AS v__0, \"s\"::text AS v__1, count(*) FROM \"t\" GROUP BY v__0, v__1");
  EXPECT_EQ(queries_.sample(request_, 10).text,
            "SELECT (coalesce(sum(n), 0))::float8, count(*) FROM (SELECT count(*) AS n FROM "
            "(SELECT \"n\" AS v__0, \"s\"::text AS v__1 FROM \"t\" LIMIT 10) AS some_rows GROUP BY "
            "v__0, v__1) AS their_patterns");
}

TEST_F(Queries, OrderByTheGivenPlacesOfTexts) {
  request_.columns = {readOf(1, ColumnKind::Text, 8), readOf(0, ColumnKind::Real)};
  request_.orderBy = 2;
  const std::vector<TextOrder> orders{{0, {"b", "a"}, {2, 1}}};
  EXPECT_EQ(queries_.rows(request_, orders).text,
            "SELECT \"s\"::text AS v__0, \"n\" AS v__1 FROM \"t\" ORDER BY coalesce((ARRAY[2, "
            "1])[array_position(ARRAY['b', 'a']::text[], \"s\"::text)], 0) NULLS FIRST, \"n\" "
            "NULLS FIRST, v__0, v__1");
}

// A column of nulls alone has no texts, and nothing to put in order.
TEST_F(Queries, PassOverAnOrderOfNoTexts) {
  request_.columns = {readOf(1, ColumnKind::Text, 8), readOf(0, ColumnKind::Real)};
  request_.orderBy = 2;
  const std::vector<TextOrder> orders{{0, {}, {}}};
  EXPECT_EQ(queries_.rows(request_, orders).text,
            "SELECT \"s\"::text AS v__0, \"n\" AS v__1 FROM \"t\" ORDER BY \"n\" NULLS FIRST, "
            "v__0, v__1");
}

TEST(Dialects, FillInAnExpressionAlsoAtTheEndOfAPattern) {
  SqlDialect dialect;
  dialect.place = "place(^1, ^2) OF ^";
  const std::vector<std::string> texts{"a", "it's"};
  const std::vector<std::size_t> places{1, 2};
  EXPECT_EQ(dialect.placeOf("x", texts, places), "place('a', 'it''s', 1, 2) OF x");
}

}  // namespace
}  // namespace embedded::data
