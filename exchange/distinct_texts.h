// How many different texts there are among many.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace korvel {

// Texts are compared whole, never by hash alone.
class DistinctTexts {
 public:
  void insert(std::u16string_view text);
  [[nodiscard]] std::size_t count();

 private:
  struct Slot {
    const char16_t* text = nullptr;  // null: free
    std::uint32_t length = 0;
    std::uint32_t hash = 0;
  };
  struct Waiting {
    std::u16string text;
    std::uint32_t hash = 0;
    bool taken = false;
  };

  void settle(Waiting& waiting);
  [[nodiscard]] const char16_t* kept(std::u16string_view text);
  void grow();

  std::vector<Slot> slots_ = std::vector<Slot>(64);  // open addressing; a power of two
  std::size_t count_ = 0;
  // The last texts are looked up somewhat later, when their slots have come into the cache.
  std::array<Waiting, 8> waiting_{};
  std::size_t oldest_ = 0;
  std::deque<std::vector<char16_t>> blocks_;  // of the texts
  char16_t* free_ = nullptr;                  // in the last one
  std::size_t left_ = 0;
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
