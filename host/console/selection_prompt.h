// The conversation in which entities are selected, line by line until a blank one.
//
//   ALL                          all of model space but what is on frozen or locked layers
//   LAST, PREVIOUS               the newest entity; the selection before this one
//   WINDOW 0,0 10,10, CROSSING   wholly within a rectangle; touching it
//   WPOLYGON, CPOLYGON, FENCE    the same with points until a blank line; crossing a path
//   x,y                          the entity there
//   HANDLES 2F 30, LAYER name, TYPE name
//   REMOVE, ADD, UNDO, ?         what is named next is taken away, or added again; takes back
//
// The short forms are those of CAD programs; points may follow on the same line.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/console/console.h"
#include "host/console/selection_set.h"

namespace korvel {

class SelectionPrompt {
 public:
  explicit SelectionPrompt(ConsoleHost& host) : host_(host) {}

  // None: Esc. What is selected becomes the previous selection.
  [[nodiscard]] std::optional<EntityList> ask(std::wstring_view prompt);

 private:
  enum class Way {
    All,
    Last,
    Previous,
    Window,
    Crossing,
    Fence,
    WindowPolygon,
    CrossingPolygon,
    Handles,
    Layer,
    Type,
    Remove,
    Add,
    Undo,
    Help
  };
  struct Word;

  // What a line finds. Not understood: the line was refused. Cancelled: Esc at a prompt within.
  enum class Outcome { Found, NothingToCount, Cancelled };
  struct Found {
    Outcome outcome = Outcome::NothingToCount;
    EntityList entities;
  };

  static std::optional<Way> way_of(std::wstring_view word);
  Found find_or_cancel(std::wstring_view line);
  Found find(std::wstring_view line);
  Found find(Way way, std::wstring_view rest);
  Found find_handles(std::wstring_view rest);
  Found find_on_layer(std::wstring_view name);
  Found find_of_type(std::wstring_view name);
  Found find_by_shape(Way way, std::wstring_view rest);
  Found invalid();
  Found refused(std::wstring_view sentence);
  Found take_back();

  // False: Esc.
  bool ask_points(Way way, std::vector<Point3>& points);
  // The entities of model space that pass. Throws Interrupted, as the finding does.
  template <class Test>
  [[nodiscard]] EntityList model_space(const Test& test);
  [[nodiscard]] EntityList usable_for_all();
  [[nodiscard]] EntityList previous() const;
  void count(const EntityList& found);

  ConsoleHost& host_;
  SelectionSet set_;
  bool removing_ = false;
  int answers_ = 0;
};

}  // namespace korvel
