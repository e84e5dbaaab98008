#include "embedded/errors/Error.h"

#include <utility>

namespace embedded {

namespace {

std::string describe(std::string_view identifier, const std::vector<std::string>& arguments) {
  std::string text(identifier);
  for (const std::string& argument : arguments) {
    text += " [" + argument + "]";
  }
  return text;
}

}  // namespace

Error::Error(ErrorKind kind, std::string_view identifier, std::vector<std::string> arguments)
    : std::runtime_error(describe(identifier, arguments)),
      kind_(kind),
      identifier_(identifier),
      arguments_(std::move(arguments)) {}

}  // namespace embedded
