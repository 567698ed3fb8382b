// Dialogs without windows: what would be drawn with the controls of Windows is handed to the user
// of the stand-alone host, who fills in its model. The window says by WM_COMMAND that the user
// turns to it.
#include "frame/palette.h"
#include "host/windows/dialog_view.h"
#include "tests/arx_double/ed_classes.h"
#include "tests/arx_double/ui_classes.h"

namespace {

std::function<void(korvel::Palette&)> palette_user;

// Nothing but a text to read and a way out: the stand-alone host prints such a thing.
const korvel::ReadOnlyText* only_text_of(const korvel::Dialog& dialog) {
  if (dialog.controls().size() != 1 || dialog.buttons().size() != 1) return nullptr;
  const auto* const text = std::get_if<korvel::ReadOnlyText*>(&dialog.controls().front());
  return text == nullptr ? nullptr : *text;
}

bool use(korvel::Dialog& dialog) {
  korvel::StandaloneHost& host = korvel::arx_double::working_drawing();
  const korvel::ReadOnlyText* const text = only_text_of(dialog);
  if (text == nullptr) return host.show(dialog);
  host.show_text(dialog.title(), text->text, 0, 0);
  return false;
}

}  // namespace

namespace korvel::windows {

class DialogView::Controls {
 public:
  Controls(Dialog& dialog, ViewOwner& owner) : dialog_(dialog), owner_(owner) {}

  void hand_to_user() {
    if (auto* const palette = dynamic_cast<Palette*>(&dialog_)) {
      const arx_double::RunningIn palette_turn(arx_double::RunningIn::Application);
      if (palette_user) owner_.deliver([palette] { palette_user(*palette); });
      return;
    }
    bool accepted = false;
    owner_.deliver([&] { accepted = use(dialog_); });
    owner_.closed(accepted);
  }

 private:
  Dialog& dialog_;
  ViewOwner& owner_;
};

DialogView::DialogView(WindowHandle /*window*/, Dialog& dialog, ViewOwner& owner)
    : controls_(std::make_unique<Controls>(dialog, owner)) {}

DialogView::~DialogView() = default;

void DialogView::refresh() {}

Size DialogView::preferred_size() const { return {}; }

std::optional<std::intptr_t> DialogView::on_message(const WindowMessage& message) {
  if (message.id != WM_COMMAND) return std::nullopt;
  controls_->hand_to_user();
  return 0;
}

bool DialogView::takes_key(void* /*message*/) { return false; }

bool DialogView::types_key(void* /*message*/) { return false; }

void give_inside(WindowHandle /*window*/, Size /*inside*/) {}

}  // namespace korvel::windows

namespace korvel::arx_double {

void set_palette_user(std::function<void(Palette&)> user) { palette_user = std::move(user); }

}  // namespace korvel::arx_double
