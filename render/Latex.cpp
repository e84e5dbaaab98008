// latex: a whole document with booktabs tables, which compiles by itself, and from which a table
// can be taken over into a paper.
#include <algorithm>
#include <string>

#include "embedded/output/Values.h"
#include "render/CaseTable.h"
#include "render/LatexTable.h"
#include "render/LatexText.h"
#include "render/Messages.h"
#include "render/ReaderTable.h"
#include "render/Reading.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::readerText;

constexpr std::string_view opening = R"(% To be compiled twice: the first run measures the columns.
\documentclass[a4paper,10pt]{article}
\usepackage[margin=2cm]{geometry}
\usepackage{array}
\usepackage{booktabs}
\usepackage{longtable}
\usepackage{pdflscape}
)";

constexpr std::string_view settings = R"(\setlength{\parindent}{0pt}
\setlength{\LTleft}{0pt}
\setlength{\emergencystretch}{3em}
)";

class LatexDocument {
 public:
  LatexDocument(const Document& document, const Context& context)
      : document_(document), context_(context) {
    context_.colour = false;
  }

  // The body comes first: only then it is known which characters it needs.
  void write(std::ostream& out) {
    const std::string title = text_.escaped(sentence(document_.procedure));
    const std::string tableName = text_.escaped(sentence("Table"));
    const std::string body = makeBody();
    out << opening << text_.declarations() << settings << "\\renewcommand{\\tablename}{"
        << tableName << "}\n\\begin{document}\n";
    out << (title.empty() ? "" : "\\section*{" + title + "}\n") << body << "\\end{document}\n";
  }

 private:
  std::string_view sentence(std::string_view id) const { return context_.sentences->sentence(id); }

  std::string makeBody() {
    std::string body = document_.procedure.empty() ? "" : runText();
    for (const auto& message : document_.messages) {
      body += "\\par\\medskip " + lines(messageText(document_, message, context_), true) + "\n";
    }
    if (const auto cases = caseTable(document_, context_)) {
      body += "\n" + latexTable(*cases, context_, text_);
    }
    for (const Table& table : document_.tables) {
      if (!table.cells.empty()) {
        const ReaderTable shown = readerTable(document_, table, context_);
        body += "\n" + latexTable(shown, context_, text_) + sentences(shown);
      }
    }
    return body;
  }

  // The table's rows as sentences, where they are asked for.
  std::string sentences(const ReaderTable& table) {
    std::string out;
    for (const ReaderRow& row : table.rows) {
      const std::string one = context_.rowSentences ? rowSentence(table, row, context_) : "";
      out += one.empty() ? "" : "\\par " + text_.escaped(one) + "\n";
    }
    return out;
  }

  // How the run was made, and the procedure's notes.
  std::string runText() {
    auto facts = runFacts(document_, context_);
    for (const auto& note : document_.notes) {
      facts.emplace_back(readerText(*note.label, *context_.sentences),
                         readerText(*note.text, *context_.sentences));
    }
    std::string out = "\\begin{description}\n";
    for (const auto& [label, text] : facts) {
      out += "\\item[" + text_.escaped(label) + "] " + lines(text, false) + "\n";
    }
    return out + "\\end{description}\n";
  }

  // A text of one line as it is, and one of several as the lines of a program; of a message only
  // those below its sentence are.
  std::string lines(std::string_view text, bool isMessage) {
    while (text.ends_with('\n')) {
      text.remove_suffix(1);
    }
    const bool single = text.find('\n') == std::string_view::npos;
    std::string out;
    for (bool first = true; first || !text.empty(); first = false) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      const std::string_view line = text.substr(0, end);
      out += first ? "" : "\\\\\n";
      out += single || (isMessage && first) ? text_.escaped(line) : text_.code(line);
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    return out;
  }

  const Document& document_;
  Context context_;
  LatexText text_;
};

}  // namespace

void renderLatex(const Document& document, const Context& context, std::ostream& out) {
  LatexDocument(document, context).write(out);
}

}  // namespace render
