#include "embedded/command/Cursor.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "embedded/session/Session.h"
#include "embedded/text/Nearest.h"

namespace embedded::command {

namespace {

constexpr std::size_t mostMistakes = 20;

std::pair<int, int> positionOf(const output::Message& message) {
  return {message.where->line, message.where->column};
}

}  // namespace

Cursor::Cursor(const Lexed& lexed) : lexed_(&lexed), failed_(!lexed.problems.empty()) {
  for (const LexProblem& problem : lexed.problems) {
    mistakes_.push_back(messageOf(problem.message, problem.arguments, problem.place));
  }
}

void Cursor::skipSubcommand() {
  while (!atSubcommandEnd()) {
    ++at_;
  }
}

void Cursor::skipValue() {
  while (!atValueEnd()) {
    ++at_;
  }
}

bool Cursor::isFull() const {
  return mistakes_.size() >= mostMistakes;
}

bool Cursor::isBad(const Spot& where) const {
  const auto badAt = [&](std::size_t i) {
    return i < lexed_->lexemes.size() && lexed_->lexemes[i].kind == LexKind::Bad &&
           lexed_->lexemes[i].place == where;
  };
  return badAt(at_) || badAt(at_ - 1) ||
         std::ranges::any_of(lexed_->problems,
                             [&](const LexProblem& problem) { return problem.place == where; });
}

void Cursor::fail(const CommandMessage& message, const std::vector<std::string>& arguments,
                  const Spot& where, std::string nearest) {
  failed_ = true;
  if (isBad(where)) {
    return;
  }
  further_ = further_ || isFull();
  if (!isFull()) {
    mistakes_.push_back(messageOf(message, arguments, where, std::move(nearest)));
  }
}

void Cursor::failName(const CommandMessage& unknown, const std::vector<std::string>& arguments,
                      const Lexeme& word, const FoundName& found,
                      const std::vector<std::string>& names) {
  if (found.candidates.empty()) {
    fail(unknown, arguments, word.place, isFull() ? "" : text::nearest(word.text, names));
    return;
  }
  failed_ = true;
  further_ = further_ || isFull();
  if (isFull()) {
    return;
  }
  std::vector<output::TextPtr> candidates;
  for (const std::string& candidate : found.candidates) {
    candidates.push_back(output::Text::string(candidate, false));
  }
  output::Message message = messageOf(messages::ambiguousName, {}, word.place);
  message.text = output::Text::composite(std::string(messages::ambiguousName.id),
                                         {output::Text::string(shortened(word.text), false),
                                          output::Text::list(std::move(candidates))});
  mistakes_.push_back(std::move(message));
}

void Cursor::tell() {
  std::ranges::stable_sort(mistakes_, {}, positionOf);
  auto& messages = Session::current().document.messages;
  std::ranges::move(mistakes_, std::back_inserter(messages));
  mistakes_.clear();
  if (further_) {
    output::Message message;
    message.severity = output::Severity::Note;
    message.text = output::Text::string(std::string(messages::furtherMistakes.id));
    messages.push_back(std::move(message));
  }
}

}  // namespace embedded::command
