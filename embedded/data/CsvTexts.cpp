// Codes of texts, shared and remembered.
#include "CsvTexts.h"

#include <utility>

namespace embedded::data {

std::uint32_t CsvTexts::code(std::string_view text) {
  const std::scoped_lock lock(mutex_);
  const auto [found, isNew] =
      codes_.try_emplace(std::string(text), static_cast<std::uint32_t>(texts_.size()));
  if (!isNew) return found->second;
  if (texts_.size() == most) {
    codes_.erase(found);
    return none;
  }
  texts_.emplace_back(text);
  return found->second;
}

std::uint32_t CsvTextCodes::learnShort(std::uint64_t key, std::string_view text) {
  const std::uint32_t code = shared_->code(text);
  if (code == CsvTexts::none) return code;
  if (2 * ++used_ > slots_.size()) {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
    for (const Slot& slot : old)
      if (slot.key != unused) slots_[slotOf(slot.key)] = slot;
  }
  slots_[slotOf(key)] = {key, code};
  return code;
}

std::uint32_t CsvTextCodes::longCode(std::string_view text) {
  if (lastCode_ != CsvTexts::none && text == last_) return lastCode_;
  last_.assign(text);
  const auto found = long_.find(last_);
  lastCode_ = found != long_.end() ? found->second : shared_->code(text);
  if (found == long_.end() && lastCode_ != CsvTexts::none) long_.emplace(last_, lastCode_);
  return lastCode_;
}

}  // namespace embedded::data
