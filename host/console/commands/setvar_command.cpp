// SETVAR.
#include <algorithm>
#include <array>
#include <limits>
#include <variant>

#include "frame/case_mapping.h"
#include "frame/format.h"
#include "frame/utf.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/typed_text.h"
#include "host/standalone/dxf/number_text.h"

namespace korvel::host_command {
namespace {

struct IntegerRange {
  std::int32_t least;
  std::int32_t most;
};
struct AnyReal {};
struct PositiveReal {};
struct LayerName {};

using Rule = std::variant<IntegerRange, AnyReal, PositiveReal, LayerName>;

struct Variable {
  std::wstring_view name;
  Rule rule;
};

// What a person may change. The others say how the file is made or name its parts; a wrong value
// would spoil it.
constexpr std::array<Variable, 18> variables = {{
    {L"ATTMODE", IntegerRange{0, 2}},
    {L"AUNITS", IntegerRange{0, 4}},
    {L"AUPREC", IntegerRange{0, 8}},
    {L"CECOLOR", IntegerRange{0, 256}},
    {L"CELTSCALE", PositiveReal{}},
    {L"CLAYER", LayerName{}},
    {L"FILLMODE", IntegerRange{0, 1}},
    {L"INSUNITS", IntegerRange{0, 24}},
    {L"LTSCALE", PositiveReal{}},
    {L"LUNITS", IntegerRange{1, 5}},
    {L"LUPREC", IntegerRange{0, 8}},
    {L"MEASUREMENT", IntegerRange{0, 1}},
    {L"MIRRTEXT", IntegerRange{0, 1}},
    {L"ORTHOMODE", IntegerRange{0, 1}},
    {L"PDMODE", IntegerRange{0, 100}},
    {L"PDSIZE", AnyReal{}},
    {L"QTEXTMODE", IntegerRange{0, 1}},
    {L"TEXTSIZE", PositiveReal{}},
}};

std::optional<std::wstring> value_of(const Drawing& drawing, std::wstring_view name) {
  const std::optional<std::string> value = drawing.variable(to_utf8(name));
  if (!value) return std::nullopt;
  return from_utf8(*value);
}

void list_variables(ConsoleHost& host) {
  for (const Variable& variable : variables) {
    const std::optional<std::wstring> value = value_of(host.drawing(), variable.name);
    if (value) host.print(format_text(L"%s = %s\n", variable.name, *value));
  }
}

// What the variable asks for instead; none if it takes the text.
struct Objection {
  const Drawing& drawing;
  std::wstring_view text;

  std::optional<std::wstring> operator()(IntegerRange range) const {
    const std::optional<std::int32_t> number = integer_of(text);
    if (number && *number >= range.least && *number <= range.most) return std::nullopt;
    return format_text(L"Requires an integer between %i and %i.", range.least, range.most);
  }
  std::optional<std::wstring> operator()(AnyReal) const {
    if (real_of(text)) return std::nullopt;
    return L"Requires a number.";
  }
  std::optional<std::wstring> operator()(PositiveReal) const {
    const std::optional<double> number = real_of(text);
    if (number && *number > 0) return std::nullopt;
    return L"Value must be positive and nonzero.";
  }
  std::optional<std::wstring> operator()(LayerName) const {
    const std::optional<EntityId> layer = drawing.layer_named(text);
    if (!layer) return format_text(L"Cannot find layer \"%s\".", text);
    const Layer& state = drawing.layer(*layer);
    if (!state.frozen) return std::nullopt;
    return format_text(L"Layer \"%s\" is frozen.", state.name);
  }
};

bool change(ConsoleHost& host, const Variable& variable, std::wstring_view text) {
  Drawing& drawing = host.drawing();
  if (std::holds_alternative<LayerName>(variable.rule)) {
    return drawing.set_current_layer(*drawing.layer_named(text));
  }
  return drawing.set_variable(to_utf8(variable.name), to_utf8(text));
}

void ask_value(ConsoleHost& host, const Variable& variable, std::wstring_view value) {
  const std::wstring prompt = format_text(L"Enter new value for %s <%s>: ", variable.name, value);
  for (;;) {
    const std::optional<std::wstring> answer = ask_word(host, prompt);
    if (!answer || answer->empty()) return;
    const auto objection = std::visit(Objection{host.drawing(), *answer}, variable.rule);
    if (!objection && change(host, variable, *answer)) return;
    host.refuse(objection.value_or(format_text(L"%s refuses this value.", variable.name)));
  }
}

}  // namespace

void set_variable(ConsoleHost& host) {
  for (;;) {
    const auto name = ask_word(host, L"Enter variable name or [?]: ");
    if (!name || name->empty()) return;
    if (*name == L"?") {
      list_variables(host);
      return;
    }
    const auto value = value_of(host.drawing(), *name);
    const auto* const known = std::ranges::find_if(variables, [&name](const Variable& variable) {
      return equal_ignoring_case(variable.name, *name);
    });
    if (value && known != variables.end()) {
      ask_value(host, *known, *value);
      return;
    }
    if (value) {
      host.print(format_text(L"%s = %s (read only)\n", *name, *value));
      return;
    }
    host.refuse(L"Unknown variable name. Type SETVAR ? for a list of variables.");
  }
}

}  // namespace korvel::host_command
