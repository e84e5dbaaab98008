// A map from keys made of observation words to a few doubles.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/Api.h"
#include "host/data/OBS.h"
#include "host/data/ProcedureDataSource.h"

// A key lays the values of some variables end to end, in the order of the key spec: one word
// for an entry of at most 8, else (entry + 7) / 8 words. Keys are equal when all their words
// are bitwise equal.
class HOST_API ObsVecMap {
 public:
  // One entry for each variable: 8 for a numeric one, else the width in bytes. [any time]
  static std::vector<std::int16_t> MakeKeySpec(const KORA_DataSource& source,
                                               std::span<const std::int32_t> variables);

  // An empty map with `payload` >= 1 doubles for each key.
  ObsVecMap(std::span<const std::int16_t> keySpec, int payload);
  ~ObsVecMap();
  ObsVecMap(const ObsVecMap&) = delete;
  ObsVecMap& operator=(const ObsVecMap&) = delete;

  // Words of a cell: those of the payload and those of the key.
  int CellSize() const;
  // Whether the key, CellSize() less the payload words long, is in the map.
  bool Contains(const OBS* key) const;
  // The payload of this key, made with zeros when the key is new. Owned by the map; stays
  // where it is until the map is destroyed.
  double* Insert(const OBS* key);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
