// The columns of a MIF file: how they are named, how wide they are.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "exchange/mif_charset.h"
#include "exchange/record_rows.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

inline constexpr std::size_t most_mif_text = 254;  // bytes of a text
inline constexpr std::size_t most_mif_name = 31;   // bytes of a column's name

enum class MifSource { Handle, Record, Table, Layer };

struct MifColumn {
  MifSource source;
  std::size_t column;  // of the table, for that source
  ODType type;
  std::size_t width = 1;  // of a text, in bytes
  // One name, of a point three: for its X, Y and Z.
  std::vector<std::wstring> names{};
};

struct MifLayout {
  MifCharset charset;
  std::vector<MifColumn> columns;
  // "old -> new" for each name that had to be changed.
  std::vector<std::wstring> changed_names;
};

// What the rows ask for: a character set for all their texts and columns wide enough for them. The
// entity's handle and the record's number come before the columns of the rows, the entity's layer
// behind them.
[[nodiscard]] MifLayout mif_layout(ODStore& store, const DrawingHost& host, const ODTableDef& table,
                                   const RecordRows& rows);

}  // namespace korvel
