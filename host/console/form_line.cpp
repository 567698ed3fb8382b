#include "host/console/form_line.h"

#include "host/console/typed_text.h"

namespace korvel {
namespace {

// Place of the bracket that closes the one at `open`: behind a quoted text the next one, else the
// first that an operator follows, so that a row's text may hold brackets itself.
std::size_t closing_bracket(std::wstring_view line, std::size_t open) {
  std::size_t from = open + 1;
  if (line.substr(from).starts_with(L'"')) {
    while (from < line.size()) {
      from = line.find(L'"', from + 1);
      if (from == std::wstring_view::npos) return from;
      if (!line.substr(from).starts_with(L"\"\"")) return line.find(L']', from);
      ++from;
    }
  }
  for (std::size_t at = line.find(L']', from); at != std::wstring_view::npos;
       at = line.find(L']', at + 1)) {
    const std::wstring_view behind = trimmed(line.substr(at + 1));
    if (behind.starts_with(L'=') || behind.starts_with(L"+=") || behind.starts_with(L"-=")) {
      return at;
    }
  }
  return std::wstring_view::npos;
}

}  // namespace

std::optional<FormAssignment> read_assignment(std::wstring_view line) {
  std::size_t equals = line.find(L'=');
  FormAssignment assignment;
  const std::size_t open = line.find(L'[');
  if (open < equals) {
    const std::size_t close = closing_bracket(line, open);
    if (close != std::wstring_view::npos) {
      equals = line.find(L'=', close);
      assignment.label = trimmed(line.substr(0, open));
      assignment.row = trimmed(line.substr(open + 1, close - open - 1));
    }
  }
  if (equals == std::wstring_view::npos) return std::nullopt;
  std::size_t left_end = equals;
  if (equals > 0 && line[equals - 1] == L'+') assignment.operation = FormOperation::Add;
  if (equals > 0 && line[equals - 1] == L'-') assignment.operation = FormOperation::Remove;
  if (assignment.operation != FormOperation::Set) --left_end;
  assignment.left = trimmed(line.substr(0, left_end));
  if (assignment.left.ends_with(L':')) assignment.left.remove_suffix(1);
  if (!assignment.row) assignment.label = assignment.left;
  assignment.value = trimmed(line.substr(equals + 1));
  return assignment;
}

std::wstring field_text(std::wstring_view value) {
  return unquoted(value).value_or(std::wstring(value));
}

}  // namespace korvel
