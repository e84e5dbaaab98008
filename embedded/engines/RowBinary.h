// Reads rows in ClickHouse's RowBinary format from an answer that comes in pieces.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ClickHouseTypes.h"
#include "HttpAnswer.h"

namespace embedded::engines {

class RowBinary {
 public:
  // `types` are names of types; with `marked`, each row begins with data::clickHouseDialect.mark.
  RowBinary(HttpAnswer& answer, const std::vector<std::string>& types, bool marked);

  enum class Step { Row, End, Broken };
  // Replaces `row`. Broken: what comes is no row; rest() is it.
  Step next(std::vector<data::SqlValue>& row);
  // All that is left of the answer, but no more than the beginning of it.
  std::string rest();

 private:
  bool has(std::size_t bytes);
  template <class T>
  T take();
  bool takeLength(std::size_t& length);
  bool takeValue(const ClickHouseType& type, data::SqlValue& value);
  data::SqlValue fixed(const ClickHouseType& type);

  HttpAnswer& answer_;
  std::vector<std::string> names_;
  std::vector<ClickHouseType> types_;
  bool marked_;
  std::string buffer_;
  std::size_t at_ = 0;   // of the next byte in the buffer
  std::size_t row_ = 0;  // where the row began that is being read
  std::vector<std::pair<std::size_t, std::size_t>> texts_;  // place and length, of each column
};

}  // namespace embedded::engines
