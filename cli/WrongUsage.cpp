// The parser of options hands out English text alone, so its text is taken apart.
#include "WrongUsage.h"

#include <CLI/CLI.hpp>
#include <regex>
#include <string>
#include <vector>

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorKind;

struct Finding {
  const char* pattern;  // of the parser's text; its groups are the arguments
  const char* id;
};

// The first one that matches counts.
constexpr Finding findings[] = {
    {"A subcommand is required", "Usage subcommand wanted ..."},
    {"(.*) is required", "Usage wanted ^1 ..."},
    {"The following arguments? (?:was|were) not expected: (.*)", "Usage not expected ^1 ..."},
    {"([^ ]*): (.*) not in \\{(.*)\\}", "Usage none of the choices ^1 ^2 ^3 ..."},
    {"([^ ]*): Value (.*) not in range (.*) to (.*)", "Usage outside of range ^1 ^2 ^3 ^4 ..."},
    {"Could not convert: ([^ ]*) = (.*)", "Usage not a number ^1 ^2 ..."},
    {"([^ ]*): [0-9]+ required .* missing", "Usage value wanted ^1 ..."},
    {"([^ ]*): At Most [0-9]+ required but received [0-9]+", "Usage more than once ^1 ..."},
    {"([^ ]*) requires (.*)", "Usage only with ^1 ^2 ..."},
    {"([^ ]*) excludes (.*)", "Usage not together ^1 ^2 ..."}};

// Commas between choices are followed by a blank.
std::string spaced(const std::string& choices) {
  return std::regex_replace(choices, std::regex(","), ", ");
}

}  // namespace

Error wrongUsage(const CLI::ParseError& problem) {
  const std::string text = problem.what();
  for (const Finding& finding : findings) {
    std::smatch match;
    if (!std::regex_match(text, match, std::regex(finding.pattern))) {
      continue;
    }
    std::vector<std::string> arguments(match.begin() + 1, match.end());
    if (arguments.size() == 3) {
      arguments.back() = spaced(arguments.back());
    }
    return Error(ErrorKind::Usage, finding.id, arguments);
  }
  return Error(ErrorKind::Usage, "Usage wrong ^1 ...", {text});
}

}  // namespace cli
