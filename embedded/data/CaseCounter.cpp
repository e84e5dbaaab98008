// Counts cases and missing values, a column at a time.
#include "CaseCounter.h"

#include "DataMessages.h"
#include "embedded/session/Session.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

void addTo(output::CaseCounts& total, const output::CaseCounts& group) {
  total.read += group.read;
  total.invalidWeight += group.invalidWeight;
  if (total.missing.empty()) {
    total.missing = group.missing;
    return;
  }
  for (std::size_t i = 0; i < group.missing.size(); ++i) {
    total.missing[i].second.system += group.missing[i].second.system;
    total.missing[i].second.user += group.missing[i].second.user;
  }
}

}  // namespace

CaseCounter::CaseCounter(Session& session, const ObservationLayout& layout)
    : session_(session), words_(layout.words) {
  for (const int index : session.columnsInUse) {
    const Variable& variable = session.dictionary.variables[static_cast<std::size_t>(index)];
    const int offset = layout.offsetOfVariable[static_cast<std::size_t>(index)];
    if (offset < 0) continue;
    counted_.push_back(
        {&variable, static_cast<std::size_t>(offset), variable.hasUserMissing(), {}});
  }
}

void CaseCounter::add(const CaseBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i) {
    const std::uint64_t cases = block.counts == nullptr ? 1 : block.counts[i];
    read_ += cases;
    if (block.weights != nullptr && !(block.weights[i] >= 0.5)) invalidWeight_ += cases;
  }
  for (Counted& counted : counted_) addMissing(counted, block);
}

void CaseCounter::addMissing(Counted& counted, const CaseBlock& block) const {
  const bool plain = counted.variable->type == 0 && !counted.hasUserMissing;
  const OBS* value = block.rows + counted.offset;
  for (std::size_t i = 0; i < block.count; ++i, value += words_) {
    const bool system =
        plain ? value->number == MCMV::Missing : counted.variable->isSystemMissing(value);
    if (!system && !(counted.hasUserMissing && counted.variable->isUserMissing(value))) continue;
    const std::uint64_t cases = block.counts == nullptr ? 1 : block.counts[i];
    (system ? counted.missing.system : counted.missing.user) += cases;
  }
}

void CaseCounter::endGroup() {
  output::CaseCounts group;
  group.read = read_;
  group.invalidWeight = invalidWeight_;
  for (Counted& counted : counted_) {
    group.missing.emplace_back(counted.variable->name, counted.missing);
    counted.missing = {};
  }
  read_ = invalidWeight_ = 0;
  output::DataInfo& data = session_.document.data;
  addTo(data.cases, group);
  if (!session_.dictionary.splits.empty())
    data.casesBySplit.emplace_back(session_.currentSplit, std::move(group));
}

void CaseCounter::finish() {
  for (const auto& [index, count] : session_.cases->nonFinite()) {
    const Variable& variable = session_.dictionary.variables[static_cast<std::size_t>(index)];
    output::Message message;
    message.severity = output::Severity::Warning;
    message.text = output::Text::composite(
        std::string(messages::nonFinite.id),
        {output::Text::ofVariable(variable.info),
         output::Text::number(static_cast<double>(count), output::NumberFormat::Count)});
    session_.document.messages.push_back(std::move(message));
  }
}

}  // namespace embedded::data
