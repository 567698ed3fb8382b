// One control of a dialog, drawn: its windows, what they show, and what the user does to them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "frame/dialog.h"
#include "host/windows/child_window.h"
#include "host/windows/common_controls.h"
#include "host/windows/dialog_layout.h"
#include "host/windows/dialog_view.h"

namespace korvel::windows {

// The dialog's view, as its controls see it.
class ViewSite {
 public:
  ViewSite() = default;
  ViewSite(const ViewSite&) = delete;
  ViewSite& operator=(const ViewSite&) = delete;
  virtual ~ViewSite() = default;

  [[nodiscard]] virtual HWND window() const = 0;
  [[nodiscard]] virtual HFONT font() const = 0;
  [[nodiscard]] virtual HFONT bold_font() const = 0;
  [[nodiscard]] virtual const FontUnits& units() const = 0;
  [[nodiscard]] virtual ViewOwner& owner() const = 0;

  // Makes the user's change to the model, tells the dialog of it and shows everything anew. The
  // change tells whether there was one. Nothing happens while the model is being shown: what
  // windows report then was not done by the user.
  virtual void change(const Control& control, const std::function<bool()>& make_change) = 0;
  // The same where the user activated something; `select` makes it the selected one.
  virtual void activate(const Control& control, const std::function<void()>& select) = 0;

  // Gives the focus to the next window in the order of the Tab key, and scrolls there. False: there
  // is none.
  virtual bool move_focus(HWND from, bool back) = 0;
};

class ControlView {
 public:
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;
  virtual ~ControlView() = default;

  // The windows in the order of the Tab key. All of them follow the model's `enabled`.
  [[nodiscard]] virtual std::vector<HWND> windows() const = 0;

  // Shows the model where the windows differ from it.
  virtual void show() = 0;

  // How the control wants to stand; the label's width is added by the dialog's view.
  [[nodiscard]] virtual LayoutItem layout() const = 0;
  virtual void place(const Rect& body) { korvel::windows::place(windows().front(), body); }

  // A message of one of the windows to its parent.
  virtual void on_command(HWND /*sender*/, int /*code*/) {}
  virtual LRESULT on_notify(const NMHDR& /*header*/) { return 0; }

  // A key pressed in one of the windows. True: that is done with.
  virtual bool on_key(HWND /*focus*/, WPARAM /*key*/) { return false; }

  // What is typed and not in the model yet goes there now.
  virtual void finish_typing() {}

  // Whether the window is one of this control, or inside one.
  [[nodiscard]] bool has(HWND window) const;

 protected:
  explicit ControlView(ViewSite& site) : site_(site) {}

  [[nodiscard]] ViewSite& site() const { return site_; }
  [[nodiscard]] OwnedWindow make(const wchar_t* class_name, ChildStyle style,
                                 const std::wstring& text = {}) const {
    return make_child(site_.window(), class_name, style, text);
  }
  // A width of so many characters.
  [[nodiscard]] int characters(int count) const { return count * site_.units().character_width; }
  // The height of a list of so many lines.
  [[nodiscard]] int lines(int count) const { return count * site_.units().down(11) + 4; }

 private:
  ViewSite& site_;
};

[[nodiscard]] std::unique_ptr<ControlView> make_control_view(const ControlPointer& control,
                                                             ViewSite& site);

// The kinds, by family.
[[nodiscard]] std::unique_ptr<ControlView> make_view(CheckBox& box, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(Edit& edit, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(Spin& spin, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(ReadOnlyText& text, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(FileChooser& chooser, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(ListBox& list, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(DropDown& list, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(CheckList& list, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(Tree& tree, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(Grid& grid, ViewSite& site);
[[nodiscard]] std::unique_ptr<ControlView> make_view(LongGrid& grid, ViewSite& site);

}  // namespace korvel::windows
