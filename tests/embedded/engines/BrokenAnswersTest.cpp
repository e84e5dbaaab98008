// Answers over HTTP that are not whole, from a server that the test plays itself: each is an error,
// none is taken for the data.
#include "FakeServer.h"
#include "embedded/data/EngineMessages.h"
#include "tests_data/Support.h"

namespace engine_tests {
namespace {

using namespace embedded::data;

// An answer that says it has so many bytes, or as many as it has.
std::string answer(const std::string& body, std::size_t length = std::string::npos) {
  if (length == std::string::npos) length = body.size();
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) +
         "\r\nConnection: close\r\n\r\n" + body;
}

// A table with one column of small numbers and three rows; `rows` is what a stream of it gives.
FakeServer serverOf(const std::string& rows) {
  return FakeServer([rows](const std::string& sql) {
    if (sql.find("system.settings") != std::string::npos) return answer("");
    if (sql.find("system.columns") != std::string::npos) return answer("\x01v\x05UInt8");
    if (sql.starts_with("SELECT count(*)")) return answer(std::string("\x03\0\0\0\0\0\0\0", 8));
    return rows;
  });
}

Failure failureWith(const std::string& rows) {
  const FakeServer server = serverOf(rows);
  const Failure failure =
      failureOf([&] { readAll(optionsFor(server.address(), CaseMode::CaseByCase)); });
  EXPECT_TRUE(failure.id.empty() || failure.kind == embedded::ErrorKind::Data);
  return failure;
}

const std::string row = "\xA5\x01";

TEST(BrokenAnswers, AWholeOneIsRead) {
  EXPECT_EQ(failureWith(answer(row + row + row)).id, "");
}

TEST(BrokenAnswers, TheConnectionEnds) {
  EXPECT_EQ(failureWith(answer(row + row, 6)).id, messages::answerBroke.id);
}

TEST(BrokenAnswers, NothingComesAtAll) {
  EXPECT_EQ(failureWith("").id, messages::answerBroke.id);
}

TEST(BrokenAnswers, RowsAreLeftOut) {
  EXPECT_EQ(failureWith(answer(row + row)).id, messages::dataChanged.id);
}

TEST(BrokenAnswers, RowsAreAdded) {
  EXPECT_EQ(failureWith(answer(row + row + row + row)).id, messages::dataChanged.id);
}

TEST(BrokenAnswers, ARowIsCut) {
  EXPECT_EQ(failureWith(answer(row + row + "\xA5")).id, messages::answerBroke.id);
}

TEST(BrokenAnswers, AnErrorStandsBehindTheRows) {
  const Failure failure = failureWith(
      answer(row + "Code: 241, e.displayText() = DB::Exception: Memory limit, e.what() = x"));
  EXPECT_EQ(failure.id, messages::engineFailure.id);
  EXPECT_EQ(failure.arguments.at(1), "Memory limit");
}

TEST(BrokenAnswers, AnErrorOfANewerServerStandsBehindTheRows) {
  const Failure failure = failureWith(
      answer(row + row + row + "Code: 241. DB::Exception: Memory limit. (MEMORY) (version 24.8)"));
  EXPECT_EQ(failure.id, messages::engineFailure.id);
  EXPECT_EQ(failure.arguments.at(1), "Memory limit. (MEMORY)");
}

TEST(BrokenAnswers, AnotherPageAnswers) {
  EXPECT_EQ(failureWith(answer("<html></html>")).id, messages::answerBroke.id);
}

}  // namespace
}  // namespace engine_tests
