// Comparing a table of text with the records there are.
#include "exchange/csv_plan.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <unordered_map>

#include "exchange/csv_cell.h"
#include "exchange/csv_text.h"
#include "exchange/record_walk.h"
#include "exchange/seen_records.h"
#include "frame/format.h"
#include "frame/utf.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

std::string_view without_blanks(std::string_view cell) {
  const std::size_t first = cell.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return cell.substr(first, cell.find_last_not_of(" \t") - first + 1);
}

// The number of a record; 0, which none has, if it is no number.
std::int32_t record_number(std::string_view cell) {
  std::int32_t number = 0;
  const char* const end = cell.data() + cell.size();
  const auto result = std::from_chars(cell.data(), end, number);
  return result.ec == std::errc() && result.ptr == end ? std::max(number, 0) : 0;
}

std::wstring damage_text(const CsvError& error) {
  switch (error.damage) {
    case CsvDamage::QuoteNotClosed:
      return format_text(L"line %i: the quote is not closed", error.line);
    case CsvDamage::TextBehindQuote:
      return format_text(L"line %i: there is text behind the closing quote", error.line);
  }
  return {};
}

class Planner {
 public:
  Planner(ODStore& store, DrawingHost& host, const ODTableDef& table, std::string& utf8,
          char separator)
      : host_(host),
        table_(table),
        reader_(utf8, separator),
        walk_(store, table.name, OpenMode::Read) {}

  CsvPlan plan() {
    constexpr std::size_t rows_between_looks = 4096;
    if (!read_header()) return std::move(plan_);
    while (reader_.next(cells_)) {
      if (cells_.size() == 1 && cells_[0].empty()) continue;  // an empty line
      if (cells_.size() != field_of_.size()) {
        plan_.damage = format_text(L"line %i: %i fields instead of %i", reader_.line(),
                                   cells_.size(), field_of_.size());
        return std::move(plan_);
      }
      if (plan_.rows++ % rows_between_looks == 0 && host_.interrupted()) {
        plan_.interrupted = true;
        return std::move(plan_);
      }
      plan_row();
    }
    if (reader_.error()) plan_.damage = damage_text(*reader_.error());
    return std::move(plan_);
  }

 private:
  static constexpr int ignored = -1;

  bool read_header() {
    if (!reader_.next(cells_)) {
      plan_.damage = reader_.error() ? damage_text(*reader_.error()) : L"the file is empty";
      return false;
    }
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      field_of_.push_back(ignored);
      const std::wstring name = from_utf8(cells_[i]);
      // The table may have columns of these names, too: the first ones are those of the record.
      if (name == L"Handle" && !handle_) {
        handle_ = i;
      } else if (name == L"Record" && !record_) {
        record_ = i;
      } else if (const auto column = table_.column(name)) {
        const auto field = static_cast<int>(*column);
        if (std::ranges::find(field_of_, field) != field_of_.end()) {
          plan_.damage = format_text(L"line 1: the column '%s' is there twice", name);
          return false;
        }
        field_of_.back() = field;
      } else {
        plan_.ignored_columns.add([&] { return excerpt(name); });
      }
    }
    if (handle_ && record_) return true;
    plan_.damage =
        L"line 1: the columns 'Handle' and 'Record' are missing, or the separator is "
        L"another one";
    return false;
  }

  void plan_row() {
    const EntityId entity = entity_of(cells_[*handle_]);
    if (entity.is_null()) {
      plan_.unknown_handles.add([&] { return at_line(excerpt(from_utf8(cells_[*handle_]))); });
      return;
    }
    const std::string_view record_cell = without_blanks(cells_[*record_]);
    if (record_cell.empty()) return plan_addition(entity);

    const RecordKey key{entity, record_number(record_cell)};
    if (const RecordIterator* const record = walk_.at(key)) {
      if (!seen_.insert(key)) return report_duplicate();
      return plan_change(key, *record);
    }
    const std::int32_t present = walk_.count(entity);
    const auto found = added_.find(entity);
    const std::int32_t planned = found == added_.end() ? 0 : found->second;
    if (key.number > present && key.number <= present + planned) return report_duplicate();
    if (key.number == present + planned + 1) return plan_addition(entity);
    plan_.missing_records.add([&] { return at_line(place(excerpt(from_utf8(record_cell)))); });
  }

  // Rows of one entity mostly follow each other.
  EntityId entity_of(std::string_view handle) {
    if (handle == last_handle_ && !last_entity_.is_null()) return last_entity_;
    wide_.clear();
    append_from_utf8(without_blanks(handle), wide_);
    last_handle_ = handle;
    last_entity_ = host_.entity_with_handle(wide_);
    return last_entity_;
  }

  void plan_change(const RecordKey& key, const RecordIterator& record) {
    const std::size_t first = plan_.cells.size();
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      if (field_of_[i] == ignored) continue;
      const ODValueView present = record.value(field_of_[i]);
      if (take(i, verdicts_.compare(cells_[i], present), type_of(present))) {
        plan_.cells.push_back({static_cast<std::uint32_t>(field_of_[i]), cells_[i]});
      }
    }
    const std::size_t count = plan_.cells.size() - first;
    if (count == 0) {
      ++plan_.unchanged;
    } else if (is_writable(key.entity, first)) {
      plan_.changes.push_back({key, first, static_cast<std::uint32_t>(count)});
      plan_.changed.add([&] { return at_line(changes_text(first, record)); });
    }
  }

  void plan_addition(EntityId entity) {
    const std::size_t first = plan_.cells.size();
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      if (field_of_[i] == ignored) continue;
      const ODColumnDef& column = table_.columns[static_cast<std::size_t>(field_of_[i])];
      const CellVerdict verdict = verdicts_.compare(cells_[i], view_of(column.default_value));
      if (take(i, verdict, column.type)) {
        plan_.cells.push_back({static_cast<std::uint32_t>(field_of_[i]), cells_[i]});
      }
    }
    if (!is_writable(entity, first)) return;
    const std::int32_t number = walk_.count(entity) + ++added_[entity];
    plan_.additions.push_back(
        {{entity, number}, first, static_cast<std::uint32_t>(plan_.cells.size() - first)});
    plan_.added.add([&] { return at_line(place(std::to_wstring(number))); });
  }

  // Whether the cell is to be written. Notes what it loses.
  bool take(std::size_t cell, CellVerdict verdict, ODType type) {
    const auto column = [&]() -> const std::wstring& {
      return table_.columns[static_cast<std::size_t>(field_of_[cell])].name;
    };
    switch (verdict) {
      case CellVerdict::Same:
        return false;
      case CellVerdict::Changes:
        return true;
      case CellVerdict::Loses:
        plan_.losing.add([&] {
          return at_line(format_text(L"%s '%s' -> %s", column(), excerpt(from_utf8(cells_[cell])),
                                     value_text(*verdicts_.value(cells_[cell], type))));
        });
        return true;
      case CellVerdict::Unreadable:
        plan_.unreadable.add([&] {
          return at_line(format_text(L"%s '%s'", column(), excerpt(from_utf8(cells_[cell]))));
        });
        return false;
    }
    return false;
  }

  // If not, the cells from `first` on are dropped.
  bool is_writable(EntityId entity, std::size_t first) {
    if (host_.opens(entity, OpenMode::Write)) return true;
    plan_.cells.resize(first);
    plan_.locked.add([&] { return at_line(place(excerpt(from_utf8(cells_[*record_])))); });
    return false;
  }

  void report_duplicate() {
    plan_.duplicates.add([&] { return at_line(place(excerpt(from_utf8(cells_[*record_])))); });
  }

  [[nodiscard]] std::wstring changes_text(std::size_t first, const RecordIterator& record) {
    std::wstring text = place(excerpt(from_utf8(cells_[*record_]))) + L":";
    for (std::size_t i = first; i < plan_.cells.size(); ++i) {
      const CsvCell& cell = plan_.cells[i];
      const ODColumnDef& column = table_.columns[cell.column];
      text += format_text(L"%s %s %s -> %s", i == first ? L"" : L",", column.name,
                          excerpt(value_text(record.value(static_cast<int>(cell.column)))),
                          excerpt(value_text(*verdicts_.value(cell.text, column.type))));
    }
    return text;
  }
  [[nodiscard]] std::wstring place(const std::wstring& record) const {
    return format_text(L"handle %s record %s", excerpt(from_utf8(cells_[*handle_])), record);
  }
  [[nodiscard]] std::wstring at_line(const std::wstring& text) const {
    return format_text(L"line %i: %s", reader_.line(), text);
  }

  DrawingHost& host_;
  const ODTableDef& table_;
  CsvReader reader_;
  RecordWalk walk_;
  CellReader verdicts_;
  CsvPlan plan_;
  std::vector<std::string_view> cells_;
  std::vector<int> field_of_;  // by cell: the table's column, or ignored
  std::optional<std::size_t> handle_;
  std::optional<std::size_t> record_;
  SeenRecords seen_;
  std::unordered_map<EntityId, std::int32_t> added_;
  std::string_view last_handle_;
  EntityId last_entity_;
  std::wstring wide_;
};

}  // namespace

CsvPlan plan_csv(ODStore& store, DrawingHost& host, const ODTableDef& table, std::string& utf8,
                 char separator) {
  return Planner(store, host, table, utf8, separator).plan();
}

}  // namespace korvel
