#include "Baselines.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace samples {

render::Context context(int width) {
  render::Context context{.sentences = &english(), .description = &description()};
  context.width = width;
  return context;
}

std::string rendered(const Document& document, const std::string& format,
                     const render::Context& with) {
  std::ostringstream out;
  const render::Format* found = render::findFormat(format);
  EXPECT_NE(found, nullptr) << format;
  if (found != nullptr) {
    found->render(document, with, out);
  }
  return out.str();
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void expectBaseline(const std::string& name, const std::string& text) {
  const std::string approved = std::string(TEST_DATA) + "/render/" + name;
  if (readFile(approved) == text) {
    return;
  }
  const std::filesystem::path received =
      std::filesystem::path(BUILD_ROOT) / "received" / "render" / name;
  std::filesystem::create_directories(received.parent_path());
  std::ofstream(received, std::ios::binary) << text;
  ADD_FAILURE() << "not as approved; to approve it:\n  cp " << received.string() << " " << approved
                << "\n"
                << text;
}

}  // namespace samples
