// A command that is printed after it was read reads as the same command.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>
// After GoogleTest, which it needs.
#include <rapidcheck/gtest.h>

#include <cmath>

#include "Support.h"
#include "embedded/output/Values.h"

namespace embedded::command_tests {

namespace {

std::string quoted(const std::string& text) {
  std::string out = "'";
  for (const char c : text) {
    out += c == '\'' ? "''" : std::string(1, c);
  }
  return out + "'";
}

std::string printed(const TokenList& tokens) {
  std::string out;
  for (const TokenInfoObj& token : tokens) {
    const bool plain = token.IsReservedWord() || token.IsNumber();
    out += " " + (plain ? token.getString() : quoted(token.getString()));
  }
  return out;
}

// All that was read, in one fixed form that is a command itself.
std::string printed(const CommandSpec& spec) {
  std::string out = "TASTE";
  if (const SubComObj* tried = spec.getSubComObj("TRY")) {
    out += "\n/TRY" + printed(tried->exportParamObj()->getTokenList());
    double number = 0.0;
    if (const ParamObj* share = tried->getParamObj("SHARE");
        share && share->getNumberValue(number)) {
      out += " SHARE=" + output::fullPrecision(number);
    }
    if (const ParamObj* kinds = tried->getParamObj("KINDS")) {
      out += fmt::format(" KINDS={}", fmt::join(kinds->getUpStringList(), " "));
    }
  }
  if (const SubComObj* taken = spec.getSubComObj("TAKE")) {
    std::string keyword;
    const ParamObj* rule = taken->getParamObj("RULE")->getStringAndQual(keyword);
    out += "\n/TAKE RULE=" + keyword;
    if (rule->isLeadingToken()) {
      out += "(" + printed(rule->getTokenList()) + ")";
    }
  }
  return out;
}

std::string oneOf(const std::vector<std::string>& choices) {
  return *rc::gen::elementOf(choices);
}

std::string gap() {
  return oneOf({" ", "  ", "\n", ", ", " # note\n", "\t"});
}

std::string text() {
  return *rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab'\" .()/=*#;1\n")));
}

std::string number() {
  const double value = *rc::gen::arbitrary<double>();
  return std::isfinite(value) && !output::isSystemMissing(value) ? output::fullPrecision(value)
                                                                 : "0.5";
}

std::string listText() {
  std::string out;
  const int count = *rc::gen::inRange(1, 6);
  for (int i = 0; i < count; ++i) {
    out += gap() + oneOf({"a", "b", "x_$1", "WITH", "by", "\u00E9t\u00E9", quoted(text())});
  }
  return out;
}

std::string ruleText() {
  const std::string kind = oneOf({"FIRST", "fir", "CUT", "LEVEL", "lev", "GROUPS", "G"});
  if (kind == "CUT") {
    return kind + "(" + number() + gap() + ")";
  }
  if (kind == "LEVEL" || kind == "lev") {
    return kind + "(" + number() + gap() + quoted(text()) + gap() + oneOf({"yes", "by"}) + ")";
  }
  return kind;
}

std::string commandText() {
  const std::string tried = gap() + "/" + oneOf({"TRY", "try", "Tr"}) + listText() +
                            oneOf({"", " SHARE=.25", " s = 0.75"}) +
                            oneOf({"", " KINDS=SOUR", " k=sweet,SAL"});
  const std::string taken = gap() + "/" + oneOf({"TAKE", "ta"}) + " RULE=" + ruleText();
  const bool swapped = *rc::gen::arbitrary<bool>();
  return "taste" + (swapped ? taken + tried : tried + taken) + oneOf({"", ";", " ; # end"});
}

class RoundTrip : public CommandTest {};

RC_GTEST_FIXTURE_PROP(RoundTrip, GivesTheSameCommand, ()) {
  const std::string written = commandText();
  // "Tr" may stand for TRY or for TRAY.
  if (parse(written) != 0) {
    RC_ASSERT(messages().front().find("Name ambiguous") != std::string::npos);
    RC_DISCARD("ambiguous");
  }
  const std::string once = printed(spec());
  RC_ASSERT(parse(once) == 0);
  RC_ASSERT(printed(spec()) == once);
}

// Any bytes at all: never a crash, and a refusal always says why.
RC_GTEST_FIXTURE_PROP(RoundTrip, RefusesWithAMessageOrNotAtAll, (const std::string& anything)) {
  const bool accepted = parse("TASTE" + anything) == 0;
  RC_ASSERT(accepted == messages().empty());
}

}  // namespace

}  // namespace embedded::command_tests
