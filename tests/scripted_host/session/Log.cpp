// Questions that tests ask of a log.
#include "scripted_host/session/Log.h"

#include <algorithm>
#include <stdexcept>

#include "scripted_host/output/Text.h"

namespace scripted {

std::size_t Log::count(std::string_view call) const {
  return static_cast<std::size_t>(std::ranges::count(calls, call, &Call::name));
}

std::vector<std::string> Log::only(std::initializer_list<std::string_view> names) const {
  std::vector<std::string> found;
  for (const Call& call : calls)
    if (std::ranges::find(names, call.name) != names.end()) found.push_back(call.name);
  return found;
}

std::vector<std::string> Log::messageIds() const {
  std::vector<std::string> ids;
  for (const Message& message : messages) ids.push_back(message.id);
  return ids;
}

std::vector<std::string> Log::warningIds() const {
  std::vector<std::string> ids;
  for (const Warning& warning : warnings) ids.push_back(warning.text->text);
  return ids;
}

std::vector<std::string> Log::titles() const {
  std::vector<std::string> titles;
  for (const auto& table : tables) titles.push_back(table->title->text);
  return titles;
}

const Table& Log::table(std::string_view title, std::size_t number) const {
  for (const auto& table : tables)
    if (table->title->text == title && number-- == 0) return *table;
  throw std::out_of_range("no such table: " + std::string(title));
}

}  // namespace scripted
