// A dialog's model drawn with the controls of Windows, as children of a window of somebody else's:
// a modal box or a palette of the CAD host. Nothing of the host is needed for it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "frame/dialog.h"
#include "host/windows/dialog_layout.h"

namespace korvel::windows {

using WindowHandle = void*;  // HWND

// A message of Windows, as a window's procedure gets it.
struct WindowMessage {
  unsigned int id;
  std::uintptr_t wparam;
  std::intptr_t lparam;
};

// Whoever has the window in which a dialog is shown.
class ViewOwner {
 public:
  ViewOwner() = default;
  ViewOwner(const ViewOwner&) = delete;
  ViewOwner& operator=(const ViewOwner&) = delete;
  virtual ~ViewOwner() = default;

  // Runs what the user did to the dialog, at once. Everything that changes the model goes through
  // here: a palette is given its session for it. So does the reading of a long grid's lines, which
  // may lie in the drawing: it comes with painting, too. What the action throws stays in there:
  // procedures of windows call this.
  virtual void deliver(const std::function<void()>& action) = 0;

  // For a file chooser's button. None: cancelled.
  virtual std::optional<std::filesystem::path> choose_file(std::wstring_view filter) = 0;

  // Tells the user in one sentence what is not possible.
  virtual void complain(std::wstring_view sentence) = 0;

  // A button closed the dialog. The view does nothing more after this.
  virtual void closed(bool accepted) = 0;
};

class DialogView {
 public:
  // Makes the controls and shows the model in them. The window, the dialog and the owner must
  // outlive the view; the controls go with the view. What the window is told by them as they go may
  // still be handed to the view.
  DialogView(WindowHandle window, Dialog& dialog, ViewOwner& owner);
  ~DialogView();
  DialogView(const DialogView&) = delete;
  DialogView& operator=(const DialogView&) = delete;

  // Shows the model anew, after somebody else than the user of this view changed it.
  void refresh();

  // The inside of the window at which nothing has to be folded or scrolled without need.
  [[nodiscard]] Size preferred_size() const;

  // To be called with every message that the window gets, before anything else is done with it.
  // None: the view has no use for it. Otherwise the answer to the message.
  std::optional<std::intptr_t> on_message(const WindowMessage& message);

  // To be called with every message of the thread's queue while the window has the focus, before
  // it is dispatched (a MSG*). True: it was a key that moved the focus, pressed a button or is
  // swallowed, and is done with.
  bool takes_key(void* message);

  // To be called with the keys that takes_key did not take, where the host has uses of its own for
  // keys. True: it was typed in a field, which has it by now.
  bool types_key(void* message);

 private:
  class Controls;
  std::unique_ptr<Controls> controls_;
};

// Gives a window that is nobody's child this inside, as far as its owner's monitor has room for it,
// and puts it in the middle of its owner.
void give_inside(WindowHandle window, Size inside);

}  // namespace korvel::windows
