// The order of strings: by code points, or by the rules of a language; ties are broken by bytes, so
// that the order is total.
#pragma once

#include <unicode/coll.h>

#include <memory>
#include <string>
#include <string_view>

namespace embedded::text {

class Collation {
 public:
  // Code point order, which is the order of the bytes of UTF-8.
  Collation() = default;
  // The order of a language tag such as "de" or "sv-SE"; code point order for an empty tag.
  // Throws Error(Usage) when there is no such language.
  explicit Collation(const std::string& languageTag);

  // Negative, 0 or positive as `a` sorts before, with or after `b`.
  int compare(std::string_view a, std::string_view b) const;

  // That of the current session.
  static const Collation& current();

 private:
  std::unique_ptr<icu::Collator> collator_;
};

}  // namespace embedded::text
