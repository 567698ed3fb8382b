// The dialog in which the form of a table's text is chosen.
#pragma once

#include <optional>
#include <string>

#include "exchange/csv_text.h"
#include "frame/dialog.h"
#include "frame/drawing_host.h"
#include "frame/remembered_choices.h"

namespace korvel {

class CsvOptions final : public Dialog {
 public:
  CsvOptions(std::wstring title, const CsvChoices& last);

  void changed(const Control& control) override;

  [[nodiscard]] CsvChoices choices() const;

  // None when what is typed is not one character that can part cells, or is the decimal sign.
  [[nodiscard]] std::optional<CsvFormat> format() const;

 private:
  [[nodiscard]] std::optional<char> separator() const;

  Edit separator_{L"Separator"};
  CheckBox tabs_{L"Tab separated"};
  DropDown decimal_sign_{L"Decimal sign"};
};

// Shows the dialog and remembers what was chosen. None: cancelled, or, after the message of the
// catalogue, a separator that cannot be.
[[nodiscard]] std::optional<CsvFormat> ask_csv_format(DrawingHost& host, std::wstring title,
                                                      CsvChoices& choices);

// What a chooser shows for files of this separator.
[[nodiscard]] FileQuestion csv_file_question(char separator);

}  // namespace korvel
