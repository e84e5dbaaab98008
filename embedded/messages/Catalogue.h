// The message catalogue: the sentences of a language, by the identifiers that programs use.
//
// The sentences stand in one gettext file a language, below po/. They are compiled into the
// program, which reads no catalogue file at run time. A sentence holds the same placeholders as
// its identifier, or those that the identifier's arguments fill.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/messages/MessageFile.h"
#include "embedded/output/Values.h"

namespace embedded::messages {

class Catalogue final : public output::Sentences {
 public:
  // The sentences of `file`, and where they lack one those of `fallback`, if there is one. Both
  // must outlive the catalogue.
  Catalogue(std::string_view language, const MessageFile& file, const Catalogue* fallback)
      : language_(language), file_(&file), fallback_(fallback) {}

  // The sentence of the identifier in this language, else in English, else the identifier itself.
  // The view lives as long as the program, or as the identifier when that comes back.
  std::string_view sentence(std::string_view identifier) const override;

  // The language's tag, such as "en".
  std::string_view language() const { return language_; }
  // The identifiers of which this language has a sentence, in the order of their bytes.
  std::vector<std::string_view> identifiers() const { return file_->identifiers(); }

  // The catalogue of a language tag such as "en", "de-AT" or "zh_CN.UTF-8", without regard to case:
  // that very one, else the one of the language alone; null when there is neither.
  static const Catalogue* find(std::string_view tag);
  // The same, and English when there is none.
  static const Catalogue& forLanguage(std::string_view tag);
  // The tags of all languages, as a user writes them: "en" first, the others in alphabetical order.
  static std::vector<std::string> tags();

 private:
  std::string_view language_;
  const MessageFile* file_;
  const Catalogue* fallback_;
};

}  // namespace embedded::messages
