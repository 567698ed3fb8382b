// The rows of a MID file: what each column holds of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "exchange/mif_columns.h"
#include "exchange/record_reader.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct MifRow {
  std::wstring_view handle;
  std::int32_t number;
  std::wstring_view layer;
  RecordValues record;

  [[nodiscard]] ODValueView operator[](const MifColumn& column) const;
};

class MifRowReader {
 public:
  MifRowReader(ODStore& store, const DrawingHost& host, std::wstring_view table);

  // None when there is no such record. Valid until the next call.
  [[nodiscard]] std::optional<MifRow> at(const RecordKey& key);

 private:
  const DrawingHost& host_;
  RecordReader records_;
  std::unordered_map<EntityId, std::wstring> layers_;
  EntityId entity_;
  std::wstring handle_;      // of that entity
  std::wstring_view layer_;  // and its layer
};

}  // namespace korvel
