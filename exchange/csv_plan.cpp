// Comparing a table of text with the records there are.
#include "exchange/csv_plan.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <unordered_map>

#include "exchange/csv_cell.h"
#include "exchange/csv_header.h"
#include "exchange/csv_text.h"
#include "exchange/record_reader.h"
#include "exchange/seen_records.h"
#include "exchange/value_difference.h"
#include "frame/command_frame.h"
#include "frame/format.h"
#include "frame/utf.h"

namespace korvel {
namespace {

// The number of a record; 0, which none has, if it is no number.
std::int32_t record_number(std::string_view cell) {
  std::int32_t number = 0;
  const char* const end = cell.data() + cell.size();
  const auto result = std::from_chars(cell.data(), end, number);
  return result.ec == std::errc() && result.ptr == end ? std::max(number, 0) : 0;
}

class Planner {
 public:
  Planner(ODStore& store, DrawingHost& host, const ODTableDef& table, std::string& utf8,
          const CsvFormat& format)
      : host_(host),
        table_(table),
        lines_(static_cast<std::size_t>(
            std::max(std::ranges::count(utf8, '\n'), std::ranges::count(utf8, '\r')))),
        reader_(utf8, format.separator),
        records_(store.records_of(table.name)),
        verdicts_(format.decimal_sign),
        model_space_(model_space_entities(host)) {
    plan_.decimal_sign = format.decimal_sign;
    std::ranges::sort(model_space_);
  }

  CsvPlan plan() {
    plan_.damage = header_.read(reader_, table_, plan_.ignored_columns);
    if (plan_.damage) return std::move(plan_);
    ReadWalk walk(host_, lines_);
    while (reader_.next(cells_)) {
      if (cells_.size() == 1 && cells_[0].empty()) continue;  // an empty line
      if (cells_.size() != header_.columns().size()) {
        plan_.damage = format_text(L"line %i: %i fields instead of %i", reader_.line(),
                                   cells_.size(), header_.columns().size());
        return std::move(plan_);
      }
      walk.step();
      ++plan_.rows;
      plan_row();
    }
    if (reader_.error()) plan_.damage = words_for(*reader_.error());
    if (!std::ranges::is_sorted(plan_.changes, {}, &CsvRow::key)) {
      std::ranges::sort(plan_.changes, {}, &CsvRow::key);
    }
    return std::move(plan_);
  }

 private:
  void plan_row() {
    const EntityId entity = entity_of(cells_[header_.handle()]);
    if (entity.is_null()) {
      plan_.unknown_handles.add(
          [&] { return at_line(excerpt(from_utf8(cells_[header_.handle()]))); });
      return;
    }
    const std::string_view record_cell = without_blanks(cells_[header_.record()]);
    if (record_cell.empty()) return plan_addition(entity);

    const RecordKey key{entity, record_number(record_cell)};
    if (const RecordValues record = records_.at(key)) {
      if (!seen_.insert(key)) return report_duplicate();
      return plan_change(key, record);
    }
    const RecordCounts& counts = counts_of(entity);
    const std::int32_t last = counts.present + counts.added;
    if (key.number > counts.present && key.number <= last) return report_duplicate();
    if (key.number == last + 1) return plan_addition(entity);
    plan_.missing_records.add([&] { return at_line(place(excerpt(from_utf8(record_cell)))); });
  }

  // Of model space, whose entities alone are rows. Rows of one entity mostly follow each other.
  EntityId entity_of(std::string_view handle) {
    if (handle == last_handle_ && !last_entity_.is_null()) return last_entity_;
    wide_.clear();
    append_from_utf8(without_blanks(handle), wide_);
    last_handle_ = handle;
    const EntityId found = host_.entity_with_handle(wide_);
    last_entity_ = std::ranges::binary_search(model_space_, found) ? found : EntityId{};
    return last_entity_;
  }

  struct RecordCounts {
    std::int32_t present = 0;
    std::int32_t added = 0;  // by earlier rows
    bool readable = false;
  };
  RecordCounts& counts_of(EntityId entity) {
    const auto [place, is_new] = counts_.try_emplace(entity);
    if (is_new) {
      const std::optional<std::int32_t> present = records_.count(entity);
      place->second = {present.value_or(0), 0, present.has_value()};
    }
    return place->second;
  }

  void plan_change(const RecordKey& key, const RecordValues& record) {
    const std::size_t first = plan_.cells.size();
    const std::size_t refused_before = plan_.refused.count();
    take_cells([&record](std::size_t column) { return record[column]; });
    const std::size_t count = plan_.cells.size() - first;
    if (count > 0 && !host_.opens(key.entity, OpenMode::Write)) {
      report_locked(first);
    } else if (count > 0) {
      plan_.changes.push_back({key, first, static_cast<std::uint32_t>(count)});
      plan_.changed.add([&] { return at_line(changes_text(first, record)); });
    } else if (plan_.refused.count() == refused_before) {
      ++plan_.unchanged;
    }
  }

  void plan_addition(EntityId entity) {
    const std::size_t first = plan_.cells.size();
    take_cells(
        [this](std::size_t column) { return view_of(table_.columns[column].default_value); });
    RecordCounts& counts = counts_of(entity);
    if (!counts.readable || !host_.opens(entity, OpenMode::Write)) return report_locked(first);
    const std::int32_t number = counts.present + ++counts.added;
    plan_.additions.push_back(
        {{entity, number}, first, static_cast<std::uint32_t>(plan_.cells.size() - first)});
    plan_.added.add([&] { return at_line(place(std::to_wstring(number))); });
  }

  // Adds the row's cells that say another value than there is: present(column).
  template <class Present>
  void take_cells(const Present& present) {
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      const std::optional<std::size_t> column = header_.columns()[i];
      if (!column) continue;
      switch (verdicts_.compare(cells_[i], present(*column))) {
        case CellVerdict::Same:
          break;
        case CellVerdict::Changes:
          plan_.cells.push_back({static_cast<std::uint32_t>(*column), cells_[i]});
          break;
        case CellVerdict::Refused:
          plan_.refused.add([&] {
            return at_line(format_text(L"%s '%s'", table_.columns[*column].name,
                                       excerpt(from_utf8(cells_[i]))));
          });
          break;
      }
    }
  }

  // Drops the cells from `first` on.
  void report_locked(std::size_t first) {
    plan_.cells.resize(first);
    plan_.locked.add([&] { return at_line(place(excerpt(from_utf8(cells_[header_.record()])))); });
  }
  void report_duplicate() {
    plan_.duplicates.add(
        [&] { return at_line(place(excerpt(from_utf8(cells_[header_.record()])))); });
  }

  [[nodiscard]] std::wstring changes_text(std::size_t first, const RecordValues& record) {
    std::wstring text = place(excerpt(from_utf8(cells_[header_.record()]))) + L":";
    for (std::size_t i = first; i < plan_.cells.size(); ++i) {
      const CsvCell& cell = plan_.cells[i];
      const ODColumnDef& column = table_.columns[cell.column];
      text += format_text(
          L"%s %s %s", i == first ? L"" : L",", column.name,
          difference_text(record[cell.column], *verdicts_.value(cell.text, column.type)));
    }
    return text;
  }
  [[nodiscard]] std::wstring place(const std::wstring& record) const {
    return format_text(L"handle %s record %s", excerpt(from_utf8(cells_[header_.handle()])),
                       record);
  }
  [[nodiscard]] std::wstring at_line(const std::wstring& text) const {
    return format_text(L"line %i: %s", reader_.line(), text);
  }

  DrawingHost& host_;
  const ODTableDef& table_;
  std::size_t lines_;  // quoted line breaks included
  CsvReader reader_;
  CsvHeader header_;
  RecordReader records_;
  CellReader verdicts_;
  EntityList model_space_;  // sorted
  CsvPlan plan_;
  std::vector<std::string_view> cells_;
  SeenRecords seen_;
  std::unordered_map<EntityId, RecordCounts> counts_;
  std::string_view last_handle_;
  EntityId last_entity_;
  std::wstring wide_;
};

}  // namespace

CsvPlan plan_csv(ODStore& store, DrawingHost& host, const ODTableDef& table, std::string& utf8,
                 const CsvFormat& format) {
  return Planner(store, host, table, utf8, format).plan();
}

}  // namespace korvel
