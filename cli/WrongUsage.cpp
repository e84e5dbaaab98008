// The parser of options hands out English text alone, so its text is taken apart.
#include "WrongUsage.h"

#include <CLI/CLI.hpp>
#include <regex>
#include <string>
#include <vector>

#include "ErrorText.h"
#include "embedded/errors/Error.h"
#include "embedded/text/Nearest.h"
#include "render/Phrase.h"

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

// The finding in the parser's text as an error.
Error errorOf(const std::string& text) {
  for (const Finding& finding : findings) {
    std::smatch match;
    if (!std::regex_match(text, match, std::regex(finding.pattern))) {
      continue;
    }
    std::vector<std::string> arguments(match.begin() + 1, match.end());
    if (arguments.size() == 3) {
      arguments.back() = spaced(arguments.back());
    }
    return {ErrorKind::Usage, finding.id, arguments};
  }
  return {ErrorKind::Usage, "Usage wrong ^1 ...", {text}};
}

// The subcommand that was named, or the program before one.
const CLI::App& useOf(const CLI::App& app) {
  const auto named = app.get_subcommands();
  return named.empty() ? app : *named.front();
}

// The name that could have been meant by a word: an option, or a subcommand.
std::string nearestName(const CLI::App& use, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::Option* option : use.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  for (const CLI::App* subcommand : use.get_subcommands({})) {
    names.push_back(subcommand->get_name());
  }
  return embedded::text::nearest(word.substr(0, word.find('=')), names);
}

}  // namespace

std::string wrongUsage(const CLI::App& app, const CLI::ParseError& problem,
                       const embedded::output::Sentences& sentences) {
  render::Context context;
  context.sentences = &sentences;
  const CLI::App& use = useOf(app);
  const auto unknown = app.remaining(true);
  // A subcommand that is missing may be one that was mistyped.
  const bool isUnknown = !unknown.empty();
  std::string text = errorLine(
      errorOf(isUnknown ? CLI::ExtrasError({unknown.front()}).what() : problem.what()), sentences);
  if (const std::string near = isUnknown ? nearestName(use, unknown.front()) : ""; !near.empty()) {
    text.back() = ' ';
    text += render::phrase(context, "Nearest name ^1", {near}) + "\n";
  }
  const std::string help = (&use == &app ? "" : app.get_name() + " ") + use.get_name() + " --help";
  return text + render::phrase(context, "Usage see ^1 ...", {help}) + "\n";
}

}  // namespace cli
