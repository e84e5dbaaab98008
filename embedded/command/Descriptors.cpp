#include "embedded/command/Descriptors.h"

ParamDescriptor::ParamDescriptor(std::string_view name, UPSpecTypes::ParamSpec spec,
                                 bool repeatable, bool valueRequired,
                                 UPSpecTypes::BracketOptions /*brackets*/)
    : impl_(std::make_unique<Impl>()) {
  impl_->name = name;
  impl_->spec = spec;
  impl_->repeatable = repeatable;
  impl_->valueRequired = valueRequired;
}
ParamDescriptor::ParamDescriptor(const ParamDescriptor& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}
ParamDescriptor& ParamDescriptor::operator=(const ParamDescriptor& other) {
  if (this != &other) {
    impl_ = std::make_unique<Impl>(*other.impl_);
  }
  return *this;
}
ParamDescriptor::~ParamDescriptor() = default;

void ParamDescriptor::addStringValue(std::string_view keyword) {
  impl_->keywords.emplace_back(keyword);
}
void ParamDescriptor::addQualifDesc(std::string_view keyword) {
  ParamDescriptor bare(keyword, UPSpecTypes::ParamTokenList, false, false,
                       UPSpecTypes::BracketsHost);
  bare.impl_->bare = true;
  impl_->qualifiers.push_back(bare);
}
void ParamDescriptor::addQualifDesc(const ParamDescriptor& parameter) {
  impl_->qualifiers.push_back(parameter);
}
void ParamDescriptor::setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option) {
  impl_->lower = {bound, option};
}
void ParamDescriptor::setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option) {
  impl_->upper = {bound, option};
}

SubComDescriptor::SubComDescriptor(std::string_view name, UPSpecTypes::SubComSpec /*spec*/,
                                   bool repeatable, bool required)
    : impl_(std::make_unique<Impl>()) {
  impl_->name = name;
  impl_->repeatable = repeatable;
  impl_->required = required;
}
SubComDescriptor::SubComDescriptor(const SubComDescriptor& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}
SubComDescriptor& SubComDescriptor::operator=(const SubComDescriptor& other) {
  if (this != &other) {
    impl_ = std::make_unique<Impl>(*other.impl_);
  }
  return *this;
}
SubComDescriptor::~SubComDescriptor() = default;

void SubComDescriptor::setExportParamDesc(UPSpecTypes::ParamSpec /*spec*/, bool required) {
  impl_->hasList = true;
  impl_->listRequired = required;
}
void SubComDescriptor::addParamDesc(const ParamDescriptor& parameter) {
  impl_->parameters.push_back(parameter);
}

CommandDescriptor::CommandDescriptor(std::string_view name, std::string_view title)
    : impl_(std::make_unique<Impl>()) {
  impl_->name = name;
  impl_->title = title;
}
CommandDescriptor::CommandDescriptor(CommandDescriptor&& other) noexcept = default;
CommandDescriptor& CommandDescriptor::operator=(CommandDescriptor&& other) noexcept = default;
CommandDescriptor::~CommandDescriptor() = default;

void CommandDescriptor::addSubComDesc(const SubComDescriptor& subcommand) {
  impl_->subcommands.push_back(subcommand);
}
