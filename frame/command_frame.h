// How most commands begin and end: the entities they work on and the result they leave selected.
#pragma once

#include <optional>
#include <string_view>

#include "frame/drawing_host.h"
#include "frame/file_bytes.h"
#include "frame/message.h"
#include "frame/walk.h"

namespace korvel {

// The selection that was active when the command was typed; empty if there was none.
[[nodiscard]] EntityList pick_first_entities(DrawingHost& host);

// The selection the user makes at the host's ordinary prompt; none: Esc.
[[nodiscard]] std::optional<EntityList> asked_entities(DrawingHost& host);

// Every entity of "*Model_Space" that opens for reading, in the host's order. Throws Interrupted,
// as do the filter and the gathering below.
[[nodiscard]] EntityList model_space_entities(DrawingHost& host);

// Drops every entity that does not open for reading or whose layer is frozen, hidden, locked or
// off. Deliberately not stable: the last entity takes the place of a dropped one, so the order
// changes whenever something was dropped.
void usable_filter(DrawingHost& host, EntityList& entities);

// Drops all but the first occurrence of each entity and keeps the order.
void drop_repeated(EntityList& entities);

struct Gathered {
  EntityList entities;
  bool cancelled = false;
};

// The standard gathering: the pick-first set, else what the user selects, else (Enter at the
// prompt) all of model space, and of that what is usable. After Esc the list is empty and nothing
// else was looked at.
[[nodiscard]] Gathered gather(DrawingHost& host);

// The selection alone: the pick-first set, else what the user selects. Neither the whole drawing
// nor the usable filter comes into it, so the order of selection is kept. Empty after Esc, too.
[[nodiscard]] EntityList selected_entities(DrawingHost& host);

// Makes the entities the pick-first set in place of the one there was.
void leave_selected(DrawingHost& host, const EntityList& entities);

// How a search ends: leaves what it found selected and prints how many they are, none included.
void leave_found(DrawingHost& host, const EntityList& found);

// The same for a search that ends so after Esc, too: an interrupted one has found nothing.
template <class Search>
void leave_what_finds(DrawingHost& host, const Search& search) {
  EntityList found;
  try {
    found = search();
  } catch (const Interrupted&) {
  }
  leave_found(host, found);
}

// Prints the catalogue's message with its arguments.
template <Message message, class... Args>
void report(DrawingHost& host, const Args&... args) {
  if constexpr (is_error(message)) {
    host.print_error(format<message>(args...));
  } else {
    host.print(format<message>(args...));
  }
}

// Says why a text file of the user's was not taken: that it cannot be read, or what is wrong in it.
// The host learns of it, too.
void report_unread(DrawingHost& host, const TextFileError& error,
                   const std::filesystem::path& path);

// Prints "Error: " and the sentence about the file. The host learns of it, too.
void report_unwritten(DrawingHost& host, FailedFile file);

// Brackets changes of entities and object data.
class DocumentLock {
 public:
  explicit DocumentLock(DrawingHost& host) : host_(host) { host_.lock(); }
  ~DocumentLock() { host_.unlock(); }
  DocumentLock(const DocumentLock&) = delete;
  DocumentLock& operator=(const DocumentLock&) = delete;

 private:
  DrawingHost& host_;
};

}  // namespace korvel
