// From the text of a command to words, numbers, quoted texts and signs, each with its place.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/command/CommandMessages.h"
#include "embedded/output/Document.h"

namespace embedded::command {

enum class LexKind { Word, Number, Quoted, Star, Dots, Slash, Equals, Open, Close };

struct Lexeme {
  LexKind kind = LexKind::Word;
  std::string text;     // quotes taken off
  double number = 0.0;  // of a Number
  output::Place place;
};

// Something that no token can be made of.
struct LexProblem {
  CommandMessage message;
  std::vector<std::string> arguments;
  output::Place place;
};

struct Lexed {
  std::vector<Lexeme> lexemes;
  std::vector<LexProblem> problems;
  output::Place end;  // just after the last character
};

// Reads the whole text. Blanks, commas, line breaks and comments (from # to the end of the line)
// separate; a semicolon ends the command. Takes time linear in the text's length.
Lexed lex(std::string_view text);

}  // namespace embedded::command
