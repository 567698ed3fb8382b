#include "host/console/selection_prompt.h"

#include <array>
#include <unordered_set>

#include "frame/case_mapping.h"
#include "frame/walk.h"
#include "host/console/commands/questions.h"
#include "host/console/pick.h"
#include "host/console/typed_text.h"
#include "host/standalone/spatial_query.h"

namespace korvel {
namespace {

constexpr std::wstring_view expected =
    L"Expects a point or Window/Last/Crossing/ALL/Fence/WPolygon/CPolygon/Add/Remove/Previous/Undo/"
    L"HANDLES/LAYER/TYPE";

EntityList as_list(std::optional<EntityId> entity) {
  return entity ? EntityList{*entity} : EntityList{};
}

std::optional<Point3> last_of(const std::vector<Point3>& points) {
  return points.empty() ? std::nullopt : std::optional(points.back());
}

std::vector<Point3> rectangle(Point3 a, Point3 b) {
  return {{a.x, a.y, 0}, {b.x, a.y, 0}, {b.x, b.y, 0}, {a.x, b.y, 0}};
}

}  // namespace

// A word and how few of its letters are enough.
struct SelectionPrompt::Word {
  std::wstring_view name;
  std::size_t least;
  Way way;
};

std::optional<SelectionPrompt::Way> SelectionPrompt::way_of(std::wstring_view word) {
  static constexpr auto words = std::to_array<Word>({
      {L"ALL", 3, Way::All},
      {L"LAST", 1, Way::Last},
      {L"PREVIOUS", 1, Way::Previous},
      {L"WINDOW", 1, Way::Window},
      {L"CROSSING", 1, Way::Crossing},
      {L"FENCE", 1, Way::Fence},
      {L"WPOLYGON", 2, Way::WindowPolygon},
      {L"CPOLYGON", 2, Way::CrossingPolygon},
      {L"HANDLES", 1, Way::Handles},
      {L"LAYER", 3, Way::Layer},
      {L"TYPE", 1, Way::Type},
      {L"REMOVE", 1, Way::Remove},
      {L"ADD", 1, Way::Add},
      {L"UNDO", 1, Way::Undo},
      {L"?", 1, Way::Help},
  });
  if (word.starts_with(L'_')) word.remove_prefix(1);
  for (const auto& [name, least, way] : words) {
    if (word.size() >= least && begins_with(name, word)) return way;
  }
  return std::nullopt;
}

std::optional<EntityList> SelectionPrompt::ask(std::wstring_view prompt) {
  while (true) {
    const auto line = host_.ask_line(removing_ ? L"Remove objects: " : prompt);
    if (!line) return std::nullopt;
    const std::wstring_view typed = trimmed(*line);
    if (typed.empty()) break;
    const Found found = find_or_cancel(typed);
    if (found.outcome == Outcome::Cancelled) return std::nullopt;
    if (found.outcome == Outcome::Found) count(found.entities);
  }
  if (!set_.entities().empty()) host_.set_previous_selection(set_.entities());
  return set_.entities();
}

void SelectionPrompt::count(const EntityList& found) {
  ++answers_;
  std::wstring text = std::to_wstring(found.size()) + L" found";
  if (removing_) {
    text += L", " + std::to_wstring(set_.remove(found)) + L" removed";
  } else if (const std::size_t duplicates = set_.add(found); duplicates > 0) {
    text += L" (" + std::to_wstring(duplicates) + L" duplicate)";
  }
  if (answers_ > 1) text += L", " + std::to_wstring(set_.entities().size()) + L" total";
  host_.print(text + L'\n');
}

// Ctrl+C while it looks is Esc.
SelectionPrompt::Found SelectionPrompt::find_or_cancel(std::wstring_view line) try {
  return find(line);
} catch (const Interrupted&) {
  return {Outcome::Cancelled, {}};
}

SelectionPrompt::Found SelectionPrompt::find(std::wstring_view line) {
  const std::wstring_view word = line.substr(0, line.find_first_of(L" \t"));
  const std::wstring_view rest = trimmed(line.substr(word.size()));
  if (const std::optional<Way> way = way_of(word)) return find(*way, rest);
  const std::optional<Point3> point = point_of(line);
  if (!point) return invalid();
  return {Outcome::Found, as_list(entity_at(host_.drawing(), *point))};
}

SelectionPrompt::Found SelectionPrompt::find(Way way, std::wstring_view rest) {
  switch (way) {
    case Way::Handles:
      return find_handles(rest);
    case Way::Layer:
      return find_on_layer(rest);
    case Way::Type:
      return find_of_type(rest);
    case Way::Window:
    case Way::Crossing:
    case Way::Fence:
    case Way::WindowPolygon:
    case Way::CrossingPolygon:
      return find_by_shape(way, rest);
    default:
      break;
  }
  if (!rest.empty()) return invalid();
  switch (way) {
    case Way::All:
      return {Outcome::Found, usable_for_all()};
    case Way::Last:
      return {Outcome::Found, as_list(last_entity(host_.drawing()))};
    case Way::Previous:
      return {Outcome::Found, previous()};
    case Way::Undo:
      return take_back();
    case Way::Help:
      host_.print(std::wstring(expected) + L'\n');
      return {};
    default:
      removing_ = way == Way::Remove;
      return {};
  }
}

SelectionPrompt::Found SelectionPrompt::invalid() {
  host_.print(L"*Invalid selection*\n");
  return refused(expected);
}

SelectionPrompt::Found SelectionPrompt::refused(std::wstring_view sentence) {
  host_.refuse(sentence);
  return {};
}

SelectionPrompt::Found SelectionPrompt::take_back() {
  if (!set_.undo()) return refused(L"Nothing to undo.");
  host_.print(std::to_wstring(set_.entities().size()) + L" total\n");
  return {};
}

SelectionPrompt::Found SelectionPrompt::find_handles(std::wstring_view rest) {
  Found found{Outcome::Found, {}};
  for (const std::wstring_view digits : words_of(rest)) {
    const std::optional<EntityId> entity = entity_with_handle(host_.drawing(), digits);
    if (!entity) return refused(no_entity_with(digits));
    found.entities.push_back(*entity);
  }
  return found.entities.empty() ? invalid() : found;
}

template <class Test>
EntityList SelectionPrompt::model_space(const Test& test) {
  EntityList entities = host_.drawing().entities(Space::Model);
  ReadWalk walk(host_, entities.size());
  std::erase_if(entities, [&](EntityId id) {
    walk.step();
    return !test(id);
  });
  return entities;
}

SelectionPrompt::Found SelectionPrompt::find_on_layer(std::wstring_view name) {
  const Drawing& drawing = host_.drawing();
  const std::optional<EntityId> layer = drawing.layer_named(name);
  if (!layer) return refused(L"There is no layer \"" + std::wstring(name) + L"\".");
  return {Outcome::Found, model_space([&](EntityId id) { return drawing.layer_of(id) == *layer; })};
}

SelectionPrompt::Found SelectionPrompt::find_of_type(std::wstring_view name) {
  if (name.empty()) return invalid();
  const Drawing& drawing = host_.drawing();
  return {Outcome::Found, model_space([&](EntityId id) {
            const std::string_view type = drawing.type_of(id);
            return equal_ignoring_case(std::wstring(type.begin(), type.end()), name);
          })};
}

// --- Shapes -----------------------------------------------------------------------------------

SelectionPrompt::Found SelectionPrompt::find_by_shape(Way way, std::wstring_view rest) {
  const bool is_rectangle = way == Way::Window || way == Way::Crossing;
  std::vector<Point3> points;
  for (const std::wstring_view word : words_of(rest)) {
    const auto point = point_of(word, last_of(points));
    if (!point) return invalid();
    points.push_back(*point);
  }
  const bool complete = is_rectangle ? points.size() >= 2 : !points.empty();
  if (!complete && !ask_points(way, points)) return {Outcome::Cancelled, {}};

  const Drawing& drawing = host_.drawing();
  if (is_rectangle) {
    if (points.size() != 2) return refused(L"A window takes two points.");
    const std::vector<Point3> corners = rectangle(points[0], points[1]);
    return {Outcome::Found, way == Way::Window ? inside_polygon(drawing, corners, host_)
                                               : crossing_polygon(drawing, corners, host_)};
  }
  if (way == Way::Fence) {
    if (points.size() < 2) return refused(L"A fence takes at least two points.");
    return {Outcome::Found, crossing_fence(drawing, points, host_)};
  }
  if (points.size() < 3) return refused(L"A polygon takes at least three points.");
  return {Outcome::Found, way == Way::WindowPolygon ? inside_polygon(drawing, points, host_)
                                                    : crossing_polygon(drawing, points, host_)};
}

bool SelectionPrompt::ask_points(Way way, std::vector<Point3>& points) {
  const bool is_rectangle = way == Way::Window || way == Way::Crossing;
  const std::wstring_view first = is_rectangle        ? L"Specify first corner: "
                                  : way == Way::Fence ? L"Specify first fence point: "
                                                      : L"Specify first polygon point: ";
  const std::wstring_view next = is_rectangle        ? L"Specify opposite corner: "
                                 : way == Way::Fence ? L"Specify next fence point: "
                                                     : L"Specify next polygon point: ";
  while (!is_rectangle || points.size() < 2) {
    const Answer<PointOrOption> answer = ask_point_or_option(
        host_,
        {.prompt = points.empty() ? first : next, .last = last_of(points), .takes_enter = true});
    if (is_cancelled(answer)) return false;
    if (!is_given(answer)) break;
    points.push_back(std::get<Point3>(answer.value));
  }
  return true;
}

EntityList SelectionPrompt::usable_for_all() {
  std::unordered_set<EntityId> left_out;
  for (const Layer& layer : host_.drawing().layers()) {
    if (layer.frozen || layer.locked) left_out.insert(layer.id);
  }
  return model_space([&](EntityId id) { return !left_out.contains(host_.drawing().layer_of(id)); });
}

EntityList SelectionPrompt::previous() const {
  EntityList entities = host_.previous_selection();
  std::erase_if(entities, [&](EntityId id) { return !host_.drawing().exists(id); });
  return entities;
}

}  // namespace korvel
