// A command in the first line, and below it the content of a CSV file that it analyses.
#include "Support.h"
#include "embedded/session/Run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::textOf(data, size);
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return -1;
  embedded::Request request;
  request.command = text.substr(0, end);
  request.data = fuzz::write("input.csv", text.substr(end + 1));
  request.threads = 1;
  fuzz::attempt([&] { embedded::run(request, fuzz::module()); });
  return 0;
}
