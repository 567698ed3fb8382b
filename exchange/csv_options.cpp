// Asking for the separator and the decimal sign.
#include "exchange/csv_options.h"

#include <utility>

#include "frame/command_frame.h"

namespace korvel {

CsvOptions::CsvOptions(std::wstring title, const CsvChoices& last) : Dialog(std::move(title)) {
  separator_.text = last.separator;
  tabs_.on = last.tabs;
  separator_.enabled = !tabs_.on;
  decimal_sign_.items = {L".", L","};
  decimal_sign_.selected = last.decimal_comma ? 1 : 0;
  add(&separator_);
  add(&tabs_);
  add(&decimal_sign_);
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void CsvOptions::changed(const Control& control) {
  if (&control == &tabs_) separator_.enabled = !tabs_.on;
}

CsvChoices CsvOptions::choices() const {
  return {separator_.text, tabs_.on, decimal_sign_.selected == 1};
}

std::optional<char> CsvOptions::separator() const {
  if (tabs_.on) return '\t';
  if (separator_.text.size() != 1 || !is_csv_separator(separator_.text[0])) return std::nullopt;
  return static_cast<char>(separator_.text[0]);
}

std::optional<CsvFormat> CsvOptions::format() const {
  const char decimal_sign = choices().decimal_comma ? ',' : '.';
  const std::optional<char> parting = separator();
  if (!parting || *parting == decimal_sign) return std::nullopt;
  return CsvFormat{*parting, decimal_sign};
}

std::optional<CsvFormat> ask_csv_format(DrawingHost& host, std::wstring title,
                                        CsvChoices& choices) {
  CsvOptions dialog(std::move(title), choices);
  if (!host.show(dialog)) return std::nullopt;
  const std::optional<CsvFormat> format = dialog.format();
  if (format) {
    choices = dialog.choices();
  } else {
    report<Message::InvalidParameters>(host);
  }
  return format;
}

FileQuestion csv_file_question(char separator) {
  if (separator == '\t') return {L"Text files (*.txt;*.tsv)|*.txt;*.tsv||", L"txt"};
  return {L"CSV files (*.csv)|*.csv||", L"csv"};
}

}  // namespace korvel
