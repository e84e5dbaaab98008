#include "embedded/command/Cursor.h"

#include <utility>

#include "embedded/text/Nearest.h"

namespace embedded::command {

void Cursor::skipSubcommand() {
  while (!atEnd() && !is(LexKind::Slash)) {
    ++at_;
  }
}

void Cursor::skipValue() {
  // At least one lexeme, so that reading goes on.
  do {
    ++at_;
  } while (!atValueEnd());
}

void Cursor::fail(const CommandMessage& message, const std::vector<std::string>& arguments,
                  const output::Place& where, std::string nearest) {
  failed_ = true;
  report(message, arguments, where, std::move(nearest));
}

void Cursor::failName(const CommandMessage& unknown, const std::vector<std::string>& arguments,
                      const Lexeme& word, const FoundName& found,
                      const std::vector<std::string>& names) {
  if (found.candidates.empty()) {
    fail(unknown, arguments, word.place, text::nearest(word.text, names));
    return;
  }
  failed_ = true;
  std::vector<output::TextPtr> candidates;
  for (const std::string& candidate : found.candidates) {
    candidates.push_back(output::Text::string(candidate, false));
  }
  report(messages::ambiguousName,
         std::vector<output::TextPtr>{output::Text::string(word.text, false),
                                      output::Text::list(std::move(candidates))},
         word.place);
}

}  // namespace embedded::command
