#include "host/standalone/text_pool.h"

#include <algorithm>
#include <utility>

#include "frame/text_hash.h"

namespace korvel {
namespace {

constexpr std::size_t block_size = std::size_t{64} * 1024;  // characters

}  // namespace

TextPool::Id TextPool::look_up(std::wstring_view text) {
  if (5 * (texts_.size() + 1) > 4 * slots_.size()) grow();
  const std::size_t mask = slots_.size() - 1;
  const auto hash = static_cast<std::uint32_t>(hash_of_text(text));
  std::size_t slot = hash & mask;
  for (; slots_[slot].number != 0; slot = (slot + 1) & mask) {
    const std::uint32_t known = slots_[slot].number - 1;
    if (slots_[slot].hash == hash && texts_[known] == text) return Id{known};
  }
  wchar_t* const kept = room_for(text.size());
  std::ranges::copy(text, kept);
  texts_.emplace_back(kept, text.size());
  slots_[slot] = {hash, static_cast<std::uint32_t>(texts_.size())};
  return Id{slots_[slot].number - 1};
}

wchar_t* TextPool::room_for(std::size_t characters) {
  if (characters > left_) {
    const std::size_t size = std::max(characters, block_size);
    free_ = blocks_.emplace_back(size).data();
    left_ = size;
  }
  wchar_t* const room = free_;
  free_ += characters;
  left_ -= characters;
  return room;
}

void TextPool::grow() {
  constexpr std::size_t least_slots = 1024;
  std::vector<Slot> larger(std::max(least_slots, 2 * slots_.size()));
  const std::vector<Slot> former = std::exchange(slots_, std::move(larger));
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& known : former) {
    if (known.number == 0) continue;
    std::size_t slot = known.hash & mask;
    while (slots_[slot].number != 0)
      slot = (slot + 1) & mask;
    slots_[slot] = known;
  }
}

}  // namespace korvel
