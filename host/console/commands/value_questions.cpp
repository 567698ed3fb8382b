// Reading of values and table names.
#include "host/console/commands/value_questions.h"

#include <utility>
#include <variant>

#include "frame/format.h"
#include "frame/utf.h"
#include "frame/value_text.h"
#include "host/console/commands/questions.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

// Reads an answer as a value of the type of what stands there; none if it is none.
struct Reading {
  std::wstring_view answer;

  std::optional<ODValue> operator()(std::monostate) const { return std::nullopt; }
  std::optional<ODValue> operator()(std::int32_t) const { return integer_of(trimmed(answer)); }
  std::optional<ODValue> operator()(double) const { return real_of(trimmed(answer)); }
  std::optional<ODValue> operator()(const std::wstring&) const {
    return answer == L"." ? std::wstring() : std::wstring(answer);
  }
  std::optional<ODValue> operator()(Point3) const { return point_of(trimmed(answer)); }
};

std::wstring_view requirement(ODType type) {
  switch (type) {
    case ODType::Integer:
      return L"Requires an integer.";
    case ODType::Real:
      return L"Requires a number.";
    case ODType::Point:
      return L"Requires a point x,y or x,y,z.";
    case ODType::Character:
    case ODType::Unknown:
      break;
  }
  return L"The value cannot be changed.";
}

}  // namespace

std::optional<ODValue> ask_value(ConsoleHost& host, std::wstring_view name,
                                 const ODValue& current) {
  const std::wstring prompt =
      format_text(L"%s <%s>: ", name, on_one_line(value_text(view_of(current))));
  while (const std::optional<std::wstring> answer = host.ask_line(prompt)) {
    if (answer->empty()) return current;
    if (std::optional<ODValue> value = std::visit(Reading{*answer}, current)) return value;
    host.refuse(requirement(type_of(current)));
  }
  return std::nullopt;
}

Answer<ODTableDef> ask_table(ConsoleHost& host, const ODStore& store, std::wstring_view prompt) {
  using Kind = Answer<ODTableDef>::Kind;
  while (const std::optional<std::wstring> name = ask_word(host, prompt)) {
    if (name->empty()) return {Kind::Enter};
    if (*name == L"?") {
      for (const std::wstring& table : store.table_names()) {
        if (is_user_table(table)) host.print(L"  " + table + L"\n");
      }
      continue;
    }
    std::optional<ODTableDef> table = store.table(*name);
    if (table && is_user_table(*name)) return {Kind::Given, std::move(*table)};
    host.refuse(format_text(L"There is no table \"%s\".", *name));
  }
  return {Kind::Cancelled};
}

bool holds_object_data(ConsoleHost& host) {
  const std::optional<std::string> why_not = host.drawing().why_no_object_data();
  if (why_not) host.refuse(from_utf8(*why_not));
  return !why_not;
}

}  // namespace korvel
