// Dockable containers of palettes, drawn by the host.
#pragma once

#include <memory>
#include <string_view>

namespace korvel {

struct Session;

// How a palette set is known to the host.
struct PaletteSetTraits {
  std::wstring_view name;     // shown, and the name of the tool as which the set is registered
  std::wstring_view tool_id;  // a GUID in braces, under which the host keeps the set's place
  int min_width;              // pixels
  int min_height;
};

// Destroying it takes it off the screen.
class PaletteSet {
 public:
  PaletteSet() = default;
  PaletteSet(const PaletteSet&) = delete;
  PaletteSet& operator=(const PaletteSet&) = delete;
  virtual ~PaletteSet() = default;

  // Shows the set, or leaves it where it is when it is shown already. A host without room for
  // something that stays open (a console) holds the conversation here instead.
  virtual void show(Session& session) = 0;
};

// Empty until the first run of KORVEL_CTL and of KORVEL_TABLE; nobody but the module deletes them.
struct Palettes {
  std::unique_ptr<PaletteSet> commands;
  std::unique_ptr<PaletteSet> table_editor;
};

}  // namespace korvel
