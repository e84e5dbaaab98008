// The parsed command: the script's command, reached through the host interface.
#include "host/command/CommandSpec.h"

#include <deque>

#include "host/command/UniversalParser.h"
#include "scripted_host/command/Description.h"
#include "scripted_host/command/Tokens.h"
#include "scripted_host/session/Session.h"

using scripted::Param;
using scripted::Phase;
using scripted::session;
using scripted::SubCommand;
using scripted::Tokens;
using scripted::upperCase;

namespace {

bool enterSpec(const std::string& operation, std::vector<std::string> args = {}) {
  const bool refused = session().enter(operation, std::move(args));
  session().expectPhase(Phase::AfterParse, operation);
  return refused;
}

// A parameter, a leading list, or a qualifier with what it carries.
class ScriptedParam : public ParamObj {
 public:
  explicit ScriptedParam(const Tokens& list) : tokens_(&list) {}
  explicit ScriptedParam(const Param& param) : name_(upperCase(param.name)), param_(&param) {
    if (param.kind != Param::Qualified) return;
    qualifier_ = std::make_unique<ScriptedParam>(param, upperCase(param.qualifier));
  }
  ScriptedParam(const Param& param, std::string qualifier)
      : name_(std::move(qualifier)),
        param_(&param),
        tokens_(param.tokens && !param.tokens->empty() ? &*param.tokens : nullptr) {}

  std::string getParamName() const override {
    enterSpec("ParamObj::getParamName", {name_});
    return name_;
  }
  bool getNumberValue(double& value) const override {
    const bool refused = enterSpec("ParamObj::getNumberValue", {name_});
    if (refused || param_ == nullptr || !param_->number) return false;
    value = *param_->number;
    return true;
  }
  bool isStringValueCase(std::string_view keyword) const override {
    enterSpec("ParamObj::isStringValueCase", {name_});
    return upperCase(param_->keywords.at(0)) == upperCase(std::string(keyword));
  }
  TokenList getTokenList() const override {
    const bool refused = enterSpec("ParamObj::getTokenList", {name_});
    return refused || tokens_ == nullptr ? TokenList() : scripted::tokenList(*tokens_);
  }
  std::vector<std::string> getUpStringList() const override {
    enterSpec("ParamObj::getUpStringList", {name_});
    std::vector<std::string> keywords;
    for (const std::string& keyword : param_->keywords) keywords.push_back(upperCase(keyword));
    return keywords;
  }
  const ParamObj* getStringAndQual(std::string& keyword) const override {
    const bool refused = enterSpec("ParamObj::getStringAndQual", {name_});
    if (refused || qualifier_ == nullptr) return nullptr;
    keyword = qualifier_->name_;
    return qualifier_.get();
  }
  bool isLeadingToken() const override {
    enterSpec("ParamObj::isLeadingToken", {name_});
    return tokens_ != nullptr;
  }

 private:
  std::string name_;
  const Param* param_ = nullptr;
  const Tokens* tokens_ = nullptr;
  std::unique_ptr<ScriptedParam> qualifier_;
};

class ScriptedSubCom : public SubComObj {
 public:
  explicit ScriptedSubCom(const SubCommand& given) : given_(given) {
    if (given.list && !given.list->empty()) list_.emplace(*given.list);
    for (const Param& param : given.params) params_.emplace_back(param);
  }

  const ParamObj* getParamObj(std::string_view name) const override {
    enterSpec("SubComObj::getParamObj", {std::string(name)});
    for (std::size_t i = 0; i < params_.size(); ++i)
      if (upperCase(given_.params[i].name) == name) return &params_[i];
    return nullptr;
  }
  const ParamObj* exportParamObj() const override {
    const bool refused = enterSpec("SubComObj::exportParamObj", {given_.name});
    return list_ && !refused ? &*list_ : nullptr;
  }
  std::string getSubComExtName() const override {
    enterSpec("SubComObj::getSubComExtName", {given_.name});
    return given_.name;
  }
  const SubCommand& given() const { return given_; }

 private:
  const SubCommand& given_;
  std::optional<ScriptedParam> list_;
  std::deque<ScriptedParam> params_;
};

}  // namespace

ParamObj::~ParamObj() = default;
SubComObj::~SubComObj() = default;

struct CommandSpec::Impl {
  std::deque<ScriptedSubCom> subCommands;
};

CommandSpec::CommandSpec() : impl_(new Impl) {
  session().enter("CommandSpec");
  session().created("CommandSpec");
}

CommandSpec::~CommandSpec() {
  session().leave("CommandSpec");
  session().destroyed("CommandSpec");
}

int CommandSpec::getSubComListSize() const {
  enterSpec("CommandSpec::getSubComListSize");
  return static_cast<int>(impl_->subCommands.size());
}

const SubComObj* CommandSpec::getSubComObj(std::string_view name) const {
  enterSpec("CommandSpec::getSubComObj", {std::string(name)});
  for (const ScriptedSubCom& subCom : impl_->subCommands)
    if (upperCase(subCom.given().name) == name) return &subCom;
  return nullptr;
}

struct UniversalParser::Impl {
  CommandSpec& result;
  const CommandDescriptor& description;
};

UniversalParser::UniversalParser(const KORA_TokenSequence&, CommandSpec& result,
                                 const CommandDescriptor& description)
    : impl_(new Impl{result, description}) {
  session().enter("UniversalParser");
}

UniversalParser::~UniversalParser() = default;

int UniversalParser::getCommandSpecifications() {
  const bool refused = session().enter("UniversalParser::getCommandSpecifications");
  session().expect(session().phase == Phase::BeforeParse, "a command is parsed once");
  const scripted::Command& command = session().script.command;
  std::vector<std::string> found;
  if (session().script.checksCommands)
    found = scripted::violations(command, impl_->description.impl());
  if (refused) found.emplace_back("refused");
  if (!found.empty()) {
    session().message("error", "host", "syntax", std::move(found));
    return 1;
  }
  for (const SubCommand& subCommand : command)
    impl_->result.impl().subCommands.emplace_back(subCommand);
  session().phase = Phase::AfterParse;
  return 0;
}
