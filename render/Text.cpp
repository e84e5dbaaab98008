// text: headings, how the run was made, messages, and aligned tables for a terminal or a log.
#include <algorithm>
#include <string>

#include "embedded/output/Values.h"
#include "render/CaseTable.h"
#include "render/Columns.h"
#include "render/Messages.h"
#include "render/ReaderTable.h"
#include "render/Reading.h"
#include "render/Renderer.h"
#include "render/TextTable.h"

namespace render {

namespace {

using embedded::output::readerText;

constexpr std::size_t gap = 2;             // blanks between labels and texts
constexpr std::size_t narrowestText = 16;  // beside labels
constexpr std::size_t narrowestLine = 40;

std::size_t lineWidth(const Context& context) {
  return std::max(static_cast<std::size_t>(std::max(context.width, 0)), narrowestLine);
}

void writeHeading(const std::string& text, const Context& context, std::ostream& out) {
  for (const std::string& line : wrapped(visible(text), lineWidth(context))) {
    out << (context.colour ? bold : "") << line << (context.colour ? plain : "") << '\n';
  }
}

// The lines of a fact: those that it has, and those that a long one is broken into. Lines of the
// command stay as they were written.
std::vector<std::string> linesOf(const std::string& text, std::size_t width) {
  if (text.find('\n') == std::string::npos) {
    return wrapped(visible(text), width);
  }
  std::vector<std::string> lines;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(visible(std::string_view(text).substr(at, end - at)));
    lines.back().erase(lines.back().find_last_not_of(' ') + 1);
    at = end + 1;
  }
  while (lines.size() > 1 && lines.back().empty()) {
    lines.pop_back();
  }
  return lines;
}

// How the run was made, and the procedure's notes: labels in one column, texts in another.
void writeRun(const Document& document, const Context& context, std::ostream& out) {
  auto facts = runFacts(document, context);
  for (const auto& note : document.notes) {
    facts.emplace_back(readerText(*note.label, *context.sentences),
                       readerText(*note.text, *context.sentences));
  }
  std::size_t width = 0;
  for (auto& [label, text] : facts) {
    label = visible(label) + ":";
    width = std::max(width, columnsOf(label) + gap);
  }
  const std::size_t rest = std::max(lineWidth(context), width + narrowestText) - width;
  for (const auto& [label, text] : facts) {
    std::string start = padRight(label, width);
    for (const std::string& line : linesOf(text, rest)) {
      std::string shown = start + line;
      shown.erase(shown.find_last_not_of(' ') + 1);
      out << shown << '\n';
      start.assign(width, ' ');
    }
  }
}

// The table's rows as sentences, the later lines of each indented.
void writeSentences(const ReaderTable& table, const Context& context, std::ostream& out) {
  const std::string indent(gap, ' ');
  for (const ReaderRow& row : table.rows) {
    std::string start;
    const std::string sentence = visible(rowSentence(table, row, context));
    if (sentence.empty()) {
      continue;
    }
    for (const std::string& line : wrapped(sentence, lineWidth(context) - gap)) {
      out << start << line << '\n';
      start = indent;
    }
  }
}

void writeTable(ReaderTable table, const Context& context, std::ostream& out) {
  out << '\n';
  writeHeading(table.title + (table.split.empty() ? "" : " (" + table.split + ")"), context, out);
  if (!context.rowSentences) {
    writeTextTable(std::move(table), context, out);
    return;
  }
  writeTextTable(table, context, out);
  out << '\n';
  writeSentences(table, context, out);
}

}  // namespace

void renderText(const Document& document, const Context& context, std::ostream& out) {
  if (!document.procedure.empty()) {
    writeHeading(std::string(context.sentences->sentence(document.procedure)), context, out);
    writeRun(document, context, out);
  }
  if (auto cases = caseTable(document, context)) {
    out << '\n';
    writeHeading(cases->title, context, out);
    writeTextTable(std::move(*cases), context, out);
  }
  for (const auto& message : document.messages) {
    out << '\n' << messageText(document, message, context);
  }
  for (const Table& table : document.tables) {
    if (table.cells.empty()) {
      continue;
    }
    writeTable(readerTable(document, table, context), context, out);
  }
}

}  // namespace render
