#include "embedded/command/Lexer.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <charconv>
#include <cmath>
#include <utility>

namespace embedded::command {

namespace {

constexpr UChar32 invalid = -1;

bool isDigit(UChar32 c) {
  return c >= '0' && c <= '9';
}
bool isBlank(UChar32 c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ',';
}
bool beginsWord(UChar32 c) {
  return c == '_' || c == '$' || (c > 0 && u_isalpha(c) != 0);
}
bool continuesWord(UChar32 c) {
  return beginsWord(c) || isDigit(c) ||
         (c > 127 && (u_isalnum(c) != 0 || u_charType(c) == U_NON_SPACING_MARK));
}

// The code point at `at` and its length in bytes; `invalid` and 1 for bytes that are no UTF-8.
std::pair<UChar32, std::size_t> decode(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned first = byte(at);
  if (first < 0x80) {
    return {static_cast<UChar32>(first), 1};
  }
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
  if (length == 0 || first > 0xF4) {
    return {invalid, 1};
  }
  unsigned value = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0U) != 0x80U) {
      return {invalid, 1};
    }
    value = value << 6U | (byte(at + i) & 0x3FU);
  }
  constexpr unsigned least[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  return value < least[length] || value > 0x10FFFF || surrogate
             ? std::pair{invalid, std::size_t{1}}
             : std::pair{static_cast<UChar32>(value), length};
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Lexed read() {
    while (at_ < text_.size() && !ended_) {
      readOne();
    }
    while (at_ < text_.size()) {
      readAfterEnd();
    }
    result_.end = place(1);
    return std::move(result_);
  }

 private:
  UChar32 here() const { return decode(text_, at_).first; }
  char byteAt(std::size_t offset) const {
    return at_ + offset < text_.size() ? text_[at_ + offset] : '\0';
  }

  // Moves past one character.
  void step() {
    const auto [character, length] = decode(text_, at_);
    at_ += length;
    ++column_;
    if (character == '\n') {
      ++line_;
      column_ = 1;
      lineStart_ = at_;
    }
  }

  output::Place place(int length) const { return placeAt(line_, column_, lineStart_, length); }

  output::Place placeAt(int line, int column, std::size_t lineStart, int length) const {
    std::string_view rest = text_.substr(lineStart, maxLine);
    rest = rest.substr(0, rest.find_first_of("\r\n"));
    return {.line = line, .column = column, .length = length, .lineText = std::string(rest)};
  }

  void skipComment() {
    while (at_ < text_.size() && text_[at_] != '\n') {
      step();
    }
  }

  void readOne() {
    const UChar32 c = here();
    if (isBlank(c)) {
      step();
    } else if (c == '#') {
      skipComment();
    } else if (c == ';') {
      step();
      ended_ = true;
    } else if (c == '\'' || c == '"') {
      readQuoted();
    } else if (beginsNumber()) {
      readNumber();
    } else if (beginsWord(c)) {
      readWord();
    } else {
      readSign(c);
    }
  }

  void readAfterEnd() {
    const UChar32 c = here();
    if (c == '#') {
      skipComment();
      return;
    }
    if (!isBlank(c) && !toldAfterEnd_) {
      problem(messages::afterEnd, {}, place(1));
      toldAfterEnd_ = true;
    }
    step();
  }

  bool beginsNumber() const {
    std::size_t i = byteAt(0) == '+' || byteAt(0) == '-' ? 1 : 0;
    if (byteAt(i) == '.') {
      ++i;
    }
    return isDigit(byteAt(i));
  }

  // Digits, a point that is not the first of two, digits, an exponent.
  std::size_t numberLength() const {
    std::size_t i = byteAt(0) == '+' || byteAt(0) == '-' ? 1 : 0;
    while (isDigit(byteAt(i))) {
      ++i;
    }
    if (byteAt(i) == '.' && byteAt(i + 1) != '.') {
      ++i;
      while (isDigit(byteAt(i))) {
        ++i;
      }
    }
    if (byteAt(i) == 'e' || byteAt(i) == 'E') {
      std::size_t exponent = i + 1;
      exponent += byteAt(exponent) == '+' || byteAt(exponent) == '-' ? 1U : 0U;
      if (isDigit(byteAt(exponent))) {
        i = exponent;
        while (isDigit(byteAt(i))) {
          ++i;
        }
      }
    }
    return i;
  }

  void readNumber() {
    const std::size_t length = numberLength();
    const std::string_view text = text_.substr(at_, length);
    const std::string_view digits = text.front() == '+' ? text.substr(1) : text;
    Lexeme lexeme{LexKind::Number, std::string(text), 0.0, place(static_cast<int>(length))};
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), lexeme.number);
    for (std::size_t i = 0; i < length; ++i) {
      step();
    }
    if (error != std::errc() || continuesWord(at_ < text_.size() ? here() : 0)) {
      problem(messages::badNumber, {lexeme.text}, lexeme.place);
      while (at_ < text_.size() && continuesWord(here())) {
        step();
      }
      return;
    }
    result_.lexemes.push_back(std::move(lexeme));
  }

  void readWord() {
    const output::Place start = place(1);
    const std::size_t begin = at_;
    while (at_ < text_.size() && continuesWord(here())) {
      step();
    }
    add(LexKind::Word, std::string(text_.substr(begin, at_ - begin)), start);
  }

  void readQuoted() {
    const output::Place start = place(1);
    const char quote = text_[at_];
    std::string text;
    step();
    while (at_ < text_.size()) {
      if (text_[at_] == quote && byteAt(1) != quote) {
        step();
        add(LexKind::Quoted, std::move(text), start);
        return;
      }
      if (text_[at_] == quote) {
        step();
      }
      if (here() == invalid || here() == 0) {
        problem(messages::badEncoding, {}, place(1));
      }
      const std::size_t begin = at_;
      step();
      text += text_.substr(begin, at_ - begin);
    }
    problem(messages::openString, {}, start);
  }

  void readSign(UChar32 c) {
    const output::Place start = place(1);
    if (c == '.' && byteAt(1) == '.') {
      step();
      step();
      add(LexKind::Dots, "..", start);
      return;
    }
    const std::size_t begin = at_;
    step();
    std::string text(text_.substr(begin, at_ - begin));
    switch (c) {
      case '/':
        return add(LexKind::Slash, std::move(text), start);
      case '=':
        return add(LexKind::Equals, std::move(text), start);
      case '(':
        return add(LexKind::Open, std::move(text), start);
      case ')':
        return add(LexKind::Close, std::move(text), start);
      case '*':
        return add(LexKind::Star, std::move(text), start);
      default:
        break;
    }
    if (c == invalid || c == 0) {
      problem(messages::badEncoding, {}, start);
    } else {
      problem(messages::badCharacter, {text}, start);
    }
  }

  // Adds a lexeme that began at `start` and ends here.
  void add(LexKind kind, std::string text, output::Place start) {
    start.length = start.line == line_ ? column_ - start.column : 1;
    result_.lexemes.push_back({kind, std::move(text), 0.0, std::move(start)});
  }

  void problem(const CommandMessage& message, std::vector<std::string> arguments,
               output::Place where) {
    if (result_.problems.size() < mostProblems) {
      result_.problems.push_back({message, std::move(arguments), std::move(where)});
    }
  }

  static constexpr std::size_t maxLine = 400;  // of a line that is shown in a message
  static constexpr std::size_t mostProblems = 20;

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t lineStart_ = 0;
  int line_ = 1;
  int column_ = 1;
  bool ended_ = false;
  bool toldAfterEnd_ = false;
  Lexed result_;
};

}  // namespace

Lexed lex(std::string_view text) {
  return Reader(text).read();
}

}  // namespace embedded::command
