#include "embedded/text/Collation.h"

#include <unicode/locid.h>

#include <algorithm>

#include "embedded/errors/Error.h"
#include "embedded/session/Session.h"

namespace embedded::text {

namespace {

[[noreturn]] void refuse(const std::string& tag) {
  throw Error(ErrorKind::Usage, "Unknown locale ^1 ...", {tag});
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

// Whether anything is known of the language. The collator does not tell: many languages, German
// among them, sort by the rules that stand for all.
bool isKnown(const icu::Locale& locale) {
  std::int32_t count = 0;
  const icu::Locale* known = icu::Locale::getAvailableLocales(count);
  return std::any_of(known, known + count, [&](const icu::Locale& other) {
    return std::string_view(other.getLanguage()) == locale.getLanguage();
  });
}

}  // namespace

Collation::Collation(const std::string& languageTag) {
  if (languageTag.empty()) {
    return;
  }
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale = icu::Locale::forLanguageTag(piece(languageTag), status);
  // After a failure this does nothing, and keeps the status of it.
  collator_.reset(icu::Collator::createInstance(locale, status));
  if (U_FAILURE(status) || !isKnown(locale)) {
    refuse(languageTag);
  }
}

int Collation::compare(std::string_view a, std::string_view b) const {
  if (collator_) {
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult order = collator_->compareUTF8(piece(a), piece(b), status);
    if (order != UCOL_EQUAL) {
      return order == UCOL_LESS ? -1 : 1;
    }
  }
  const int order = a.compare(b);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

const Collation& Collation::current() {
  return Session::current().collation;
}

}  // namespace embedded::text
