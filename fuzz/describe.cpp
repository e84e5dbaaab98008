// What `describe` says of a CSV file, read back with the same file: it must say the same again.
#include "Support.h"
#include "embedded/session/Run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  embedded::Request request;
  request.data = fuzz::write("input.csv", fuzz::textOf(data, size));
  request.threads = 1;
  std::string first;
  fuzz::attempt([&] { first = embedded::describe(request); });
  if (first.empty()) return 0;
  request.schema = fuzz::write("input.schema.json", first);
  std::string second;
  fuzz::attempt([&] { second = embedded::describe(request); });
  fuzz::require(first == second, "a description that is read back says something else");
  return 0;
}
