// The program on a terminal: it writes as wide as that is, in colours.
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "Program.h"
#include "render/Columns.h"

namespace cli_tests {
namespace {

struct Shown {
  int status = 0;
  std::vector<std::string> lines;
};

// Runs the program on a terminal of this width, without regard to variables of the width.
Shown onTerminal(std::vector<std::string> words, unsigned short columns, bool noColour = false) {
  winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
  if (child < 0) {
    throw std::system_error(errno, std::generic_category(), "forkpty");
  }
  words.insert(words.begin(), BUILD_ROOT "/bin/proportions");
  if (child == 0) {
    setenv("COLUMNS", "70", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    noColour ? setenv("NO_COLOR", "1", 1) : unsetenv("NO_COLOR");
    std::vector<char*> pointers;
    for (std::string& word : words) {
      pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    alarm(longestRun);
    execv(pointers[0], pointers.data());
    _exit(127);
  }
  // The terminal is at its end when the child is: reading it then is an error.
  std::string text;
  char buffer[4096];
  for (ssize_t got = 0; (got = read(terminal, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(got));
  }
  close(terminal);
  int ended = 0;
  waitpid(child, &ended, 0);
  Shown shown{.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended), .lines = {}};
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    line.erase(line.find_last_not_of('\r') + 1);
    shown.lines.push_back(line);
  }
  return shown;
}

std::size_t widest(const std::vector<std::string>& lines) {
  std::size_t most = 0;
  for (const std::string& line : lines) {
    most = std::max(most, render::columnsOf(line));
  }
  return most;
}

const std::vector<std::string> counts{"counts", "7/50"};

TEST(Terminal, IsFilledToItsWidth) {
  const Shown wide = onTerminal(counts, 120, true);
  const Shown narrow = onTerminal(counts, 60, true);
  EXPECT_EQ(wide.status, 0);
  EXPECT_EQ(narrow.status, 0);
  EXPECT_LE(widest(wide.lines), 120U);
  EXPECT_GT(widest(wide.lines), 70U) << "not the width that the variable names";
  EXPECT_LE(widest(narrow.lines), 60U);
  EXPECT_GT(narrow.lines.size(), wide.lines.size());
}

TEST(Terminal, WithoutAWidthTakesThatOfTheVariable) {
  const Shown shown = onTerminal(counts, 0, true);
  EXPECT_EQ(shown.status, 0);
  EXPECT_LE(widest(shown.lines), 70U);
}

TEST(Terminal, ShowsColoursUnlessTheyAreUnwanted) {
  const std::string heading = "\x1b[1mProportions\x1b[0m";
  const auto first = [](const Shown& shown) {
    return shown.lines.empty() ? std::string() : shown.lines.front();
  };
  EXPECT_EQ(first(onTerminal(counts, 80)), heading);
  EXPECT_EQ(first(onTerminal(counts, 80, true)), "Proportions");
}

// A workbook would be noise there.
TEST(Terminal, ShowsNoBytes) {
  std::vector<std::string> words = counts;
  words.insert(words.end(), {"--format", "xlsx"});
  const Shown shown = onTerminal(words, 80, true);
  EXPECT_EQ(shown.status, 2);
  ASSERT_FALSE(shown.lines.empty());
  EXPECT_NE(shown.lines.back().find("xlsx"), std::string::npos) << shown.lines.back();
}

}  // namespace
}  // namespace cli_tests
