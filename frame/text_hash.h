// A quick hash of texts in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace korvel {

template <class Word>
std::uint64_t word_at(const char* bytes) {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// For tables in memory only: it depends on the machine. All its bits can be used.
template <class Unit>
std::uint64_t hash_of_text(std::basic_string_view<Unit> text) {
  constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
  const auto* const begin = reinterpret_cast<const char*>(text.data());  // NOLINT
  const std::size_t size = sizeof(Unit) * text.size();
  std::uint64_t hash = size * odd;
  const auto take = [&hash](std::uint64_t word) {
    hash = (hash ^ word) * odd;
    hash ^= hash >> 32;
  };
  // The last words may overlap: every byte counts at least once.
  if (size >= 8) {
    for (std::size_t at = 0; at + 8 < size; at += 8)
      take(word_at<std::uint64_t>(begin + at));
    take(word_at<std::uint64_t>(begin + size - 8));
  } else if (size >= 4) {
    take(word_at<std::uint32_t>(begin) << 32 | word_at<std::uint32_t>(begin + size - 4));
  } else if (size > 0) {
    take(static_cast<std::uint64_t>(text[0]) << 32 | static_cast<std::uint64_t>(text.back()));
  }
  return hash ^ hash >> 29;
}

}  // namespace korvel
