#include "Invocation.h"

#include <string_view>

namespace cli {

namespace {

constexpr std::string_view unquoted =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./:,=@%+";

std::string quoted(std::string_view argument) {
  if (!argument.empty() && argument.find_first_not_of(unquoted) == std::string_view::npos) {
    return std::string(argument);
  }
  std::string out = "'";
  for (const char c : argument) {
    out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return out + "'";
}

}  // namespace

std::string invocationOf(int argc, const char* const* argv) {
  std::string out = "proportions";
  for (int i = 1; i < argc; ++i) {
    out += " " + quoted(argv[i]);
  }
  return out;
}

}  // namespace cli
