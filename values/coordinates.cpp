#include "values/coordinates.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "frame/value_text.h"
#include "values/column_value.h"
#include "values/unit_precision.h"
#include "values/xyz_dialog.h"

namespace korvel {
namespace {

constexpr int decimals_during_run = 8;
constexpr int stored_decimals = 6;

// Writes points into the record on which an iterator stands.
class CoordinateWriter {
 public:
  CoordinateWriter(const ODStore& store, const CoordinateRequest& request)
      : request_(request),
        columns_{ColumnValue(store, request.table, request.columns[0]),
                 ColumnValue(store, request.table, request.columns[1]),
                 ColumnValue(store, request.table, request.columns[2])} {}

  // Whether any column was set.
  bool write(const Point3& point, RecordIterator& record) {
    const bool x = write(0, point.x, request_.plan_decimals, record);
    const bool y = write(1, point.y, request_.plan_decimals, record);
    const bool z = write(2, point.z, request_.elevation_decimals, record);
    return x || y || z;
  }

 private:
  bool write(std::size_t axis, double coordinate, int decimals, RecordIterator& record) {
    if (request_.columns[axis].empty()) return false;
    text_.clear();
    append_fixed_text(coordinate, decimals, text_);
    const double rounded = read_real(text_);
    text_.clear();
    append_fixed_text(rounded, stored_decimals, text_);
    return columns_[axis].store(text_, record);
  }

  const CoordinateRequest& request_;
  std::array<ColumnValue, 3> columns_;
  std::wstring text_;
};

}  // namespace

CoordinateCount set_coordinates(DrawingHost& host, ODStore& store, const EntityList& entities,
                                const CoordinateRequest& request) {
  CoordinateWriter writer(store, request);
  RepresentativePoint representative(request.rules, std::pow(0.1, decimals_during_run));
  const std::unique_ptr<RecordIterator> records = store.records_of(request.table);
  CoordinateCount count;
  WriteWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    if (!host.opens(entity, OpenMode::Read)) continue;
    ++count.opened;
    if (!records->open(entity, OpenMode::Read) || records->done()) continue;
    const Shape shape = host.geometry_of(entity).value_or(EntityGeometry{}).shape;
    std::optional<Point3> point = position_of(shape);
    if (!point) point = representative(shape, host.extents_of(entity));
    if (!records->open(entity, OpenMode::Write)) continue;
    if (writer.write(*point, *records)) ++count.completed;
  }
  return count;
}

void set_xyz(Session& session) {
  DrawingHost& host = session.host;
  const int precision_of_drawing = unit_precision_of(host);
  const UnitPrecision precision(host, decimals_during_run);
  ODSelectXYZ dialog(session.store, tables_in_use(session.store, host, {}),
                     session.choices.coordinates, precision_of_drawing);
  const bool accepted = host.show(dialog);
  dialog.remember(session.choices.coordinates, accepted);
  if (!accepted) return;
  if (!dialog.is_complete()) {
    return host.note_refused_input(L"no column is chosen, or one is chosen twice");
  }
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
