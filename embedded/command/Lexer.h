// From the text of a command to words, numbers, quoted texts and signs, each with its place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/command/CommandMessages.h"
#include "embedded/command/Spot.h"

namespace embedded::command {

// `Bad` stands where no token could be made, so that reading can go on behind it.
enum class LexKind { Word, Number, Quoted, Star, Dots, Slash, Equals, Open, Close, Bad };

struct Lexeme {
  LexKind kind = LexKind::Word;
  std::string text;     // quotes taken off
  double number = 0.0;  // of a Number
  Spot place;
};

// Something that no token can be made of.
struct LexProblem {
  CommandMessage message;
  std::vector<std::string> arguments;
  Spot place;
};

struct Lexed {
  std::vector<Lexeme> lexemes;
  std::vector<LexProblem> problems;  // the first ones
  Spot end;                          // just after the last lexeme
};

// Reads the whole text. Blanks, commas, line breaks and comments (from # to the end of the line)
// separate; a semicolon ends the command. Takes time and memory linear in the text's length.
Lexed lex(std::string_view text);

}  // namespace embedded::command
