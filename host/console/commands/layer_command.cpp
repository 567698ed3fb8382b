// LAYER, the command-line version.
#include <algorithm>
#include <array>
#include <utility>

#include "frame/case_mapping.h"
#include "frame/command_frame.h"
#include "frame/format.h"
#include "host/console/commands/drawing_defaults.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/typed_text.h"

namespace korvel::host_command {
namespace {

// The whole text against a pattern with * and ? as wildcards, both in lower case.
bool matches(std::wstring_view text, std::wstring_view pattern) {
  std::size_t at = 0;
  std::size_t in_pattern = 0;
  std::size_t star = std::wstring_view::npos;  // last one met, and where its stretch ends
  std::size_t stretch_end = 0;
  while (at < text.size()) {
    if (in_pattern < pattern.size() && pattern[in_pattern] == L'*') {
      star = in_pattern++;
      stretch_end = at;
    } else if (in_pattern < pattern.size() &&
               (pattern[in_pattern] == L'?' || pattern[in_pattern] == text[at])) {
      ++in_pattern;
      ++at;
    } else if (star != std::wstring_view::npos) {
      in_pattern = star + 1;
      at = ++stretch_end;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'*', in_pattern) == std::wstring_view::npos;
}

std::vector<std::wstring> names_in(std::wstring_view list) {
  std::vector<std::wstring> names;
  for (;;) {
    const std::size_t comma = list.find(L',');
    if (const auto name = trimmed(list.substr(0, comma)); !name.empty()) names.emplace_back(name);
    if (comma == std::wstring_view::npos) return names;
    list.remove_prefix(comma + 1);
  }
}

// The layers that a list of names and patterns means, in the drawing's order. A name without
// wildcards that means none is refused.
std::vector<Layer> layers_named(ConsoleHost& host, std::wstring_view list) {
  const std::vector<std::wstring> names = names_in(list);
  std::vector<std::wstring> patterns;
  patterns.reserve(names.size());
  for (const std::wstring& name : names)
    patterns.push_back(lower(name));
  std::vector<Layer> found;
  std::vector<bool> used(patterns.size());
  for (const Layer& layer : host.drawing().layers()) {
    const std::wstring name = lower(layer.name);
    bool wanted = false;
    for (std::size_t i = 0; i < patterns.size(); ++i) {
      if (!matches(name, patterns[i])) continue;
      wanted = true;
      used[i] = true;
    }
    if (wanted) found.push_back(layer);
  }
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    if (!used[i]) host.refuse(format_text(L"Cannot find layer \"%s\".", names[i]));
  }
  return found;
}

std::optional<EntityId> make_layer(ConsoleHost& host, std::wstring_view name) {
  const std::optional<EntityId> layer = host.drawing().add_layer(name);
  if (!layer) host.refuse(format_text(L"Cannot make a layer \"%s\": invalid name.", name));
  return layer;
}

void set_current(ConsoleHost& host, EntityId id) {
  Drawing& drawing = host.drawing();
  const Layer& layer = drawing.layer(id);
  if (layer.frozen) {
    host.refuse(format_text(L"Cannot make layer \"%s\" current: it is frozen.", layer.name));
  } else if (!drawing.set_current_layer(id)) {
    host.refuse(format_text(L"Cannot make layer \"%s\" current.", layer.name));
  }
}

// The options. False: cancelled.

bool list_layers(ConsoleHost& host) {
  constexpr std::size_t name_width = 32;
  const auto asked = ask_word(host, L"Enter layer name(s) to list <*>: ");
  if (!asked) return false;
  const EntityId current = host.drawing().current_layer();
  for (const Layer& layer : layers_named(host, asked->empty() ? L"*" : *asked)) {
    std::wstring line = format_text(L"\"%s\"", on_one_line(layer.name));
    line.resize(std::max(line.size() + 1, name_width), L' ');
    line += layer.off ? L"Off" : L"On";
    if (layer.frozen) line += L", frozen";
    if (layer.locked) line += L", locked";
    if (layer.id == current) line += L", current";
    host.print(line + L"\n");
  }
  return true;
}

bool make_current(ConsoleHost& host) {
  const auto name =
      ask_word(host, format_text(L"Enter name for new layer (becomes the current layer) <%s>: ",
                                 current_layer_name(host.drawing())));
  if (!name || name->empty()) return name.has_value();
  if (const std::optional<EntityId> layer = make_layer(host, *name)) set_current(host, *layer);
  return true;
}

bool set(ConsoleHost& host) {
  const auto name = ask_word(host, format_text(L"Enter layer name to make current <%s>: ",
                                               current_layer_name(host.drawing())));
  if (!name || name->empty()) return name.has_value();
  if (const std::optional<EntityId> layer = host.drawing().layer_named(*name)) {
    set_current(host, *layer);
  } else {
    host.refuse(format_text(L"Cannot find layer \"%s\".", *name));
  }
  return true;
}

bool make_several(ConsoleHost& host) {
  const auto names = ask_word(host, L"Enter name list for new layer(s): ");
  if (!names) return false;
  for (const std::wstring& name : names_in(*names))
    (void)make_layer(host, name);
  return true;
}

struct StateChange {
  std::wstring_view prompt;
  bool Layer::*state;
  bool value;
};

bool change_state(ConsoleHost& host, const StateChange& change) {
  const std::optional<std::wstring> names = ask_word(host, change.prompt);
  if (!names) return false;
  const EntityId current = host.drawing().current_layer();
  for (Layer& layer : layers_named(host, *names)) {
    if (layer.id == current && change.state == &Layer::frozen && change.value) {
      host.refuse(format_text(L"Cannot freeze layer \"%s\". It is the CURRENT layer.", layer.name));
      continue;
    }
    layer.*change.state = change.value;
    if (!host.drawing().change_layer(layer)) {
      host.refuse(
          format_text(L"Layer \"%s\" has no record in the drawing's layer table.", layer.name));
    }
  }
  return true;
}

}  // namespace

void layer(ConsoleHost& host) {
  constexpr std::array<std::wstring_view, 10> keywords = {
      L"?", L"Make", L"Set", L"New", L"ON", L"OFF", L"Freeze", L"Thaw", L"LOck", L"Unlock"};
  constexpr std::size_t first_state = 4;
  constexpr std::array<StateChange, 6> states = {{
      {L"Enter name list of layer(s) to turn on: ", &Layer::off, false},
      {L"Enter name list of layer(s) to turn off: ", &Layer::off, true},
      {L"Enter name list of layer(s) to freeze: ", &Layer::frozen, true},
      {L"Enter name list of layer(s) to thaw: ", &Layer::frozen, false},
      {L"Enter name list of layer(s) to lock: ", &Layer::locked, true},
      {L"Enter name list of layer(s) to unlock: ", &Layer::locked, false},
  }};
  constexpr std::array<bool (*)(ConsoleHost&), first_state> others = {list_layers, make_current,
                                                                      set, make_several};
  // Every option is done when it is answered; all of them are one step of UNDO.
  const DocumentLock lock(host);
  host.print(format_text(L"Current layer: \"%s\"\n", current_layer_name(host.drawing())));
  for (;;) {
    const Answer<std::size_t> option = ask_option(
        host, L"Enter an option [?/Make/Set/New/ON/OFF/Freeze/Thaw/LOck/Unlock]: ", keywords);
    if (!is_given(option)) return;
    const bool done = option.value < first_state
                          ? others[option.value](host)
                          : change_state(host, states[option.value - first_state]);
    if (!done) return;
  }
}

}  // namespace korvel::host_command
