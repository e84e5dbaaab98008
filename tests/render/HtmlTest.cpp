// HTML reports as text; tests/pages opens them in a browser.
#include <gtest/gtest.h>

#include <set>

#include "Baselines.h"
#include "render/HtmlText.h"

namespace {

using samples::context;
using samples::expectBaseline;
using samples::rendered;

std::size_t occurrences(const std::string& text, const std::string& wanted) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(wanted, at)) != std::string::npos; ++at) {
    ++count;
  }
  return count;
}

// The page without its style sheet and script, which are the same for every document.
std::string page(const samples::Document& document, const render::Context& with = context()) {
  std::string html = rendered(document, "html", with);
  html = html.substr(html.find("</style>"));
  return html.substr(0, html.rfind("<script>"));
}

// What stands after each occurrence of `before`, up to the next double quote.
std::set<std::string> quotedAfter(const std::string& html, const std::string& before) {
  std::set<std::string> found;
  for (std::size_t at = 0; (at = html.find(before, at)) != std::string::npos;) {
    at += before.size();
    found.insert(html.substr(at, html.find('"', at) - at));
  }
  return found;
}

// A split group for each number up to `groups`.
samples::Document manyGroups(int groups, bool separateTables = false) {
  samples::Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  for (int g = 0; g < groups; ++g) {
    builder.split({samples::Text::ofValue(group, static_cast<double>(g), true)}, separateTables);
    const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
    builder.cell(table, {{samples::id("a")}, {samples::id("Proportion")}}, 0.5);
  }
  return std::move(builder.document);
}

TEST(HtmlText, LeavesNothingThatCouldBeMarkup) {
  EXPECT_EQ(render::htmlText("<a href=\"x\" b='y'>&amp;"),
            "&lt;a href=&quot;x&quot; b=&#39;y&#39;&gt;&amp;amp;");
  EXPECT_EQ(render::htmlText("two\nlines\x01"), "two lines\xEF\xBF\xBD");
  EXPECT_EQ(render::htmlLines("<a>\n<b>"), "&lt;a&gt;\n&lt;b&gt;");
}

TEST(Html, WritesTheDocumentAsApproved) {
  expectBaseline("one-sample.html", page(samples::oneSample()));
}

TEST(Html, PutsSplitGroupsUnderHeadingsOfTheirOwn) {
  const std::string html = page(samples::splitRows());
  EXPECT_NE(html.find("<tr class=\"group\"><th scope=\"rowgroup\" colspan=\"8\"><span>Region of "
                      "residence = North, sex=; = .</span></th></tr>"),
            std::string::npos);
  EXPECT_EQ(occurrences(html, "<tr class=\"group\">"), 4U);
}

TEST(Html, SpansTheRowsThatALabelIsSharedBy) {
  EXPECT_NE(page(samples::pairs()).find("<th scope=\"row\" rowspan=\"2\">Pair 1</th>"),
            std::string::npos);
}

TEST(Html, LinksEveryFootnoteBothWays) {
  const std::string html = page(samples::oneSample());
  const auto ids = quotedAfter(html, " id=\"");
  const auto targets = quotedAfter(html, " href=\"#");
  EXPECT_GE(targets.size(), 4U);
  for (const std::string& target : targets) {
    EXPECT_TRUE(ids.contains(target)) << target;
  }
  EXPECT_EQ(ids.size(), occurrences(html, " id=\"")) << "an id is given twice";
}

TEST(Html, AsksForNothingFromAnywhere) {
  const std::string html = rendered(samples::oneSample(), "html");
  EXPECT_EQ(html.find("http:"), std::string::npos);
  EXPECT_EQ(html.find("https:"), std::string::npos);
  EXPECT_EQ(html.find("url("), std::string::npos);
  EXPECT_EQ(html.find("@import"), std::string::npos);
  EXPECT_NE(html.find("default-src 'none'"), std::string::npos);
}

TEST(Html, ShowsHostileLabelsAsText) {
  render::Context with = context();
  with.rowSentences = true;
  with.invocation = "proportions run '</code><script>alert(4)</script>'";
  with.language = "\"><script>alert(5)</script>";
  const std::string html = rendered(samples::hostile(), "html", with);
  EXPECT_EQ(occurrences(html, "<script"), 1U) << "only the page's own";
  EXPECT_EQ(occurrences(html, "</script"), 1U);
  EXPECT_EQ(html.find("<img"), std::string::npos);
  EXPECT_EQ(html.find("<b>note"), std::string::npos);
  EXPECT_EQ(html.find('\x1b'), std::string::npos);
  EXPECT_NE(html.find("&lt;script&gt;alert(&quot;3&quot;)&lt;/script&gt;"), std::string::npos);
}

TEST(Html, TellsHowToRunItAgain) {
  render::Context with = context();
  with.invocation = "proportions run trial.csv -c 'PROPORTIONS ONESAMPLE a'";
  const std::string html = page(samples::oneSample(), with);
  EXPECT_NE(
      html.find("<code>proportions run trial.csv -c &#39;PROPORTIONS ONESAMPLE a&#39;</code>"),
      std::string::npos);
  for (const char* fact : {"trial.csv (sha256:9f86d081)", "<dd>42</dd>", "24 read", "0.1.0"}) {
    EXPECT_NE(html.find(fact), std::string::npos) << fact;
  }
}

TEST(Html, WritesSentencesWhenAsked) {
  render::Context with = context();
  EXPECT_EQ(page(samples::oneSample(), with).find("class=\"sentences\""), std::string::npos);
  with.rowSentences = true;
  const std::string html = page(samples::oneSample(), with);
  EXPECT_NE(html.find("<li>Smokes daily = yes: 7 of 20, Proportion = 0.350"), std::string::npos);
}

TEST(Html, ReadsTestsInPlainWords) {
  const std::string html = page(samples::oneSample());
  EXPECT_EQ(occurrences(html, "<ol class=\"reading\""), 1U);
  EXPECT_NE(html.find("about 83 of 1000 samples"), std::string::npos);
}

TEST(Html, MarksThePlaceOfAMessage) {
  const std::string html = page(samples::refused());
  EXPECT_NE(html.find("<mark>TESTVALL</mark>=0.3"), std::string::npos);
  EXPECT_NE(html.find("Did you mean TESTVAL?"), std::string::npos);
}

TEST(Html, DrawsTheDistributionsThatATableKeeps) {
  samples::Document document = samples::oneSample();
  auto& table = document.tables[0];
  for (const auto& cell : table.cells) {
    if (cell.value == 0.35) {
      embedded::output::Distribution distribution;
      distribution.at = cell.at;
      distribution.value = 0.35;
      distribution.lower = 0.2;
      distribution.upper = 0.5;
      distribution.counts = {{0.3, 2}, {0.35, 5}, {0.4, 1}};
      table.distributions.push_back(std::move(distribution));
    }
  }
  const std::string html = page(document);
  EXPECT_EQ(occurrences(html, "<svg class=\"bars\""), 1U) << "methods share one distribution";
  EXPECT_EQ(occurrences(html, "class=\"band\""), 1U);
}

TEST(Html, HoldsLaterRowsBackAsTextForTheScript) {
  const std::string html = page(manyGroups(450));
  const std::size_t more = html.find("<noscript class=\"more\">");
  ASSERT_NE(more, std::string::npos);
  EXPECT_EQ(occurrences(html.substr(0, more), "<tr class=\"group\">"), 200U);
  EXPECT_EQ(occurrences(html, "<tr class=\"group\">"), 450U);
  EXPECT_NE(html.find("data-rows=\"450\""), std::string::npos);
}

TEST(Html, HoldsLateTablesBackToo) {
  const std::string html = page(manyGroups(100, true));
  EXPECT_EQ(occurrences(html, "<section class=\"result\""), 100U);
  EXPECT_EQ(occurrences(html, "<noscript class=\"held\" data-rows=\"1\">"), 40U);
}

TEST(Html, SpeaksTheLanguageItIsToldOf) {
  render::Context with = context();
  with.language = "zh_CN.UTF-8";
  EXPECT_NE(rendered(samples::oneSample(), "html", with).find("<html lang=\"zh-CN\">"),
            std::string::npos);
}

}  // namespace
