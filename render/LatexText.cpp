#include "render/LatexText.h"

#include <fmt/format.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <utility>

#include "render/Columns.h"

namespace render {

namespace {

// Characters that LaTeX takes for something else, or that most of its fonts lack.
constexpr std::array<std::pair<std::string_view, std::string_view>, 21> commands{{
    {"\\", "\\textbackslash{}"},
    {"{", "\\{"},
    {"}", "\\}"},
    {"$", "\\$"},
    {"&", "\\&"},
    {"#", "\\#"},
    {"%", "\\%"},
    {"_", "\\_"},
    {"^", "\\textasciicircum{}"},
    {"~", "\\textasciitilde{}"},
    {"<", "\\textless{}"},
    {">", "\\textgreater{}"},
    {"|", "\\textbar{}"},
    {"\"", "\\textquotedbl{}"},
    {"'", "\\textquotesingle{}"},
    {"`", "\\textasciigrave{}"},
    {"*", "{*}"},
    {"[", "{[}"},
    {"]", "{]}"},
    {"\u2020", "\\textdagger{}"},
    {"\u221e", "\\ensuremath{\\infty}"},
}};

constexpr std::string_view repeating = "-,";

constexpr std::string_view preamble = R"(\usepackage{iftex}
\ifPDFTeX
  \usepackage[T1]{fontenc}
  \usepackage{textcomp}
  \IfFileExists{lmodern.sty}{\usepackage{lmodern}}{}
  \newcommand{\foreign}[2]{\ifcsname u8:\detokenize{#2}\endcsname\else
    \DeclareUnicodeCharacter{#1}{\fbox{\tiny #1}}\fi}
)";

constexpr std::string_view otherPrograms = R"(\else
  \usepackage{fontspec}
  \ifLuaTeX\IfFileExists{luatexja.sty}{\usepackage{luatexja}}{}\fi
  \ifXeTeX\IfFileExists{xeCJK.sty}{\usepackage{xeCJK}}{}\fi
\fi
)";

std::size_t bytesOf(std::string_view text, std::size_t at) {
  const auto first = static_cast<std::uint8_t>(text[at]);
  const auto wanted = static_cast<std::size_t>(first < 0x80 ? 1 : 1 + U8_COUNT_TRAIL_BYTES(first));
  return std::min(wanted, text.size() - at);
}

std::uint32_t codeOf(std::string_view character) {
  UChar32 code = 0;
  U8_GET(reinterpret_cast<const std::uint8_t*>(character.data()), 0, 0,
         static_cast<std::int32_t>(character.size()), code);
  return static_cast<std::uint32_t>(code);
}

}  // namespace

void LatexText::append(std::string& out, std::string_view character, bool keepBlanks) {
  if (keepBlanks && character == " ") {
    out += "\\ ";
    return;
  }
  const auto* found = std::find_if(commands.begin(), commands.end(),
                                   [&](const auto& entry) { return entry.first == character; });
  if (found != commands.end()) {
    out += found->second;
    return;
  }
  if (character.size() > 1) {
    foreign_.emplace(character);
  }
  // Two of these in a row would become another character.
  if (repeating.find(character) != std::string_view::npos && out.ends_with(character)) {
    out += "{}";
  }
  out += character;
}

std::string LatexText::escaped(std::string_view raw) {
  const std::string text = visible(raw);
  std::string out;
  for (std::size_t at = 0; at < text.size(); at += bytesOf(text, at)) {
    append(out, std::string_view(text).substr(at, bytesOf(text, at)), false);
  }
  return out;
}

std::string LatexText::code(std::string_view raw) {
  const std::string text = visible(raw);
  std::string out = "\\texttt{";
  for (std::size_t at = 0; at < text.size(); at += bytesOf(text, at)) {
    append(out, std::string_view(text).substr(at, bytesOf(text, at)), true);
  }
  return out + "}";
}

std::string LatexText::declarations() const {
  std::string out(preamble);
  for (const std::string& character : foreign_) {
    out += fmt::format("  \\foreign{{{:04X}}}{{{}}}\n", codeOf(character), character);
  }
  return out.append(otherPrograms);
}

}  // namespace render
