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

  std::vector<std::string> tags() const {
    std::vector<std::string> all;
    for (const Catalogue& catalogue : catalogues_) {
      all.emplace_back(catalogue.language());
      std::ranges::replace(all.back(), '_', '-');
    }
    std::sort(all.begin() + 1, all.end());
    return all;
  }

 private:
  void add(const CompiledFile& compiled, const Catalogue* fallback) {
    files_.emplace_back(compiled.bytes);
    catalogues_.emplace_back(compiled.language, files_.back(), fallback);
  }

  std::deque<MessageFile> files_;  // their addresses last
  std::deque<Catalogue> catalogues_;
};

const Library& library() {
  static const Library all;
  return all;
}

}  // namespace

std::string_view Catalogue::sentence(std::string_view identifier) const {
  if (const auto found = file_->find(identifier)) {
    return *found;
  }
  return fallback_ == nullptr ? identifier : fallback_->sentence(identifier);
}

const Catalogue* Catalogue::find(std::string_view tag) {
  std::string wanted = normalized(tag);
  while (!wanted.empty()) {
    if (const Catalogue* found = library().find(wanted)) {
      return found;
    }
    const std::size_t hyphen = wanted.rfind('-');
    wanted.resize(hyphen == std::string::npos ? 0 : hyphen);
  }
  return nullptr;
}

const Catalogue& Catalogue::forLanguage(std::string_view tag) {
  const Catalogue* found = find(tag);
  return found == nullptr ? library().inEnglish() : *found;
}

std::vector<std::string> Catalogue::tags() {
  return library().tags();
}

}  // namespace embedded::messages
