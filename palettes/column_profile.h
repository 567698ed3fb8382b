// Which columns a grid shows, in which order and how wide, and how that is kept.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "frame/drawing_host.h"

namespace korvel {

inline constexpr int usual_column_width = 100;  // pixels

struct ProfiledColumn {
  std::size_t column = 0;          // index into the grid's own columns
  int width = usual_column_width;  // 0: the column is hidden

  friend bool operator==(const ProfiledColumn&, const ProfiledColumn&) = default;
};

using ColumnProfile = std::vector<ProfiledColumn>;

// The host keeps the profile of each grid as "ColumnCount", "ColumnData_%d" and "ColumnWidth_%d",
// counted from 0, behind the grid's own name; the data are the headings.
void save_profile(DrawingHost& host, std::wstring_view grid,
                  const std::vector<std::wstring>& headings, const ColumnProfile& profile);

// The columns of these headings as the kept profile has them, each once; those it does not know
// come last, in their order. What it keeps of columns that are no more is passed over.
[[nodiscard]] ColumnProfile load_profile(const DrawingHost& host, std::wstring_view grid,
                                         const std::vector<std::wstring>& headings);

}  // namespace korvel
