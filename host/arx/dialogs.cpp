#include "host/arx/dialogs.h"

#include "frame/message.h"
#include "host/arx/modal_dialog.h"
#include "host/arx/sdk.h"

namespace korvel::arx {
namespace {

class TextWindow final : public Dialog {
 public:
  TextWindow(std::wstring_view title, std::wstring_view text) : Dialog(std::wstring(title)) {
    text_.text = text;
    add(&text_);
    add(Button{L"Close", ButtonRole::Cancel});
  }

 private:
  ReadOnlyText text_{L""};
};

UINT icon_flag(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Information:
      return MB_ICONINFORMATION;
    case BoxIcon::Question:
      return MB_ICONQUESTION;
    default:
      return MB_ICONEXCLAMATION;
  }
}

int box(std::wstring_view caption, std::wstring_view text, UINT flags) {
  return window_in_front()->MessageBox(std::wstring(text).c_str(), std::wstring(caption).c_str(),
                                       flags);
}

// Unconfirmed: the form of the constructor; CFileDialog has the same arguments.
std::optional<std::filesystem::path> chosen_file(BOOL opens, const FileQuestion& question,
                                                 DWORD flags) {
  const std::wstring extension(question.default_extension);
  const std::wstring filter(question.filter);
  CAcUiFileDialog chooser(opens, extension.empty() ? nullptr : extension.c_str(), nullptr, flags,
                          filter.c_str(), window_in_front());
  if (chooser.DoModal() != IDOK) return std::nullopt;
  return std::filesystem::path(static_cast<const ACHAR*>(chooser.GetPathName()));
}

}  // namespace

bool show(Dialog& dialog) { return ModalDialog(dialog).run(); }

bool ask_yes_no(std::wstring_view caption, std::wstring_view text, BoxIcon icon) {
  return box(caption, text, MB_YESNO | icon_flag(icon)) == IDYES;
}

void complain(std::wstring_view sentence) {
  box(text(Message::ErrorTitle), sentence, MB_OK | icon_flag(BoxIcon::Exclamation));
}

void show_text(std::wstring_view title, std::wstring_view text, int width, int height) {
  TextWindow window(title, text);
  (void)ModalDialog(window, windows::Size{width, height}).run();
}

std::optional<std::filesystem::path> choose_file_to_open(const FileQuestion& question) {
  return chosen_file(TRUE, question, OFN_FILEMUSTEXIST | OFN_HIDEREADONLY);
}

std::optional<std::filesystem::path> choose_file_to_save(const FileQuestion& question) {
  const DWORD asks = question.confirm_overwrite ? OFN_OVERWRITEPROMPT : 0;
  return chosen_file(FALSE, question, asks | OFN_HIDEREADONLY);
}

}  // namespace korvel::arx
