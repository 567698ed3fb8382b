// The table editor: the records of one table as a grid.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/command_table.h"
#include "frame/palette.h"
#include "palettes/column_profile.h"
#include "palettes/record_view.h"

namespace korvel {

// A row is a record of an entity of model space. Rows are read when the palette is shown, when a
// control that arranges them changes, and on "Refresh"; a cell that was edited stays in its place
// until then.
//
// With "Synchronize" the rows of the pick-first set's entities are the chosen ones whenever the
// palette is shown, and choosing rows makes their entities the pick-first set.
//
// What the menus do, they do to the chosen rows, or to all that are shown when none is chosen; with
// "Synchronize", where no choice means that nothing is selected, to none.
class TableEditor final : public Palette, private GridLines {
 public:
  TableEditor();

  void shown() override;
  void drawing_closes() override;
  void changed(const Control& control) override;

  // The chosen rows, or all that are shown when none is chosen and nothing synchronizes, with the
  // columns that are shown.
  [[nodiscard]] RecordRows chosen_rows() const;

  DropDown table{L"Table"};
  CheckBox synchronize{L"Synchronize"};
  Grid filter{L"Filter", {{L"Field", true}, {L"Value", true}}, true};
  CheckBox extended{L"Extended (>, <, <>, *)"};
  DropDown sort_by{L"Sort by"};
  CheckBox descending{L"Descending"};
  DropDown group_by{L"Group by:"};
  ReadOnlyText count{L"Rows"};
  LongGrid records{L"Records", *this};

 protected:
  void act(const Button& button) override;

 private:
  using Action = void (TableEditor::*)();

  void add_item(std::wstring_view menu, std::wstring_view label, Action action);
  void add_command(std::wstring_view label, const Command& command);

  void take_tables();
  void take_columns();
  void refresh();
  void show_no_rows();
  void begin_synchronizing();
  void follow_selection();
  void lead_selection();
  void count_rows();
  void edit_columns();
  void write_csv();
  void read_csv();
  void write_mif();
  void export_rows(void (*write)(Session&, const RecordRows&));
  void disable_grouping();
  void fold_groups();
  void unfold_groups();
  void undo();
  void redo();
  void find_values();
  void show_selection();
  void run_on_rows(CommandHandler handler);

  [[nodiscard]] std::vector<std::wstring> headings() const;
  [[nodiscard]] std::wstring grid_name() const;
  [[nodiscard]] std::vector<std::size_t> shown_columns() const;
  [[nodiscard]] std::wstring cell_text(const RecordKey& row, const RecordIterator& record,
                                       std::size_t column) const;
  [[nodiscard]] std::vector<std::wstring> row_texts(const RecordKey& row,
                                                    const std::vector<std::size_t>& columns) const;

  [[nodiscard]] std::vector<Column> columns() const override;
  [[nodiscard]] std::size_t line_count() const override;
  [[nodiscard]] GridLines::Line line(std::size_t index) const override;
  void choose(std::size_t index, bool on) override;
  void activate(std::size_t index) override;
  std::optional<std::wstring> set_cell(std::size_t index, std::size_t column,
                                       std::wstring_view text) override;

  struct MenuItem {
    std::wstring label;
    Action action = nullptr;
    CommandHandler handler = nullptr;
  };
  std::vector<MenuItem> items_;  // by button
  RecordView view_;
  ColumnProfile profile_;
};

class TableEditorSet final : public PaletteSet {
 public:
  explicit TableEditorSet(DrawingHost& host);

  void show(Session& session) override { set_->show(session); }

 private:
  TableEditor editor_;
  std::unique_ptr<PaletteSet> set_;  // the host's
};

}  // namespace korvel
