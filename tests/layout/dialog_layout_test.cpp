// Where the controls of a dialog stand, at several sizes of the window.
#include "host/windows/dialog_layout.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

namespace korvel::windows {

// For the messages of failing tests.
void PrintTo(const Rect& rect, std::ostream* out) {
  *out << rect.left << ',' << rect.top << ' ' << rect.width << 'x' << rect.height;
}

namespace {

constexpr LayoutMetrics metrics = {
    .margin = 10, .gap = 5, .line_height = 20, .label_height = 15, .button_height = 25};

LayoutItem line(int label_width, int width, bool stretches = true) {
  return {.shape = Shape::Line, .label_width = label_width, .width = width, .stretches = stretches};
}
LayoutItem check(int width) { return {.shape = Shape::Check, .width = width}; }
LayoutItem block(int width, int weight = 1) {
  return {.shape = Shape::Block,
          .label_width = 40,
          .width = width,
          .least_height = 50,
          .wanted_height = 100,
          .weight = weight};
}
LayoutButton button(int width, ButtonPlace place = ButtonPlace::Corner) { return {width, place}; }

TEST(DialogLayout, PutsLabelsAndBodiesOfLinesBelowEachOther) {
  const LayoutRequest request{metrics, {line(30, 100), line(60, 50, false), check(70)}, {}};
  const Layout layout = lay_out(request, {300, 100});
  EXPECT_EQ(layout.items[0].label, (Rect{10, 10, 60, 20}));
  EXPECT_EQ(layout.items[0].body, (Rect{75, 10, 215, 20})) << "stretches";
  EXPECT_EQ(layout.items[1].label, (Rect{10, 35, 60, 20}));
  EXPECT_EQ(layout.items[1].body, (Rect{75, 35, 50, 20})) << "does not";
  EXPECT_EQ(layout.items[2].body, (Rect{220, 35, 70, 20})) << "behind the line";

  const Layout narrow = lay_out(request, {170, 100});
  EXPECT_EQ(narrow.items[2].body, (Rect{10, 60, 70, 20})) << "no room behind the line";
}

TEST(DialogLayout, PutsBlocksBesideEachOtherWhereTheyFit) {
  const LayoutRequest request{metrics, {block(100), block(200)}, {button(50), button(50)}};
  const Layout wide = lay_out(request, {355, 200});
  EXPECT_EQ(wide.items[0].label, (Rect{10, 10, 110, 15}));
  EXPECT_EQ(wide.items[0].body, (Rect{10, 25, 110, 135}));
  EXPECT_EQ(wide.items[1].body, (Rect{125, 25, 220, 135})) << "the spare width by what they want";
  EXPECT_EQ(wide.buttons[0], (Rect{240, 165, 50, 25}));
  EXPECT_EQ(wide.buttons[1], (Rect{295, 165, 50, 25}));

  const Layout narrow = lay_out(request, {300, 220});
  EXPECT_EQ(narrow.items[0].body, (Rect{10, 25, 280, 67}));
  EXPECT_EQ(narrow.items[1].body, (Rect{10, 112, 280, 68}));
}

TEST(DialogLayout, SharesTheHeightThatIsLeftByWeight) {
  const LayoutRequest request{metrics, {block(100), line(10, 50), block(100, 4)}, {}};
  const Layout layout = lay_out(request, {200, 280});
  // Two labels, a line, two gaps and the margins take 80, the blocks 50 each at least; 100 is left.
  EXPECT_EQ(layout.items[0].body, (Rect{10, 25, 180, 70}));
  EXPECT_EQ(layout.items[2].body, (Rect{10, 140, 180, 130}));
  EXPECT_EQ(layout.height, 280);

  const Layout low = lay_out(request, {200, 100});
  EXPECT_EQ(low.height, 180) << "no block is lower than its least height";
  EXPECT_EQ(low.items[2].body.bottom(), 170);
}

TEST(DialogLayout, GivesNoRoomToALabelThatIsNone) {
  LayoutRequest request{metrics, {block(100)}, {}};
  request.items[0].label_width = 0;
  EXPECT_EQ(lay_out(request, {200, 120}).items[0].body, (Rect{10, 10, 180, 100}));
  EXPECT_EQ(preferred_size(request), (Size{120, 120}));
}

TEST(DialogLayout, BreaksButtonsWhereTheWindowIsNarrow) {
  const LayoutRequest request{metrics,
                              {line(20, 50)},
                              {button(60, ButtonPlace::Top), button(60, ButtonPlace::Top),
                               button(60, ButtonPlace::Bottom), button(60), button(60)}};
  const Layout wide = lay_out(request, {220, 120});
  EXPECT_EQ(wide.buttons[1], (Rect{75, 10, 60, 25}));
  EXPECT_EQ(wide.items[0].body.top, 40);
  EXPECT_EQ(wide.buttons[2], (Rect{10, 85, 60, 25}));
  EXPECT_EQ(wide.buttons[3], (Rect{85, 85, 60, 25}));

  const Layout narrow = lay_out(request, {140, 0});
  EXPECT_EQ(narrow.buttons[1], (Rect{10, 40, 60, 25}));
  EXPECT_EQ(narrow.buttons[2], (Rect{10, 95, 60, 25}));
  EXPECT_EQ(narrow.buttons[3], (Rect{70, 125, 60, 25}));
  EXPECT_EQ(narrow.buttons[4], (Rect{70, 155, 60, 25}));
  EXPECT_EQ(narrow.height, 190);
}

// At the size that a dialog prefers nothing is smaller than it wants to be, and at any size nothing
// covers anything else or leaves the window.
TEST(DialogLayout, KeepsThingsApart) {
  const LayoutRequest request{
      metrics,
      {line(60, 200), check(80), block(150), line(40, 150), check(70), block(120), block(160, 4)},
      {button(60, ButtonPlace::Top), button(70, ButtonPlace::Top), button(90, ButtonPlace::Bottom),
       button(50), button(50)}};
  const Size preferred = preferred_size(request);
  for (const Size inside :
       {preferred, Size{preferred.width, 100}, Size{200, 600}, Size{900, 400}}) {
    const Layout layout = lay_out(request, inside);
    std::vector<Rect> rects = layout.buttons;
    for (const ItemPlace& place : layout.items) {
      rects.push_back(place.body);
      if (place.label != Rect{}) rects.push_back(place.label);
    }
    for (std::size_t i = 0; i < rects.size(); ++i) {
      const Rect& a = rects[i];
      EXPECT_TRUE(a.left >= 10 && a.right() <= inside.width - 10 && a.top >= 10 &&
                  a.bottom() <= layout.height - 10)
          << testing::PrintToString(a) << " in " << inside.width << 'x' << layout.height;
      for (std::size_t j = 0; j < i; ++j) {
        const Rect& b = rects[j];
        EXPECT_TRUE(a.right() <= b.left || b.right() <= a.left || a.bottom() <= b.top ||
                    b.bottom() <= a.top)
            << testing::PrintToString(a) << " and " << testing::PrintToString(b);
      }
    }
  }
  const Layout layout = lay_out(request, preferred);
  EXPECT_EQ(layout.height, preferred.height);
  for (std::size_t i = 0; i < request.items.size(); ++i) {
    EXPECT_GE(layout.items[i].body.width, request.items[i].width) << i;
    EXPECT_GE(layout.items[i].body.height, request.items[i].least_height) << i;
  }
}

}  // namespace
}  // namespace korvel::windows
