// Where the results go: files that are there whole or not at all, outputs that cannot be written,
// and runs that the user interrupts.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "Program.h"

namespace cli_tests {
namespace {

constexpr const char* command = "PROPORTIONS /ONESAMPLE v";

class Output : public testing::Test {
 protected:
  void SetUp() override { folder_.write("data.csv", "v\n1\n0\n1\n"); }

  Call call(const std::vector<std::string>& extra) const {
    Call made{
        .arguments = {"run", "data.csv", "-c", command}, .folder = folder_.path(), .input = {}};
    made.arguments.insert(made.arguments.end(), extra.begin(), extra.end());
    return made;
  }

  Folder folder_;
};

TEST_F(Output, GoesToAFileInTheFormatOfItsEnding) {
  const std::pair<const char*, const char*> kinds[] = {
      {"a.json", "{"}, {"a.csv", "table,"}, {"a.txt", "Proportions"}};
  for (const auto& [file, begin] : kinds) {
    const Outcome outcome = run(call({"-o", file}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    EXPECT_TRUE(contentOf(folder_.path() / file).starts_with(begin)) << file;
  }
  EXPECT_EQ(folder_.files(), (std::vector<std::string>{"a.csv", "a.json", "a.txt", "data.csv"}));
}

TEST_F(Output, HoldsTheSameInAFileAndOnStandardOutput) {
  for (const char* format : {"json", "csv", "text"}) {
    const Outcome shown = run(call({"--format", format}));
    run(call({"--format", format, "-o", "out"}));
    EXPECT_EQ(contentOf(folder_.path() / "out"), shown.out) << format;
  }
}

TEST_F(Output, ReplacesAnOlderFile) {
  folder_.write("a.csv", std::string(100000, 'x'));
  EXPECT_EQ(run(call({"-o", "a.csv"})).status, 0);
  EXPECT_EQ(contentOf(folder_.path() / "a.csv"), run(call({"--format", "csv"})).out);
}

TEST_F(Output, ThatCannotBeWrittenIsSaid) {
  std::filesystem::create_directory(folder_.path() / "folder");
  for (const char* target : {"none/a.txt", "folder", "/dev/full"}) {
    const Outcome outcome = run(call({"--format", "text", "-o", target}));
    EXPECT_EQ(outcome.status, 4) << target;
    EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    EXPECT_NE(outcome.err.find(target), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(folder_.files(), (std::vector<std::string>{"data.csv", "folder"}));
}

TEST_F(Output, ThatNobodyReadsIsSaid) {
  for (const char* format : {"text", "json", "csv", "html", "markdown", "latex", "xlsx"}) {
    Call closed = call({"--format", format});
    closed.closedOutput = true;
    const Outcome outcome = run(closed);
    EXPECT_EQ(outcome.status, 4) << format;
    EXPECT_NE(outcome.err.find("standard output cannot be written: Broken pipe"), std::string::npos)
        << format << ": " << outcome.err;
  }
}

TEST_F(Output, OfListsAndHelpThatNobodyReadsIsSaid) {
  const std::vector<std::string> uses[] = {
      {"methods"}, {"describe", "data.csv"}, {"--help"}, {"run", "--help"}, {"--version"}};
  for (const auto& words : uses) {
    const Outcome outcome =
        run({.arguments = words, .folder = folder_.path(), .input = {}, .closedOutput = true});
    EXPECT_EQ(outcome.status, 4) << words.front();
    EXPECT_NE(outcome.err.find("Broken pipe"), std::string::npos) << outcome.err;
  }
}

TEST_F(Output, ThatTheDiskDoesNotHoldIsSaidWithTheReason) {
  for (const char* format : {"text", "json", "html", "xlsx"}) {
    const Outcome outcome = run(call({"--format", format, "-o", "/dev/full"}));
    EXPECT_EQ(outcome.status, 4) << format;
    EXPECT_NE(outcome.err.find("No space left on device"), std::string::npos) << outcome.err;
  }
}

TEST_F(Output, OfARefusedCommandIsADocumentForMachinesAlone) {
  const std::vector<std::string> refused{"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE x"};
  for (const char* format : {"json", "csv", "text"}) {
    Call wrong{.arguments = refused, .folder = folder_.path(), .input = {}};
    wrong.arguments.insert(wrong.arguments.end(), {"--format", format});
    const Outcome outcome = run(wrong);
    EXPECT_EQ(outcome.status, 1);
    if (std::string(format) != "json") {
      EXPECT_EQ(outcome.out, "") << format;
      EXPECT_NE(outcome.err.find("error"), std::string::npos) << outcome.err;
      continue;
    }
    const auto json = document(outcome);
    EXPECT_EQ(json["tables"].size(), 0);
    ASSERT_EQ(json["messages"].size(), 1);
    EXPECT_EQ(json["messages"][0]["where"]["line"], 1);
    EXPECT_EQ(json["messages"][0]["where"]["column"], 24);
  }
}

// Writes rows until the reader is gone or this many bytes went through.
std::size_t feed(const Running& running, std::size_t most) {
  const std::string rows = [] {
    std::string text;
    for (int i = 0; i < 1000; ++i) {
      text += i % 3 == 0 ? "1\n" : "0\n";
    }
    return text;
  }();
  std::size_t written = 0;
  while (written < most) {
    const ssize_t got = write(running.input(), rows.data(), rows.size());
    if (got < 0) {
      break;
    }
    written += static_cast<std::size_t>(got);
  }
  return written;
}

class Interrupted : public testing::TestWithParam<int> {};

// In the middle of a long read: megabytes have gone through the pipe, and more would follow.
TEST_P(Interrupted, RunsEndAndLeaveNothing) {
  const Folder folder;
  folder.write("results.csv", "older\n");
  std::filesystem::create_directory(folder.path() / "tmp");
  Running running({.arguments = {"run", "-", "-c", command, "-o", "results.csv"},
                   .folder = folder.path(),
                   .input = "v\n",
                   .temporary = folder.path() / "tmp"});
  ASSERT_GE(feed(running, 4'000'000), 4'000'000U);
  running.signal(GetParam());
  feed(running, 400'000'000);
  const Outcome outcome = running.waitWithOpenInput();
  EXPECT_EQ(outcome.status, 130) << outcome.err;
  EXPECT_TRUE(outcome.out.empty()) << outcome.out;
  EXPECT_EQ(contentOf(folder.path() / "results.csv"), "older\n");
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"results.csv", "tmp"}));
  EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "tmp"));
}

// Waiting for more on standard input that does not come.
TEST_P(Interrupted, WaitsForInputEnd) {
  Running running({.arguments = {"run", "-", "-c", command}, .folder = {}, .input = "v\n"});
  ASSERT_GE(feed(running, 4'000'000), 4'000'000U);
  running.signal(GetParam());
  const Outcome outcome = running.waitWithOpenInput();
  EXPECT_EQ(outcome.status, 130) << outcome.err;
  EXPECT_TRUE(outcome.out.empty()) << outcome.out;
}

INSTANTIATE_TEST_SUITE_P(BySignal, Interrupted, testing::Values(SIGINT, SIGTERM));

// As wanted, whether a terminal shows it or not.
TEST_F(Output, HasColoursWhenAsked) {
  const auto hasColour = [](const Outcome& outcome) {
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out.find("\x1b[1mProportions\x1b[0m\n") != std::string::npos;
  };
  EXPECT_TRUE(hasColour(run(call({"--color", "always"}))));
  EXPECT_FALSE(hasColour(run(call({"--color", "never"}))));
  EXPECT_FALSE(hasColour(run(call({}))));
}

TEST_F(Output, KeepsErrorsWhenItIsToBeQuiet) {
  const std::string refused = "PROPORTIONS /ONESAMPLE none";
  const Call quiet{.arguments = {"run", "data.csv", "-c", refused, "--format", "csv", "--quiet"},
                   .folder = folder_.path(),
                   .input = {}};
  const Outcome outcome = run(quiet);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("none"), std::string::npos) << outcome.err;
}

TEST_F(Output, OfDumpsThatCannotBeWrittenIsSaid) {
  const Outcome outcome =
      run(call({"--diagnostics", "algorithm", "--diagnostics-file", "none/dump.txt"}));
  EXPECT_EQ(outcome.status, 4);
  EXPECT_TRUE(outcome.out.empty()) << outcome.out;
  EXPECT_NE(outcome.err.find("none/dump.txt"), std::string::npos) << outcome.err;
}

TEST_F(Output, OfAWorkbookThatCannotBeMadeIsSaid) {
  const Outcome outcome = run(Call{.arguments = {"counts", "7/50", "-o", "a.xlsx"},
                                   .folder = folder_.path(),
                                   .input = {},
                                   .temporary = folder_.path() / "none"});
  EXPECT_EQ(outcome.status, 4);
  EXPECT_NE(outcome.err.find("a.xlsx"), std::string::npos) << outcome.err;
  EXPECT_EQ(folder_.files(), std::vector<std::string>{"data.csv"});
}

// More than is gathered before it is written.
TEST_F(Output, OfManyGroupsIsWholeOrSaysThatItIsNot) {
  std::string data = "g,v\n";
  for (int i = 0; i < 1000; ++i) {
    data += std::to_string(i) + "," + std::to_string(i % 2) + "\n";
  }
  folder_.write("data.csv", data);
  const std::string shown = run(call({"--split", "g", "--format", "csv"})).out;
  ASSERT_GT(shown.size(), 200'000U);
  EXPECT_EQ(run(call({"--split", "g", "-o", "a.csv"})).status, 0);
  EXPECT_EQ(contentOf(folder_.path() / "a.csv"), shown);
  for (const char* format : {"csv", "json", "html"}) {
    const Outcome outcome = run(call({"--split", "g", "--format", format, "-o", "/dev/full"}));
    EXPECT_EQ(outcome.status, 4) << format;
    EXPECT_NE(outcome.err.find("/dev/full cannot be written: No space left on device"),
              std::string::npos)
        << format << ": " << outcome.err;
  }
}

}  // namespace
}  // namespace cli_tests
