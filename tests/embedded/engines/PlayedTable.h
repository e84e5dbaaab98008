// A table d.t that a test plays: what it has and how a server of the HTTP kind answers for it.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "FakeServer.h"

namespace engine_tests {

// A whole answer.
inline std::string httpAnswer(const std::string& body, const std::string& status = "200 OK",
                              const std::string& head = "") {
  return "HTTP/1.1 " + status + "\r\n" + head + "Content-Length: " + std::to_string(body.size()) +
         "\r\nConnection: close\r\n\r\n" + body;
}

// Values as they lie in an answer: numbers little-endian, a text of fewer than 128 bytes behind
// its length.
template <class Number>
  requires std::is_arithmetic_v<Number>
std::string wire(Number number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}
inline std::string wire(const std::string& text) {
  return static_cast<char>(text.size()) + text;
}

struct PlayedTable {
  // What each row of a stream begins with.
  static constexpr const char* mark = "\xA5";

  std::vector<std::pair<std::string, std::string>> columns;  // names and types
  std::uint64_t rowCount = 0;
  std::string rows;      // of a stream, with their marks
  std::string patterns;  // what a question with GROUP BY is answered with
  double longest = 0;    // of its one column of texts
  std::vector<std::pair<std::string, std::string>> settings;  // that the server has

  // The answer to any question that the program has.
  std::string answerTo(const std::string& sql) const {
    if (sql.find("system.settings") != std::string::npos) return httpAnswer(pairs(settings));
    if (sql.find("system.columns") != std::string::npos) return httpAnswer(pairs(columns));
    if (sql.starts_with("SELECT count(*)")) return httpAnswer(wire(rowCount));
    if (sql.find("max(length(") != std::string::npos) return httpAnswer(wire(longest));
    if (sql.find(" GROUP BY ") != std::string::npos) return httpAnswer(patterns);
    return httpAnswer(rows);
  }

 private:
  static std::string pairs(const std::vector<std::pair<std::string, std::string>>& list) {
    std::string text;
    for (const auto& [one, other] : list) text += wire(one) + wire(other);
    return text;
  }
};

}  // namespace engine_tests
