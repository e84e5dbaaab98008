// A map keyed by observation words: the key's bytes hash as one string.
#include "host/data/ObsVecMap.h"

#include <numeric>
#include <string>
#include <unordered_map>

namespace {

std::size_t wordsOf(std::int16_t entry) {
  return ObsWords(entry);
}

}  // namespace

struct ObsVecMap::Impl {
  std::size_t keyWords = 0;
  std::size_t payloadWords = 0;
  std::unordered_map<std::string, std::vector<double>> cells;  // cells never move

  std::string keyOf(const OBS* key) const { return {key->bytes, keyWords * sizeof(OBS)}; }
};

std::vector<std::int16_t> ObsVecMap::MakeKeySpec(const KORA_DataSource& source,
                                                 std::span<const std::int32_t> variables) {
  std::vector<std::int16_t> spec;
  for (const std::int32_t index : variables) {
    const int type = source.GetVariable(index)->GetType();
    spec.push_back(static_cast<std::int16_t>(type == 0 ? 8 : type));
  }
  return spec;
}

ObsVecMap::ObsVecMap(std::span<const std::int16_t> keySpec, int payload)
    : impl_(std::make_unique<Impl>()) {
  for (const std::int16_t entry : keySpec) impl_->keyWords += wordsOf(entry);
  impl_->payloadWords = static_cast<std::size_t>(payload);
}

ObsVecMap::~ObsVecMap() = default;

int ObsVecMap::CellSize() const {
  return static_cast<int>(impl_->keyWords + impl_->payloadWords);
}

bool ObsVecMap::Contains(const OBS* key) const {
  return impl_->cells.contains(impl_->keyOf(key));
}

double* ObsVecMap::Insert(const OBS* key) {
  std::vector<double>& cell = impl_->cells[impl_->keyOf(key)];
  if (cell.empty()) cell.resize(impl_->payloadWords);
  return cell.data();
}
