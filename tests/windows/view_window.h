// A window with a dialog in it, as a host would have it, and what a user does to the controls.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "frame/dialog.h"
#include "host/windows/common_controls.h"
#include "host/windows/dialog_view.h"

namespace korvel::windows::test {

// The window is there as long as the object; the owner notes what it was told.
class ViewWindow final : public ViewOwner {
 public:
  // What runs an action of the user's; by default the action runs by itself.
  using Turn = std::function<void(const std::function<void()>&)>;
  explicit ViewWindow(Dialog& dialog, Turn turn = nullptr);
  ~ViewWindow() override;

  void deliver(const std::function<void()>& action) override;
  std::optional<std::filesystem::path> choose_file(std::wstring_view filter) override;
  void complain(std::wstring_view sentence) override { complaints.emplace_back(sentence); }
  void closed(bool accepted) override;

  int turns = 0;
  int menus = 0;  // that unfolded; they fold again at once
  std::vector<std::wstring> complaints;
  std::vector<std::wstring> filters;
  std::optional<std::filesystem::path> file;  // the answer of a file chooser
  std::optional<bool> accepted;               // none: not closed

  [[nodiscard]] HWND window() const { return window_; }
  [[nodiscard]] DialogView& view() { return *view_; }
  void resize(Size inside);

  // The children of the class, in the order in which they were made.
  [[nodiscard]] std::vector<HWND> children(std::wstring_view class_name) const;
  [[nodiscard]] HWND child(std::wstring_view class_name, std::size_t index = 0) const;
  // The button or check box of this text; fails the test without one.
  [[nodiscard]] HWND button(std::wstring_view text) const;

  // Presses the key where the focus is, as a message of the queue. Whether the view took it.
  bool key(WPARAM key);
  void type(std::wstring_view text);
  // The left button of the mouse, on a point of the window's inside.
  static void click(HWND window, POINT point, bool twice = false);
  // Takes what lies in the queue.
  static void pump();

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

  void delete_view();

  Turn turn_;
  HWND window_ = nullptr;
  DialogView* view_ = nullptr;  // goes with the window
  bool is_going_ = false;
};

[[nodiscard]] std::wstring text_in(HWND window);

}  // namespace korvel::windows::test
