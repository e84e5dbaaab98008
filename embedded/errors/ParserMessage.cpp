// Messages of procedures about their commands. Each belongs to the place in the command that the
// procedure looked at last.
#include "host/errors/ParserMessage.h"

#include <vector>

#include "embedded/session/Session.h"

using embedded::Session;
using embedded::output::Message;
using embedded::output::Severity;
using embedded::output::Text;
using embedded::output::TextPtr;

namespace {

void issue(Severity severity, std::string_view identifier,
           std::initializer_list<std::string_view> texts) {
  Session& session = Session::current();
  std::vector<TextPtr> arguments;
  for (const std::string_view text : texts) {
    arguments.push_back(Text::string(std::string(text), false));
  }
  Message message;
  message.severity = severity;
  message.text = texts.size() == 0 ? Text::string(std::string(identifier))
                                   : Text::composite(std::string(identifier), std::move(arguments));
  if (session.commandFocus) {
    message.where = embedded::command::placeOf(*session.commandFocus, session.commandText);
  }
  session.document.messages.push_back(std::move(message));
}

}  // namespace

// The session holds all that a message needs.
struct ParserMessage::Impl {};

ParserMessage::ParserMessage(std::string_view /*commandName*/,
                             std::string_view /*procedureTitle*/) {}
ParserMessage::~ParserMessage() = default;

void ParserMessage::GenericError(std::string_view identifier,
                                 std::initializer_list<std::string_view> texts) {
  issue(Severity::Error, identifier, texts);
}

void ParserMessage::GenericWarning(std::string_view identifier,
                                   std::initializer_list<std::string_view> texts) {
  issue(Severity::Warning, identifier, texts);
}

void ParserMessage::NoSubCom() {
  issue(Severity::Error, "NoSubCom", {});
}

void ParserMessage::ParamExclAnyOther(std::string_view parameterText, std::string_view subcommand) {
  issue(Severity::Error, "ParamExclAnyOther", {parameterText, subcommand});
}

void ParserMessage::NoTableRequested() {
  issue(Severity::Warning, "NoTableRequested", {});
}

void ParserMessage::VariableNotNumeric(const KoraVarName& variable, std::string_view parameter,
                                       std::string_view subcommand) {
  issue(Severity::Error, "VariableNotNumeric", {variable.name(), parameter, subcommand});
}
