// A palette: the window in one of the host's palette sets in which a dialog stays open.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "frame/palette.h"
#include "host/arx/sdk.h"
#include "host/windows/dialog_view.h"

namespace korvel::arx {

// Messages come to it between commands, in the host's application context. What changes or reads
// the drawing there has a session of its own, made for the one message.
class PaletteWindow final : public CAdUiPalette, public windows::ViewOwner {
 public:
  explicit PaletteWindow(Palette& content) : content_(content) {}

  // Makes the window; it shows nothing of the drawing yet.
  bool make_in(CAdUiPaletteSet& set);

  // The palette comes before the user's eyes, or another drawing does.
  void show_anew();
  // The same as soon as the host has nothing else to do.
  void show_anew_later();
  // The drawing closes.
  void clear();

 private:
  BOOL PreTranslateMessage(MSG* message) override;
  LRESULT WindowProc(UINT id, WPARAM wparam, LPARAM lparam) override;

  void deliver(const std::function<void()>& action) override;
  std::optional<std::filesystem::path> choose_file(std::wstring_view filter) override;
  void complain(std::wstring_view sentence) override;
  void closed(bool accepted) override;

  void make_view();
  void forget_view();
  [[nodiscard]] std::optional<LRESULT> answer_of_view(const windows::WindowMessage& message);

  Palette& content_;
  std::unique_ptr<windows::DialogView> view_;
};

}  // namespace korvel::arx
