// Texts of the object data, each distinct one kept once.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace korvel {

// Views handed out stay valid as long as the pool; texts are never removed.
class TextPool {
 public:
  enum class Id : std::uint32_t {};

  Id intern(std::wstring_view text) {
    // Commands write one text into many records.
    if (!texts_.empty() && at(last_) == text) return last_;
    return last_ = look_up(text);
  }
  [[nodiscard]] std::size_t size() const { return texts_.size(); }
  [[nodiscard]] std::wstring_view at(Id id) const { return texts_[static_cast<std::size_t>(id)]; }

 private:
  // A part of the text's hash stands beside its number: other texts are told apart, and the table
  // is made larger, without a look at any text.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = 0;  // 0 is free, else the id plus one
  };

  [[nodiscard]] Id look_up(std::wstring_view text);
  [[nodiscard]] wchar_t* room_for(std::size_t characters);
  void grow();

  std::vector<std::wstring_view> texts_;
  Id last_{};
  std::vector<Slot> slots_;  // open addressing
  std::deque<std::vector<wchar_t>> blocks_;
  wchar_t* free_ = nullptr;
  std::size_t left_ = 0;
};

}  // namespace korvel
