// Dialogs as models: what a dialog shows, how its controls react to each other, and what it hands
// back. A host draws any of them with one renderer and adds no rule of its own.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace korvel {

// What all controls have. The label names the control to the user and to scripts.
struct Control {
  explicit Control(std::wstring text) : label(std::move(text)) {}
  std::wstring label;
  bool enabled = true;
};

// Lines with a check box each.
struct CheckList : Control {
  using Control::Control;
  struct Item {
    std::wstring text;
    bool checked = false;
  };
  std::vector<Item> items;

  // Texts of the checked items, in list order.
  [[nodiscard]] std::vector<std::wstring> checked() const;
  void check_all(bool on);
  // "Select all/nothing": all, or none when all were checked.
  void toggle_all();
  // Replaces the items; none is checked.
  void fill(const std::vector<std::wstring>& texts);
};

// Lines of which at most one is selected. A drop-down shows the same, folded.
struct ListBox : Control {
  using Control::Control;
  std::vector<std::wstring> items;
  std::optional<std::size_t> selected;

  // Text of the selected item; empty when none is.
  [[nodiscard]] std::wstring text() const;
  // Selects the first item of exactly this text, or nothing.
  void select(std::wstring_view text);
};

struct DropDown : ListBox {
  using ListBox::ListBox;
};

struct CheckBox : Control {
  using Control::Control;
  bool on = false;
};

struct Edit : Control {
  using Control::Control;
  std::wstring text;
};

// An edit field for a whole number with a spin button. The range binds the button alone: what is
// typed stays as typed.
struct Spin : Edit {
  Spin(std::wstring label_text, int least, int most)
      : Edit(std::move(label_text)), min(least), max(most) {}
  int min;
  int max;
};

struct Grid : Control {
  struct Column {
    std::wstring heading;
    bool editable = false;
  };
  Grid(std::wstring label_text, std::vector<Column> headings, bool rows_by_user)
      : Control(std::move(label_text)), columns(std::move(headings)), user_rows(rows_by_user) {}
  std::vector<Column> columns;
  std::vector<std::vector<std::wstring>> rows;  // a cell for every column
  bool user_rows;                               // the user adds and removes rows
};

struct ReadOnlyText : Control {
  using Control::Control;
  std::wstring text;
};

struct FileChooser : Control {
  FileChooser(std::wstring label_text, std::wstring file_filter)
      : Control(std::move(label_text)), filter(std::move(file_filter)) {}
  std::wstring filter;  // as in FileQuestion
  std::filesystem::path path;
};

using ControlPointer = std::variant<CheckList*, ListBox*, DropDown*, CheckBox*, Edit*, Spin*, Grid*,
                                    ReadOnlyText*, FileChooser*>;

enum class ButtonRole {
  Accept,  // closes the dialog
  Act,     // does something and leaves it open
  Cancel,  // closes it without a result; Esc presses it
};

struct Button {
  std::wstring label;
  ButtonRole role = ButtonRole::Accept;
};

// Base of the dialogs. A dialog owns its controls as members and enters them in the order in which
// they are shown; a host changes a control's contents and then says so with `changed`.
class Dialog {
 public:
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;
  virtual ~Dialog() = default;

  [[nodiscard]] const std::wstring& title() const { return title_; }
  [[nodiscard]] const std::vector<ControlPointer>& controls() const { return controls_; }
  [[nodiscard]] const std::vector<Button>& buttons() const { return buttons_; }

  // The user changed this control; the others follow.
  virtual void changed(const Control& /*control*/) {}

  // The user pressed the button. True: the dialog closes, and pressed() tells by which button.
  bool press(std::size_t button);

  // Label of the button that closed the dialog; empty while it is open.
  [[nodiscard]] const std::wstring& pressed() const { return pressed_; }

 protected:
  explicit Dialog(std::wstring title) : title_(std::move(title)) {}
  void add(ControlPointer control) { controls_.push_back(control); }
  void add(Button button) { buttons_.push_back(std::move(button)); }
  // What a button of the role Act does.
  virtual void act(const Button& /*button*/) {}

 private:
  std::wstring title_;
  std::vector<ControlPointer> controls_;
  std::vector<Button> buttons_;
  std::wstring pressed_;
};

[[nodiscard]] Control& control_of(const ControlPointer& pointer);

}  // namespace korvel
