// Texts that lie in entities, or near them, written into the object data of those.
#include "values/text_values.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <numeric>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "geometry/containment.h"
#include "geometry/curve_sampler.h"
#include "geometry/extents.h"
#include "geometry/hit_test.h"
#include "geometry/plan_points.h"
#include "values/column_value.h"
#include "values/plain_text.h"
#include "values/text_dialog.h"

namespace korvel {
namespace {

// The texts of the drawing, in parallel lists.
struct Texts {
  std::vector<Point3> positions;
  std::vector<EntityId> entities;
  std::vector<std::wstring> texts;

  void add(EntityId entity, Point3 position, std::wstring text) {
    positions.push_back(position);
    entities.push_back(entity);
    texts.push_back(std::move(text));
  }
};

// Those on locked layers count, as they are only read.
Texts readable_texts(DrawingHost& host) {
  std::unordered_set<EntityId> shown_layers;
  for (const Layer& layer : host.layers()) {
    if (!layer.frozen && !layer.hidden && !layer.off) shown_layers.insert(layer.id);
  }
  Texts found;
  const EntityList entities = host.model_space();
  ReadWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    if (!shown_layers.contains(host.layer_of(entity))) continue;
    const std::optional<EntityGeometry> geometry = host.geometry_of(entity);
    if (!geometry) continue;
    if (const auto* const line = std::get_if<TextShape>(&geometry->shape)) {
      found.add(entity, line->alignment.value_or(line->position), plain_text(line->text));
    } else if (const auto* const block = std::get_if<MtextShape>(&geometry->shape)) {
      found.add(entity, block->position, plain_multiline_text(block->text));
    }
  }
  return found;
}

// The extents with the tolerance, and their own rounding, around them.
Extents widened(Extents extents, double tolerance) {
  const auto size = [](Point3 p) { return std::max(std::abs(p.x), std::abs(p.y)); };
  const double margin =
      tolerance + 2 * relative_tolerance * std::max(size(extents.min), size(extents.max));
  extents.min.x -= margin;
  extents.min.y -= margin;
  extents.max.x += margin;
  extents.max.y += margin;
  return extents;
}

// Finds the texts in reach of one entity after the other.
class TextFinder {
 public:
  TextFinder(DrawingHost& host, double tolerance)
      : host_(host),
        tolerance_(tolerance),
        texts_(readable_texts(host)),
        points_(texts_.positions) {}

  enum class Found { None, One, Many };

  Found find(EntityId entity) {
    const std::optional<Extents> extents = read(entity);
    if (!extents) return Found::None;
    std::size_t count = 0;
    const bool many = points_.any_in(
        widened(*extents, tolerance_), [&](const Extents& part) { return reaches_into(part); },
        [&](std::size_t index) {
          if (texts_.entities[index] == entity || !reaches(texts_.positions[index])) return false;
          text_ = index;
          return ++count > 1;
        });
    if (many) return Found::Many;
    return count == 0 ? Found::None : Found::One;
  }

  // After One.
  [[nodiscard]] const std::wstring& text() const { return texts_.texts[text_]; }

 private:
  // A block reference counts as its insertion point.
  std::optional<Extents> read(EntityId entity) {
    outline_is_known_ = false;
    geometry_ = host_.geometry_of(entity).value_or(EntityGeometry{});
    const auto* const reference = std::get_if<BlockReferenceShape>(&geometry_.shape);
    if (reference == nullptr) return host_.extents_of(entity);
    geometry_ = {PointShape{reference->position}};
    return korvel::extents_of(geometry_);
  }

  [[nodiscard]] double distance_to_outline(Point3 point) {
    if (!outline_is_known_) sample(geometry_, fine_, outline_);
    outline_is_known_ = true;
    return distance_to_path(outline_, point);
  }

  bool reaches(Point3 point) {
    return area_contains(geometry_, point) || distance_to_outline(point) <= tolerance_;
  }

  // A part that the outline stays away from is all inside or all outside.
  bool reaches_into(const Extents& part) {
    constexpr double slack = 1.01;  // for the chords of the outline
    const Point3 middle{std::midpoint(part.min.x, part.max.x),
                        std::midpoint(part.min.y, part.max.y), 0};
    const double radius = std::hypot(part.max.x - middle.x, part.max.y - middle.y);
    return distance_to_outline(middle) <= slack * (radius + tolerance_) ||
           area_contains(geometry_, middle);
  }

  // Chords stay within about a millionth of their radius.
  static constexpr SamplingRule fine_{.max_angle = std::numbers::pi / 1024};

  const DrawingHost& host_;
  double tolerance_;
  Texts texts_;
  PlanPoints points_;
  // Of the entity in work.
  EntityGeometry geometry_;
  Path outline_;
  bool outline_is_known_ = false;
  std::size_t text_ = 0;
};

}  // namespace

TextCounts set_texts(ODStore& store, DrawingHost& host, const EntityList& entities,
                     const TextColumn& column) {
  TextCounts counts;
  TextFinder finder(host, column.tolerance);
  ColumnValue value(store, column.table, column.column);
  const std::unique_ptr<RecordIterator> records = store.records_of(column.table);
  WriteWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    if (!host.opens(entity, OpenMode::Read)) continue;
    ++counts.entities;
    if (!records->open(entity, OpenMode::Read) || records->done()) continue;
    const TextFinder::Found found = finder.find(entity);
    if (!records->open(entity, OpenMode::Write)) continue;
    switch (found) {
      case TextFinder::Found::None:
        ++counts.out_of_range;
        break;
      case TextFinder::Found::One:
        if (value.store(finder.text(), *records)) ++counts.completed;
        break;
      case TextFinder::Found::Many:
        ++counts.multiple;
        break;
    }
  }
  return counts;
}

void set_text(Session& session) {
  DrawingHost& host = session.host;
  RememberedChoices& choices = session.choices;
  ODSelectText dialog(session.store, tables_in_use(session.store, host, {}), choices.table_of_texts,
                      choices.text_tolerance);
  if (!host.show(dialog)) return;
  const std::optional<TextColumn> column = dialog.column();
  if (!column) return host.note_refused_input(L"no field is chosen, or the tolerance is no number");
  choices.table_of_texts = column->table;
  choices.text_tolerance = dialog.tolerance();

  const std::optional<EntityList> entities = entities_to_set(host, {});
  if (!entities || entities->empty()) return;
  TextCounts counts;
  {
    const DocumentLock lock(host);
    counts = set_texts(session.store, host, *entities, *column);
  }
  report<Message::CompletedOutOfRangeAndMultiple>(host, counts.completed, counts.entities,
                                                  counts.out_of_range, counts.multiple);
}

}  // namespace korvel
