// Tables whose types stand in the file: Parquet, JSON, and databases.
#pragma once

#include "TableSource.h"

namespace embedded::data {

class ParquetSource final : public TableSource {
 public:
  ParquetSource(Engine& engine, const DataAddress& address);
  std::string from(std::span<const ColumnRead> reads) const override;

 private:
  std::vector<std::string> files_;
};

// A list of objects, or one object a line. Its types are found by the engine's sample, once; its
// numbers are read as real ones.
class JsonSource final : public TableSource {
 public:
  JsonSource(Engine& engine, const DataAddress& address);
  bool textual() const override { return true; }
  std::string from(std::span<const ColumnRead> reads) const override;
  std::string value(const ColumnRead& read, std::span<const ColumnRead> reads) const override;
  [[noreturn]] void explain(Engine& engine, const EngineFailure& failure,
                            std::span<const ColumnRead> reads) const override;

 private:
  bool holdObjects(Engine& engine) const;
  void findEmpty(Engine& engine);
  std::string table(std::span<const ColumnRead> reads, bool texts) const;
  std::vector<std::string> files_;
};

// A table or view of a database file, which is opened for reading only.
class DatabaseSource final : public TableSource {
 public:
  DatabaseSource(Engine& engine, const DataAddress& address);
  std::string from(std::span<const ColumnRead> reads) const override;

 private:
  std::string table_;  // quoted, with database and schema
};

}  // namespace embedded::data
