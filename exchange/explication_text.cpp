#include "exchange/explication_text.h"

#include <algorithm>
#include <charconv>

namespace korvel {
namespace {

constexpr char16_t byte_order_mark = 0xFEFF;

// So few that they are still in the cache when the sink gets them.
constexpr std::size_t units_at_a_time = std::size_t{64} * 1024;

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
  if (counted) return;
  least = std::min(least, number);
  greatest = std::max(greatest, number);
}

ExplicationText::ExplicationText(const ExplicationColumns& columns,
                                 const ExplicationRequest& request, const ByteSink& sink)
    : definition_(columns),
      has_type_field_(request.type_field.has_value()),
      columns_(columns.values.size()),
      sink_(sink) {
  text_.append_unit(byte_order_mark);
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
  text_.append_ascii("TableName");
  append_separator();
  if (has_type_field_) {
    text_.append(*request.type_field);
    append_separator();
  }
  text_.append_ascii("Count");
  for (const ValueColumn& column : definition_.values) {
    append_separator();
    text_.append(column.name);
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
                                 const RecordValues& record) {
  text_.append(handle);
  text_.append_units(table_cells_[table].view());
  if (has_type_field_) {
    text_.append_units(key_.view());
    append_separator();
  }
  const std::vector<int>& places = definition_.tables[table].places;
  for (std::size_t i = 0; i < places.size(); ++i) {
    append_separator();
    if (places[i] == no_column) continue;
    const ODValueView value = record[static_cast<std::size_t>(places[i])];
    append_cell(i, value);
    columns_[i].add(number_of(value));
  }
  end_line();
}

void ExplicationText::end_group(std::size_t entities) {
  begin_line("Sum");
  append_separator();
  if (has_type_field_) append_separator();
  text_.append_units(key_.view());
  append_separator();
  text_.append_ascii(integer_text(static_cast<std::int64_t>(entities)));
  for (const Column& column : columns_) {
    append_separator();
    append_sum(column, column.group_sum);
  }
  text_.append_units(u"\r\n");
  end_line();
}

void ExplicationText::finish() {
  add_closing_line(
      "SumCount", [this](const Column& column) { text_.append_ascii(integer_text(column.count)); });
  add_closing_line("SumSum", [this](const Column& column) { append_sum(column, column.sum); });
  add_closing_line("Min", [this](const Column& column) {
    if (column.has_numbers()) text_.append_ascii(real_text(column.least, room_));
  });
  add_closing_line("Max", [this](const Column& column) {
    if (column.has_numbers()) text_.append_ascii(real_text(column.greatest, room_));
  });
  add_closing_line("Average", [this](const Column& column) {
    if (column.has_numbers())
      text_.append_ascii(real_text(column.sum / static_cast<double>(column.count), room_));
  });
  add_closing_line("Unique", [this](Column& column) {
    text_.append_ascii(
        integer_text(static_cast<std::int64_t>(column.numbers.count() + column.texts.count())));
  });
  flush();
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

void ExplicationText::begin_line(std::string_view name) { text_.append_ascii(name); }

void ExplicationText::end_line() {
  text_.append_units(u"\r\n");
  if (text_.size() >= units_at_a_time) flush();
}

void ExplicationText::flush() {
  std::string room;
  (void)sink_(little_endian_bytes(text_.view(), room));
  text_.clear();
}

// Deliberately a point is its z alone.
void ExplicationText::append_cell(std::size_t column, const ODValueView& value) {
  switch (type_of(value)) {
    case ODType::Integer:
      return append_number(column, integer_text(std::get<std::int32_t>(value)));
    case ODType::Real:
      return append_number(column, real_text(std::get<double>(value), room_));
    case ODType::Point:
      return append_number(column, real_text(std::get<Point3>(value).z, room_));
    case ODType::Character: {
      const std::size_t begin = text_.size();
      text_.append_quoted(std::get<std::wstring_view>(value));
      return columns_[column].texts.insert(text_.view().substr(begin));
    }
    case ODType::Unknown:
      return columns_[column].texts.insert({});
  }
}

void ExplicationText::append_number(std::size_t column, std::string_view digits) {
  const std::size_t begin = text_.size();
  text_.append_ascii(digits);
  if (const std::uint64_t key = number_key(digits); key != 0) {
    columns_[column].numbers.insert(key);
  } else {
    columns_[column].texts.insert(text_.view().substr(begin));
  }
}

std::string_view ExplicationText::integer_text(std::int64_t number) {
  const char* const end = std::to_chars(room_.data(), room_.data() + room_.size(), number).ptr;
  return {room_.data(), static_cast<std::size_t>(end - room_.data())};
}

void ExplicationText::append_sum(const Column& column, double sum) {
  if (sum == no_sum) return;
  text_.append_ascii(column.counted ? integer_text(static_cast<std::int64_t>(sum))
                                    : real_text(sum, room_));
}

}  // namespace korvel
