// Length, area and volume of entities, written into their object data.
#include "values/measure_values.h"

#include <cmath>
#include <memory>
#include <optional>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "frame/value_text.h"
#include "geometry/measures.h"
#include "values/column_value.h"
#include "values/measure_dialog.h"
#include "values/unit_precision.h"

namespace korvel {
namespace {

struct Measures {
  std::optional<double> length;
  std::optional<double> area;
  std::optional<double> volume;
};

class MeasureWriter {
 public:
  MeasureWriter(const ODStore& store, const MeasureColumns& columns)
      : length_wanted_(!columns.length.empty()),
        area_wanted_(!columns.area.empty() || !columns.volume.empty()),
        decimals_(columns.decimals),
        length_(store, columns.table, columns.length),
        area_(store, columns.table, columns.area),
        volume_(store, columns.table, columns.volume) {}

  void write(const EntityGeometry& geometry, RecordIterator& record, MeasureCounts& counts) {
    const Measures measures = measure(geometry);
    if (write(measures.length, length_, record)) ++counts.lengths;
    if (write(measures.area, area_, record)) ++counts.areas;
    if (write(measures.volume, volume_, record)) ++counts.volumes;
  }

 private:
  [[nodiscard]] Measures measure(const EntityGeometry& geometry) const {
    Measures measures;
    if (length_wanted_) measures.length = length_of(geometry.shape);
    if (area_wanted_) measures.area = area_of(geometry.shape);
    const double volume = measures.area.value_or(0) * std::abs(geometry.thickness);
    if (measures.area && geometry.thickness != 0 && std::isfinite(volume)) measures.volume = volume;
    return measures;
  }

  bool write(const std::optional<double>& measure, ColumnValue& column, RecordIterator& record) {
    if (!measure) return false;
    text_.clear();
    append_fixed_text(*measure, decimals_, text_);
    return column.store(text_, record);
  }

  bool length_wanted_;
  bool area_wanted_;
  int decimals_;
  ColumnValue length_;
  ColumnValue area_;
  ColumnValue volume_;
  std::wstring text_;
};

}  // namespace

MeasureCounts set_measures(ODStore& store, DrawingHost& host, const EntityList& entities,
                           const MeasureColumns& columns) {
  MeasureCounts counts;
  MeasureWriter writer(store, columns);
  const std::unique_ptr<RecordIterator> records = store.records_of(columns.table);
  WriteWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    if (!host.opens(entity, OpenMode::Read)) continue;
    ++counts.entities;
    if (!records->open(entity, OpenMode::Read) || records->done()) continue;
    const auto geometry = host.geometry_of(entity);
    if (!geometry || !records->open(entity, OpenMode::Write)) continue;
    writer.write(*geometry, *records, counts);
  }
  return counts;
}

void set_prop(Session& session) {
  DrawingHost& host = session.host;
  ODSelectProp dialog(session.store, tables_in_use(session.store, host, {}),
                      session.choices.table_of_measures, unit_precision_of(host));
  if (!host.show(dialog)) return;
  const std::optional<MeasureColumns> columns = dialog.columns();
  if (!columns) return host.note_refused_input(L"no column is chosen, or one is chosen twice");
  session.choices.table_of_measures = columns->table;

  const std::optional<EntityList> entities = entities_to_set(host, {});
  if (!entities || entities->empty()) return;
  MeasureCounts counts;
  {
    const DocumentLock lock(host);
    counts = set_measures(session.store, host, *entities, *columns);
  }
  report<Message::CompletedLengthAreaVolume>(host, counts.lengths, counts.areas, counts.volumes,
                                             counts.entities);
}

}  // namespace korvel
