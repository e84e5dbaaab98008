// The content of a schema file, or of a data package.
#include "embedded/data/Schema.h"

#include "Support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file = fuzz::write("input.schema.json", fuzz::textOf(data, size));
  fuzz::attempt([&] { embedded::data::readSchema(file, "data.csv"); });
  return 0;
}
