#include "exchange/distinct_texts.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/text_hash.h"

namespace korvel {
namespace {

constexpr std::size_t units_in_block = std::size_t{64} * 1024;
constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;

void prefetch([[maybe_unused]] const void* place) {
#if defined(__GNUC__)
  __builtin_prefetch(place);
#endif
}

}  // namespace

void DistinctTexts::insert(std::u16string_view text) {
  Waiting& next = waiting_[oldest_];
  settle(next);
  oldest_ = (oldest_ + 1) % waiting_.size();
  next.text.assign(text);
  next.hash = static_cast<std::uint32_t>(hash_of_text(text));
  next.taken = true;
  prefetch(&slots_[next.hash & (slots_.size() - 1)]);
}

std::size_t DistinctTexts::count() {
  for (Waiting& waiting : waiting_)
    settle(waiting);
  return count_;
}

void DistinctTexts::settle(Waiting& waiting) {
  if (!std::exchange(waiting.taken, false)) return;
  const std::u16string_view text = waiting.text;
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = waiting.hash & mask;
  for (; slots_[at].text != nullptr; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.hash == waiting.hash && slot.length == text.size() &&
        std::memcmp(slot.text, text.data(), sizeof(char16_t) * text.size()) == 0) {
      return;
    }
  }
  slots_[at] = {kept(text), static_cast<std::uint32_t>(text.size()), waiting.hash};
  if (4 * ++count_ > 3 * slots_.size()) grow();
}

// A copy of the text; of an empty one, too, a place.
const char16_t* DistinctTexts::kept(std::u16string_view text) {
  if (text.size() >= left_) {
    left_ = std::max(text.size() + 1, units_in_block);
    free_ = blocks_.emplace_back(left_).data();
  }
  char16_t* const copy = free_;
  std::ranges::copy(text, copy);
  free_ += text.size();
  left_ -= text.size();
  return copy;
}

void DistinctTexts::grow() {
  const std::vector<Slot> former = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& slot : former) {
    if (slot.text == nullptr) continue;
    std::size_t at = slot.hash & mask;
    while (slots_[at].text != nullptr)
      at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

void DistinctKeys::insert(std::uint64_t key) {
  std::uint64_t& slot = slots_[place_of(key)];
  if (slot == key) return;
  slot = key;
  if (2 * ++count_ > slots_.size()) grow();
}

// Where the key is, or would be.
std::size_t DistinctKeys::place_of(std::uint64_t key) const {
  const std::size_t mask = slots_.size() - 1;
  auto at = static_cast<std::size_t>(key * odd >> 32) & mask;
  while (slots_[at] != 0 && slots_[at] != key)
    at = (at + 1) & mask;
  return at;
}

void DistinctKeys::grow() {
  const std::vector<std::uint64_t> former =
      std::exchange(slots_, std::vector<std::uint64_t>(2 * slots_.size()));
  for (const std::uint64_t key : former) {
    if (key != 0) slots_[place_of(key)] = key;
  }
}

// Four bits a character, of which none is 0.
std::uint64_t number_key(std::string_view text) {
  if (text.size() > 16) return 0;
  std::uint64_t key = 0;
  for (const char c : text) {
    const bool is_digit = c >= '0' && c <= '9';
    if (!is_digit && c != '.' && c != '-') return 0;
    key = key << 4 | static_cast<std::uint64_t>(is_digit ? c - '0' + 1 : c - '-' + 11);
  }
  return key;
}

}  // namespace korvel
