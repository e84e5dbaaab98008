// Text as LaTeX source in which no character is a command.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace render {

class LatexText {
 public:
  // The text on one line, every character of it meaning itself.
  std::string escaped(std::string_view raw);
  // The same for a line of a program: every blank is kept, letters are of one width.
  std::string code(std::string_view raw);

  // What a document needs before its beginning, so that the characters escaped so far compile with
  // every LaTeX program: those that a program has no letter for are shown by their code.
  std::string declarations() const;

 private:
  void append(std::string& out, std::string_view character, bool keepBlanks);

  std::set<std::string> foreign_;  // characters beyond ASCII
};

}  // namespace render
