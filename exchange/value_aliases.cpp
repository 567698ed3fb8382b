#include "exchange/value_aliases.h"

#include <algorithm>
#include <optional>

#include "frame/value_text.h"

namespace korvel {
namespace {

// What the map has under the name; null if nothing.
template <class Inner>
const Inner* under(const std::map<std::wstring, Inner, std::less<>>& by_name,
                   const std::wstring& name) {
  const auto found = by_name.find(name);
  return found == by_name.end() ? nullptr : &found->second;
}

// The text that the aliases, asked in turn, have in place of this one.
template <class Maps>
std::optional<std::wstring_view> other_text(const Maps& maps, std::wstring_view text) {
  for (const auto* const texts : maps) {
    const auto found = texts->find(text);
    if (found != texts->end() && found->second != text) return found->second;
  }
  return std::nullopt;
}

}  // namespace

ValueAliases::ValueAliases(const ODStore& store, const AliasMaps& maps) {
  for (const std::wstring& name : store.table_names()) {
    if (const std::optional<ODTableDef> definition = store.table(name)) {
      tables_.push_back(table_of(*definition, maps));
    }
  }
  std::ranges::sort(tables_, {}, &Table::name);
  finder_ = TableFinder<Table>(tables_);
}

const ValueAliases::Texts* ValueAliases::texts_of(const Aliases& aliases) {
  const auto [known, is_new] = texts_.try_emplace(&aliases);
  if (is_new) known->second.insert(aliases.begin(), aliases.end());
  return &known->second;
}

ValueAliases::Table ValueAliases::table_of(const ODTableDef& definition, const AliasMaps& maps) {
  Table table{definition.name, {}};
  const AliasesByName* const own = under(maps.table_field_values, definition.name);
  for (std::size_t i = 0; i < definition.columns.size(); ++i) {
    const std::wstring& name = definition.columns[i].name;
    Column column{static_cast<int>(i), {}};
    const Aliases* const of_table = own != nullptr ? under(*own, name) : nullptr;
    if (of_table != nullptr) column.texts.push_back(texts_of(*of_table));
    const Aliases* const of_field = under(maps.field_values, name);
    if (of_field != nullptr) column.texts.push_back(texts_of(*of_field));
    if (!maps.values.empty()) column.texts.push_back(texts_of(maps.values));
    if (!column.texts.empty()) table.columns.push_back(std::move(column));
  }
  return table;
}

bool ValueAliases::translate(RecordIterator& record) {
  const std::optional<std::size_t> table = finder_.find(record.table_name());
  if (!table) return false;
  bool written = false;
  for (const Column& column : tables_[*table].columns)
    written = translate(record, column) || written;
  return written;
}

bool ValueAliases::translate(RecordIterator& record, const Column& column) {
  const ODValueView value = record.value(column.index);
  std::optional<std::wstring_view> other;
  if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
    other = other_text(column.texts, *text);
    return other && record.set_value(column.index, *other);
  }
  text_.clear();
  append_value_text(value, text_);
  other = other_text(column.texts, text_);
  if (!other) return false;
  read_ = zero_value(type_of(value));
  return store_text(*other, read_) && record.set_value(column.index, view_of(read_));
}

}  // namespace korvel
