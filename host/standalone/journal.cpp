#include "host/standalone/journal.h"

namespace korvel {
namespace {

// One more fits in; room grows as with adding.
template <class Element>
void make_room_in(std::vector<Element>& elements) {
  if (elements.size() == elements.capacity()) elements.reserve(2 * elements.size() + 1);
}

}  // namespace

void Journal::open() {
  if (depth_ == 0) {
    current_.name = name_;
    make_room_in(undo_);
  }
  ++depth_;
}

void Journal::close() noexcept {
  if (depth_ == 0 || --depth_ > 0 || current_.changes.empty()) return;
  current_.number = ++steps_made_;
  undo_.push_back(std::move(current_));
  current_ = {};
  redo_.clear();
}

void Journal::make_room() {
  const OpenStep step(*this);
  make_room_in(current_.changes);
}

void Journal::add(Change change) {
  const OpenStep step(*this);
  current_.changes.push_back(std::move(change));
}

bool Journal::just_changed(dxf::ItemIndex item) const {
  if (depth_ == 0 || current_.changes.empty()) return false;
  const auto* const last = std::get_if<ItemChange>(&current_.changes.back());
  return last != nullptr && last->item == item && !last->span.erased;
}

// Changes of the records of entities, and of the values of different columns, can change places: a
// command that fills three columns by turns makes three runs.
template <class Run, class Fits>
Run* Journal::run(const Fits& fits) {
  constexpr std::size_t reach = 16;
  std::vector<Change>& changes = current_.changes;
  for (std::size_t i = changes.size(); i-- > 0 && i + reach >= changes.size();) {
    auto* const od = std::get_if<OdChange>(&changes[i]);
    if (od == nullptr) return nullptr;
    if (auto* const found = std::get_if<Run>(&od->what)) {
      if (fits(*found)) return found;
    } else if (!std::holds_alternative<OdChange::Records>(od->what) &&
               !std::holds_alternative<OdChange::Values>(od->what)) {
      return nullptr;
    }
  }
  return nullptr;
}

void Journal::add_records(std::uint32_t entity, RecordSpan former) {
  const OpenStep step(*this);
  auto* records = run<OdChange::Records>([](const OdChange::Records&) { return true; });
  if (records == nullptr) {
    Change& added = current_.changes.emplace_back(std::in_place_type<OdChange>);
    records = &std::get<OdChange>(added).what.emplace<OdChange::Records>();
  }
  records->formers.push_back({entity, former});
}

void Journal::add_value(std::uint32_t table, std::uint32_t column, std::uint32_t row,
                        const Cell& former) {
  const OpenStep step(*this);
  auto* values = run<OdChange::Values>([&](const OdChange::Values& other) {
    return other.table == table && other.column == column;
  });
  if (values == nullptr) {
    Change& added = current_.changes.emplace_back(std::in_place_type<OdChange>);
    values = &std::get<OdChange>(added).what.emplace<OdChange::Values>();
    values->table = table;
    values->column = column;
    values->formers = cells_for(static_cast<ODType>(former.index()));
  }
  append(values->formers, former);
  values->rows.push_back(row);  // counts
}

std::optional<Journal::Step> Journal::take(std::vector<Step>& steps) {
  if (steps.empty()) return std::nullopt;
  Step step = std::move(steps.back());
  steps.pop_back();
  return step;
}

std::optional<Journal::Step> Journal::take_undo() {
  make_room_in(redo_);
  return take(undo_);
}

std::optional<Journal::Step> Journal::take_redo() {
  make_room_in(undo_);
  return take(redo_);
}

}  // namespace korvel
