#include "embedded/text/Collation.h"

#include <unicode/locid.h>

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

}  // namespace

Collation::Collation(const std::string& languageTag) {
  if (languageTag.empty()) {
    return;
  }
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale = icu::Locale::forLanguageTag(piece(languageTag), status);
  if (U_FAILURE(status) || locale.isBogus() || *locale.getLanguage() == '\0') {
    refuse(languageTag);
  }
  collator_.reset(icu::Collator::createInstance(locale, status));
  // U_USING_DEFAULT_WARNING: nothing is known of this language.
  if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING) {
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
