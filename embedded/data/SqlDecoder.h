// From the values that a server sends to the words of a row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Relation.h"
#include "SqlServer.h"

namespace embedded::data {

// Turns the values of one column into words. What no case can hold is an Error(Data): a text that
// is no such value, is not valid UTF-8 or is too long, a whole number that a double cannot hold.
class SqlDecoder {
 public:
  // `source` and `name` are for messages.
  SqlDecoder(ColumnRead read, std::string source, std::string name)
      : read_(std::move(read)), source_(std::move(source)), name_(std::move(name)) {}

  // Writes ObsWords(width) words. Says whether the value was a number but not finite.
  bool write(const SqlValue& value, OBS* out) const;
  // The number that a value stands for, or MCMV::Missing; sets `infinite` when it is none.
  double number(const SqlValue& value, bool& infinite) const;
  // A text as a string variable holds it: valid UTF-8. Error(Data) otherwise.
  std::string_view validText(std::string_view text) const;

  const ColumnRead& read() const { return read_; }

 private:
  double parsed(std::string_view text, bool& infinite) const;
  double whole(const SqlValue& value) const;
  void pad(std::string_view text, OBS* out) const;
  [[noreturn]] void inexact(const std::string& text) const;

  ColumnRead read_;
  std::string source_;
  std::string name_;
};

}  // namespace embedded::data
