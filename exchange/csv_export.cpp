// Writing of records as text, and the menu's export.
#include "exchange/csv_export.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "exchange/csv_options.h"
#include "exchange/csv_text.h"
#include "exchange/exact_text.h"
#include "exchange/record_reader.h"
#include "exchange/shown_table.h"
#include "exchange/table_exchange.h"
#include "frame/command_frame.h"
#include "frame/session.h"
#include "frame/text_file.h"
#include "frame/utf.h"

namespace korvel {
namespace {

class TableWriter {
 public:
  TableWriter(const ODTableDef& table, const std::vector<std::size_t>& columns,
              const CsvFormat& format, CsvExport& result)
      : table_(table),
        columns_(columns),
        decimal_sign_(format.decimal_sign),
        result_(result),
        csv_(format.separator, result.bytes) {}

  void header() {
    csv_.cell(std::string_view("Handle"));
    csv_.cell(std::string_view("Record"));
    for (const std::size_t column : columns_)
      csv_.cell(std::wstring_view(table_.columns[column].name));
    csv_.end_row();
  }

  // The rows that follow are of the entity with this handle.
  void begin_entity(std::wstring handle) {
    handle_ = std::move(handle);
    handle_cell_.clear();
    append_utf8(handle_, handle_cell_);
    handle_risk_ = risk_of_text(handle_, decimal_sign_);
  }

  void row(std::int32_t number, const RecordValues& record) {
    if (handle_risk_ != SpreadsheetRisk::None) result_.handles.add([&] { return handle_; });
    csv_.plain_cell(handle_cell_);
    csv_.plain_cell(ExactNumber(number).text());
    for (const std::size_t column : columns_)
      value_cell(record[column], column);
    csv_.end_row();
    ++result_.rows;
  }

 private:
  void value_cell(const ODValueView& value, std::size_t column) {
    if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
      text_cell(*text, column);
    } else if (const auto* const real = std::get_if<double>(&value)) {
      real_cell(*real, column);
    } else if (const auto* const integer = std::get_if<std::int32_t>(&value)) {
      csv_.plain_cell(ExactNumber(*integer).text());
    } else {
      cell_.clear();
      append_exact(value, cell_);
      csv_.cell(std::string_view(cell_));
    }
  }
  void text_cell(std::wstring_view text, std::size_t column) {
    csv_.cell(text);
    const SpreadsheetRisk risk = risk_of_text(text, decimal_sign_);
    if (risk == SpreadsheetRisk::None) return;
    result_.texts[static_cast<std::size_t>(risk)].add([&] { return place(column, text); });
  }
  void real_cell(double real, std::size_t column) {
    const ExactNumber number(real);
    cell_.assign(number.text());
    if (decimal_sign_ != '.') std::ranges::replace(cell_, '.', decimal_sign_);
    csv_.plain_cell(cell_);
    const SpreadsheetRisk risk = risk_of_real(real, cell_);
    if (risk == SpreadsheetRisk::None) return;
    result_.reals[static_cast<std::size_t>(risk)].add(
        [&] { return place(column, from_utf8(cell_)); });
  }
  [[nodiscard]] std::wstring place(std::size_t column, std::wstring_view text) const {
    return format_text(L"%s %s '%s'", handle_, table_.columns[column].name, excerpt(text));
  }

  const ODTableDef& table_;
  const std::vector<std::size_t>& columns_;
  char decimal_sign_;
  CsvExport& result_;
  CsvWriter csv_;
  std::wstring handle_;
  std::string handle_cell_;
  SpreadsheetRisk handle_risk_ = SpreadsheetRisk::None;
  std::string cell_;
};

void warn(DrawingHost& host, std::wstring_view what, const Findings& findings) {
  if (findings.count() == 0) return;
  host.print(format_text(L"Warning: a spreadsheet program would %s: %i (%s)\n", what,
                         findings.count(), findings.list()));
}

void warn_of_spreadsheets(DrawingHost& host, const CsvExport& written) {
  using enum SpreadsheetRisk;
  struct Words {
    SpreadsheetRisk risk;
    std::wstring_view what;
  };
  constexpr auto of_texts = std::to_array<Words>({
      {Number, L"take texts for numbers"},
      {LongNumber, L"round texts of more than 15 digits"},
      {Logical, L"take texts for logical values"},
      {Date, L"take texts for dates or times"},
      {Formula, L"compute texts as formulas"},
      {LineBreak, L"alter line breaks with CR in texts"},
      {LongText, L"cut off texts after 32767 characters"},
  });
  constexpr auto of_reals = std::to_array<Words>({
      {LongNumber, L"round reals of more than 15 digits"},
      {SmallNumber, L"take reals below 2.2e-308 for zero"},
  });
  warn(host, L"take handles for numbers or dates", written.handles);
  for (const Words& words : of_texts)
    warn(host, words.what, written.texts[static_cast<std::size_t>(words.risk)]);
  for (const Words& words : of_reals)
    warn(host, words.what, written.reals[static_cast<std::size_t>(words.risk)]);
}

}  // namespace

CsvExport write_csv(ODStore& store, DrawingHost& host, const ODTableDef& table,
                    const RecordRows& rows, const CsvFormat& format) {
  constexpr std::size_t rows_to_judge_by = 4096;
  CsvExport result;
  result.bytes = "\xEF\xBB\xBF";
  TableWriter writer(table, rows.columns, format, result);
  writer.header();
  RecordReader reader(store.records_of(table.name));
  ReadWalk walk(host, rows.rows.size());
  EntityId owner;
  for (std::size_t i = 0; i < rows.rows.size(); ++i) {
    walk.step();
    // By what the first rows took, with some room.
    if (i == rows_to_judge_by)
      result.bytes.reserve(result.bytes.size() / i * rows.rows.size() * 5 / 4);
    const RecordKey& key = rows.rows[i];
    const RecordValues record = reader.at(key);
    if (!record) continue;
    if (key.entity != owner) writer.begin_entity(host.handle_of(key.entity));
    owner = key.entity;
    writer.row(key.number, record);
  }
  return result;
}

void export_csv(Session& session, const RecordRows& rows) {
  DrawingHost& host = session.host;
  const std::optional<ODTableDef> table = shown_table(session, rows);
  if (!table) return;
  const std::optional<CsvFormat> format = ask_csv_format(host, L"CSV export", session.choices.csv);
  if (!format) return;
  FileQuestion question = csv_file_question(format->separator);
  question.confirm_overwrite = true;
  const auto file = host.choose_file_to_save(question);
  if (!file) return;

  const CsvExport written = write_csv(session.store, host, *table, rows, *format);
  const NewFile target = new_file(*file, written.bytes);
  if (const auto failed = host.replace_files({&target, 1})) return report_unwritten(host, *failed);
  warn_of_spreadsheets(host, written);
  report<Message::CompletedOutOf>(host, written.rows, rows.rows.size());
}

}  // namespace korvel
