// What must not change the results of a run: the order of rows, how weights are cut, names, labels,
// and how a command is spelled.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "embedded/messages/Catalogue.h"
#include "embedded/session/Run.h"
#include "render/Renderer.h"

namespace {

using embedded::data::MemoryTable;

const char* const commands[] = {
    "PROPORTIONS /ONESAMPLE aqa bqb CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1)",
    "PROPORTIONS /PAIREDSAMPLES aqa WITH bqb CITYPES=ALL TESTTYPES=ALL",
    "PROPORTIONS /INDEPENDENTSAMPLES aqa BY bqb CITYPES=ALL TESTTYPES=ALL /CRITERIA CILEVEL=90"};

const embedded::Module& module() {
  static const embedded::Module loaded =
      embedded::Module::load(BUILD_ROOT "/lib/proportions.module.json", false);
  return loaded;
}

// Tidy output: identifiers and numbers of 17 digits.
std::string resultOf(const MemoryTable& table, const std::string& command) {
  embedded::Request request;
  request.table = table;
  request.command = command;
  const auto session = embedded::run(request, module());
  RC_ASSERT(session->document.accepted);
  render::Context context;
  context.sentences = &embedded::messages::Catalogue::forLanguage("en");
  context.description = &module().description();
  std::ostringstream out;
  render::findFormat("csv")->render(session->document, context, out);
  return out.str();
}

MemoryTable anyTable() {
  MemoryTable table;
  for (const char* name : {"aqa", "bqb"}) {
    embedded::output::VariableInfo info;
    info.name = name;
    table.variables.push_back(std::move(info));
  }
  const int rows = *rc::gen::inRange(1, 12);
  for (int i = 0; i < rows; ++i) {
    table.rows.push_back({double(*rc::gen::inRange(0, 3)), double(*rc::gen::inRange(0, 2))});
    table.counts.push_back(*rc::gen::inRange<std::uint64_t>(0, 30));
  }
  return table;
}

std::string anyCommand() {
  return *rc::gen::elementOf(std::vector<std::string>(std::begin(commands), std::end(commands)));
}

RC_GTEST_PROP(Runs, DoNotHangOnTheOrderOfRows, ()) {
  const MemoryTable table = anyTable();
  MemoryTable turned = table;
  const auto by = static_cast<std::ptrdiff_t>(*rc::gen::inRange<std::size_t>(0, table.rows.size()));
  std::rotate(turned.rows.begin(), turned.rows.begin() + by, turned.rows.end());
  std::rotate(turned.counts.begin(), turned.counts.begin() + by, turned.counts.end());
  const std::string command = anyCommand();
  RC_ASSERT(resultOf(table, command) == resultOf(turned, command));
}

RC_GTEST_PROP(Runs, DoNotHangOnHowWeightsAreCut, ()) {
  const MemoryTable table = anyTable();
  MemoryTable cut = table;
  const auto row = *rc::gen::inRange<std::size_t>(0, table.rows.size());
  const auto part = *rc::gen::inRange<std::uint64_t>(0, table.counts[row] + 1);
  cut.counts[row] -= part;
  cut.rows.push_back(table.rows[row]);
  cut.counts.push_back(part);
  const std::string command = anyCommand();
  RC_ASSERT(resultOf(table, command) == resultOf(cut, command));
}

std::string renamed(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
  return text;
}

RC_GTEST_PROP(Runs, DoNotHangOnNames, ()) {
  const MemoryTable table = anyTable();
  MemoryTable other = table;
  other.variables[0].name = "cwc";
  other.variables[1].name = "dwd";
  const std::string command = anyCommand();
  const auto translated = [](const std::string& text) {
    return renamed(renamed(text, "aqa", "cwc"), "bqb", "dwd");
  };
  RC_ASSERT(translated(resultOf(table, command)) == resultOf(other, translated(command)));
}

RC_GTEST_PROP(Runs, DoNotHangOnLabels, ()) {
  const MemoryTable table = anyTable();
  MemoryTable labelled = table;
  labelled.variables[0].label = "A label";
  labelled.variables[0].numberLabels = {{0.0, "no"}, {1.0, "yes"}};
  const std::string command = anyCommand();
  RC_ASSERT(resultOf(table, command) == resultOf(labelled, command));
}

RC_GTEST_PROP(Runs, DoNotHangOnTheSpellingOfTheCommand, ()) {
  const MemoryTable table = anyTable();
  const std::string command = anyCommand();
  // Words and the shortest prefixes that stand for them alone.
  const std::pair<const char*, const char*> words[] = {
      {"PROPORTIONS", "PRO"},   {"ONESAMPLE", "ONE"},
      {"PAIREDSAMPLES", "PAI"}, {"INDEPENDENTSAMPLES", "IND"},
      {"CITYPES", "CIT"},       {"TESTTYPES", "TESTT"},
      {"SUCCESS", "SUC"},       {"CRITERIA", "CRI"},
      {"CILEVEL", "CIL"},       {"LEVEL(", "lev("}};
  std::string spelled = command;
  for (const auto& [whole, prefix] : words) {
    const std::string word(whole);
    const auto least = std::string(prefix).size();
    std::string shorter = word;
    if (word.back() != '(') shorter = word.substr(0, *rc::gen::inRange(least, word.size() + 1));
    for (char& c : shorter) {
      if (*rc::gen::arbitrary<bool>()) c = static_cast<char>(std::tolower(c));
    }
    if (const auto at = spelled.find(word); at != std::string::npos) {
      spelled.replace(at, word.size(), shorter);
    }
  }
  RC_ASSERT(resultOf(table, command) == resultOf(table, spelled));
}

}  // namespace
