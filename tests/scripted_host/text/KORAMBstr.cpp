// Text helpers: ASCII case, and the script's collation.
#include "host/text/KORAMBstr.h"

#include <algorithm>

#include "scripted_host/session/Session.h"

using scripted::session;

void KORAMBstrtrim_A(std::string& text) {
  session().enter("KORAMBstrtrim_A", {text});
  text.erase(text.find_last_not_of(' ') + 1);
}

void KORAMBstrupr_A(std::string& text) {
  session().enter("KORAMBstrupr_A", {text});
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
}

void KORAMBstrlwr_A(std::string& text) {
  session().enter("KORAMBstrlwr_A", {text});
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
}

int KORAMBstrncoll_A(std::string_view a, std::string_view b, std::size_t n) {
  session().enter("KORAMBstrncoll_A", {std::string(a), std::string(b)});
  session().expect(n == std::max(a.size(), b.size()), "texts are collated over the longer length");
  const auto& collation = session().script.collation;
  return collation ? collation(a.substr(0, n), b.substr(0, n))
                   : a.substr(0, n).compare(b.substr(0, n));
}

std::string KORAMBltoa_A(std::int32_t number) {
  session().enter("KORAMBltoa_A", {std::to_string(number)});
  return std::to_string(number);
}
