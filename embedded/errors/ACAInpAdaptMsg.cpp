// Warnings about data that hold no valid case.
#include "host/errors/ACAInpAdaptMsg.h"

#include "embedded/session/Session.h"

namespace {

void warn(const char* identifier, embedded::output::Index split) {
  embedded::output::Message message;
  message.severity = embedded::output::Severity::Warning;
  message.text = embedded::output::Text::string(identifier);
  message.split = split;
  embedded::Session::current().document.messages.push_back(std::move(message));
}

}  // namespace

void ACAInpAdaptMsg::NoValidCases() const {
  warn("NoValidCases", embedded::output::none);
}

void ACAInpAdaptMsg::NoValidCasesSplit() const {
  warn("NoValidCasesSplit", embedded::Session::current().currentSplit);
}
