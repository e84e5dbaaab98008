// The map from observation keys, on a standard map.
#include "host/data/ObsVecMap.h"

#include <cstdint>
#include <cstring>
#include <map>

#include "scripted_host/session/Session.h"

using scripted::session;

struct ObsVecMap::Impl {
  std::size_t words = 0;
  int payload = 0;
  std::map<std::vector<std::uint64_t>, std::vector<double>> cells;

  std::vector<std::uint64_t> keyOf(const OBS* key) const {
    std::vector<std::uint64_t> bits(words);
    std::memcpy(bits.data(), key, words * sizeof(OBS));
    return bits;
  }
};

std::vector<std::int16_t> ObsVecMap::MakeKeySpec(const KORA_DataSource&,
                                                 std::span<const std::int32_t> variables) {
  session().enter("ObsVecMap::MakeKeySpec");
  std::vector<std::int16_t> spec;
  for (const std::int32_t index : variables) {
    const int width = session().variable(index).width;
    spec.push_back(static_cast<std::int16_t>(width == 0 ? 8 : width));
  }
  return spec;
}

ObsVecMap::ObsVecMap(std::span<const std::int16_t> keySpec, int payload) : impl_(new Impl) {
  session().enter("ObsVecMap");
  session().created("ObsVecMap");
  for (const std::int16_t entry : keySpec) impl_->words += ObsWords(entry);
  impl_->payload = payload;
  session().expect(payload == 1, "a key holds one number");
}

ObsVecMap::~ObsVecMap() {
  session().leave("ObsVecMap");
  session().destroyed("ObsVecMap");
}

int ObsVecMap::CellSize() const {
  session().enter("ObsVecMap::CellSize");
  return impl_->payload + static_cast<int>(impl_->words);
}

bool ObsVecMap::Contains(const OBS* key) const {
  session().enter("ObsVecMap::Contains");
  return impl_->cells.contains(impl_->keyOf(key));
}

double* ObsVecMap::Insert(const OBS* key) {
  session().enter("ObsVecMap::Insert");
  auto& cell = impl_->cells[impl_->keyOf(key)];
  cell.resize(static_cast<std::size_t>(impl_->payload));
  return cell.data();
}
