// The map from observation keys.
#include <cstring>

#include "conformance/Checks.h"
#include "conformance/Parsed.h"
#include "host/data/ObsVecMap.h"

namespace conformance {

namespace {

void checkMap(const Parsed& parsed, Report& report) {
  const std::int32_t variables[] = {0, 1};
  const auto spec = ObsVecMap::MakeKeySpec(parsed.source, variables);
  report.expect(spec == std::vector<std::int16_t>({8, 12}),
                "ObsVecMap::MakeKeySpec: 8 for a number, else the width in bytes");
  const std::int16_t widths[] = {8, 12};
  ObsVecMap map(widths, 1);
  report.expect(map.CellSize() == 1 + 1 + 2, "ObsVecMap::CellSize: words of payload and key",
                std::to_string(map.CellSize()));
  OBS key[3] = {};
  key[0].number = 0.0;
  OBS other[3] = {};
  std::memcpy(other, key, sizeof key);
  other[0].number = -0.0;
  report.expect(!map.Contains(key), "ObsVecMap::Contains: false for a key that is not there");
  double* first = map.Insert(key);
  report.expect(first != nullptr && *first == 0, "ObsVecMap::Insert: made with zeros");
  if (first == nullptr) return;
  *first = 7;
  report.expect(map.Contains(key) && !map.Contains(other),
                "ObsVecMap::Contains: keys are equal when their words are bitwise equal");
  for (int i = 1; i < 1000; ++i) {
    other[0].number = i;
    map.Insert(other);
  }
  report.expect(map.Insert(key) == first && *first == 7,
                "ObsVecMap::Insert: stays where it is until the map is destroyed");
}

}  // namespace

void checkObservationMap(Host& host, Report& report) {
  runChecked(host, plainCommand, report, "ObsVecMap: does not throw", [&] {
    const Parsed parsed;
    if (parsed.accepted) checkMap(parsed, report);
  });
}

}  // namespace conformance
