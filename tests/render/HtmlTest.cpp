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

// One distribution, at the estimate of the first interval, as the page draws it.
std::string drawn(const embedded::output::Distribution& distribution) {
  samples::Document document = samples::oneSample();
  auto& table = document.tables[0];
  table.distributions.push_back(distribution);
  for (const auto& cell : table.cells) {
    if (cell.value == 0.35) {
      table.distributions.back().at = cell.at;
      break;
    }
  }
  return page(document);
}

TEST(Html, DrawsWhatThereIsOfADistribution) {
  embedded::output::Distribution whole;
  whole.value = 0.35;
  whole.lower = 0.2;
  whole.upper = 0.5;
  whole.counts = {{0.3, 2}, {0.4, 1}};
  EXPECT_EQ(occurrences(drawn(whole), "class=\"band\""), 1U);
  EXPECT_EQ(occurrences(drawn(whole), "class=\"statistic\""), 1U);
  auto open = whole;
  open.upper.reset();
  EXPECT_EQ(occurrences(drawn(open), "<svg class=\"bars\""), 1U);
  EXPECT_EQ(occurrences(drawn(open), "class=\"band\""), 0U) << "without an upper end";
  std::swap(open.lower, open.upper);
  EXPECT_EQ(occurrences(drawn(open), "class=\"band\""), 0U) << "without a lower end";
  auto unknown = whole;
  unknown.value = samples::nan;
  EXPECT_EQ(occurrences(drawn(unknown), "class=\"statistic\""), 0U);
  auto empty = whole;
  empty.counts.clear();
  EXPECT_EQ(occurrences(drawn(empty), "<svg class=\"bars\""), 0U);
}

// A table of this many rows, each of another method.
samples::Document manyRows(int rows) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("Method")}, samples::id("s"));
  for (int r = 0; r < rows; ++r) {
    builder.cell(table, {{samples::id("m" + std::to_string(r))}, {samples::id("Proportion")}}, 0.5);
  }
  return std::move(builder.document);
}

TEST(Html, HidesWhatBelongsToLaterRows) {
  samples::Document document = manyRows(250);
  embedded::output::Distribution spread;
  spread.value = 0.5;
  spread.counts = {{0.25, 1}, {0.5, 2}};
  spread.at = document.tables[0].cells[210].at;
  document.tables[0].distributions.push_back(spread);
  render::Context with = context();
  with.rowSentences = true;
  const std::string html = page(document, with);
  EXPECT_EQ(occurrences(html, "<figure data-row=\"210\" hidden>"), 1U);
  const std::size_t list = html.find("<ol class=\"sentences\"");
  ASSERT_NE(list, std::string::npos);
  const std::size_t more = html.find("<noscript class=\"more\"><ol class=\"sentences\">", list);
  ASSERT_NE(more, std::string::npos);
  EXPECT_EQ(occurrences(html.substr(list, more - list), "<li>"), 200U);
  EXPECT_EQ(occurrences(html.substr(more), "<li>"), 50U);
}

// Groups of this many rows each, in one table.
samples::Document longGroups(int groups, int rows) {
  samples::Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  for (int g = 0; g < groups; ++g) {
    builder.split({samples::Text::ofValue(group, static_cast<double>(g), true)}, false);
    const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
    for (int r = 0; r < rows; ++r) {
      builder.cell(table, {{samples::id(std::to_string(r))}, {samples::id("Proportion")}}, 0.5);
    }
  }
  return std::move(builder.document);
}

TEST(Html, EndsAPageWithAWholeGroupWhereOneEndsNear) {
  const auto firstPage = [](const std::string& html) {
    return occurrences(html.substr(0, html.find("<noscript class=\"more\">")), "<tr><th ");
  };
  EXPECT_EQ(firstPage(page(longGroups(3, 110))) - 1, 220U) << "less the line of heads";
  EXPECT_EQ(firstPage(page(longGroups(3, 150))) - 1, 200U) << "none ends between 200 and 300";
}

TEST(Html, HoldsNoLongTableBackWhole) {
  samples::Document document = manyGroups(60, true);
  document.tables.push_back(manyRows(250).tables[0]);
  const std::string html = page(document);
  EXPECT_EQ(occurrences(html, "<noscript class=\"held\""), 0U);
  EXPECT_EQ(occurrences(html, "<noscript class=\"more\">"), 1U);
}

TEST(Html, FoldsTheCasesOfManyGroups) {
  for (const int groups : {3, 201}) {
    samples::Document document = manyGroups(groups);
    for (int g = 0; g < groups; ++g) {
      document.data.casesBySplit.push_back(
          {static_cast<samples::Index>(g), {.read = 5, .missing = {}}});
    }
    const std::string html = page(document);
    EXPECT_EQ(occurrences(html, "<details open><summary>Cases of the split groups"),
              groups == 3 ? 1U : 0U);
    EXPECT_EQ(occurrences(html, "<details><summary>Cases of the split groups"),
              groups == 3 ? 0U : 1U);
  }
}

TEST(Html, GivesACellAllItsMarks) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  builder.cell(table, {{samples::id("a")}, {samples::id("x")}}, 0.5, "first");
  builder.writer.cellNote(table, samples::id("second"));
  EXPECT_NE(page(builder.document).find(">a</a>,<a href="), std::string::npos);
}

}  // namespace
