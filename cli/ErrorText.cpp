#include "ErrorText.h"

#include <utility>
#include <vector>

namespace cli {

using embedded::output::Text;

std::string errorLine(const embedded::Error& error, const embedded::output::Sentences& sentences) {
  std::vector<embedded::output::TextPtr> texts;
  for (const std::string& argument : error.arguments()) {
    // An argument that is an identifier itself, such as the reason of a failure, is told by its
    // sentence.
    texts.push_back(Text::string(argument, argument.ends_with(" ...")));
  }
  const auto text = Text::composite(error.identifier(), std::move(texts));
  return "proportions: " + embedded::output::readerText(*text, sentences) + "\n";
}

}  // namespace cli
