// Completes the module's description file when it is built.
//
//   describe_module HAND-WRITTEN OUTPUT
//
// A table that says which methods are its rows gets a label for each of them, taken from the
// tables of methods, so that a method stands in one place only. What was written by hand for such
// a label stays.

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "statistics/IndependentMethods.h"
#include "statistics/OneSampleMethods.h"
#include "statistics/PairedMethods.h"

namespace {

using Json = nlohmann::ordered_json;
using statistics::describe;
using statistics::MethodInfo;

// Without their functions, so that this program needs none of the host's operations.
constexpr auto OneSampleIntervals = describe(statistics::oneSampleIntervals);
constexpr auto OneSampleTests = describe(statistics::oneSampleTests);
constexpr auto PairedIntervals = describe(statistics::pairedIntervals);
constexpr auto PairedTests = describe(statistics::pairedTests);
constexpr auto IndependentIntervals = describe(statistics::independentIntervals);
constexpr auto IndependentTests = describe(statistics::independentTests);

struct Rows {
  std::string_view design;
  std::string_view kind;
  std::span<const MethodInfo> methods;
};

constexpr std::array<Rows, 6> AllRows{{{"one sample", "interval", OneSampleIntervals},
                                       {"one sample", "test", OneSampleTests},
                                       {"paired samples", "interval", PairedIntervals},
                                       {"paired samples", "test", PairedTests},
                                       {"independent samples", "interval", IndependentIntervals},
                                       {"independent samples", "test", IndependentTests}}};

std::span<const MethodInfo> methodsOf(const Json& choice) {
  for (const Rows& rows : AllRows)
    if (choice.at("design") == rows.design && choice.at("kind") == rows.kind) return rows.methods;
  throw std::runtime_error("no such methods: " + choice.dump());
}

Json describeMethod(const MethodInfo& method) {
  Json label{{"role", "method"}, {"keyword", method.keyword}, {"default", method.isDefault}};
  const auto add = [&](const char* name, std::string_view text) {
    if (!text.empty()) label[name] = text;
  };
  add("note", method.variant);
  add("formula", method.formula);
  add("canFail", method.canFail);
  add("source", method.source);
  return label;
}

// The rows of a table as labels, what was written by hand laid over them.
void complete(Json& table) {
  if (!table.contains("methods")) return;
  Json& labels = table["labels"];
  for (const MethodInfo& method : methodsOf(table["methods"])) {
    Json label = describeMethod(method);
    Json& written = labels[std::string(method.label)];
    if (!written.is_null()) label.update(written);
    written = label;
  }
}

void writeDescription(const std::filesystem::path& source, const std::filesystem::path& target) {
  Json description = Json::parse(std::ifstream(source));
  for (Json& table : description.at("tables")) complete(table);
  std::ofstream out(target);
  out << description.dump(2) << '\n';
  if (!out.flush()) throw std::runtime_error("cannot write " + target.string());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: describe_module HAND-WRITTEN OUTPUT\n";
    return 2;
  }
  try {
    writeDescription(argv[1], argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << '\n';
    return 1;
  }
}
