// html: one page that needs nothing but itself, with the run, its messages, and for each table a
// picture where it holds intervals, the table, and its rows in words.
#include <algorithm>
#include <set>
#include <string>

#include "render/HtmlForest.h"
#include "render/HtmlHistogram.h"
#include "render/HtmlPage.h"
#include "render/HtmlRows.h"
#include "render/HtmlTable.h"
#include "render/HtmlText.h"
#include "render/Phrase.h"
#include "render/Reading.h"
#include "render/Renderer.h"

namespace render {

namespace {

constexpr std::size_t fewSections = 12;     // that are laid out, and listed, at once
constexpr std::size_t sectionsAtOnce = 60;  // later ones are held back until they are wanted
constexpr std::size_t fewRows = 12;         // that need no help to find one of them

class HtmlReport {
 public:
  HtmlReport(const Document& document, const Context& context, std::ostream& out)
      : document_(document), context_(context), out_(out) {
    for (const Table& table : document.tables) {
      if (!table.cells.empty()) {
        shown_.push_back(&table);
      }
    }
  }

  void write() {
    writeHtmlHead(document_, context_, out_);
    out_ << "<main" << (shown_.size() > fewSections ? " class=\"many\"" : "") << ">\n";
    writeHtmlRun(document_, context_, out_);
    writeHtmlMessages(document_, context_, out_);
    writeContents();
    out_ << "<div id=\"results\">\n";
    for (std::size_t i = 0; i < shown_.size(); ++i) {
      writeResult(*shown_[i], htmlId("t", i + 1), i >= sectionsAtOnce);
    }
    out_ << "</div>\n</main>\n";
    writeHtmlEnd(document_, context_, out_);
  }

 private:
  std::string say(const char* id) const { return htmlText(phrase(context_, id)); }

  // The tables by name, and the field that filters rows, which the script brings to life.
  void writeContents() {
    if (shown_.size() > 1) {
      const bool isLong = shown_.size() > fewSections;
      out_ << "<nav aria-label=\"" << say("Contents") << "\">\n"
           << (isLong ? "<details><summary>" + say("Contents") + "</summary>\n" : "") << "<ol>\n";
      for (std::size_t i = 0; i < shown_.size(); ++i) {
        out_ << "<li><a href=\"#" << htmlId("t", i + 1) << "\">" << titleOf(*shown_[i])
             << "</a></li>\n";
      }
      out_ << "</ol>\n" << (isLong ? "</details>\n" : "") << "</nav>\n";
    }
    out_ << R"(<form id="find" role="search" hidden data-least=")" << fewRows
         << R"("><label for="query">)" << say("Find rows")
         << "</label><input id=\"query\" type=\"search\" autocomplete=\"off\" "
            "aria-describedby=\"found\"><output id=\"found\" for=\"query\" data-text=\""
         << say("Found ^1 of ^2 rows") << "\"></output></form>\n";
  }

  std::string titleOf(const Table& table) const {
    std::string title = embedded::output::readerText(*table.title, *context_.sentences);
    if (table.split != none) {
      title += " (" + splitSentence(document_, table.split, *context_.sentences) + ")";
    }
    return htmlText(title);
  }

  // Late results stand in a <noscript> element, as later rows of a long table do; such elements
  // cannot stand in one another.
  void writeResult(const Table& table, const std::string& id, bool isLate) {
    const ReaderTable shown = readerTable(document_, table, context_);
    const bool isHeld = isLate && htmlFirstPage(shown) == shown.rows.size();
    if (isHeld) {
      out_ << R"(<noscript class="held" data-rows=")" << shown.rows.size() << "\">\n";
    }
    out_ << R"(<section class="result" id=")" << id << "\">\n<h2>" << titleOf(table) << "</h2>\n";
    if (htmlFirstPage(shown) < shown.rows.size()) {
      writePager();
    }
    if (const auto forest = forestOf(document_, shown, context_)) {
      writeHtmlForest(shown, *forest, context_, out_);
    }
    writeHtmlTable(shown, id, context_, out_);
    writeHtmlHistograms(table, shown, context_, drawn_, out_);
    writeWords(shown);
    out_ << "</section>\n" << (isHeld ? "</noscript>\n" : "");
  }

  // Steps through the rows of a long table, its plot and its sentences together.
  void writePager() {
    out_ << R"(<div class="pager" role="group" aria-label=")" << say("Pages of rows")
         << R"(" hidden><button type="button" value="back">)" << say("Earlier rows")
         << "</button><output data-text=\"" << say("Rows ^1 to ^2 of ^3")
         << R"("></output><button type="button" value="on">)" << say("Later rows")
         << R"(</button><button type="button" value="all">)" << say("All rows")
         << "</button></div>\n";
  }

  void writeWords(const ReaderTable& shown) {
    if (holdsTests(shown)) {
      out_ << "<div class=\"words\">\n<h3>" << say("In plain words") << "</h3>\n<p>"
           << say("What a p-value says") << "</p>\n";
      writeHtmlRows(
          shown, "reading",
          [&](std::size_t r) { return htmlText(testReading(shown, shown.rows[r], context_)); },
          out_);
      out_ << "</div>\n";
    }
    if (context_.rowSentences) {
      out_ << "<div class=\"words\">\n<h3>" << say("Row by row") << "</h3>\n";
      writeHtmlRows(
          shown, "sentences",
          [&](std::size_t r) { return htmlText(rowSentence(shown, shown.rows[r], context_)); },
          out_);
      out_ << "</div>\n";
    }
  }

  const Document& document_;
  const Context& context_;
  std::ostream& out_;
  std::vector<const Table*> shown_;  // tables without cells are left out
  std::set<std::string> drawn_;      // distributions
};

}  // namespace

void renderHtml(const Document& document, const Context& context, std::ostream& out) {
  HtmlReport(document, context, out).write();
}

}  // namespace render
