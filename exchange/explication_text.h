// The lines of an explication, and the sums and statistics that grow as its records are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/distinct_texts.h"
#include "exchange/explication_columns.h"
#include "exchange/record_reader.h"
#include "frame/utf16_text.h"
#include "frame/value_text.h"

namespace korvel {

// Groups are begun, filled and ended one after the other; finish comes last. Sums are added in the
// order of the lines, so that their last digits do not depend on anything else.
class ExplicationText {
 public:
  // All of them must outlive this.
  ExplicationText(const ExplicationColumns& columns, const ExplicationRequest& request,
                  const ByteSink& sink);

  void begin_group(std::wstring_view key);
  // A line for the record, which is of the table of this index.
  void add_record(std::wstring_view handle, std::size_t table, const RecordValues& record);
  void end_group(std::size_t entities);

  void finish();

 private:
  // Deliberately a sum over no value is told from others by being the largest number, so that a
  // sum that is that number shows as none.
  static constexpr double no_sum = std::numeric_limits<double>::max();

  struct Column {
    bool counted = false;
    double group_sum = no_sum;
    double sum = no_sum;
    std::int64_t count = 0;  // of the records that have the column
    double least = std::numeric_limits<double>::max();
    double greatest = std::numeric_limits<double>::lowest();
    DistinctKeys numbers;  // the short ones
    DistinctTexts texts;   // and all other cells

    void add(double number);
    [[nodiscard]] bool has_numbers() const { return !counted && count > 0; }
  };

  void write_header(const ExplicationRequest& request);
  void begin_line(std::string_view name);
  void end_line();
  void flush();
  void append_separator() {
    if (separator_.size() == 1) return text_.append_unit(separator_.view()[0]);
    text_.append_units(separator_.view());
  }
  void append_cell(std::size_t column, const ODValueView& value);
  void append_number(std::size_t column, std::string_view digits);
  [[nodiscard]] std::string_view integer_text(std::int64_t number);
  void append_sum(const Column& column, double sum);
  template <class Append>
  void add_closing_line(std::string_view name, const Append& append);

  const ExplicationColumns& definition_;
  bool has_type_field_;
  std::vector<Column> columns_;
  Utf16Text separator_;
  std::vector<Utf16Text> table_cells_;  // by table, with the separators around them
  Utf16Text key_;                       // of the group, quoted
  Utf16Text text_;                      // that the sink has not got yet
  RealRoom room_;
  const ByteSink& sink_;
};

}  // namespace korvel
