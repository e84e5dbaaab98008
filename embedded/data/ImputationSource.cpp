// Checks imputation numbers, split group by split group.
#include "ImputationSource.h"

#include <cmath>
#include <unordered_map>

#include "ImputationMessages.h"
#include "embedded/output/Values.h"

namespace embedded::data {
namespace {

// Procedures keep the number in a whole number of 32 bits.
constexpr double largestNumber = 2147483647.0;

class ImputationCheck {
 public:
  ImputationCheck(const Dictionary& dictionary, const ObservationLayout& layout)
      : dictionary_(dictionary), layout_(layout) {}

  // Looks at the first case of a split group. The groups come ordered by imputation.
  void begin(const OBS* row) {
    const double number = numberIn(row);
    const bool isFirst = groups_.empty();
    if (isFirst && number != 0.0) fail(messages::imputationNoOriginal, {name()});
    if (number != last_) ++imputations_;
    last_ = number;
    const std::string key = keyOf(row);
    if (number == 0.0) {
      groups_.try_emplace(key, Group{splitText(row), 0});
      return;
    }
    const auto group = groups_.find(key);
    if (group == groups_.end())
      fail(messages::imputationOtherSplit, {name(), output::shortest(number), splitText(row)});
    ++group->second.imputations;
  }

  // All groups were there. Data without cases have nothing to check.
  void finish() const {
    if (groups_.empty()) return;
    if (imputations_ < 2) fail(messages::imputationTooFew, {name(), std::to_string(imputations_)});
    for (const auto& [key, group] : groups_)
      if (group.imputations != 0 && group.imputations != imputations_)
        fail(messages::imputationLacksSplit,
             {name(), group.text, std::to_string(group.imputations)});
  }

 private:
  struct Group {
    std::string text;
    std::size_t imputations;
  };

  const Variable& variable(std::size_t split) const {
    return dictionary_.variables[static_cast<std::size_t>(dictionary_.splits[split])];
  }
  const OBS* observation(const OBS* row, std::size_t split) const {
    return row + layout_.offsetOfVariable[static_cast<std::size_t>(dictionary_.splits[split])];
  }
  const std::string& name() const { return variable(0).name; }

  double numberIn(const OBS* row) const {
    const OBS* value = observation(row, 0);
    if (variable(0).IsMissing(value)) fail(messages::imputationMissing, {name()});
    const double number = value->number;
    if (number < 0.0 || number > largestNumber || number != std::floor(number))
      fail(messages::imputationInvalid, {name(), output::shortest(number)});
    return number;
  }

  // The values of the user's own split variables, as they lie in the row.
  std::string keyOf(const OBS* row) const {
    std::string key;
    for (std::size_t i = 1; i < dictionary_.splits.size(); ++i)
      key.append(observation(row, i)->bytes, ObsWords(variable(i).type) * sizeof(OBS));
    return key;
  }

  std::string splitText(const OBS* row) const {
    std::string text;
    for (std::size_t i = 1; i < dictionary_.splits.size(); ++i) {
      const Variable& split = variable(i);
      const OBS* value = observation(row, i);
      output::RawValue raw = value->number;
      if (split.type != 0) {
        const std::string bytes(value->bytes, static_cast<std::size_t>(split.type));
        raw = bytes.substr(0, bytes.find('\0'));
      }
      text += (text.empty() ? "" : ", ") + split.name + " = " + output::rawText(*split.info, raw);
    }
    return text;
  }

  const Dictionary& dictionary_;
  const ObservationLayout& layout_;
  std::unordered_map<std::string, Group> groups_;  // of the original data
  double last_ = 0.0;
  std::size_t imputations_ = 0;
};

class CheckedStream final : public CaseStream {
 public:
  CheckedStream(std::unique_ptr<CaseStream> inner, ImputationCheck check)
      : inner_(std::move(inner)), check_(std::move(check)) {}

  bool next(CaseBlock& block) override {
    const bool more = inner_->next(block);
    if (!more) {
      check_.finish();
      return false;
    }
    if (begins_ && block.count > 0) check_.begin(block.rows);
    begins_ = block.endsGroup || (begins_ && block.count == 0);
    return true;
  }

 private:
  std::unique_ptr<CaseStream> inner_;
  ImputationCheck check_;
  bool begins_ = true;  // the next case begins a split group
};

}  // namespace

bool isImputationNumber(const Variable& variable) {
  return !variable.format.IsString() && variable.GetUpperName() == imputationVariable;
}

ImputationSource::ImputationSource(std::unique_ptr<CaseSource> inner, const Dictionary& dictionary)
    : inner_(std::move(inner)), dictionary_(dictionary) {}

void ImputationSource::measure(Dictionary& dictionary, std::span<const int> columns) {
  inner_->measure(dictionary, columns);
}

// Every pass sees the same data: the first one is checked.
std::unique_ptr<CaseStream> ImputationSource::open() {
  if (checked_) return inner_->open();
  checked_ = true;
  return std::make_unique<CheckedStream>(inner_->open(), ImputationCheck(dictionary_, layout()));
}

}  // namespace embedded::data
