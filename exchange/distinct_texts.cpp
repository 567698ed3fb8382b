#include "exchange/distinct_texts.h"

#include <cstring>
#include <utility>

namespace korvel {
namespace {

constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;

template <class Word>
std::uint64_t word_at(const char* bytes) {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// The last words may overlap: every byte counts at least once.
std::uint32_t hash_of(std::string_view text) {
  const char* const begin = text.data();
  const std::size_t size = text.size();
  std::uint64_t hash = size * odd;
  const auto take = [&hash](std::uint64_t word) {
    hash = (hash ^ word) * odd;
    hash ^= hash >> 32;
  };
  if (size >= 8) {
    for (std::size_t at = 0; at + 8 < size; at += 8)
      take(word_at<std::uint64_t>(begin + at));
    take(word_at<std::uint64_t>(begin + size - 8));
  } else if (size >= 4) {
    take(word_at<std::uint32_t>(begin) << 32 | word_at<std::uint32_t>(begin + size - 4));
  } else {
    for (const char byte : text)
      take(static_cast<unsigned char>(byte));
  }
  return static_cast<std::uint32_t>(hash ^ hash >> 29);
}

void prefetch([[maybe_unused]] const void* place) {
#if defined(__GNUC__)
  __builtin_prefetch(place);
#endif
}

}  // namespace

void DistinctTexts::insert(std::string_view text) {
  const Slot slot{text.data(), static_cast<std::uint32_t>(text.size()), hash_of(text)};
  prefetch(&slots_[slot.hash & (slots_.size() - 1)]);
  settle(std::exchange(waiting_[oldest_], slot));
  oldest_ = (oldest_ + 1) % waiting_.size();
}

std::size_t DistinctTexts::count() {
  for (Slot& slot : waiting_)
    settle(std::exchange(slot, {}));
  return count_;
}

void DistinctTexts::settle(const Slot& text) {
  if (text.text == nullptr) return;
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = text.hash & mask;
  for (; slots_[at].text != nullptr; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.hash == text.hash && slot.length == text.length &&
        std::memcmp(slot.text, text.text, text.length) == 0) {
      return;
    }
  }
  slots_[at] = text;
  if (4 * ++count_ > 3 * slots_.size()) grow();
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
