// BREAK.
#include <array>
#include <utility>

#include "frame/command_frame.h"
#include "geometry/curve_split.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/pick.h"

namespace korvel::host_command {
namespace {

// A pick-first set of one entity is used up; a larger one is no answer to this command.
std::optional<PickedEntity> entity_to_break(ConsoleHost& host) {
  const EntityList chosen = host.pick_first();
  host.set_pick_first({});
  if (chosen.size() == 1) return PickedEntity{chosen.front(), std::nullopt};
  return ask_picked_entity(host, L"Select object: ");
}

struct BreakPoints {
  Point3 first;
  Point3 second;
};

std::optional<Point3> ask_second(ConsoleHost& host, std::wstring_view prompt, Point3 first) {
  const Answer<PointOrOption> answer = ask_point_or_option(host, {prompt, first});
  if (!is_given(answer)) return std::nullopt;
  return std::get<Point3>(answer.value);
}

// None: cancelled. `picked` is where the entity was picked, which serves as the first point unless
// the user gives another.
std::optional<BreakPoints> ask_points(ConsoleHost& host, std::optional<Point3> picked) {
  constexpr std::wstring_view first_prompt = L"Specify first break point: ";
  constexpr std::array<std::wstring_view, 1> keywords = {L"First point"};
  std::optional<Point3> first = picked ? picked : ask_required_point(host, first_prompt);
  if (!first) return std::nullopt;
  const Answer<PointOrOption> answer =
      ask_point_or_option(host, {.prompt = L"Specify second break point or [First point]: ",
                                 .last = first,
                                 .keywords = keywords});
  if (!is_given(answer)) return std::nullopt;
  if (const Point3* const second = std::get_if<Point3>(&answer.value)) {
    return BreakPoints{*first, *second};
  }
  first = ask_required_point(host, first_prompt);
  if (!first) return std::nullopt;
  const auto second = ask_second(host, L"Specify second break point: ", *first);
  if (!second) return std::nullopt;
  return BreakPoints{*first, *second};
}

// Without a height a point is seen from above, as if it had been pointed at.
Point3 pointed_at(const Shape& shape, Point3 point) {
  return point.z == 0 ? seen_in_plan(shape, point) : point;
}

std::wstring_view why_not(CurveCut result) {
  switch (result) {
    case CurveCut::Cut:
    case CurveCut::NoCurve:
      break;
    case CurveCut::CircleAtOnePoint:
      return L"A circle or an ellipse cannot be broken at one point.";
    case CurveCut::NothingCut:
      return L"The points are at one end of the entity: there is nothing to break.";
    case CurveCut::NothingLeft:
      return L"The points are the two ends of the entity: nothing would be left.";
  }
  return L"Cannot break this entity.";
}

// The first piece is the entity itself, another one a copy of it in another shape.
bool replace_by(Drawing& drawing, EntityId entity, double thickness,
                const std::vector<Shape>& pieces) {
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    if (!drawing.add_copy(entity, {pieces[i], thickness})) return false;
  }
  return drawing.set_geometry(entity, {pieces.front(), thickness});
}

}  // namespace

void break_entity(ConsoleHost& host) {
  const std::optional<PickedEntity> picked = entity_to_break(host);
  if (!picked) return;
  Drawing& drawing = host.drawing();
  const EntityId entity = picked->entity;
  const EntityGeometry geometry = drawing.geometry_of(entity);
  // New entities go to model space alone.
  if (!can_be_cut(geometry.shape) || drawing.space_of(entity) != Space::Model) {
    return host.refuse(why_not(CurveCut::NoCurve));
  }
  if (!host.opens(entity, OpenMode::Write)) {
    return host.refuse(L"The object is on a locked layer.");
  }
  const std::optional<BreakPoints> points = ask_points(host, picked->at);
  if (!points) return;
  const CutCurve cut = cut_curve(geometry.shape, pointed_at(geometry.shape, points->first),
                                 pointed_at(geometry.shape, points->second));
  if (cut.result != CurveCut::Cut) return host.refuse(why_not(cut.result));
  const DocumentLock lock(host);
  if (!replace_by(drawing, entity, geometry.thickness, cut.pieces)) {
    host.refuse(why_not(CurveCut::NoCurve));
  }
}

}  // namespace korvel::host_command
