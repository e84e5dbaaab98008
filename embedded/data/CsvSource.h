// CSV and TSV files.
#pragma once

#include "CsvCounting.h"
#include "CsvHeader.h"
#include "TableSource.h"

namespace embedded::data {

class CsvSource final : public TableSource {
 public:
  // Reads the header and lets the engine's sniffer find the types, once.
  CsvSource(Engine& engine, const DataAddress& address, const std::vector<std::string>& nullTexts);

  bool textual() const override { return true; }
  std::string from(std::span<const ColumnRead> reads) const override;
  std::string value(const ColumnRead& read, std::span<const ColumnRead> reads) const override;
  [[noreturn]] void explain(Engine& engine, const EngineFailure& failure,
                            std::span<const ColumnRead> reads) const override;

  // How the files look to a reader of their bytes.
  const CsvForm& form() const { return form_; }
  // The same columns of another file: the header's record, and lines with `texts` as the fields of
  // the columns at the indices `wanted`, line by line, all others empty. A column's first text
  // stands in for those that it lacks.
  CsvSource withTexts(const std::string& file, const std::vector<std::size_t>& wanted,
                      const std::vector<std::vector<std::string>>& texts) const;

 private:
  // Whether the column is read as a text and turned into what is asked for by SQL.
  bool readAsText(const ColumnRead& read, std::span<const ColumnRead> reads) const;
  std::string typeOf(const ColumnRead& read, std::span<const ColumnRead> reads) const;
  std::string table(const std::vector<std::string>& types, bool quotedNulls,
                    const std::string& more) const;
  const std::string& fileToSniff() const;
  void sniff(Engine& engine, const std::vector<std::string>& nullTexts);
  void findBooleans(Engine& engine);
  bool hasValue(Engine& engine, const Column& column) const;
  void explainReject(const TextRow& reject) const;

  std::vector<std::string> files_;
  CsvHeader header_;
  CsvForm form_;
};

}  // namespace embedded::data
