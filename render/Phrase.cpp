#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::Text;
using embedded::output::TextPtr;

std::vector<TextPtr> textsOf(const std::vector<std::string>& strings) {
  std::vector<TextPtr> texts;
  texts.reserve(strings.size());
  for (const std::string& string : strings) {
    texts.push_back(Text::string(string, false));
  }
  return texts;
}

}  // namespace

std::string phrase(const Context& context, std::string_view id,
                   const std::vector<std::string>& arguments) {
  return embedded::output::readerText(*Text::composite(std::string(id), textsOf(arguments)),
                                      *context.sentences);
}

std::string phraseWithList(const Context& context, std::string_view id,
                           const std::vector<std::string>& arguments,
                           const std::vector<std::string>& list) {
  std::vector<TextPtr> texts = textsOf(arguments);
  texts.push_back(Text::list(textsOf(list)));
  return embedded::output::readerText(*Text::composite(std::string(id), std::move(texts)),
                                      *context.sentences);
}

}  // namespace render
