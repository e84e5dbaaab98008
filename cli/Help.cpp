#include "Help.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "render/Columns.h"
#include "render/Phrase.h"

namespace cli {

namespace {

using render::phrase;

constexpr std::size_t nameColumns = 30;    // of names, with what stands around them
constexpr std::size_t narrowestText = 30;  // of descriptions
constexpr std::size_t indent = 2;

// What is allowed for an option's value: its name, then a list or a range if there is one.
struct ValueKind {
  std::string name;
  std::vector<std::string> choices;
  std::vector<std::string> bounds;
};

// The parts of a text between the separators.
std::vector<std::string> parts(std::string_view text, std::string_view separator) {
  std::vector<std::string> found;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(separator, at), text.size());
    found.emplace_back(text.substr(at, end - at));
    at = end + separator.size();
  }
  return found;
}

ValueKind kindOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t colon = std::min(type.find(':'), type.size());
  ValueKind kind{type.substr(0, colon), {}, {}};
  const std::string rest = type.substr(std::min(colon + 1, type.size()));
  if (kind.name.find('|') != std::string::npos) {
    return kind;  // the name says it
  }
  if (rest.starts_with('{')) {
    kind.choices = parts(std::string_view(rest).substr(1, rest.size() - 2), ",");
  } else if (rest.starts_with('[')) {
    kind.bounds = parts(std::string_view(rest).substr(1, rest.size() - 2), " - ");
  }
  return kind;
}

// "-o, --output FILE"; an option without a letter leaves its place.
std::string nameOf(const CLI::Option& option) {
  const auto& letters = option.get_snames();
  std::string name = letters.empty() ? "    " : "-" + letters.front() + ", ";
  name += "--" + option.get_lnames().front();
  return option.get_type_size() == 0 ? name : name + " " + kindOf(option).name;
}

using Options = std::vector<const CLI::Option*>;

Options positionalsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

Options namedOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) {
    return option->nonpositional() && !option->get_group().empty();
  });
}

}  // namespace

Help::Help(const embedded::output::Sentences& sentences, int width)
    : textWidth_(
          std::max(static_cast<std::size_t>(std::max(width, 0)), nameColumns + narrowestText) -
          nameColumns) {
  context_.sentences = &sentences;
}

std::string Help::make_help(const CLI::App* app, std::string name,
                            CLI::AppFormatMode /*mode*/) const {
  std::string out = phrase(context_, app->get_description()) + "\n\n" + usage(*app, name);
  if (const Options positionals = positionalsOf(*app); !positionals.empty()) {
    out += "\n" + phrase(context_, "Help arguments ...") + "\n";
    for (const CLI::Option* option : positionals) {
      out += entry(option->get_name(true), textOf(*option));
    }
  }
  out += "\n" + phrase(context_, "Help options ...") + "\n";
  for (const CLI::Option* option : namedOf(*app)) {
    out += entry(nameOf(*option), textOf(*option));
  }
  if (const auto subcommands = app->get_subcommands({}); !subcommands.empty()) {
    out += "\n" + phrase(context_, "Help subcommands ...") + "\n";
    for (const CLI::App* subcommand : subcommands) {
      out += entry(subcommand->get_name(), phrase(context_, subcommand->get_description()));
    }
  }
  return out;
}

// A name and its description beside it, or below where the name is too long.
std::string Help::entry(const std::string& name, const std::string& text) const {
  std::string out = std::string(indent, ' ') + name;
  bool below = render::columnsOf(out) + indent > nameColumns;
  out = below ? out : render::padRight(out, nameColumns);
  for (const std::string& line : render::wrapped(text, textWidth_)) {
    out += (below ? "\n" + std::string(nameColumns, ' ') : "") + line;
    below = true;
  }
  return out + "\n";
}

std::string Help::usage(const CLI::App& app, const std::string& name) const {
  std::string line = name + " [" + phrase(context_, "Help word options") + "]";
  for (const CLI::Option* option : positionalsOf(app)) {
    const bool several = option->get_expected_max() > 1;
    const std::string word = option->get_name(true) + (several ? "..." : "");
    line += option->get_required() ? " " + word : " [" + word + "]";
  }
  if (!app.get_subcommands({}).empty()) {
    line += " " + phrase(context_, "Help word subcommand");
  }
  return phrase(context_, "Help usage ^1 ...", {line}) + "\n";
}

// The description, and in parentheses what is allowed.
std::string Help::textOf(const CLI::Option& option) const {
  const ValueKind kind = kindOf(option);
  std::vector<std::string> limits;
  if (!kind.choices.empty()) {
    limits.push_back(CLI::detail::join(kind.choices, ", "));
  }
  if (kind.bounds.size() == 2) {
    limits.push_back(phrase(context_, "Help from ^1 to ^2 ...", kind.bounds));
  }
  for (const CLI::Option* other : option.get_needs()) {
    limits.push_back(phrase(context_, "Help only with ^1 ...", {other->get_name()}));
  }
  for (const CLI::Option* other : option.get_excludes()) {
    limits.push_back(phrase(context_, "Help not with ^1 ...", {other->get_name()}));
  }
  const std::string text = phrase(context_, option.get_description());
  return limits.empty()
             ? text
             : phrase(context_, "Help text ^1 limits ^2", {text, CLI::detail::join(limits, "; ")});
}

}  // namespace cli
