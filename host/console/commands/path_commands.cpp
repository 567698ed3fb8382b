// LINE, PLINE, 3DPOLY: commands that ask for one point after the other.
#include <array>
#include <utility>
#include <vector>

#include "frame/command_frame.h"
#include "host/console/commands/drawing_defaults.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"

namespace korvel::host_command {
namespace {

struct PathPrompts {
  std::wstring_view first;
  std::wstring_view next;           // Undo is offered
  std::wstring_view next_or_close;  // so is Close
};

struct AskedPath {
  std::vector<Point3> points;
  bool closed = false;
  bool cancelled = false;
};

AskedPath ask_path(ConsoleHost& host, const PathPrompts& prompts) {
  constexpr std::array<std::wstring_view, 2> keywords = {L"Undo", L"Close"};
  constexpr std::size_t least_to_close = 3;
  AskedPath path;
  const std::optional<Point3> first = ask_required_point(host, prompts.first);
  if (!first) return {{}, false, true};
  path.points.push_back(*first);
  for (;;) {
    const bool may_close = path.points.size() >= least_to_close;
    const Answer<PointOrOption> answer =
        ask_point_or_option(host, {.prompt = may_close ? prompts.next_or_close : prompts.next,
                                   .last = path.points.back(),
                                   .keywords = Keywords(keywords).first(may_close ? 2 : 1),
                                   .takes_enter = true});
    if (!is_given(answer)) {
      path.cancelled = is_cancelled(answer);
      return path;
    }
    if (const Point3* const point = std::get_if<Point3>(&answer.value)) {
      path.points.push_back(*point);
    } else if (std::get<std::size_t>(answer.value) == 1) {
      path.closed = true;
      return path;
    } else if (path.points.size() > 1) {
      path.points.pop_back();
    } else {
      host.refuse(L"All segments already undone.");
    }
  }
}

void draw_polyline(ConsoleHost& host, PolylineKind kind, const AskedPath& path) {
  if (path.cancelled || path.points.size() < 2) return;
  PolylineShape shape;
  shape.kind = kind;
  shape.closed = path.closed;
  for (Point3 point : path.points) {
    // A light polyline lies in the plane of its first point.
    if (kind == PolylineKind::Light) point.z = path.points.front().z;
    shape.vertices.push_back({point, 0});
  }
  const DocumentLock lock(host);
  draw(host, std::move(shape));
}

}  // namespace

void line(ConsoleHost& host) {
  AskedPath path = ask_path(host, {L"Specify first point: ", L"Specify next point or [Undo]: ",
                                   L"Specify next point or [Close/Undo]: "});
  if (path.closed) path.points.push_back(path.points.front());
  // Also what an Esc left unfinished: the segments were there as each point was given.
  const DocumentLock lock(host);
  for (std::size_t i = 1; i < path.points.size(); ++i) {
    if (!draw(host, LineShape{path.points[i - 1], path.points[i]})) return;
  }
}

void polyline(ConsoleHost& host) {
  draw_polyline(host, PolylineKind::Light,
                ask_path(host, {L"Specify start point: ", L"Specify next point or [Undo]: ",
                                L"Specify next point or [Close/Undo]: "}));
}

void polyline_3d(ConsoleHost& host) {
  draw_polyline(
      host, PolylineKind::ThreeD,
      ask_path(host, {L"Specify start point of polyline: ", L"Specify endpoint of line or [Undo]: ",
                      L"Specify endpoint of line or [Close/Undo]: "}));
}

}  // namespace korvel::host_command
