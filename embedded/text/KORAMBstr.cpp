// Text helpers on ICU: folding, and the collation that the session was given.
#include "host/text/KORAMBstr.h"

#include <unicode/unistr.h>

#include <algorithm>

#include "embedded/text/Collation.h"

void KORAMBstrtrim_A(std::string& text) {
  text.erase(text.find_last_not_of(' ') + 1);
}

namespace {

icu::UnicodeString unicode(const std::string& text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

// Bytes that are no text would be lost on the way through ICU: such a text stays as it is.
bool isText(const std::string& text, const icu::UnicodeString& read) {
  std::string back;
  read.toUTF8String(back);
  return back == text;
}

template <class Fold>
void fold(std::string& text, Fold change) {
  icu::UnicodeString folded = unicode(text);
  if (!isText(text, folded)) {
    return;
  }
  change(folded);
  text.clear();
  folded.toUTF8String(text);
}

}  // namespace

void KORAMBstrupr_A(std::string& text) {
  fold(text, [](icu::UnicodeString& folded) { folded.toUpper(icu::Locale::getRoot()); });
}

void KORAMBstrlwr_A(std::string& text) {
  fold(text, [](icu::UnicodeString& folded) { folded.toLower(icu::Locale::getRoot()); });
}

int KORAMBstrncoll_A(std::string_view a, std::string_view b, std::size_t n) {
  return embedded::text::Collation::current().compare(a.substr(0, n), b.substr(0, n));
}

std::string KORAMBltoa_A(std::int32_t number) {
  return std::to_string(number);
}
