// ADEDEFDATA.
#include <algorithm>
#include <array>
#include <utility>

#include "frame/command_frame.h"
#include "frame/format.h"
#include "frame/value_text.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/commands/table_names.h"
#include "host/console/commands/value_questions.h"

namespace korvel::host_command {
namespace {

constexpr std::wstring_view without_columns = L"A table has at least one column.";

void print_columns(ConsoleHost& host, const ODTableDef& table) {
  std::size_t name_width = 0;
  for (const ODColumnDef& column : table.columns) {
    name_width = std::max(name_width, column.name.size());
  }
  constexpr std::size_t type_width = 11;
  for (const ODColumnDef& column : table.columns) {
    std::wstring line = L"  " + column.name;
    line.resize(name_width + 4, L' ');
    line += type_name(column.type);
    line.resize(name_width + 4 + type_width, L' ');
    line += format_text(L"<%s>\n", on_one_line(value_text(view_of(column.default_value))));
    host.print(line);
  }
}

bool list_tables(ConsoleHost& host, ODStore& store) {
  for (const std::wstring& name : store.table_names()) {
    if (!is_user_table(name)) continue;
    host.print(name + L"\n");
    if (const std::optional<ODTableDef> table = store.table(name)) print_columns(host, *table);
  }
  return true;
}

std::wstring_view sentence(TableChange change) {
  switch (change) {
    case TableChange::Done:
      return {};
    case TableChange::TableExists:
      return L"There is already a table of that name.";
    case TableChange::TableMissing:
      return L"There is no such table.";
    case TableChange::Failed:
      break;
  }
  return L"The drawing refused the change.";
}

std::wstring_view sentence(ColumnChange change) {
  switch (change) {
    case ColumnChange::Done:
      return {};
    case ColumnChange::DuplicateName:
      return L"There is already a column of that name.";
    case ColumnChange::ColumnMissing:
      return L"There is no such column.";
    case ColumnChange::TableMissing:
      return L"There is no such table.";
    case ColumnChange::Failed:
      break;
  }
  return L"The drawing refused the change.";
}

template <class Change>
void tell(ConsoleHost& host, Change change, std::wstring_view done) {
  if (change == Change::Done) {
    host.print(std::wstring(done) + L"\n");
  } else {
    host.refuse(sentence(change));
  }
}

using NameFault = std::optional<std::wstring> (*)(std::wstring_view);

// An allowed name.
Answer<std::wstring> ask_new_name(ConsoleHost& host, std::wstring_view prompt, NameFault fault_of) {
  using Kind = Answer<std::wstring>::Kind;
  while (std::optional<std::wstring> name = ask_word(host, prompt)) {
    if (name->empty()) return {Kind::Enter};
    const std::optional<std::wstring> fault = fault_of(*name);
    if (!fault) return {Kind::Given, std::move(*name)};
    host.refuse(*fault);
  }
  return {Kind::Cancelled};
}

// A column that the table does not have; Enter in place of its name ends the columns.
Answer<ODColumnDef> ask_column(ConsoleHost& host, const ODTableDef& table) {
  using Kind = Answer<ODColumnDef>::Kind;
  constexpr std::array<std::wstring_view, 4> types = {L"Integer", L"Real", L"Character", L"Point"};
  ODColumnDef column;
  do {
    const auto name =
        ask_new_name(host, L"Enter column name or Enter to finish: ", column_name_fault);
    if (!is_given(name)) return {is_cancelled(name) ? Kind::Cancelled : Kind::Enter};
    column.name = name.value;
    if (table.column(column.name)) host.refuse(sentence(ColumnChange::DuplicateName));
  } while (table.column(column.name));

  const Answer<std::size_t> type =
      ask_option(host, L"Enter type [Integer/Real/Character/Point] <Character>: ", types);
  if (is_cancelled(type)) return {Kind::Cancelled};
  column.type =
      is_given(type) ? static_cast<ODType>(static_cast<int>(type.value) + 1) : ODType::Character;
  auto initial = ask_value(host, L"Enter default value", zero_value(column.type));
  if (!initial) return {Kind::Cancelled};
  column.default_value = std::move(*initial);
  return {Kind::Given, std::move(column)};
}

// The options. False: cancelled.

bool define_table(ConsoleHost& host, ODStore& store) {
  ODTableDef table;
  do {
    const auto name = ask_new_name(host, L"Enter name of new table: ", table_name_fault);
    if (!is_given(name)) return !is_cancelled(name);
    table.name = name.value;
    if (store.table(table.name)) host.refuse(sentence(TableChange::TableExists));
  } while (store.table(table.name));

  for (;;) {
    Answer<ODColumnDef> column = ask_column(host, table);
    if (is_cancelled(column)) return false;
    if (is_given(column)) {
      table.columns.push_back(std::move(column.value));
    } else if (!table.columns.empty()) {
      break;
    } else {
      host.refuse(without_columns);
    }
  }
  tell(host, store.define_table(table),
       format_text(L"Table %s defined with %s.", table.name,
                   counted(table.columns.size(), L"column", L"columns")));
  return true;
}

bool rename_table(ConsoleHost& host, ODStore& store) {
  const auto table = ask_table(host, store, L"Enter table to rename or [?]: ");
  if (!is_given(table)) return !is_cancelled(table);
  const auto name = ask_new_name(host, L"Enter new name: ", table_name_fault);
  if (!is_given(name)) return !is_cancelled(name);
  tell(host, store.rename_table(table.value.name, name.value),
       format_text(L"Table %s renamed to %s.", table.value.name, name.value));
  return true;
}

bool delete_table(ConsoleHost& host, ODStore& store) {
  const auto table = ask_table(host, store, L"Enter table to delete or [?]: ");
  if (!is_given(table)) return !is_cancelled(table);
  const std::wstring& name = table.value.name;
  const auto agreed = ask_yes_or_no(
      host, format_text(L"Delete table %s and its records on every entity? [Yes/No] <No>: ", name));
  if (agreed && *agreed) {
    tell(host, store.delete_table(name), format_text(L"Table %s deleted.", name));
  }
  return agreed.has_value();
}

// Index of an existing column.
Answer<std::size_t> ask_known_column(ConsoleHost& host, const ODTableDef& table,
                                     std::wstring_view prompt) {
  using Kind = Answer<std::size_t>::Kind;
  while (const std::optional<std::wstring> name = ask_word(host, prompt)) {
    if (name->empty()) return {Kind::Enter};
    if (const auto index = table.column(*name)) return {Kind::Given, *index};
    host.refuse(format_text(L"There is no column \"%s\".", *name));
  }
  return {Kind::Cancelled};
}

bool add_column(ConsoleHost& host, ODStore& store, const ODTableDef& table) {
  const Answer<ODColumnDef> column = ask_column(host, table);
  if (!is_given(column)) return !is_cancelled(column);
  tell(host, store.add_column(table.name, column.value, static_cast<int>(table.columns.size())),
       format_text(L"Column %s added.", column.value.name));
  return true;
}

bool delete_column(ConsoleHost& host, ODStore& store, const ODTableDef& table) {
  if (table.columns.size() == 1) {
    host.refuse(without_columns);
    return true;
  }
  const auto index = ask_known_column(host, table, L"Enter column to delete: ");
  if (!is_given(index)) return !is_cancelled(index);
  tell(host, store.remove_column(table.name, static_cast<int>(index.value)),
       format_text(L"Column %s deleted.", table.columns[index.value].name));
  return true;
}

bool rename_column(ConsoleHost& host, ODStore& store, const ODTableDef& table) {
  const auto index = ask_known_column(host, table, L"Enter column to rename: ");
  if (!is_given(index)) return !is_cancelled(index);
  const auto name = ask_new_name(host, L"Enter new name: ", column_name_fault);
  if (!is_given(name)) return !is_cancelled(name);
  const std::wstring& former = table.columns[index.value].name;
  tell(host, store.rename_column(table.name, former, name.value),
       format_text(L"Column %s renamed to %s.", former, name.value));
  return true;
}

bool show_columns(ConsoleHost& host, ODStore& /*store*/, const ODTableDef& table) {
  print_columns(host, table);
  return true;
}

bool modify_table(ConsoleHost& host, ODStore& store) {
  constexpr std::array<std::wstring_view, 4> keywords = {L"?", L"Add", L"Delete", L"Rename"};
  constexpr std::array<bool (*)(ConsoleHost&, ODStore&, const ODTableDef&), 4> options = {
      show_columns, add_column, delete_column, rename_column};
  const auto asked = ask_table(host, store, L"Enter table to modify or [?]: ");
  if (!is_given(asked)) return !is_cancelled(asked);
  while (const std::optional<ODTableDef> table = store.table(asked.value.name)) {
    const Answer<std::size_t> option =
        ask_option(host, L"Enter a column option [?/Add/Delete/Rename]: ", keywords);
    if (!is_given(option)) return !is_cancelled(option);
    if (!options[option.value](host, store, *table)) return false;
  }
  return true;
}

}  // namespace

void define_data(ConsoleHost& host) {
  constexpr std::array<std::wstring_view, 5> keywords = {L"?", L"New", L"Modify", L"Rename",
                                                         L"Delete"};
  constexpr std::array<bool (*)(ConsoleHost&, ODStore&), 5> options = {
      list_tables, define_table, modify_table, rename_table, delete_table};
  if (!holds_object_data(host)) return;
  // What was answered to the end is done, also when Esc ends the conversation later.
  const DocumentLock lock(host);
  StandaloneStore store(host.drawing());
  for (;;) {
    const Answer<std::size_t> option =
        ask_option(host, L"Enter an option [?/New/Modify/Rename/Delete]: ", keywords);
    if (!is_given(option) || !options[option.value](host, store)) return;
  }
}

}  // namespace korvel::host_command
