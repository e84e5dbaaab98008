// Building a command description.
#include "scripted_host/command/Description.h"

#include "scripted_host/session/Session.h"

using scripted::session;

ParamDescriptor::ParamDescriptor(std::string_view name, UPSpecTypes::ParamSpec spec,
                                 bool repeatable, bool valueRequired,
                                 UPSpecTypes::BracketOptions brackets)
    : impl_(new Impl{.name = std::string(name),
                     .spec = spec,
                     .repeatable = repeatable,
                     .valueRequired = valueRequired,
                     .brackets = brackets,
                     .keywords = {},
                     .qualifiers = {},
                     .lower = {},
                     .upper = {}}) {
  session().enter("ParamDescriptor", {impl_->name});
}
ParamDescriptor::ParamDescriptor(const ParamDescriptor& other) : impl_(new Impl(*other.impl_)) {}
ParamDescriptor& ParamDescriptor::operator=(const ParamDescriptor& other) {
  impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}
ParamDescriptor::~ParamDescriptor() = default;

void ParamDescriptor::addStringValue(std::string_view keyword) {
  session().enter("ParamDescriptor::addStringValue", {std::string(keyword)});
  impl_->keywords.emplace_back(keyword);
}
void ParamDescriptor::addQualifDesc(std::string_view keyword) {
  session().enter("ParamDescriptor::addQualifDesc", {std::string(keyword)});
  impl_->qualifiers.emplace_back(keyword, std::nullopt);
}
void ParamDescriptor::addQualifDesc(const ParamDescriptor& parameter) {
  session().enter("ParamDescriptor::addQualifDesc", {parameter.impl().name});
  impl_->qualifiers.emplace_back(parameter.impl().name, parameter);
}
void ParamDescriptor::setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option) {
  session().enter("ParamDescriptor::setLowerBoundary", {impl_->name});
  impl_->lower.emplace(bound, option);
}
void ParamDescriptor::setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option) {
  session().enter("ParamDescriptor::setUpperBoundary", {impl_->name});
  impl_->upper.emplace(bound, option);
}

SubComDescriptor::SubComDescriptor(std::string_view name, UPSpecTypes::SubComSpec spec,
                                   bool repeatable, bool required)
    : impl_(new Impl{.name = std::string(name),
                     .spec = spec,
                     .repeatable = repeatable,
                     .required = required,
                     .leading = {},
                     .params = {}}) {
  session().enter("SubComDescriptor", {impl_->name});
}
SubComDescriptor::SubComDescriptor(const SubComDescriptor& other) : impl_(new Impl(*other.impl_)) {}
SubComDescriptor& SubComDescriptor::operator=(const SubComDescriptor& other) {
  impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}
SubComDescriptor::~SubComDescriptor() = default;

void SubComDescriptor::setExportParamDesc(UPSpecTypes::ParamSpec spec, bool required) {
  session().enter("SubComDescriptor::setExportParamDesc", {impl_->name});
  impl_->leading.emplace(spec, required);
}
void SubComDescriptor::addParamDesc(const ParamDescriptor& parameter) {
  session().enter("SubComDescriptor::addParamDesc", {parameter.impl().name});
  impl_->params.push_back(parameter);
}

CommandDescriptor::CommandDescriptor(std::string_view name, std::string_view title)
    : impl_(new Impl{std::string(name), std::string(title), {}}) {
  session().enter("CommandDescriptor", {impl_->name, impl_->title});
}
CommandDescriptor::CommandDescriptor(CommandDescriptor&& other) noexcept = default;
CommandDescriptor& CommandDescriptor::operator=(CommandDescriptor&& other) noexcept = default;
CommandDescriptor::~CommandDescriptor() = default;

void CommandDescriptor::addSubComDesc(const SubComDescriptor& subcommand) {
  session().enter("CommandDescriptor::addSubComDesc", {subcommand.impl().name});
  impl_->subCommands.push_back(subcommand);
}
