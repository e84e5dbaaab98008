#include "embedded/command/Lexer.h"

#include <fmt/format.h>
#include <unicode/uchar.h>

#include <charconv>
#include <utility>

#include "host/distributions/MCMV.h"

namespace embedded::command {

namespace {

constexpr std::size_t mostProblems = 20;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
// Blanks as people type and paste them: also a byte order mark and other languages' blanks.
bool isBlank(int c) {
  return c == ',' || c == 0xFEFF || (c > 0 && u_isUWhiteSpace(c) != 0);
}
bool beginsWord(int c) {
  return c == '_' || c == '$' || (c > 0 && u_isalpha(c) != 0);
}
bool continuesWord(int c) {
  return beginsWord(c) || (c > 0 && (u_isdigit(c) != 0 || (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0));
}
// Bytes that are no text at all: no UTF-8, and NUL.
bool isNoText(int c) {
  return c <= 0;
}

// Length in bytes of the digits at the front.
std::size_t digitsLength(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && isDigit(text[i])) {
    ++i;
  }
  return i;
}

std::size_t signLength(std::string_view text) {
  return !text.empty() && (text.front() == '+' || text.front() == '-') ? 1 : 0;
}

bool beginsNumber(std::string_view text) {
  text.remove_prefix(signLength(text));
  if (text.starts_with('.')) {
    text.remove_prefix(1);
  }
  return !text.empty() && isDigit(text.front());
}

// Sign, digits, a point that is not the first of two, digits, an exponent.
std::size_t numberLength(std::string_view text) {
  std::size_t i = signLength(text);
  i += digitsLength(text.substr(i));
  if (text.substr(i).starts_with('.') && !text.substr(i).starts_with("..")) {
    ++i;
    i += digitsLength(text.substr(i));
  }
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    const std::size_t exponent = i + 1 + signLength(text.substr(i + 1));
    const std::size_t digits = digitsLength(text.substr(exponent));
    return digits == 0 ? i : exponent + digits;
  }
  return i;
}

// The number that the text is; false when no double can hold it. The most negative double is no
// number: it stands for a missing one.
bool readDouble(std::string_view text, double& number) {
  if (text.front() == '+') {
    text.remove_prefix(1);
  }
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  number += 0.0;  // no negative zero
  return error == std::errc() && end == text.data() + text.size() && number != MCMV::Missing;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Lexed read() {
    while (!atEnd() && !ended_) {
      readOne();
    }
    while (!atEnd()) {
      readAfterEnd();
    }
    return std::move(result_);
  }

 private:
  bool atEnd() const { return at_ == text_.size(); }
  int here() const { return atEnd() ? 0 : characterAt(text_, at_).code; }
  std::string_view rest() const { return text_.substr(at_); }
  Spot spot() const { return {line_, column_, 1, lineStart_}; }

  // Moves past one character. A carriage return ends a line unless a line feed follows.
  void step() {
    const Character character = characterAt(text_, at_);
    at_ += character.bytes;
    ++column_;
    if (character.code == '\n' || (character.code == '\r' && !rest().starts_with('\n'))) {
      ++line_;
      column_ = 1;
      lineStart_ = at_;
    }
  }

  // Moves past a character that may be anything, if it is text.
  void stepOverText() {
    if (isNoText(here())) {
      refuseEncoding();
    }
    step();
  }

  void skipComment() {
    while (!atEnd() && here() != '\n' && here() != '\r') {
      stepOverText();
    }
  }

  void readOne() {
    const int c = here();
    if (isBlank(c)) {
      step();
    } else if (c == '#') {
      skipComment();
    } else if (c == ';') {
      step();
      ended_ = true;
    } else if (c == '\'' || c == '"') {
      readQuoted();
    } else if (beginsNumber(rest().substr(0, 3))) {
      readNumber();
    } else if (beginsWord(c)) {
      readWord();
    } else {
      readSign(c);
    }
  }

  void readAfterEnd() {
    const int c = here();
    if (c == '#') {
      skipComment();
      return;
    }
    if (!isBlank(c) && !toldAfterEnd_) {
      problem(messages::afterEnd, {}, spot());
      toldAfterEnd_ = true;
    }
    step();
  }

  // What touches a number belongs to it, so that 1a or 2020-01-01 is not taken apart.
  bool touchesNumber() const {
    return continuesWord(here()) || beginsNumber(rest().substr(0, 3)) ||
           (here() == '.' && !rest().starts_with(".."));
  }

  void readNumber() {
    const Spot start = spot();
    const std::size_t begin = at_;
    const auto passNumber = [&] {
      for (const std::size_t end = at_ + numberLength(rest()); at_ < end;) {
        step();
      }
    };
    passNumber();
    bool valid = true;
    while (touchesNumber()) {
      valid = false;
      beginsNumber(rest().substr(0, 3)) ? passNumber() : step();
    }
    const std::string_view text = text_.substr(begin, at_ - begin);
    double number = 0.0;
    valid = valid && readDouble(text, number);
    add(valid ? LexKind::Number : LexKind::Bad, std::string(text), start, number);
    if (!valid) {
      problem(messages::badNumber, {std::string(text)}, result_.lexemes.back().place);
    }
  }

  void readWord() {
    const Spot start = spot();
    const std::size_t begin = at_;
    while (continuesWord(here())) {
      step();
    }
    add(LexKind::Word, std::string(text_.substr(begin, at_ - begin)), start);
  }

  void readQuoted() {
    const Spot start = spot();
    const char quote = text_[at_];
    std::string text;
    step();
    while (!atEnd()) {
      if (text_[at_] == quote) {
        step();
        if (!rest().starts_with(quote)) {
          add(LexKind::Quoted, std::move(text), start);
          return;
        }
      }
      const std::size_t begin = at_;
      stepOverText();
      text += text_.substr(begin, at_ - begin);
    }
    problem(messages::openString, {}, start);
    add(LexKind::Bad, {}, start);
  }

  void readSign(int c) {
    const Spot start = spot();
    const std::size_t begin = at_;
    step();
    if (c == '.' && rest().starts_with('.')) {
      step();
    }
    const std::string text(text_.substr(begin, at_ - begin));
    constexpr std::pair<std::string_view, LexKind> signs[] = {
        {"..", LexKind::Dots}, {"/", LexKind::Slash}, {"=", LexKind::Equals},
        {"(", LexKind::Open},  {")", LexKind::Close}, {"*", LexKind::Star}};
    for (const auto& [sign, kind] : signs) {
      if (text == sign) {
        add(kind, text, start);
        return;
      }
    }
    add(LexKind::Bad, text, start);
    if (isNoText(c)) {
      refuseEncoding(start);
    } else {
      const bool shown = u_isgraph(c) != 0;
      problem(messages::badCharacter, {shown ? text : fmt::format("U+{:04X}", c)}, start);
    }
  }

  // Adds a lexeme that began at `start` and ends here.
  void add(LexKind kind, std::string text, Spot start, double number = 0.0) {
    start.length = start.line == line_ ? column_ - start.column : 1;
    result_.lexemes.push_back({kind, std::move(text), number, start});
    result_.end = spot();
  }

  void problem(const CommandMessage& message, std::vector<std::string> arguments, Spot where) {
    if (result_.problems.size() < mostProblems) {
      result_.problems.push_back({message, std::move(arguments), where});
    }
  }

  // Told once: where one byte is in another encoding, many are.
  void refuseEncoding() { refuseEncoding(spot()); }
  void refuseEncoding(const Spot& where) {
    if (!std::exchange(toldEncoding_, true)) {
      problem(messages::badEncoding, {}, where);
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t lineStart_ = 0;
  int line_ = 1;
  int column_ = 1;
  bool ended_ = false;
  bool toldAfterEnd_ = false;
  bool toldEncoding_ = false;
  Lexed result_;
};

}  // namespace

Lexed lex(std::string_view text) {
  return Reader(text).read();
}

}  // namespace embedded::command
