// Reads the beginning of a CSV file.
#include "CsvHeader.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <system_error>

#include "DataMessages.h"
#include "InputFile.h"
#include "TableSource.h"

namespace embedded::data {
namespace {

constexpr std::size_t headSize = 1U << 20U;

std::string readHead(const std::string& file, const std::string& shownAs) {
  try {
    return contentOf(file, headSize);
  } catch (const std::system_error& problem) {
    fail(messages::unreadable, {shownAs, problem.code().message()});
  }
}

// The first record without its line end.
std::string firstRecord(const std::string& head, const std::string& shownAs) {
  bool quoted = false;
  for (std::size_t i = 0; i < head.size(); ++i) {
    if (head[i] == '"') quoted = !quoted;
    if (!quoted && (head[i] == '\n' || head[i] == '\r')) return head.substr(0, i);
  }
  if (quoted) fail(messages::badQuotes, {shownAs, "1", "1"});
  return head;
}

char mostFrequent(const std::string& record, const std::string& delimiters) {
  std::vector<std::size_t> counts(delimiters.size());
  bool quoted = false;
  for (const char c : record) {
    if (c == '"') quoted = !quoted;
    const std::size_t which = delimiters.find(c);
    if (!quoted && which != std::string::npos) ++counts[which];
  }
  return delimiters[static_cast<std::size_t>(std::ranges::max_element(counts) - counts.begin())];
}

std::string withoutOuterBlanks(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::vector<std::string> fieldsOf(const std::string& record, char delimiter) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (record[i] == '"') {
      const bool doubled = quoted && i + 1 < record.size() && record[i + 1] == '"';
      if (doubled) fields.back() += record[++i];
      if (!doubled) quoted = !quoted;
    } else if (record[i] == delimiter && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += record[i];
    }
  }
  return fields;
}

bool isUtf8(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, nullptr, text.data(), static_cast<std::int32_t>(text.size()), &status);
  return status != U_INVALID_CHAR_FOUND && text.find('\0') == std::string::npos;
}

// An empty field in quotes between delimiters or line ends.
bool hasQuotedEmpty(const std::string& head, char delimiter) {
  const auto ends = [&](char c) { return c == delimiter || c == '\n' || c == '\r'; };
  for (std::size_t at = head.find("\"\""); at != std::string::npos; at = head.find("\"\"", at + 1))
    if (at > 0 && ends(head[at - 1]) && (at + 2 >= head.size() || ends(head[at + 2]))) return true;
  return false;
}

}  // namespace

CsvHeader readCsvHeader(const std::string& file, const std::string& shownAs,
                        const std::string& delimiters) {
  std::string head = readHead(file, shownAs);
  const std::size_t mark = head.starts_with("\xEF\xBB\xBF") ? 3 : 0;  // of the byte order
  head.erase(0, mark);
  if (head.empty()) fail(messages::emptyFile, {shownAs});
  CsvHeader header;
  header.record = firstRecord(head, shownAs);
  header.end = mark + header.record.size();
  const std::string& record = header.record;
  if (!isUtf8(record)) fail(messages::badEncoding, {shownAs, "1", "1"});
  header.delimiter = mostFrequent(record, delimiters);
  header.quotedEmpty = hasQuotedEmpty(head, header.delimiter);
  for (const std::string& field : fieldsOf(record, header.delimiter)) {
    std::string name = withoutOuterBlanks(field);
    if (name.empty()) name = "column" + std::to_string(header.names.size() + 1);
    header.names.push_back(std::move(name));
  }
  if (withoutOuterBlanks(record).empty()) fail(messages::badHeader, {shownAs, "Reason blank ..."});
  requireUniqueNames(header.names, shownAs);
  return header;
}

}  // namespace embedded::data
