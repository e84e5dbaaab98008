// markdown: pipe tables with their footnotes under them, for pages and mails.
//
// A pipe table has one header line, so the labels of nested columns stand joined in it. Whatever
// comes from data or command is escaped: no label becomes markup, a link or a further cell.
#include <algorithm>
#include <string>
#include <utility>

#include "embedded/output/Values.h"
#include "render/CaseTable.h"
#include "render/Columns.h"
#include "render/Messages.h"
#include "render/ReaderTable.h"
#include "render/Reading.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::readerText;

// What is markup anywhere in a line, and what is so only at its beginning.
constexpr std::string_view markup = "\\`*_[]{}|~$@#^";
constexpr std::string_view leading = "-+=";

// Whether a reader's program would make a link of what begins here: http://, www.
bool beginsLink(std::string_view text, std::size_t at) {
  return (text[at] == ':' && text.substr(at + 1).starts_with("/")) ||
         (text[at] == '.' && at >= 3 && text.substr(at - 3, 3) == "www");
}

// The text on one line, every character of it meaning itself.
std::string escaped(std::string_view raw) {
  const std::string text = visible(raw);
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (text[i]) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      default:
        out += markup.find(text[i]) != std::string_view::npos || beginsLink(text, i) ||
                       (i == 0 && leading.find(text[i]) != std::string_view::npos)
                   ? "\\"
                   : "";
        out += text[i];
    }
  }
  return out;
}

// A block in which nothing is markup: its fence is longer than any inside.
void writeCode(std::string_view text, std::string_view indent, std::ostream& out) {
  std::size_t longest = 2;
  for (std::size_t at = 0, run = 0; at < text.size(); ++at) {
    run = text[at] == '`' ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  const std::string fence(longest + 1, '`');
  out << indent << fence << "text\n";
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    out << indent << visible(text.substr(0, end)) << '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  out << indent << fence << '\n';
}

std::string marksOf(const NoteList& notes) {
  return notes.empty() ? "" : "<sup>" + footnoteMarks(notes) + "</sup>";
}

std::string labelText(const ReaderLabel& label) {
  return escaped(label.text) + marksOf(label.notes);
}

// Numbers are not escaped as labels are: a minus before one is no list.
std::string cellText(const ReaderCell& cell) {
  const std::string text = markedText(cell);
  return (text.starts_with('<') ? "&lt;" + text.substr(1) : text) + marksOf(cell.notes);
}

// How the run was made, the procedure's notes and the messages.
void writeRun(const Document& document, const Context& context, std::ostream& out) {
  out << "# " << escaped(context.sentences->sentence(document.procedure)) << "\n\n";
  auto facts = runFacts(document, context);
  for (const auto& note : document.notes) {
    facts.emplace_back(readerText(*note.label, *context.sentences),
                       readerText(*note.text, *context.sentences));
  }
  for (const auto& [label, text] : facts) {
    out << "- **" << escaped(label) << ":**";
    if (text.find('\n') == std::string::npos) {
      out << ' ' << escaped(text) << '\n';
    } else {
      out << '\n';
      writeCode(text, "  ", out);
    }
  }
}

void writeMessage(const std::string& text, std::ostream& out) {
  const std::size_t end = text.find('\n');
  out << "\n> " << escaped(std::string_view(text).substr(0, end)) << '\n';
  if (const auto rest = std::string_view(text).substr(end + 1); !rest.empty()) {
    out << ">\n";
    writeCode(rest, "> ", out);
  }
}

void writeHead(const ReaderTable& table, std::ostream& out) {
  std::string rule = "|";
  out << '|';
  for (const RowHead& head : table.rowHeads) {
    for (std::size_t i = 0; i < head.width; ++i) {
      out << ' ' << (i == 0 ? escaped(head.text) : "") << " |";
      rule += " --- |";
    }
  }
  for (const ReaderColumn& column : table.columns) {
    std::string path;
    for (const ReaderLabel& label : column.labels) {
      path += (path.empty() ? "" : " / ") + labelText(label);
    }
    out << ' ' << path << " |";
    rule += " ---: |";
  }
  out << '\n' << rule << '\n';
}

// The table's rows as sentences, where they are asked for.
void writeSentences(const ReaderTable& table, const Context& context, std::ostream& out) {
  if (!context.rowSentences) {
    return;
  }
  out << '\n';
  for (const ReaderRow& row : table.rows) {
    if (const std::string sentence = rowSentence(table, row, context); !sentence.empty()) {
      out << "- " << escaped(sentence) << '\n';
    }
  }
}

// Row labels stand in every row, so that a row can be copied by itself.
void writeTable(const ReaderTable& table, std::ostream& out) {
  out << "\n## " << escaped(table.title);
  out << (table.split.empty() ? "" : " (" + escaped(table.split) + ")") << "\n\n";
  writeHead(table, out);
  for (const ReaderRow& row : table.rows) {
    out << '|';
    for (const ReaderLabel& label : row.labels) {
      out << ' ' << labelText(label) << " |";
    }
    for (const ReaderCell& cell : row.cells) {
      out << ' ' << cellText(cell) << " |";
    }
    out << '\n';
  }
  for (std::size_t i = 0; i < table.footnotes.size(); ++i) {
    out << (i == 0 ? "\n" : "") << "- <sup>" << footnoteLetter(i) << "</sup> "
        << escaped(table.footnotes[i]) << '\n';
  }
  for (std::size_t i = 0; i < table.notes.size(); ++i) {
    out << (i == 0 && table.footnotes.empty() ? "\n" : "") << "- " << escaped(table.notes[i])
        << '\n';
  }
}

}  // namespace

void renderMarkdown(const Document& document, const Context& context, std::ostream& out) {
  Context uncoloured = context;
  uncoloured.colour = false;
  if (!document.procedure.empty()) {
    writeRun(document, uncoloured, out);
  }
  for (const auto& message : document.messages) {
    writeMessage(messageText(document, message, uncoloured), out);
  }
  if (const auto cases = caseTable(document, uncoloured)) {
    writeTable(*cases, out);
  }
  for (const Table& table : document.tables) {
    if (!table.cells.empty()) {
      const ReaderTable shown = readerTable(document, table, uncoloured);
      writeTable(shown, out);
      writeSentences(shown, uncoloured, out);
    }
  }
}

}  // namespace render
