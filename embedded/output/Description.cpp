#include "embedded/output/Description.h"

namespace embedded::output {

namespace {

template <class Map>
const typename Map::mapped_type* findIn(const Map& map, std::string_view key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : &found->second;
}

void override(std::string& target, const std::string& with) {
  if (!with.empty()) {
    target = with;
  }
}

void override(std::optional<double>& target, const std::optional<double>& with) {
  if (with) {
    target = with;
  }
}

}  // namespace

const TableMeaning& Description::table(std::string_view tableTitle) const {
  static const TableMeaning unknown;
  const TableMeaning* found = findIn(tables, tableTitle);
  return found == nullptr ? unknown : *found;
}

Meaning Description::of(std::string_view tableTitle, std::string_view label) const {
  const Meaning* everywhere = findIn(labels, label);
  Meaning meaning = everywhere == nullptr ? Meaning{} : *everywhere;
  if (const Meaning* here = findIn(table(tableTitle).labels, label)) {
    meaning.role = here->role == Role::None ? meaning.role : here->role;
    override(meaning.pooling, here->pooling);
    override(meaning.rangeLow, here->rangeLow);
    override(meaning.rangeHigh, here->rangeHigh);
    override(meaning.reference, here->reference);
    override(meaning.referenceArgumentOf, here->referenceArgumentOf);
    override(meaning.direction, here->direction);
    override(meaning.note, here->note);
  }
  return meaning;
}

}  // namespace embedded::output
