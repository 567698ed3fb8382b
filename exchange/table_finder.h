// Finding what belongs to the table of a record, again and again.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace korvel {

// Over entries with a `name`, in ordinal order of their names, which must outlive this. Records of
// one table mostly follow each other, so the one found last is tried first.
template <class Entry>
class TableFinder {
 public:
  explicit TableFinder(std::span<const Entry> entries) : entries_(entries) {}

  // The index of the entry; none if there is no such table.
  [[nodiscard]] std::optional<std::size_t> find(std::wstring_view table) {
    if (last_ < entries_.size() && entries_[last_].name == table) return last_;
    const auto found = std::ranges::lower_bound(entries_, table, {}, &Entry::name);
    if (found == entries_.end() || found->name != table) return std::nullopt;
    return last_ = static_cast<std::size_t>(found - entries_.begin());
  }

 private:
  std::span<const Entry> entries_;
  std::size_t last_ = 0;
};

}  // namespace korvel
