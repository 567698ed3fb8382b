// A field over one cell of a list window, in which the cell's text is changed.
#pragma once

#include <optional>
#include <string>

#include "host/windows/common_controls.h"
#include "host/windows/control_view.h"
#include "host/windows/list_window.h"

namespace korvel::windows {

// How a cell was left.
enum class CellLeft { Enter, Escape, Tab, ShiftTab, Elsewhere };

// Whose cells are edited.
class EditedCells {
 public:
  EditedCells() = default;
  EditedCells(const EditedCells&) = delete;
  EditedCells& operator=(const EditedCells&) = delete;
  virtual ~EditedCells() = default;

  // None: the cell has the text now. Otherwise one sentence that says why it cannot have it.
  virtual std::optional<std::wstring> take(Cell cell, const std::wstring& text) = 0;
  // The field is closed.
  virtual void left(Cell cell, CellLeft how) = 0;
};

class CellEditor {
 public:
  // All must outlive the editor.
  CellEditor(const ListWindow& list, ViewSite& site, EditedCells& cells);
  ~CellEditor();
  CellEditor(const CellEditor&) = delete;
  CellEditor& operator=(const CellEditor&) = delete;

  [[nodiscard]] bool is_open() const { return field_ != nullptr; }

  // Brings the cell into sight and opens the field there, all of the text selected. A field that is
  // open gives its text first.
  void open(Cell cell);

  // Gives the text and closes the field, as if the user were elsewhere already.
  void finish() { finish(CellLeft::Elsewhere); }

  // Closes the field; the text that was typed is lost.
  void cancel();

 private:
  void finish(CellLeft how);
  void give(CellLeft how);
  void complain_later(std::wstring sentence);
  void complain();
  void close(CellLeft how);
  LRESULT on_field_message(UINT message, WPARAM wparam, LPARAM lparam);
  static LRESULT CALLBACK field_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                          UINT_PTR id, DWORD_PTR editor);
  static LRESULT CALLBACK list_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                         UINT_PTR id, DWORD_PTR editor);

  const ListWindow& list_;
  ViewSite& site_;
  EditedCells& cells_;
  OwnedWindow field_;
  Cell cell_;
  std::wstring before_;     // what the field showed at first
  bool is_giving_ = false;  // the text is on its way to the model
  std::wstring complaint_;  // empty: none has to be told
};

}  // namespace korvel::windows
