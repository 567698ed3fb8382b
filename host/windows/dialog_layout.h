// Where the controls of a dialog stand in a window: arithmetic alone, on pixels.
#pragma once

#include <vector>

namespace korvel::windows {

// Pixels of a window's inside.
struct Size {
  int width = 0;
  int height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  [[nodiscard]] int right() const { return left + width; }
  [[nodiscard]] int bottom() const { return top + height; }
  friend bool operator==(const Rect&, const Rect&) = default;
};

enum class Shape {
  Line,   // of one line, with its label at the left
  Check,  // of one line without a label; stands behind a line if there is room
  Block   // of several lines, its label above if any; blocks stand beside each other if they fit
};

struct LayoutItem {
  Shape shape = Shape::Line;
  int label_width = 0;
  int width = 0;           // wanted, without the label
  int least_height = 0;    // of a block
  int wanted_height = 0;   // of a block
  int weight = 1;          // of a block: its part of the height that is left
  bool stretches = false;  // a line: takes all of the width that there is
};

enum class ButtonPlace {
  Top,     // opens a menu
  Bottom,  // at the left: leaves the dialog open
  Corner   // at the right: closes it
};

struct LayoutButton {
  int width = 0;
  ButtonPlace place = ButtonPlace::Corner;
};

struct LayoutMetrics {
  int margin = 0;
  int gap = 0;  // between things that stand beside or below each other
  int line_height = 0;
  int label_height = 0;  // above a block
  int button_height = 0;
};

struct LayoutRequest {
  LayoutMetrics metrics;
  std::vector<LayoutItem> items;
  std::vector<LayoutButton> buttons;
};

struct ItemPlace {
  Rect label;  // empty for a check
  Rect body;
};

struct Layout {
  std::vector<ItemPlace> items;  // in the order of the request
  std::vector<Rect> buttons;     // in the order of the request
  int height = 0;                // of all; more than the window's if its inside is too low
};

[[nodiscard]] Layout lay_out(const LayoutRequest& request, Size inside);

// The inside at which every item is as large as it wants to be.
[[nodiscard]] Size preferred_size(const LayoutRequest& request);

}  // namespace korvel::windows
