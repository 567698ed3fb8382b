#include "palettes/columns_dialog.h"

#include <algorithm>

#include "frame/value_text.h"

namespace korvel {
namespace {

constexpr std::size_t position_cell = 1;
constexpr std::size_t width_cell = 2;

int number_or(const std::wstring& text, int otherwise) {
  const std::optional<ODValue> number = whole_value(text, ODType::Integer);
  return number ? std::get<std::int32_t>(*number) : otherwise;
}

}  // namespace

GridColumns::GridColumns(const std::vector<std::wstring>& headings, const ColumnProfile& profile)
    : Dialog(L"Columns (a width of 0 hides)"), before_(profile) {
  for (const ProfiledColumn& column : profile) {
    columns.rows.push_back({headings[column.column], std::to_wstring(columns.rows.size() + 1),
                            std::to_wstring(column.width)});
  }
  add(&columns);
  add({L"OK", ButtonRole::Accept});
  add({L"Cancel", ButtonRole::Cancel});
}

ColumnProfile GridColumns::profile() const {
  ColumnProfile profile = before_;
  for (std::size_t row = 0; row < before_.size(); ++row) {
    profile[row].width = std::max(0, number_or(columns.rows[row][width_cell], before_[row].width));
  }
  const int last = static_cast<int>(before_.size());
  for (int row = 1; row <= last; ++row) {
    const auto index = static_cast<std::size_t>(row - 1);
    const int wanted = number_or(columns.rows[index][position_cell], row);
    if (wanted == row) continue;
    const auto moved = std::ranges::find(profile, before_[index].column, &ProfiledColumn::column);
    const ProfiledColumn column = *moved;
    profile.erase(moved);
    profile.insert(profile.begin() + std::clamp(wanted, 1, last) - 1, column);
  }
  return profile;
}

}  // namespace korvel
