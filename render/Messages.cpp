#include "render/Messages.h"

#include <fmt/format.h>

#include <algorithm>

#include "embedded/output/Values.h"
#include "render/Columns.h"
#include "render/MessageParts.h"
#include "render/Phrase.h"
#include "render/ReaderTable.h"
#include "render/TextTable.h"

namespace render {

namespace {

using embedded::output::Message;
using embedded::output::Place;
using embedded::output::readerText;
using embedded::output::Severity;

std::string colourOf(Severity severity, const Context& context) {
  if (!context.colour || severity == Severity::Note) {
    return std::string(context.colour ? bold : "");
  }
  return std::string(bold) + std::string(severity == Severity::Error ? red : yellow);
}

// The line of the command with a caret under the first character of the place, underlined to
// its end. Both count in columns of the terminal.
std::string caretLines(const Place& place) {
  // Of a line too long to be shown, only where the place is.
  if (place.lineText.empty()) {
    return fmt::format("{:>5}:{} |\n", place.line, place.column);
  }
  const MarkedLine line = markedLine(place);
  std::string out =
      fmt::format("{:>5} | {}{}{}\n{:>8}", place.line, line.before, line.marked, line.after, "| ");
  out.append(columnsOf(line.before), ' ').append(1, '^');
  const std::size_t length = std::max<std::size_t>(columnsOf(line.marked), 1);
  return out.append(length - 1, '~').append(1, '\n');
}

void addCases(const Document& document, const Context& context,
              std::vector<std::pair<std::string, std::string>>& facts) {
  const auto& cases = document.data.cases;
  const auto say = [&](std::string_view id, std::initializer_list<std::uint64_t> numbers) {
    std::vector<std::string> arguments;
    arguments.reserve(numbers.size());
    for (const std::uint64_t number : numbers) {
      arguments.push_back(std::to_string(number));
    }
    return phrase(context, id, arguments);
  };
  std::string text = say("Cases read ^1", {cases.read});
  if (cases.invalidWeight > 0) {
    text += "; " + say("Cases of invalid weight ^1", {cases.invalidWeight});
  }
  for (const auto& [name, missing] : cases.missing) {
    if (missing.system + missing.user > 0) {
      text += "; " + name + ": " + say("Missing system ^1 user ^2", {missing.system, missing.user});
    }
  }
  facts.emplace_back(context.sentences->sentence("Cases"), text);
}

}  // namespace

std::string severityName(Severity severity, const Context& context) {
  return std::string(context.sentences->sentence(severityId(severity)));
}

std::string messageSentence(const Document& document, const Message& message,
                            const Context& context) {
  std::string out = visible(readerText(*message.text, *context.sentences));
  if (!message.nearest.empty()) {
    out += " " + visible(phrase(context, "Nearest name ^1", {message.nearest}));
  }
  // A warning whose text does not name the split group says it here.
  if (message.split != embedded::output::none && message.text->items.empty()) {
    out += " (" + visible(splitSentence(document, message.split, *context.sentences)) + ")";
  }
  return out;
}

std::string messageText(const Document& document, const Message& message, const Context& context) {
  const std::string out = colourOf(message.severity, context) +
                          severityName(message.severity, context) + ":" +
                          std::string(context.colour ? plain : "") + " " +
                          messageSentence(document, message, context) + "\n";
  return message.where ? out + caretLines(*message.where) : out;
}

std::vector<std::pair<std::string, std::string>> runFacts(const Document& document,
                                                          const Context& context) {
  const auto name = [&](std::string_view id) {
    return std::string(context.sentences->sentence(id));
  };
  std::vector<std::pair<std::string, std::string>> facts;
  const auto& data = document.data;
  facts.emplace_back(name("Command"), document.command);
  facts.emplace_back(name("Data"),
                     data.source + (data.fingerprint.empty() ? "" : " (" + data.fingerprint + ")"));
  if (!data.weight.empty()) {
    facts.emplace_back(name("Weight"), data.weight);
  }
  std::string splits;
  for (const auto& variable : data.splits) {
    splits += (splits.empty() ? "" : ", ") + variable->name;
  }
  if (!splits.empty()) {
    facts.emplace_back(name("Split by"), splits);
  }
  if (data.seed) {
    facts.emplace_back(name("Seed"), std::to_string(*data.seed));
  }
  if (document.accepted) {
    addCases(document, context, facts);
    if (data.reading != nullptr) {
      facts.emplace_back(name("Reading"), readerText(*data.reading, *context.sentences));
    }
  }
  facts.emplace_back(name("Program"), "proportions " + document.version);
  return facts;
}

}  // namespace render
