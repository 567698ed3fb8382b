// Texts stored into one column, record after record.
#include "values/column_value.h"

#include "frame/value_text.h"

namespace korvel {

ColumnValue::ColumnValue(const ODStore& store, std::wstring_view table, std::wstring_view column) {
  const std::optional<ODTableDef> definition = store.table(table);
  if (!definition) return;
  const std::optional<std::size_t> index = definition->column(column);
  if (!index) return;
  index_ = static_cast<int>(*index);
  value_ = zero_value(definition->columns[*index].type);
}

bool ColumnValue::store(std::wstring_view text, RecordIterator& record) {
  return store_text(text, value_) && record.set_value(index_, view_of(value_));
}

}  // namespace korvel
