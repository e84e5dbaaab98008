// What the program asks a server and makes of its answers, from a server that the test plays.
#include <atomic>

#include "PlayedTable.h"
#include "embedded/data/EngineMessages.h"
#include "tests_data/Support.h"

namespace engine_tests {
namespace {

using namespace embedded::data;
using Arguments = std::vector<std::string>;

const std::string mark = PlayedTable::mark;

// Three rows of one small number.
PlayedTable smallTable() {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}};
  table.rowCount = 3;
  for (const char value : {'\1', '\0', '\1'}) table.rows += mark + value;
  return table;
}

FakeServer serverOf(const PlayedTable& table) {
  return FakeServer([table](const std::string& sql) { return table.answerTo(sql); });
}

std::string pauses(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += FakeServer::pause;
  return text;
}

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

Failure failureOfReading(const std::string& address) {
  return failureOf([&] { readAll(optionsFor(address, CaseMode::CaseByCase)); });
}

TEST(PlayedHosts, MayHaveHyphensAndLowLines) {
  const FakeServer server = serverOf(smallTable());
  EXPECT_EQ(failureOfReading(server.address("my-own_server.localhost")).id, "");
}

TEST(PlayedHosts, MayBeOfAnyLettersAndOfColonsInBrackets) {
  for (const char* address : {"clickhouse://[::1]:1/d/t", "clickhouse://[::1%25lo]:1/d/t",
                              "clickhouse://%C3%A4.localhost:1/d/t"})
    EXPECT_EQ(failureOfReading(address).id, messages::noConnection.id) << address;
}

TEST(PlayedErrors, AreToldByTheirNumbers) {
  const auto failureWith = [](const std::string& text) {
    const FakeServer server(
        [&](const std::string&) { return httpAnswer(text, "500 Internal Server Error"); });
    return failureOfReading(server.address());
  };
  for (const char* code : {"192", "193", "194", "516"})
    EXPECT_EQ(failureWith(std::string("Code: ") + code + ". DB::Exception: me: no.").id,
              messages::wrongPassword.id);
  for (const char* code : {"60", "81"}) {
    const Failure failure = failureWith(std::string("Code: ") + code +
                                        ", e.displayText() = DB::Exception: None, e.what() = x");
    EXPECT_EQ(failure.id, messages::noServerTable.id);
    EXPECT_EQ(failure.arguments.at(1), "None");
  }
  for (const char* text : {"out of order", "Code: 241. DB::Exception: out of order\nmore"}) {
    const Failure failure = failureWith(text);
    EXPECT_EQ(failure.id, messages::engineFailure.id);
    EXPECT_EQ(failure.arguments.at(1), "out of order");
  }
}

// The last of all requests: one for rows, with all settings.
std::string lastRequest(PlayedTable table, const std::string& readOnly) {
  table.settings = {{"readonly", readOnly},
                    {"limit", "5"},
                    {"offset", "0"},
                    {"max_query_size", "1"},
                    {"join_use_nulls", "1"}};
  const FakeServer server = serverOf(table);
  DataOptions options = optionsFor(server.address(), CaseMode::CaseByCase);
  options.progress = [](const Progress&) {};
  readAll(options);
  return server.requests().back();
}

TEST(PlayedSettings, ThatWouldFalsifyAnAnswerAreChanged) {
  const std::string request = lastRequest(smallTable(), "0");
  for (const char* setting :
       {"&limit=0", "&readonly=2", "&max_query_size=16777216", "&send_progress_in_http_headers=1"})
    EXPECT_TRUE(holds(request, setting)) << request;
  for (const char* setting : {"offset", "join_use_nulls", "sort_overflow_mode"})
    EXPECT_FALSE(holds(request, setting)) << request;
}

// The server would refuse to have them changed; what matters is asked for all the same.
TEST(PlayedSettings, OfAUserWhoMayOnlyReadAreLeftWhereTheyDoNoHarm) {
  const std::string request = lastRequest(smallTable(), "1");
  EXPECT_TRUE(holds(request, "&limit=0")) << request;
  for (const char* setting : {"readonly", "max_query_size", "send_progress"})
    EXPECT_FALSE(holds(request, setting)) << request;
}

TEST(PlayedCounts, NameTheStateOfTheData) {
  const FakeServer server = serverOf(smallTable());
  EXPECT_EQ(openData(optionsFor(server.address())).cases->relation().identity(), "3");
}

TEST(PlayedCounts, ThatAreNotGivenAreABrokenAnswer) {
  const FakeServer server([](const std::string& sql) {
    return sql.starts_with("SELECT count(*)") ? httpAnswer("") : smallTable().answerTo(sql);
  });
  EXPECT_EQ(failureOfReading(server.address()).id, messages::answerBroke.id);
}

TEST(PlayedCounts, OfAnEmptyTableWithoutAColumnAreNoPattern) {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}};
  const FakeServer server = serverOf(table);
  OpenedData opened = openData(optionsFor(server.address(), CaseMode::Patterns));
  opened.cases->use({});
  ASSERT_NE(opened.cases->patterns(), nullptr);
  EXPECT_EQ(opened.cases->patterns()->size(), 0U);
}

// The second pass has a row more, and the server knows it.
TEST(PlayedRows, ThatComeBetweenThePassesAreSeen) {
  PlayedTable table = smallTable();
  const FakeServer server([&](const std::string& sql) {
    const std::string answer = table.answerTo(sql);
    if (sql.starts_with("SELECT toUInt8(165)")) {
      ++table.rowCount;
      table.rows += mark + '\1';
    }
    return answer;
  });
  EXPECT_EQ(failureOfReading(server.address()).id, messages::dataChanged.id);
}

class PlayedWeights : public DataTest {
 protected:
  Seen read(const PlayedTable& table, const std::string& schema = "{}") const {
    const FakeServer server = serverOf(table);
    DataOptions options = optionsFor(server.address(), CaseMode::Patterns);
    options.schema = write("schema.json", schema);
    options.weight = "w";
    return readAll(options, {"v"});
  }
};

TEST_F(PlayedWeights, ThatAreTextsAndNotFiniteAreCountedByTheirCases) {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}, {"w", "String"}};
  table.rowCount = 5;
  table.patterns = wire<std::uint8_t>(1) + wire(std::string("inf")) + wire<std::uint64_t>(2) +
                   wire<std::uint8_t>(1) + wire(std::string("2")) + wire<std::uint64_t>(3);
  const Seen seen = read(table, R"({"fields": [{"name": "w", "type": "number"}]})");
  EXPECT_EQ(seen.cases, (std::vector<SeenCase>{{"1", "6"}, {"1", "0"}, {}}));
  ASSERT_EQ(seen.document.messages.size(), 1U);
  EXPECT_EQ(seen.document.messages[0].text->id, messages::nonFinite.id);
  EXPECT_EQ(std::get<double>(seen.document.messages[0].text->items.at(1)->value), 2);
}

// What the server added up tells that there are large ones; they are looked at one by one.
TEST_F(PlayedWeights, ThatNoDoubleHoldsAreNamed) {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}, {"w", "Int64"}};
  table.rowCount = 2;
  const auto pattern = [](std::uint8_t value, double sum, double least, double most) {
    return wire(value) + wire(sum) + wire<std::uint64_t>(1) + wire(0.0) + wire(least) + wire(most);
  };
  table.patterns = pattern(0, 0x1p53, 1, 0x1p53) + pattern(1, 1, 1, 1);
  table.rows = wire<std::int64_t>(9007199254740993);
  const Failure failure = failureOf([&] { read(table); });
  EXPECT_EQ(failure.id, messages::inexactNumber.id);
  EXPECT_EQ(failure.arguments.at(3), "9007199254740993");
  // A large one that a double holds is too heavy for a pattern, but exact.
  table.rows = wire<std::int64_t>(9007199254740992);
  EXPECT_EQ(failureOf([&] { read(table); }).id, messages::heavyPattern.id);
}

// Nobody waits for an answer that is given up; the server is told so, and may be past answering.
TEST(PlayedSilence, EndsTheQueryOnTheServerToo) {
  std::atomic<int> ended = 0;
  const FakeServer server([&](const std::string& sql) {
    if (sql.starts_with("KILL QUERY")) ++ended;
    if (sql.starts_with("KILL QUERY")) return std::string();
    if (!sql.starts_with("SELECT toUInt8(165)")) return smallTable().answerTo(sql);
    std::string answer = smallTable().answerTo(sql);
    return answer.insert(answer.size() - 1, pauses(6));
  });
  DataOptions options = optionsFor(server.address(), CaseMode::CaseByCase);
  options.timeout = 1.0;
  EXPECT_EQ(failureOf([&] { readAll(options); }).id, messages::serverSilent.id);
  EXPECT_EQ(ended, 1);
}

// What the listener was told besides that there is nothing to tell.
std::vector<std::pair<std::uint64_t, std::uint64_t>> progressOf(const FakeServer& server) {
  std::vector<std::pair<std::uint64_t, std::uint64_t>> told;
  DataOptions options = optionsFor(server.address(), CaseMode::CaseByCase);
  options.progress = [&](const Progress& progress) {
    const std::pair now(progress.rows, progress.total);
    if (progress.total > 0 && (told.empty() || told.back() != now)) told.push_back(now);
  };
  OpenedData opened = openData(options);
  const std::vector<int> columns{0};
  opened.cases->use(columns);
  std::size_t rows = 0;
  const auto stream = opened.cases->open();
  for (CaseBlock block; stream->next(block);) rows += block.count;
  EXPECT_EQ(rows, 3U);
  return told;
}

TEST(PlayedProgress, InTheHeadOfAnAnswerMayBeWithoutQuotes) {
  const FakeServer server([](const std::string& sql) {
    if (!sql.starts_with("SELECT toUInt8(165)")) return smallTable().answerTo(sql);
    std::string head = "X-ClickHouse-Progress: {\"read_rows\":7,\"total_rows_to_read\":9}\r\n";
    return httpAnswer(smallTable().rows, "200 OK", head + pauses(1) + "X-Other: 1\r\n");
  });
  using Told = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
  EXPECT_EQ(progressOf(server), (Told{{7, 9}}));
}

// A server whose answers tell nothing is asked now and then, and may be too busy for that.
TEST(PlayedProgress, IsAskedForAndMayBeRefused) {
  std::atomic<int> asked = 0;  // by the server's thread
  const FakeServer server([&](const std::string& sql) {
    if (sql.find("system.processes") != std::string::npos) {
      ++asked;
      if (asked == 1) return httpAnswer("busy", "503 Service Unavailable");
      if (asked == 2) return httpAnswer("");
      if (asked == 3) return httpAnswer(wire<std::uint64_t>(2) + wire<std::uint64_t>(3));
      return std::string();
    }
    if (!sql.starts_with("SELECT toUInt8(165)")) return smallTable().answerTo(sql);
    return pauses(15) + smallTable().answerTo(sql);
  });
  using Told = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
  EXPECT_EQ(progressOf(server), (Told{{2, 3}}));
  EXPECT_EQ(asked, 4) << "not again, after it was not answered";
}

}  // namespace
}  // namespace engine_tests
