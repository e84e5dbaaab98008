#include "embedded/command/CommandMessages.h"

#include <utility>

#include "embedded/session/Session.h"

namespace embedded::command {

namespace {

constexpr std::size_t longestArgument = 60;  // in characters

}  // namespace

std::string shortened(std::string_view text) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < longestArgument && at < text.size(); ++i) {
    at += characterAt(text, at).bytes;
  }
  return std::string(text.substr(0, at)) + (at < text.size() ? "\u2026" : "");
}

output::Message messageOf(const CommandMessage& message, const std::vector<std::string>& arguments,
                          const Spot& where, std::string nearest) {
  std::vector<output::TextPtr> texts;
  for (const std::string& argument : arguments) {
    texts.push_back(output::Text::string(shortened(argument), false));
  }
  output::Message made;
  made.severity = output::Severity::Error;
  made.text = output::Text::composite(std::string(message.id), std::move(texts));
  made.where = placeOf(where, Session::current().commandText);
  made.nearest = std::move(nearest);
  return made;
}

void report(const CommandMessage& message, const std::vector<std::string>& arguments,
            const Spot& where, std::string nearest) {
  Session::current().document.messages.push_back(
      messageOf(message, arguments, where, std::move(nearest)));
}

}  // namespace embedded::command
