// Writes what the pages on methods take from the tables of methods: the picture of each method, the
// block of facts in its page, and the list of all pages. The rest of a page is written by people.
//
// Called with the folder of the pages; script/docs does.
#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "Picture.h"

namespace docs {

namespace {

using statistics::Design;
using statistics::MethodInfo;
using statistics::MethodKind;

constexpr std::string_view begin = "<!-- made by script/docs -->\n";
constexpr std::string_view end = "<!-- end -->\n";

// Letters of the formulas, by design.
constexpr std::string_view letters[] = {
    "x of n trials are successes, f = n - x are not, p = x / n; p0 is the test value, z the normal "
    "quantile of the level, 1 - alpha the level.",
    "Of N pairs, b are successes the first time only and c the second time only; p1 and p2 are the "
    "two proportions, z is the normal quantile of the level.",
    "s1 of n1 trials are successes in the first group, s2 of n2 in the second; p1 and p2 are the "
    "proportions, d = p1 - p2, z is the normal quantile of the level."};

std::string withHyphens(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    c = c == ' ' || c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return out;
}

std::string_view plain(std::string_view label) {
  return label.ends_with(" ...") ? label.substr(0, label.size() - 4) : label;
}

std::string pageName(Design design, MethodKind kind, const MethodInfo& method) {
  const std::string_view place = statistics::nameOf(design);
  return withHyphens(place.substr(0, place.find(" samples"))) + "-" +
         withHyphens(statistics::nameOf(kind)) + "-" + withHyphens(method.keyword);
}

Caption captionOf(Design design, MethodKind kind, const MethodInfo& method) {
  const bool isTest = kind == MethodKind::Test;
  std::string title = fmt::format("{}: {}", plain(method.label),
                                  isTest ? "how often the test rejects what is true"
                                         : "how often the interval covers the truth");
  std::string text = isTest ? "How often the test rejects at the 5 % level"
                            : "How often the 95 % interval holds the true value";
  switch (design) {
    case Design::OneSample:
      text += isTest ? ", the test value being the true proportion" : "";
      break;
    case Design::Paired:
      text += fmt::format(
          ", for n pairs whose two proportions are the same, their answers "
          "correlated by {}",
          pairCorrelation);
      break;
    case Design::Independent:
      text += ", for two groups of n trials each whose proportions are the same";
      break;
  }
  return {title, text +
                     ", over all proportions, summed over every outcome; what lies outside of the "
                     "picture is drawn at its edge."};
}

void fact(std::string& out, std::string_view name, std::string_view text) {
  if (!text.empty()) {
    out += fmt::format("- **{}:** {}\n", name, text);
  }
}

std::string factsOf(Design design, MethodKind kind, const MethodInfo& method) {
  const Caption caption = captionOf(design, kind, method);
  std::string out(begin);
  fact(out, "Design", statistics::nameOf(design));
  fact(out, "Asked for by",
       fmt::format("`{}={}`{}", kind == MethodKind::Test ? "TESTTYPES" : "CITYPES", method.keyword,
                   method.isDefault ? ", and when nothing is asked for" : ""));
  fact(out, "Variant", method.variant);
  fact(out, "No value", method.canFail);
  fact(out, "Source", fmt::format("[{}](sources.md)", method.source));
  out += fmt::format("\n```text\n{}\n```\n\n{}\n\n", method.formula,
                     letters[static_cast<std::size_t>(design)]);
  out += fmt::format("![{}]({}.svg)\n\n{}\n", caption.title, pageName(design, kind, method),
                     caption.text);
  return out.append(end);
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The text with the block between the marks replaced; the block behind it when it has none.
std::string withBlock(const std::string& text, const std::string& block) {
  const std::size_t from = text.find(begin);
  const std::size_t to = text.find(end, from == std::string::npos ? 0 : from);
  if (from == std::string::npos || to == std::string::npos) {
    return text + (text.empty() ? "" : "\n") + block;
  }
  return text.substr(0, from) + block + text.substr(to + end.size());
}

void write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

void writePage(const std::filesystem::path& folder, Design design, MethodKind kind,
               std::size_t slot, const MethodInfo& method) {
  const std::string name = pageName(design, kind, method);
  const auto page = folder / (name + ".md");
  std::string text = readFile(page);
  if (text.empty()) {
    text = fmt::format("# {} ({})\n", plain(method.label), statistics::nameOf(kind));
  }
  write(page, withBlock(text, factsOf(design, kind, method)));
  write(folder / (name + ".svg"),
        picture(curvesOf(design, kind, slot), kind, captionOf(design, kind, method)));
}

void writeAll(const std::filesystem::path& folder) {
  std::string list(begin);
  for (const Design design : statistics::designs) {
    for (const MethodKind kind : statistics::methodKinds) {
      list += fmt::format("\n## {}: {}s\n\n", statistics::nameOf(design), statistics::nameOf(kind));
      std::size_t slot = 0;
      for (const MethodInfo& method : statistics::methodsOf(design, kind)) {
        writePage(folder, design, kind, slot++, method);
        list += fmt::format("- [{}]({}.md), `{}`{}\n", plain(method.label),
                            pageName(design, kind, method), method.keyword,
                            method.isDefault ? ", default" : "");
      }
    }
  }
  list.append(end);
  const auto index = folder / "README.md";
  write(index, withBlock(readFile(index), list));
}

}  // namespace

}  // namespace docs

int main(int argc, char** argv) {
  if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
    std::cerr << "usage: docs_pages FOLDER\n";
    return 2;
  }
  docs::writeAll(argv[1]);
  return 0;
}
