// Cell texts of the host interface: each makes a text of the document.
#include "host/output/BpCellText.h"

#include <string>
#include <vector>

#include "embedded/output/host/TextContent.h"
#include "embedded/session/Session.h"
#include "host/errors/Assertion.h"

using embedded::output::handleOf;
using embedded::output::infoOf;
using embedded::output::Text;
using embedded::output::TextPtr;

BpCellText::~BpCellText() = default;

BpString::BpString(std::string_view text, bool translatable)
    : content_(handleOf(Text::string(std::string(text), translatable))) {}
BpString::~BpString() = default;
BpTextHandle BpString::Replicate() const {
  return content_;
}

BpNumber::~BpNumber() = default;
BpTextHandle BpNumber::Replicate() const {
  return handleOf(Text::number(value_, embedded::output::formatOf(format_)));
}

BpVariable::BpVariable(const KORA_Variable& variable, Show /*show*/)
    : content_(handleOf(Text::ofVariable(infoOf(variable)))) {}
BpVariable::~BpVariable() = default;
BpTextHandle BpVariable::Replicate() const {
  return content_;
}

BpDataValue::BpDataValue(const KORA_Variable& variable, double value, Preference preference)
    : content_(handleOf(Text::ofValue(infoOf(variable), value, preference != PlainValue))) {}
BpDataValue::BpDataValue(const KORA_Variable& variable, std::string_view value,
                         Preference preference)
    : content_(
          handleOf(Text::ofValue(infoOf(variable), std::string(value), preference != PlainValue))) {
}
BpDataValue::~BpDataValue() = default;
BpTextHandle BpDataValue::Replicate() const {
  return content_;
}

struct BpComposite::Impl {
  std::string id;
  std::vector<TextPtr> arguments;
  std::vector<TextPtr> items;  // of the list being added
  bool inList = false;
  BpTextHandle finished;

  void add(TextPtr text) { (inList ? items : arguments).push_back(std::move(text)); }
};

BpComposite::BpComposite(std::string_view text, bool /*translatable*/)
    : impl_(std::make_unique<Impl>()) {
  impl_->id = text;
}
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpCellText& argument) {
  impl_->add(embedded::output::textOf(argument));
}

void BpComposite::Sublist() {
  impl_->inList = true;
  impl_->items.clear();
}

void BpComposite::EndSublist() {
  impl_->inList = false;
  impl_->arguments.push_back(Text::list(std::move(impl_->items)));
}

void BpComposite::SplitList() {
  const embedded::Session& session = embedded::Session::current();
  if (session.currentSplit == embedded::output::none) {
    return;
  }
  for (const TextPtr& value : session.document.splits[session.currentSplit].values) {
    impl_->add(Text::ofVariable(value->variable));
    impl_->add(value);
  }
}

void BpComposite::Finish() {
  impl_->finished = handleOf(Text::composite(impl_->id, std::move(impl_->arguments)));
}

BpTextHandle BpComposite::Replicate() const {
  if (!impl_->finished) {
    KORA_AssertionFailed("a composite text is finished before it is used", "BpComposite", __LINE__);
  }
  return impl_->finished;
}
