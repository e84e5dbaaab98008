#include "render/HtmlPage.h"

#include <algorithm>

#include "render/CaseTable.h"
#include "render/HtmlTable.h"
#include "render/HtmlText.h"
#include "render/MessageParts.h"
#include "render/Messages.h"
#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::Message;
using embedded::output::Place;
using embedded::output::readerText;

// The page itself asks for nothing from anywhere.
constexpr std::string_view policy =
    "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src data:";

// Pictures beyond the first page, which the script would show when they are wanted.
constexpr std::string_view withoutScript = "figure[hidden] { display: block !important; }\n";

// The line of the command with the place in it marked.
std::string markedPlace(const Place& place) {
  const MarkedLine line = markedLine(place);
  return htmlText(line.before) + "<mark>" + htmlText(line.marked) + "</mark>" +
         htmlText(line.after);
}

// A language tag as HTML wants it: "de_AT.UTF-8" is "de-AT".
std::string htmlLanguage(std::string_view tag) {
  std::string language(tag.substr(0, tag.find_first_of(".@")));
  std::replace(language.begin(), language.end(), '_', '-');
  return htmlText(language);
}

void writeFact(const std::string& label, const std::string& text, std::ostream& out) {
  const bool hasLines = text.find('\n') != std::string::npos;
  out << "<div><dt>" << htmlText(label) << "</dt><dd" << (hasLines ? " class=\"lines\"" : "") << ">"
      << htmlLines(text) << "</dd></div>\n";
}

}  // namespace

void writeHtmlHead(const Document& document, const Context& context, std::ostream& out) {
  const std::string title = phrase(context, document.procedure);
  out << "<!doctype html>\n<html lang=\"" << htmlLanguage(context.language)
      << "\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\""
      << policy << "\">\n<meta name=\"generator\" content=\"proportions "
      << htmlText(document.version) << "\">\n<link rel=\"icon\" href=\"data:,\">\n<title>"
      << htmlText(title) << " \u2013 " << htmlText(document.data.source) << "</title>\n<style>\n"
      << htmlStyle() << "</style>\n<noscript><style>\n"
      << withoutScript
      << "</style></noscript>\n</head>\n<body>\n<a class=\"skip\" href=\"#results\">"
      << htmlText(phrase(context, "Skip to the results")) << "</a>\n<header>\n<h1>"
      << htmlText(title) << "</h1>\n<p>" << htmlText(document.data.source) << "</p>\n</header>\n";
}

void writeHtmlEnd(const Document& document, const Context& /*context*/, std::ostream& out) {
  out << "<footer><p>proportions " << htmlText(document.version) << "</p></footer>\n<script>\n"
      << htmlScript() << "</script>\n</body>\n</html>\n";
}

void writeHtmlRun(const Document& document, const Context& context, std::ostream& out) {
  out << "<section id=\"run\" aria-labelledby=\"run-title\">\n<h2 id=\"run-title\">"
      << htmlText(phrase(context, "How this was computed")) << "</h2>\n<dl>\n";
  for (const auto& [label, text] : runFacts(document, context)) {
    writeFact(label, text, out);
  }
  for (const auto& note : document.notes) {
    writeFact(readerText(*note.label, *context.sentences),
              readerText(*note.text, *context.sentences), out);
  }
  out << "</dl>\n";
  if (!context.invocation.empty()) {
    out << "<h3>" << htmlText(phrase(context, "Run it again"))
        << "</h3>\n<pre tabindex=\"0\"><code>" << htmlLines(context.invocation)
        << "</code></pre>\n";
  }
  if (const auto cases = caseTable(document, context)) {
    out << "<details" << (cases->rows.size() > htmlPageRows ? "" : " open") << "><summary>"
        << htmlText(cases->title) << "</summary>\n";
    writeHtmlTable(*cases, "cases", context, out);
    out << "</details>\n";
  }
  out << "</section>\n";
}

void writeHtmlMessages(const Document& document, const Context& context, std::ostream& out) {
  if (document.messages.empty()) {
    return;
  }
  out << "<section id=\"messages\" aria-labelledby=\"messages-title\">\n<h2 id=\"messages-title\">"
      << htmlText(phrase(context, "Messages")) << "</h2>\n<ul>\n";
  for (const Message& message : document.messages) {
    out << "<li class=\"" << severityId(message.severity) << "\"><strong>"
        << htmlText(severityName(message.severity, context)) << "</strong> "
        << htmlText(messageSentence(document, message, context));
    if (message.where) {
      out << "<span class=\"place\">"
          << htmlText(phrase(
                 context, "Line ^1, column ^2",
                 {std::to_string(message.where->line), std::to_string(message.where->column)}))
          << "</span>";
      if (!message.where->lineText.empty()) {
        out << "<pre tabindex=\"0\"><code>" << markedPlace(*message.where) << "</code></pre>";
      }
    }
    out << "</li>\n";
  }
  out << "</ul>\n</section>\n";
}

}  // namespace render
