// POINT, CIRCLE, TEXT.
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "frame/command_frame.h"
#include "frame/format.h"
#include "frame/value_text.h"
#include "geometry/vector.h"
#include "host/console/commands/drawing_defaults.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/typed_text.h"
#include "host/standalone/dxf/number_text.h"

namespace korvel::host_command {
namespace {

constexpr std::wstring_view not_positive = L"Value must be positive and nonzero.";

// A number, or the distance of a point from `from`.
std::optional<double> distance_of(std::wstring_view answer, Point3 from) {
  if (const std::optional<double> number = real_of(answer)) return number;
  const std::optional<Point3> point = point_of(answer, from);
  if (!point) return std::nullopt;
  const double distance = length(*point - from);
  return std::isfinite(distance) ? std::optional(distance) : std::nullopt;
}

// A distance above zero; Enter is refused.
std::optional<double> ask_distance(ConsoleHost& host, std::wstring_view prompt, Point3 from) {
  while (const std::optional<std::wstring> answer = ask_word(host, prompt)) {
    const std::optional<double> distance = distance_of(*answer, from);
    if (distance && *distance > 0) return distance;
    host.refuse(distance ? not_positive : L"Requires numeric distance or second point.");
  }
  return std::nullopt;
}

// A number, or the default on Enter.
std::optional<double> ask_number(ConsoleHost& host, std::wstring_view what, double usual,
                                 int decimals) {
  const std::wstring prompt = format_text(L"%s <%s>: ", what, fixed_text(usual, decimals));
  while (const std::optional<std::wstring> answer = ask_word(host, prompt)) {
    if (answer->empty()) return usual;
    if (const auto number = real_of(*answer)) return number;
    host.refuse(L"Requires a number.");
  }
  return std::nullopt;
}

double usual_text_height(const Drawing& drawing) {
  constexpr double without_variable = 0.2;
  double height = 0;
  const std::optional<std::string> text = drawing.variable("TEXTSIZE");
  return text && dxf::read_real(*text, height) && height > 0 ? height : without_variable;
}

std::optional<double> ask_text_height(ConsoleHost& host) {
  const double usual = usual_text_height(host.drawing());
  for (;;) {
    const std::optional<double> height = ask_number(host, L"Specify height", usual, 4);
    if (!height || *height > 0) return height;
    host.refuse(not_positive);
  }
}

// None: cancelled.
std::optional<double> ask_radius(ConsoleHost& host, Point3 center) {
  constexpr std::array<std::wstring_view, 1> diameter = {L"Diameter"};
  while (const auto answer = ask_word(host, L"Specify radius of circle or [Diameter]: ")) {
    if (keyword_of(*answer, diameter)) {
      const auto asked = ask_distance(host, L"Specify diameter of circle: ", center);
      if (!asked) return std::nullopt;
      return *asked / 2;
    }
    const std::optional<double> radius = distance_of(*answer, center);
    if (radius && *radius > 0) return radius;
    host.refuse(radius ? not_positive : L"Requires numeric radius, point on circumference, or D.");
  }
  return std::nullopt;
}

}  // namespace

void point(ConsoleHost& host) {
  const std::optional<Point3> position = ask_required_point(host, L"Specify a point: ");
  if (!position) return;
  const DocumentLock lock(host);
  draw(host, PointShape{*position});
}

void circle(ConsoleHost& host) {
  const auto center = ask_required_point(host, L"Specify center point for circle: ");
  if (!center) return;
  const std::optional<double> radius = ask_radius(host, *center);
  if (!radius) return;
  const DocumentLock lock(host);
  draw(host, ArcShape{*center, {0, 0, 1}, {1, 0, 0}, *radius, 2 * std::numbers::pi});
}

void text(ConsoleHost& host) {
  const auto start = ask_required_point(host, L"Specify start point of text: ");
  if (!start) return;
  const std::optional<double> height = ask_text_height(host);
  if (!height) return;
  const auto rotation = ask_number(host, L"Specify rotation angle of text", 0, 0);
  if (!rotation) return;
  std::optional<std::wstring> line = host.ask_line(L"Enter text: ");
  if (!line || line->empty()) return;
  TextShape shape;
  shape.position = *start;
  shape.text = std::move(*line);
  shape.height = *height;
  shape.rotation = *rotation * std::numbers::pi / 180;
  const DocumentLock lock(host);
  draw(host, std::move(shape));
}

}  // namespace korvel::host_command
