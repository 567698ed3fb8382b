#include "palettes/column_profile.h"

#include <algorithm>

#include "frame/format.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

constexpr int widest_column = 10'000;

std::wstring key(std::wstring_view grid, std::wstring_view name) {
  return format_text(L"%s/%s", grid, name);
}

std::wstring key(std::wstring_view grid, std::wstring_view name, std::size_t index) {
  return format_text(L"%s/%s_%i", grid, name, index);
}

int number_kept(const DrawingHost& host, const std::wstring& name, int otherwise) {
  const std::optional<std::wstring> kept = host.profile(name);
  return kept ? read_integer(*kept) : otherwise;
}

}  // namespace

void save_profile(DrawingHost& host, std::wstring_view grid,
                  const std::vector<std::wstring>& headings, const ColumnProfile& profile) {
  host.set_profile(key(grid, L"ColumnCount"), std::to_wstring(profile.size()));
  for (std::size_t i = 0; i < profile.size(); ++i) {
    host.set_profile(key(grid, L"ColumnData", i), headings[profile[i].column]);
    host.set_profile(key(grid, L"ColumnWidth", i), std::to_wstring(profile[i].width));
  }
}

ColumnProfile load_profile(const DrawingHost& host, std::wstring_view grid,
                           const std::vector<std::wstring>& headings) {
  ColumnProfile profile;
  std::vector<bool> placed(headings.size(), false);
  const auto place = [&](std::size_t column, int width) {
    placed[column] = true;
    profile.push_back({column, std::clamp(width, 0, widest_column)});
  };
  const int count = number_kept(host, key(grid, L"ColumnCount"), 0);
  for (int i = 0; i < count; ++i) {
    const auto index = static_cast<std::size_t>(i);
    const std::optional<std::wstring> heading = host.profile(key(grid, L"ColumnData", index));
    if (!heading) break;
    for (std::size_t column = 0; column < headings.size(); ++column) {
      if (placed[column] || headings[column] != *heading) continue;
      place(column, number_kept(host, key(grid, L"ColumnWidth", index), usual_column_width));
      break;
    }
  }
  for (std::size_t column = 0; column < headings.size(); ++column) {
    if (!placed[column]) place(column, usual_column_width);
  }
  return profile;
}

}  // namespace korvel
