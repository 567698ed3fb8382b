#include "exchange/explication_text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace korvel {
namespace {

double number_of(const ODValueView& value) {
  if (const auto* const integer = std::get_if<std::int32_t>(&value)) return *integer;
  if (const auto* const real = std::get_if<double>(&value)) return *real;
  return 0;
}

void add_to(double& sum, double number, double no_sum) {
  if (sum == no_sum) sum = 0;
  sum += number;
}

}  // namespace

void ExplicationText::Column::add(double number) {
  add_to(group_sum, counted ? 1 : number, no_sum);
  add_to(sum, counted ? 1 : number, no_sum);
  ++count;
  least = std::min(least, number);
  greatest = std::max(greatest, number);
}

ExplicationText::ExplicationText(const ExplicationColumns& columns,
                                 const ExplicationRequest& request)
    : definition_(columns),
      has_type_field_(request.type_field.has_value()),
      columns_(columns.values.size()) {
  for (std::size_t i = 0; i < columns_.size(); ++i)
    columns_[i].counted = columns.values[i].counted;
  separator_.append(request.separator);
  for (const ExplainedTable& table : columns.tables) {
    Utf16Text& cell = table_cells_.emplace_back();
    cell.append_units(separator_.view());
    cell.append_quoted(table.name);
    cell.append_units(separator_.view());
  }
  write_header(request);
}

void ExplicationText::write_header(const ExplicationRequest& request) {
  begin_line("ID");
  append_separator();
  line_.append_ascii("TableName");
  append_separator();
  if (has_type_field_) {
    line_.append(*request.type_field);
    append_separator();
  }
  line_.append_ascii("Count");
  for (const ValueColumn& column : definition_.values) {
    append_separator();
    line_.append(column.name);
  }
  end_line();
}

void ExplicationText::begin_group(std::wstring_view key) {
  key_.clear();
  key_.append_quoted(key);
  for (Column& column : columns_)
    column.group_sum = no_sum;
}

void ExplicationText::add_record(std::wstring_view handle, std::size_t table,
                                 const RecordIterator& record) {
  line_.clear();
  line_.append(handle);
  line_.append_units(table_cells_[table].view());
  if (has_type_field_) {
    line_.append_units(key_.view());
    append_separator();
  }
  cells_.clear();
  const std::vector<int>& places = definition_.tables[table].places;
  for (std::size_t i = 0; i < places.size(); ++i) {
    append_separator();
    if (places[i] == no_column) continue;
    const ODValueView value = record.value(places[i]);
    append_cell(i, value);
    columns_[i].add(number_of(value));
  }
  const std::string_view written = end_line();
  for (const Cell& cell : cells_)
    columns_[cell.column].texts.insert(written.substr(2 * cell.begin, 2 * cell.length));
}

void ExplicationText::end_group(std::size_t entities) {
  begin_line("Sum");
  append_separator();
  if (has_type_field_) append_separator();
  line_.append_units(key_.view());
  append_separator();
  line_.append_ascii(integer_text(static_cast<std::int64_t>(entities)));
  for (const Column& column : columns_) {
    append_separator();
    append_sum(column, column.group_sum);
  }
  line_.append_units(u"\r\n");
  end_line();
}

TextFileWriter ExplicationText::finish() {
  add_closing_line(
      "SumCount", [this](const Column& column) { line_.append_ascii(integer_text(column.count)); });
  add_closing_line("SumSum", [this](const Column& column) { append_sum(column, column.sum); });
  add_closing_line("Min", [this](const Column& column) {
    if (column.has_numbers()) line_.append_ascii(real_text(column.least, room_));
  });
  add_closing_line("Max", [this](const Column& column) {
    if (column.has_numbers()) line_.append_ascii(real_text(column.greatest, room_));
  });
  add_closing_line("Average", [this](const Column& column) {
    if (column.has_numbers())
      line_.append_ascii(real_text(column.sum / static_cast<double>(column.count), room_));
  });
  add_closing_line("Unique", [this](Column& column) {
    line_.append_ascii(
        integer_text(static_cast<std::int64_t>(column.numbers.count() + column.texts.count())));
  });
  return std::move(file_);
}

template <class Append>
void ExplicationText::add_closing_line(std::string_view name, const Append& append) {
  begin_line(name);
  append_separator();
  if (has_type_field_) append_separator();
  append_separator();
  for (Column& column : columns_) {
    append_separator();
    append(column);
  }
  end_line();
}

void ExplicationText::begin_line(std::string_view name) {
  line_.clear();
  line_.append_ascii(name);
}

std::string_view ExplicationText::end_line() {
  line_.append_units(u"\r\n");
  return file_.write_units(line_.view());
}

// Deliberately a point is its z alone.
void ExplicationText::append_cell(std::size_t column, const ODValueView& value) {
  const std::size_t begin = line_.size();
  switch (type_of(value)) {
    case ODType::Integer:
      return append_number(column, integer_text(std::get<std::int32_t>(value)));
    case ODType::Real:
      return append_number(column, real_text(std::get<double>(value), room_));
    case ODType::Point:
      return append_number(column, real_text(std::get<Point3>(value).z, room_));
    case ODType::Character:
      line_.append_quoted(std::get<std::wstring_view>(value));
      break;
    case ODType::Unknown:
      break;
  }
  cells_.push_back({column, begin, line_.size() - begin});
}

void ExplicationText::append_number(std::size_t column, std::string_view digits) {
  if (const std::uint64_t key = number_key(digits); key != 0) {
    columns_[column].numbers.insert(key);
  } else {
    cells_.push_back({column, line_.size(), digits.size()});
  }
  line_.append_ascii(digits);
}

std::string_view ExplicationText::integer_text(std::int64_t number) {
  const char* const end = std::to_chars(room_.data(), room_.data() + room_.size(), number).ptr;
  return {room_.data(), static_cast<std::size_t>(end - room_.data())};
}

void ExplicationText::append_sum(const Column& column, double sum) {
  if (sum == no_sum) return;
  line_.append_ascii(column.counted ? integer_text(static_cast<std::int64_t>(sum))
                                    : real_text(sum, room_));
}

}  // namespace korvel
