#include "values/coordinates.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "frame/value_text.h"
#include "values/unit_precision.h"
#include "values/xyz_dialog.h"

namespace korvel {
namespace {

constexpr int decimals_during_run = 8;
constexpr int stored_decimals = 6;

struct Target {
  int column;
  std::size_t axis;  // 0 x, 1 y, 2 z
  ODValue value;     // of the column's type
};

std::vector<Target> targets_of(const ODTableDef& table,
                               const std::array<std::wstring, 3>& columns) {
  std::vector<Target> targets;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const auto wanted = std::ranges::find(columns, table.columns[i].name);
    if (wanted == columns.end()) continue;
    const auto axis = static_cast<std::size_t>(wanted - columns.begin());
    targets.push_back({static_cast<int>(i), axis, zero_value(table.columns[i].type)});
  }
  return targets;
}

// Writes points into the record on which an iterator stands.
class CoordinateWriter {
 public:
  CoordinateWriter(const ODTableDef& table, const CoordinateRequest& request)
      : targets_(targets_of(table, request.columns)),
        decimals_{request.plan_decimals, request.plan_decimals, request.elevation_decimals} {}

  // Whether any column was set.
  bool write(const Point3& point, RecordIterator& record) {
    const std::array<double, 3> coordinates{point.x, point.y, point.z};
    bool any = false;
    for (Target& target : targets_) {
      make_text(coordinates[target.axis], decimals_[target.axis]);
      if (store_text(text_, target.value) &&
          record.set_value(target.column, view_of(target.value))) {
        any = true;
      }
    }
    return any;
  }

 private:
  void make_text(double coordinate, int decimals) {
    text_.clear();
    append_fixed_text(coordinate, decimals, text_);
    const double rounded = read_real(text_);
    text_.clear();
    append_fixed_text(rounded, stored_decimals, text_);
  }

  std::vector<Target> targets_;
  std::array<int, 3> decimals_;
  std::wstring text_;
};

}  // namespace

CoordinateCount set_coordinates(DrawingHost& host, ODStore& store, const EntityList& entities,
                                const CoordinateRequest& request) {
  CoordinateWriter writer(store.table(request.table).value_or(ODTableDef{}), request);
  RepresentativePoint representative(request.rules, std::pow(0.1, decimals_during_run));
  const std::unique_ptr<RecordIterator> records = store.records_of(request.table);
  CoordinateCount count;
  for (const EntityId entity : entities) {
    if (!host.opens(entity, OpenMode::Read)) continue;
    ++count.opened;
    if (!records->open(entity, OpenMode::Write) || records->done()) continue;
    const Shape shape = host.geometry_of(entity).value_or(EntityGeometry{}).shape;
    std::optional<Point3> point = position_of(shape);
    if (!point) point = representative(shape, host.extents_of(entity));
    if (writer.write(*point, *records)) ++count.completed;
  }
  return count;
}

void set_xyz(Session& session) {
  DrawingHost& host = session.host;
  const UnitPrecision precision(host, decimals_during_run);
  ODSelectXYZ dialog(session.store, tables_in_use(session.store, host, {}),
                     session.choices.coordinates, precision.of_drawing());
  const bool accepted = host.show(dialog);
  dialog.remember(session.choices.coordinates, accepted);
  if (!accepted || !dialog.is_complete()) return;
  const EntityList entities = entities_to_set(host, {}).value_or(EntityList{});
  if (entities.empty()) return;
  CoordinateCount count;
  {
    const DocumentLock lock(host);
    count = set_coordinates(host, session.store, entities, dialog.request());
  }
  report<Message::CompletedOutOf>(host, count.completed, count.opened);
}

}  // namespace korvel
