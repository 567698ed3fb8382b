// Corners of the box that a text fills.
#include "geometry/text_box.h"

#include <algorithm>
#include <cmath>

#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr double character_width = 0.7;

// Second halves of surrogate pairs, where wchar_t has 16 bits, begin no character.
bool begins_character(wchar_t unit) { return unit < 0xDC00 || unit > 0xDFFF; }

std::array<Point3, 4> box_at(Point3 corner, Vector3 width, Vector3 height) {
  return {corner, corner + width, corner + width + height, corner + height};
}

}  // namespace

std::array<Point3, 4> text_box(const TextShape& text) {
  const PlaneFrame frame = plane_frame(text.normal);
  const Vector3 right = std::cos(text.rotation) * frame.x + std::sin(text.rotation) * frame.y;
  const Vector3 up = cross(frame.normal, right);
  const auto characters = static_cast<double>(std::ranges::count_if(text.text, begins_character));
  const double width = characters * character_width * text.width_factor * text.height;
  return box_at(text.position, width * right, text.height * up);
}

std::array<Point3, 4> text_box(const MtextShape& text) {
  const PlaneFrame frame = plane_frame(text.normal, text.direction);
  const int place = text.attachment >= 1 && text.attachment <= 9 ? text.attachment - 1 : 0;
  const int column = place % 3;
  const int rows_below = 2 - place / 3;
  const Vector3 width = text.width * frame.x;
  const Vector3 height = text.height * frame.y;
  return box_at(text.position + -0.5 * column * width + -0.5 * rows_below * height, width, height);
}

}  // namespace korvel
