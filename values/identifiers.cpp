#include "values/identifiers.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/format.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "frame/value_text.h"
#include "values/identifiers_dialog.h"

namespace korvel {
namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
constexpr std::wstring_view digits = L"0123456789";

std::optional<int> column_index(const ODStore& store, std::wstring_view table,
                                std::wstring_view column) {
  const std::optional<ODTableDef> definition = store.table(table);
  const auto index = definition ? definition->column(column) : std::nullopt;
  return index ? std::optional(static_cast<int>(*index)) : std::nullopt;
}

class Counter {
 public:
  Counter(const Numbering& numbering, int column)
      : numbering_(numbering), column_(column), next_(numbering.first) {}

  // False: the numbering is at its end.
  bool number(RecordIterator& record) {
    switch (type_of(record.value(column_))) {
      case ODType::Integer:
        return store(record, static_cast<std::int32_t>(next_));
      case ODType::Character:
        text_ = numbering_.prefix;
        append_integer(next_, text_);
        text_ += numbering_.suffix;
        return store(record, std::wstring_view(text_));
      case ODType::Real:
        return true;
      case ODType::Point:
      case ODType::Unknown:
        break;
    }
    next_ = numbering_.first;
    return false;
  }

  [[nodiscard]] std::int64_t stored() const { return next_ - numbering_.first; }

 private:
  bool store(RecordIterator& record, const ODValueView& value) {
    if (record.set_value(column_, value)) ++next_;
    return next_ <= largest;
  }

  const Numbering& numbering_;
  int column_;
  std::int64_t next_;
  std::wstring text_;
};

struct NumberIn {
  std::int32_t operator()(std::monostate) const { return 0; }
  std::int32_t operator()(const Point3&) const { return 0; }
  std::int32_t operator()(std::int32_t number) const { return number; }
  std::int32_t operator()(double number) const {
    return number > 0 ? static_cast<std::int32_t>(std::min<double>(number, largest)) : 0;
  }
  std::int32_t operator()(std::wstring_view text) const {
    const std::size_t digit = text.find_first_of(digits);
    if (digit == std::wstring_view::npos || digit + 1 == text.size()) return 0;
    return read_integer(text.substr(digit));
  }
};

}  // namespace

std::int64_t number_records(ODStore& store, const EntityList& entities, const Numbering& numbering,
                            ProgressMeter& meter) {
  const std::optional<int> column = column_index(store, numbering.table, numbering.column);
  if (!column) return 0;
  Counter counter(numbering, *column);
  const std::unique_ptr<RecordIterator> records = store.records_of(numbering.table);
  WriteWalk walk(meter, entities.size());
  for (auto entity = entities.rbegin(); entity != entities.rend() && walk.step(); ++entity) {
    for (records->open(*entity, OpenMode::Write); !records->done(); records->next()) {
      if (!counter.number(*records)) return counter.stored();
    }
  }
  return counter.stored();
}

std::int32_t proposed_first(ODStore& store, const EntityList& entities, std::wstring_view table,
                            std::wstring_view column, ProgressMeter& meter) {
  const std::optional<int> index = column_index(store, table, column);
  if (!index) return 0;
  const std::unique_ptr<RecordIterator> records = store.records_of(table);
  std::int32_t most = 0;
  ReadWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    if (!records->open(entity, OpenMode::Read) || records->done()) continue;
    most = std::max(most, std::visit(NumberIn{}, records->value(*index)));
  }
  return most == 0 || most == largest ? most : most + 1;
}

std::int32_t typed_first(std::wstring_view text) {
  const bool all_digits = text.find_first_not_of(digits) == std::wstring_view::npos;
  return all_digits ? read_integer(text) : invalid_first;
}

void set_id(Session& session) {
  DrawingHost& host = session.host;
  EntityList selected = pick_first_entities(host);
  OptionsWild dialog(session.store, host, tables_in_use(session.store, host, selected),
                     session.choices.first_number);
  if (!host.show(dialog)) return;
  const Numbering numbering = dialog.numbering();
  session.choices.first_number = numbering.first;
  if (numbering.first == invalid_first) {
    return host.note_refused_input(L"the first number is no whole number from 0");
  }
  std::optional<EntityList> entities = entities_to_set(host, std::move(selected));
  if (!entities) return;
  drop_repeated(*entities);
  std::int64_t count = 0;
  {
    const DocumentLock lock(host);
    count = number_records(session.store, *entities, numbering, host);
  }
  report<Message::Completed>(host, count);
}

}  // namespace korvel
