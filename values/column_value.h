// Texts stored into one column, record after record.
#pragma once

#include <string_view>

#include "frame/od_store.h"

namespace korvel {

class ColumnValue {
 public:
  // Without a table of this name, or a column of exactly this name, nothing can be stored.
  ColumnValue(const ODStore& store, std::wstring_view table, std::wstring_view column);

  // Stores what the text says, read as the column's type asks for, into the current record, which
  // is one of the table. False, and nothing stored, when the text is no value of that type or the
  // record cannot be written.
  bool store(std::wstring_view text, RecordIterator& record);

 private:
  int index_ = 0;
  ODValue value_;  // of the column's type; of no type when there is no column
};

}  // namespace korvel
