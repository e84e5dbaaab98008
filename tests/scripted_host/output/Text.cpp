// Cell texts: what they were made from, kept as it is.
#include "scripted_host/output/Text.h"

#include <utility>

#include "host/output/BpProcedure.h"
#include "scripted_host/data/Current.h"
#include "scripted_host/session/Session.h"

using scripted::session;

namespace {

BpTextHandle keep(BpTextContent content) {
  return std::make_shared<const BpTextContent>(std::move(content));
}

BpTextHandle splitValue(const scripted::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value))
    return keep({.kind = BpTextContent::TextValue, .text = *text});
  const auto* number = std::get_if<double>(&value);
  return keep({.kind = BpTextContent::NumberValue,
               .text = {},
               .number = number == nullptr ? MCMV::Missing : *number});
}

std::string nameOf(const KORA_Variable& variable) {
  return std::string(variable.GetName());
}

}  // namespace

BpCellText::~BpCellText() = default;

BpString::BpString(std::string_view text, bool translatable)
    : content_(keep({.translatable = translatable, .text = std::string(text)})) {
  session().enter("BpString", {std::string(text)});
  session().expect(translatable, "every text may be translated");
}
BpString::~BpString() = default;
BpTextHandle BpString::Replicate() const {
  return content_;
}

BpNumber::~BpNumber() = default;
BpTextHandle BpNumber::Replicate() const {
  return keep({.kind = BpTextContent::Number, .text = {}, .number = value_, .format = format_});
}

BpVariable::BpVariable(const KORA_Variable& variable, Show show)
    : content_(
          keep({.kind = BpTextContent::Variable, .text = nameOf(variable), .preference = show})) {
  session().enter("BpVariable", {content_->text});
}
BpVariable::~BpVariable() = default;
BpTextHandle BpVariable::Replicate() const {
  return content_;
}

BpDataValue::BpDataValue(const KORA_Variable& variable, double value, Preference preference)
    : content_(keep({.kind = BpTextContent::NumberValue,
                     .text = nameOf(variable),
                     .number = value,
                     .preference = preference})) {
  session().enter("BpDataValue", {content_->text});
  session().expect(variable.GetType() == 0, "a number is the value of a numeric variable");
}
BpDataValue::BpDataValue(const KORA_Variable& variable, std::string_view value,
                         Preference preference)
    : content_(keep({.kind = BpTextContent::TextValue,
                     .text = std::string(value),
                     .preference = preference})) {
  session().enter("BpDataValue", {content_->text});
  session().expect(variable.GetType() > 0, "a text is the value of a string variable");
}
BpDataValue::~BpDataValue() = default;
BpTextHandle BpDataValue::Replicate() const {
  return content_;
}

struct BpComposite::Impl {
  BpTextContent content;
  bool inList = false;
  bool finished = false;
};

BpComposite::BpComposite(std::string_view text, bool translatable) : impl_(new Impl) {
  session().enter("BpComposite", {std::string(text)});
  session().expect(translatable, "every template may be translated");
  impl_->content.kind = BpTextContent::Composite;
  impl_->content.text = text;
}
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpCellText& argument) {
  session().enter("BpComposite::Add");
  session().expect(!impl_->finished, "nothing is added after Finish()");
  BpTextHandle handle = argument.Replicate();
  if (!impl_->inList) {
    impl_->content.args.push_back(std::move(handle));
    return;
  }
  BpTextContent list = *impl_->content.args.back();
  list.args.push_back(std::move(handle));
  impl_->content.args.back() = keep(std::move(list));
}

void BpComposite::Sublist() {
  session().enter("BpComposite::Sublist");
  session().expect(!impl_->inList, "lists do not nest");
  impl_->inList = true;
  impl_->content.args.push_back(keep({.kind = BpTextContent::List, .text = {}}));
}

void BpComposite::EndSublist() {
  session().enter("BpComposite::EndSublist");
  session().expect(impl_->inList, "a list ends that was begun");
  impl_->inList = false;
}

void BpComposite::SplitList() {
  session().enter("BpComposite::SplitList");
  session().expect(session().onSplitGroup, "split values are asked for within a split group");
  session().expect(impl_->inList, "split values stand in a list");
  BpTextContent splits{.kind = BpTextContent::SplitValues, .text = {}};
  for (const auto& [name, value] : scripted::currentSplit()) {
    splits.args.push_back(keep({.kind = BpTextContent::Variable, .text = name}));
    splits.args.push_back(splitValue(value));
  }
  impl_->content.args.back() = keep(std::move(splits));
}

void BpComposite::Finish() {
  session().enter("BpComposite::Finish");
  session().expect(!impl_->inList && !impl_->finished, "Finish() comes once, outside lists");
  impl_->finished = true;
}

BpTextHandle BpComposite::Replicate() const {
  session().expect(impl_->finished, "a template is used after Finish()");
  return keep(impl_->content);
}
