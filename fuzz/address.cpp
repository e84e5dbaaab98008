// What is written for DATA: paths, patterns of file names, addresses of engines.
#include <string>

#include "Support.h"
#include "embedded/data/DataAddress.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Below a folder of its own: patterns over the whole machine are slow, and no finding. Addresses
  // with a scheme stay as they are.
  static const bool inFolder = [] {
    fuzz::write("one.csv", "v\n1\n");
    fuzz::write("two.csv", "v\n0\n");
    std::filesystem::current_path(fuzz::folder());
    return true;
  }();
  std::string text(fuzz::textOf(data, size));
  std::string plain = text;  // as a pattern reads it
  std::erase(plain, '\\');
  if (!inFolder || plain.starts_with('/') || plain.find("..") != std::string::npos) return -1;
  fuzz::attempt([&] { embedded::data::parseAddress(text); });
  return 0;
}
