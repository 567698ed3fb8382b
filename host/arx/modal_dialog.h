// A modal window of the host with a dialog in it.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <optional>

#include "host/arx/sdk.h"
#include "host/windows/dialog_view.h"

namespace korvel::arx {

class ModalDialog final : public CAcUiDialog, public windows::ViewOwner {
 public:
  // `inside`: the size at first, in pixels; none: what the dialog needs. The host's framework keeps
  // the place and the size that the user gave the window, under the dialog's title.
  explicit ModalDialog(Dialog& dialog, std::optional<windows::Size> inside = std::nullopt);

  // False: it was cancelled. What was thrown while the window was open is thrown when it is closed.
  bool run();

 private:
  BOOL OnInitDialog() override;
  BOOL PreTranslateMessage(MSG* message) override;
  LRESULT WindowProc(UINT id, WPARAM wparam, LPARAM lparam) override;
  void OnOK() override;
  void OnCancel() override;

  void deliver(const std::function<void()>& action) override;
  std::optional<std::filesystem::path> choose_file(std::wstring_view filter) override;
  void complain(std::wstring_view sentence) override;
  void closed(bool accepted) override;

  [[nodiscard]] bool is_accepted();
  void forget_view();
  void catching(const std::function<void()>& action);

  Dialog& dialog_;
  std::optional<windows::Size> inside_;
  std::unique_ptr<windows::DialogView> view_;
  std::exception_ptr thrown_;
};

// What is opened now belongs to: the dialog that was opened last, or the host's frame.
[[nodiscard]] CWnd* window_in_front();

}  // namespace korvel::arx
