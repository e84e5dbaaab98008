#include "embedded/command/CommandMessages.h"

#include <utility>

#include "embedded/session/Session.h"

namespace embedded::command {

void report(const CommandMessage& message, std::vector<output::TextPtr> arguments,
            const output::Place& place, std::string nearest) {
  output::Message out;
  out.severity = output::Severity::Error;
  out.text = output::Text::composite(std::string(message.id), std::move(arguments));
  out.where = place;
  out.nearest = std::move(nearest);
  Session::current().document.messages.push_back(std::move(out));
}

void report(const CommandMessage& message, const std::vector<std::string>& arguments,
            const output::Place& place, std::string nearest) {
  std::vector<output::TextPtr> texts;
  for (const std::string& argument : arguments) {
    texts.push_back(output::Text::string(argument, false));
  }
  report(message, std::move(texts), place, std::move(nearest));
}

}  // namespace embedded::command
