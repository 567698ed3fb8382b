// ZOOM. A console has no view: it prints what would be in it.
#include <array>
#include <optional>

#include "frame/format.h"
#include "frame/value_text.h"
#include "geometry/extents.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"

namespace korvel::host_command {

void zoom(ConsoleHost& host) {
  static constexpr std::array<std::wstring_view, 2> options = {L"Extents", L"Object"};
  const Answer<std::size_t> option = ask_option(host, L"[Extents/Object] <Extents>: ", options);
  if (is_cancelled(option)) return;
  const bool whole = !is_given(option) || option.value == 0;
  const std::optional<EntityList> entities =
      whole ? std::optional(host.model_space()) : selected_entities(host);
  if (!entities) return;
  std::optional<Extents> view;
  for (const EntityId entity : *entities) {
    if (cancelled(host)) return;
    const std::optional<Extents> extents = host.extents_of(entity);
    if (extents) view = view ? united(*view, *extents) : *extents;
  }
  if (!view) return host.refuse(L"There is nothing to look at.");
  host.print(format_text(L"View: %s to %s\n", value_text(view->min), value_text(view->max)));
}

}  // namespace korvel::host_command
