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

// Leaves under headings, and leaves without one. The user activates one (a double click).
struct Tree : Control {
  using Control::Control;
  struct Item {
    std::wstring label;
    std::vector<std::wstring> leaves;  // none: the item is a leaf itself
  };
  struct Place {
    std::size_t item = 0;
    std::optional<std::size_t> leaf;  // none: the item itself
  };
  std::vector<Item> items;
  std::optional<Place> selected;

  // Of the selected item or leaf; empty when nothing is selected.
  [[nodiscard]] std::wstring text() const;
};

// Lines of a grid that may be too many to be held as texts: a host asks for those that it shows.
class GridLines {
 public:
  struct Column {
    std::wstring heading;
    bool editable = false;
    int width = 0;  // pixels; 0: the host's own choice
  };
  struct Line {
    std::vector<std::wstring> cells;  // a group's heading alone when it is one
    bool is_group = false;
    bool chosen = false;
  };

  GridLines() = default;
  GridLines(const GridLines&) = delete;
  GridLines& operator=(const GridLines&) = delete;
  virtual ~GridLines() = default;

  [[nodiscard]] virtual std::vector<Column> columns() const = 0;
  [[nodiscard]] virtual std::size_t line_count() const = 0;
  [[nodiscard]] virtual Line line(std::size_t index) const = 0;

  // The line becomes chosen or not, a group's with all that is under it. The host says `changed`
  // when it has told all.
  virtual void choose(std::size_t index, bool on) = 0;

  // Opens or folds a group; of another line nothing.
  virtual void activate(std::size_t index) = 0;

  // None: the cell has the text now. Otherwise one sentence that says why it cannot have it.
  virtual std::optional<std::wstring> set_cell(std::size_t index, std::size_t column,
                                               std::wstring_view text) = 0;
};

struct LongGrid : Control {
  LongGrid(std::wstring label_text, GridLines& shown)
      : Control(std::move(label_text)), lines(&shown) {}
  GridLines* lines;     // the dialog's
  std::size_t top = 0;  // the first line in sight
};

using ControlPointer = std::variant<CheckList*, ListBox*, DropDown*, CheckBox*, Edit*, Spin*, Grid*,
                                    ReadOnlyText*, FileChooser*, Tree*, LongGrid*>;

enum class ButtonRole {
  Accept,  // closes the dialog
  Act,     // does something and leaves it open
  Cancel,  // closes it without a result; Esc presses it
};

struct Button {
  std::wstring label;
  ButtonRole role = ButtonRole::Accept;
  std::wstring menu = {};  // the button is an item of this menu; empty: it is a button
};

enum class DialogKey { Enter, Escape };

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

  // The user activated the selected item of this control.
  virtual void activated(const Control& /*control*/) {}

  // Keys that do nothing here, not even what they do in every dialog.
  [[nodiscard]] virtual bool swallows(DialogKey /*key*/) const { return false; }

  // The user pressed the button. True: the dialog closes, and pressed() tells by which button.
  bool press(std::size_t button);

  // Esc, or the window was closed: presses the button for that, if there is one.
  void cancel();

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
