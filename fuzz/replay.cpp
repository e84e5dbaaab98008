// Runs a fuzz target without a fuzzer: over saved inputs, or over random changes of them.
//
//   fuzz_NAME FOLDER...                      the files of the folders
//   fuzz_NAME --blind SECONDS SEED FOLDER... changes of them for so long, with no eye on coverage;
//                                            LAST_INPUT names a file that holds the input under way
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Inputs = std::vector<std::pair<std::string, std::string>>;  // file names and contents

Inputs inputsOf(int argc, char** argv, int first) {
  Inputs inputs;
  for (int i = first; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      inputs.emplace_back(entry.path().filename().string(),
                          std::string{std::istreambuf_iterator<char>(file), {}});
    }
  }
  return inputs;
}

void run(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

class Changes {
 public:
  Changes(const Inputs& inputs, unsigned seed) : inputs_(inputs), random_(seed) {}

  std::string next() {
    std::string text = any();
    for (std::size_t i = 1 + below(6); i > 0; --i) change(text);
    return text;
  }

 private:
  std::size_t below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }
  const std::string& any() { return inputs_[below(inputs_.size())].second; }

  void change(std::string& text) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t length = below(std::min<std::size_t>(text.size() - at, 16) + 1);
    switch (below(6)) {
      case 0:
        text.insert(at, 1, static_cast<char>(random_()));
        break;
      case 1:
        text.erase(at, length);
        break;
      case 2:
        if (at < text.size()) text[at] = static_cast<char>(random_());
        break;
      case 3:
        text.insert(at, text.substr(at, length));
        break;
      case 4: {  // the rest of another input
        const std::string& other = any();
        text = text.substr(0, at) + other.substr(below(other.size() + 1));
        break;
      }
      default: {
        constexpr std::string_view signs[] = {
            "\"",   "'",  "(",  ")",  "/", "=",     ",",
            ";",    "..", "#",  "\n", "-", "1e999", "9007199254740993",
            "\xff", "{",  "}",  "[",  "]", ":",     "%2F",
            "@",    "*",  "nan"};
        text.insert(at, signs[below(std::size(signs))]);
      }
    }
  }

  const Inputs& inputs_;
  std::mt19937 random_;
};

int runBlind(const Inputs& inputs, int seconds, unsigned seed) {
  Changes changes(inputs, seed);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  std::size_t count = 0;
  for (; std::chrono::steady_clock::now() < end; ++count) {
    const std::string input = changes.next();
    // What a finding is looked up in when this process is gone.
    if (const char* last = std::getenv("LAST_INPUT")) {
      std::ofstream(last, std::ios::binary) << input;
    }
    run(input);
  }
  std::printf("%zu executions\n", count);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const bool blind = argc > 4 && std::string_view(argv[1]) == "--blind";
  const Inputs inputs = inputsOf(argc, argv, blind ? 4 : 1);
  if (inputs.empty()) return 1;
  if (blind) return runBlind(inputs, std::atoi(argv[2]), static_cast<unsigned>(std::atoi(argv[3])));
  for (const auto& [name, content] : inputs) {
    std::fprintf(stderr, "%s\n", name.c_str());
    run(content);
  }
  std::printf("%zu inputs\n", inputs.size());
  return 0;
}
