// Markdown, held against approved outputs and read back by a small reader of pipe tables.
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "Baselines.h"
#include "Cells.h"
#include "render/Columns.h"

namespace {

using samples::expectBaseline;
using samples::rendered;
using Fields = std::vector<std::string>;

// A field as a browser would show it: escapes and entities undone, raised marks left out.
std::string shown(std::string text) {
  for (std::size_t at = 0; (at = text.find("<sup>", at)) != std::string::npos;) {
    text.erase(at, text.find("</sup>", at) + 6 - at);
  }
  std::string out;
  const std::map<std::string, char> entities{{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}};
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      out += text[++i];
      continue;
    }
    bool isEntity = false;
    for (const auto& [entity, character] : entities) {
      if (text.compare(i, entity.size(), entity) == 0) {
        out += character;
        i += entity.size() - 1;
        isEntity = true;
        break;
      }
    }
    out += isEntity ? "" : std::string(1, text[i]);
  }
  out.erase(0, out.find_first_not_of(' '));
  return out.erase(out.find_last_not_of(' ') + 1);
}

Fields fieldsOf(const std::string& line) {
  Fields fields;
  std::string field;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '|') {
      fields.push_back(shown(field));
      field.clear();
    } else {
      field += line[i];
      if (line[i] == '\\' && i + 1 < line.size()) {
        field += line[++i];
      }
    }
  }
  return fields;
}

// The rows of every table, without head and rule.
std::vector<std::vector<Fields>> tablesOf(const std::string& text) {
  std::vector<std::vector<Fields>> tables;
  std::istringstream lines(text);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() != '|') {
      inside = false;
      continue;
    }
    if (!inside) {
      inside = true;
      tables.emplace_back();
    }
    tables.back().push_back(fieldsOf(line));
  }
  for (auto& table : tables) {
    EXPECT_GE(table.size(), 3U);
    table.erase(table.begin(), table.begin() + 2);
  }
  return tables;
}

void expectSameCells(const samples::Document& document) {
  const auto wanted = samples::shownTables(document);
  const auto found = tablesOf(rendered(document, "markdown"));
  ASSERT_EQ(found.size(), wanted.size());
  for (std::size_t t = 0; t < wanted.size(); ++t) {
    ASSERT_EQ(found[t].size(), wanted[t].rows.size());
    for (std::size_t r = 0; r < wanted[t].rows.size(); ++r) {
      Fields fields;
      for (const auto& label : wanted[t].rows[r].labels) {
        fields.push_back(render::visible(label.text));
      }
      for (const auto& cell : wanted[t].rows[r].cells) {
        fields.push_back(render::markedText(cell));
      }
      EXPECT_EQ(found[t][r], fields);
    }
  }
}

TEST(Markdown, ShowsStatesBoundsProbabilitiesAndFootnotes) {
  expectBaseline("one-sample.md", rendered(samples::oneSample(), "markdown"));
}

TEST(Markdown, PutsSplitGroupsBeforeTheRows) {
  expectBaseline("split-rows.md", rendered(samples::splitRows(), "markdown"));
}

TEST(Markdown, KeepsTheLinesOfTheCommandAndPointsAtThePlace) {
  expectBaseline("refused.md", rendered(samples::refused(), "markdown"));
}

TEST(Markdown, EscapesLabels) {
  const std::string text = rendered(samples::hostile(), "markdown");
  EXPECT_EQ(text.find("<script"), std::string::npos);
  EXPECT_EQ(text.find("<b>"), std::string::npos);
  EXPECT_EQ(text.find("](javascript"), text.find("\\](javascript") + 1);
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  expectBaseline("hostile.md", text);
}

TEST(Markdown, ReadsBackAsTheSameCells) {
  for (const auto& document :
       {samples::oneSample(), samples::splitRows(), samples::splitTables(), samples::pairs(),
        samples::wide(), samples::hostile(), samples::eastAsian()}) {
    expectSameCells(document);
  }
}

TEST(Markdown, SaysHowTheRunWasMade) {
  const std::string text = shown(rendered(samples::oneSample(), "markdown"));
  for (const std::string& word : samples::provenance(samples::oneSample())) {
    EXPECT_NE(text.find(word), std::string::npos) << word;
  }
}

TEST(Markdown, FencesCommandsThatHoldFences) {
  auto document = samples::oneSample();
  document.command = "PROPORTIONS\n````\n# not a heading";
  EXPECT_NE(rendered(document, "markdown").find("  `````text\n  PROPORTIONS\n"), std::string::npos);
}

TEST(Markdown, MakesNoLinks) {
  auto document = samples::oneSample();
  document.data.source = "www.example.org/a.csv";
  document.data.weight = "http://example.org w.w";
  const std::string text = rendered(document, "markdown");
  EXPECT_NE(text.find(" www\\.example.org/a.csv "), std::string::npos) << text;
  EXPECT_NE(text.find(" http\\://example.org w.w\n"), std::string::npos) << text;
}

}  // namespace
