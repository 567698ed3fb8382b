#include "exchange/mif_rows.h"

#include <utility>

namespace korvel {

ODValueView MifRow::operator[](const MifColumn& column) const {
  switch (column.source) {
    case MifSource::Handle:
      return handle;
    case MifSource::Record:
      return number;
    case MifSource::Layer:
      return layer;
    case MifSource::Table:
      break;
  }
  return record[column.column];
}

MifRowReader::MifRowReader(ODStore& store, const DrawingHost& host, std::wstring_view table)
    : host_(host), records_(store.records_of(table)) {
  for (Layer& layer : host.layers())
    layers_.emplace(layer.id, std::move(layer.name));
}

std::optional<MifRow> MifRowReader::at(const RecordKey& key) {
  const RecordValues record = records_.at(key);
  if (!record) return std::nullopt;
  if (key.entity != entity_) {
    entity_ = key.entity;
    handle_ = host_.handle_of(entity_);
    const auto layer = layers_.find(host_.layer_of(entity_));
    layer_ = layer == layers_.end() ? std::wstring_view() : layer->second;
  }
  return MifRow{handle_, key.number, layer_, record};
}

}  // namespace korvel
