#include "Support.h"

#include <utility>

#include "embedded/output/Values.h"
#include "host/command/UniversalParser.h"

namespace embedded::command_tests {

namespace {

using output::ValueKind;
using output::VariableInfo;

ParamDescriptor param(const char* name, UPSpecTypes::ParamSpec spec, bool valueRequired = true) {
  return {name, spec, false, valueRequired, UPSpecTypes::BracketsHost};
}

SubComDescriptor trySubcommand() {
  ParamDescriptor share = param("SHARE", UPSpecTypes::ParamNumber);
  share.setLowerBoundary(0.0, UPSpecTypes::LowerOpen);
  share.setUpperBoundary(1.0, UPSpecTypes::UpperOpen);
  ParamDescriptor limit = param("LIMIT", UPSpecTypes::ParamNumber);
  limit.setLowerBoundary(0.0, UPSpecTypes::LowerClosed);
  limit.setUpperBoundary(100.0, UPSpecTypes::UpperClosed);
  ParamDescriptor kinds = param("KINDS", UPSpecTypes::ParamKeywordList);
  for (const char* kind : {"SOUR", "SWEET", "SWEETISH", "SALTY"}) {
    kinds.addStringValue(kind);
  }
  ParamDescriptor order = param("ORDER", UPSpecTypes::ParamKeyword);
  order.addStringValue("UP");
  order.addStringValue("DOWN");

  SubComDescriptor subcommand("TRY", UPSpecTypes::SubComPlain, false, false);
  subcommand.setExportParamDesc(UPSpecTypes::ParamTokenList, true);
  for (const ParamDescriptor& parameter : {share, limit, kinds, order}) {
    subcommand.addParamDesc(parameter);
  }
  return subcommand;
}

SubComDescriptor takeSubcommand() {
  ParamDescriptor rule = param("RULE", UPSpecTypes::ParamQualified);
  rule.addQualifDesc("FIRST");
  rule.addQualifDesc(param("CUT", UPSpecTypes::ParamNumber));
  rule.addQualifDesc(param("LEVEL", UPSpecTypes::ParamTokenList));
  rule.addQualifDesc(param("GROUPS", UPSpecTypes::ParamTokenList, false));

  SubComDescriptor subcommand("TAKE", UPSpecTypes::SubComPlain, false, false);
  subcommand.addParamDesc(rule);
  return subcommand;
}

data::Variable number(const std::string& name) {
  data::Variable variable;
  variable.name = name;
  VariableInfo info;
  info.name = name;
  variable.info = std::make_shared<VariableInfo>(std::move(info));
  return variable;
}

data::Variable ofKind(const std::string& name, ValueKind kind, FormatType format) {
  data::Variable variable = number(name);
  variable.kind = kind;
  variable.format.type = format;
  return variable;
}

data::Variable text(const std::string& name, int width) {
  data::Variable variable = ofKind(name, ValueKind::String, FormatType::String);
  variable.type = width;
  return variable;
}

}  // namespace

CommandDescriptor tasteCommand() {
  CommandDescriptor command("TASTE", "Taste");
  command.addSubComDesc(trySubcommand());
  command.addSubComDesc(takeSubcommand());
  command.addSubComDesc(SubComDescriptor("TRAY", UPSpecTypes::SubComPlain, false, false));
  return command;
}

data::Dictionary smallDictionary() {
  data::Variable grade = number("grade");
  VariableInfo labelled;
  labelled.name = "grade";
  labelled.numberLabels = {{1.0, "low"}, {2.0, "high"}, {3.0, "lost"}};
  grade.info = std::make_shared<VariableInfo>(std::move(labelled));
  grade.declaredNumbers = std::vector<double>{1.0, 2.0};
  data::Variable town = text("town", 8);
  town.declaredStrings = std::vector<std::string>{"Bath", "York"};

  data::Dictionary dictionary;
  dictionary.variables = {number("a"),
                          number("b"),
                          number("c"),
                          number("d"),
                          number("w"),
                          text("s", 4),
                          number("Event Count"),
                          number("by"),
                          ofKind("when", ValueKind::Date, FormatType::Date),
                          ofKind("flag", ValueKind::Boolean, FormatType::Boolean),
                          std::move(grade),
                          std::move(town),
                          number("split")};
  dictionary.weight = 4;
  dictionary.splits = {12};
  return dictionary;
}

std::string shown(const output::Message& message) {
  std::string out;
  if (message.where) {
    out = std::to_string(message.where->line) + ":" + std::to_string(message.where->column) + ":" +
          std::to_string(message.where->length) + " ";
  }
  out += message.text->id;
  for (const output::TextPtr& argument : message.text->items) {
    out += " [" + output::machineText(*argument) + "]";
  }
  return message.nearest.empty() ? out : out + " " + message.nearest;
}

CommandTest::CommandTest() {
  session_.dictionary = smallDictionary();
}

int CommandTest::parse(const std::string& command) {
  session_.commandText = command;
  session_.commandFocus.reset();
  tokens_ = std::make_unique<KORA_TokenSequence>(true);
  spec_ = std::make_unique<CommandSpec>();
  const CommandDescriptor description = tasteCommand();
  return UniversalParser(*tokens_, *spec_, description).getCommandSpecifications();
}

const ParamObj& CommandTest::parameter(const char* subcommand, const char* name) const {
  return *spec_->getSubComObj(subcommand)->getParamObj(name);
}

TokenList CommandTest::list(const char* subcommand) const {
  return spec_->getSubComObj(subcommand)->exportParamObj()->getTokenList();
}

std::vector<std::string> CommandTest::messages() {
  std::vector<std::string> all;
  for (const output::Message& message : session_.document.messages) {
    all.push_back(shown(message));
  }
  session_.document.messages.clear();
  return all;
}

std::vector<std::string> CommandTest::messagesOf(const std::string& command) {
  parse(command);
  return messages();
}

}  // namespace embedded::command_tests
