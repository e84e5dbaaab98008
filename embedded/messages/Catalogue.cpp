#include "embedded/messages/Catalogue.h"

#include <algorithm>
#include <deque>
#include <string>

#include "embedded/messages/CompiledFiles.h"

namespace embedded::messages {

namespace {

constexpr std::string_view english = "en";

// Lower case, with hyphens, without an encoding: "de_AT.UTF-8" is "de-at".
std::string normalized(std::string_view tag) {
  std::string text(tag.substr(0, tag.find_first_of(".@")));
  for (char& c : text) {
    c = c == '_' ? '-' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return text;
}

// Every language that the program holds, English first.
class Library {
 public:
  Library() {
    for (const CompiledFile& compiled : compiledFiles()) {
      if (compiled.language == english) {
        add(compiled, nullptr);
      }
    }
    const Catalogue& fallback = catalogues_.front();
    for (const CompiledFile& compiled : compiledFiles()) {
      if (compiled.language != english) {
        add(compiled, &fallback);
      }
    }
  }

  const Catalogue* find(std::string_view tag) const {
    const auto found = std::ranges::find_if(catalogues_, [&](const Catalogue& catalogue) {
      return normalized(catalogue.language()) == tag;
    });
    return found == catalogues_.end() ? nullptr : &*found;
  }

  const Catalogue& inEnglish() const { return catalogues_.front(); }

 private:
  void add(const CompiledFile& compiled, const Catalogue* fallback) {
    files_.emplace_back(compiled.bytes);
    catalogues_.emplace_back(compiled.language, files_.back(), fallback);
  }

  std::deque<MessageFile> files_;  // their addresses last
  std::deque<Catalogue> catalogues_;
};

}  // namespace

std::string_view Catalogue::sentence(std::string_view identifier) const {
  if (const auto found = file_->find(identifier)) {
    return *found;
  }
  return fallback_ == nullptr ? identifier : fallback_->sentence(identifier);
}

const Catalogue& Catalogue::forLanguage(std::string_view tag) {
  static const Library library;
  std::string wanted = normalized(tag);
  while (!wanted.empty()) {
    if (const Catalogue* found = library.find(wanted)) {
      return *found;
    }
    const std::size_t hyphen = wanted.rfind('-');
    wanted.resize(hyphen == std::string::npos ? 0 : hyphen);
  }
  return library.inEnglish();
}

}  // namespace embedded::messages
