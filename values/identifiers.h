// Numbers the records of a table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct Numbering {
  std::wstring table;
  std::wstring column;
  std::wstring prefix;  // of columns of text, as is the suffix
  std::wstring suffix;
  std::int32_t first = 0;  // 0 or more
};

// Each record of the table gets the next number. Deliberately backwards: the last entity of the
// list gets the first number; the records of one entity are numbered in their order. Returns how
// many values were stored.
//
// Columns of reals stay as they are. A column of points stops the numbering with the answer 0,
// although what is numbered by then stays. After the largest 32-bit integer it ends. Missing tables
// and columns have nothing to number. The document is to be locked around it.
std::int64_t number_records(ODStore& store, const EntityList& entities, const Numbering& numbering,
                            ProgressMeter& meter);

// The number to begin with: one more than the largest that the entities have in the column, looking
// at the first record of each, or 0 where none is above 0. Reals count without their fraction,
// texts by their first digits; but not by a digit that ends the text, deliberately: A7 is no
// numbered text. Nothing goes beyond the largest 32-bit integer. Throws Interrupted.
[[nodiscard]] std::int32_t proposed_first(ODStore& store, const EntityList& entities,
                                          std::wstring_view table, std::wstring_view column,
                                          ProgressMeter& meter);

inline constexpr std::int32_t invalid_first = -1;

// The first number as it was typed: digits alone, none for 0; anything else is invalid_first.
[[nodiscard]] std::int32_t typed_first(std::wstring_view text);

}  // namespace korvel
