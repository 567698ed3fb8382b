#include "host/standalone/text_pool.h"

#include <algorithm>
#include <functional>

namespace korvel {
namespace {

constexpr std::size_t block_size = std::size_t{64} * 1024;  // characters

}  // namespace

TextPool::Id TextPool::look_up(std::wstring_view text) {
  if (2 * (texts_.size() + 1) > slots_.size()) grow();
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = std::hash<std::wstring_view>{}(text)&mask;
  for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
    if (texts_[slots_[slot] - 1] == text) return Id{slots_[slot] - 1};
  }
  wchar_t* const kept = room_for(text.size());
  std::ranges::copy(text, kept);
  texts_.emplace_back(kept, text.size());
  slots_[slot] = static_cast<std::uint32_t>(texts_.size());
  return Id{slots_[slot] - 1};
}

wchar_t* TextPool::room_for(std::size_t characters) {
  if (characters > left_) {
    left_ = std::max(characters, block_size);
    free_ = blocks_.emplace_back(left_).data();
  }
  wchar_t* const room = free_;
  free_ += characters;
  left_ -= characters;
  return room;
}

void TextPool::grow() {
  constexpr std::size_t least_slots = 1024;
  slots_.assign(std::max(least_slots, 2 * slots_.size()), 0);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    std::size_t slot = std::hash<std::wstring_view>{}(texts_[i]) & mask;
    while (slots_[slot] != 0)
      slot = (slot + 1) & mask;
    slots_[slot] = static_cast<std::uint32_t>(i + 1);
  }
}

}  // namespace korvel
