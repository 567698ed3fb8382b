// How a line of a form reads: a label, an operator, a value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvel {

enum class FormOperation { Set, Add, Remove };

struct FormAssignment {
  std::wstring_view left;                // all that stands before the operator, without a colon
  std::wstring_view label;               // of that, what stands before a bracket
  std::optional<std::wstring_view> row;  // what the bracket holds
  FormOperation operation = FormOperation::Set;
  std::wstring_view value;
};

// None: the line has no operator. The views refer to the line.
[[nodiscard]] std::optional<FormAssignment> read_assignment(std::wstring_view line);

// A field's text is taken as it stands unless all of it is in quotes.
[[nodiscard]] std::wstring field_text(std::wstring_view value);

}  // namespace korvel
