// How many different texts there are among many.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace korvel {

// Texts are compared whole, never by hash alone. They are not copied: each has to stay where it is
// as long as this does.
class DistinctTexts {
 public:
  void insert(std::string_view text);
  [[nodiscard]] std::size_t count();

 private:
  struct Slot {
    const char* text = nullptr;  // null: free
    std::uint32_t length = 0;
    std::uint32_t hash = 0;
  };

  void settle(const Slot& text);
  void grow();

  std::vector<Slot> slots_ = std::vector<Slot>(64);  // open addressing; a power of two
  std::size_t count_ = 0;
  // The last texts are looked up somewhat later, when their slots have come into the cache.
  std::array<Slot, 8> waiting_{};
  std::size_t oldest_ = 0;
};

// The same for keys other than 0, which are all there is to compare.
class DistinctKeys {
 public:
  void insert(std::uint64_t key);
  [[nodiscard]] std::size_t count() const { return count_; }

 private:
  void grow();
  [[nodiscard]] std::size_t place_of(std::uint64_t key) const;

  std::vector<std::uint64_t> slots_ = std::vector<std::uint64_t>(64);
  std::size_t count_ = 0;
};

// A key for a short text of digits, minus signs and full stops, and none other than 0: no two texts
// have the same. 0 for any other text.
[[nodiscard]] std::uint64_t number_key(std::string_view text);

}  // namespace korvel
