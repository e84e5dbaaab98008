// Messages as a terminal and a page show them.
#include <gtest/gtest.h>

#include "Baselines.h"
#include "render/CaseTable.h"
#include "render/Messages.h"

namespace {

using embedded::output::Message;
using embedded::output::Severity;
using samples::context;
using samples::Document;

std::string shown(Severity severity, bool colour) {
  Message message;
  message.severity = severity;
  message.text = samples::id("Something.");
  render::Context with = context();
  with.colour = colour;
  return render::messageText(Document(), message, with);
}

TEST(Messages, HaveTheColourOfTheirSeverity) {
  EXPECT_EQ(shown(Severity::Error, true), "\x1b[1m\x1b[31merror:\x1b[0m Something.\n");
  EXPECT_EQ(shown(Severity::Warning, true), "\x1b[1m\x1b[33mwarning:\x1b[0m Something.\n");
  EXPECT_EQ(shown(Severity::Note, true), "\x1b[1mnote:\x1b[0m Something.\n");
}

TEST(Messages, HaveNoColourUnlessAsked) {
  EXPECT_EQ(shown(Severity::Error, false), "error: Something.\n");
  EXPECT_EQ(shown(Severity::Note, false), "note: Something.\n");
}

// The line itself is left out of the document when it is too long to be shown.
Document placeWithoutItsLine() {
  Document document = samples::refused();
  document.messages[0].where = {12, 4000, 3, ""};
  return document;
}

TEST(Messages, SayTheLineAndColumnOfAPlaceWhoseLineIsNotShown) {
  const Document document = placeWithoutItsLine();
  const std::string text = render::messageText(document, document.messages[0], context());
  EXPECT_TRUE(text.ends_with("\n   12:4000 |\n")) << text;
  const std::string html = samples::rendered(document, "html");
  EXPECT_NE(html.find("<span class=\"place\">"), std::string::npos);
  const std::size_t list = html.find("id=\"messages\"");
  EXPECT_EQ(html.substr(list, html.find("</section>", list) - list).find("<pre"),
            std::string::npos);
}

TEST(CaseTable, IsForSplitGroupsAlone) {
  Document document;
  document.data.casesBySplit.push_back({0, {.read = 3, .missing = {}}});
  EXPECT_FALSE(render::caseTable(document, context()));
  EXPECT_TRUE(render::caseTable(samples::splitRows(), context()));
}

}  // namespace
