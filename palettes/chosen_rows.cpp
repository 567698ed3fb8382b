#include "palettes/chosen_rows.h"

#include <algorithm>
#include <span>
#include <utility>

namespace korvel {
namespace {

// Walks the records of the table and stops at those that are rows.
class ChosenRowsIterator final : public ForwardingRecordIterator {
 public:
  ChosenRowsIterator(std::unique_ptr<RecordIterator> target, std::span<const RecordKey> rows)
      : ForwardingRecordIterator(std::move(target)), rows_(rows) {}

  bool open(EntityId entity, OpenMode mode) override {
    wanted_ = {std::ranges::lower_bound(rows_, entity, {}, &RecordKey::entity),
               std::ranges::upper_bound(rows_, entity, {}, &RecordKey::entity)};
    const bool opened = Base::open(wanted_.empty() ? EntityId{} : entity, mode);
    rewind();
    return opened;
  }
  [[nodiscard]] int count() const override {
    const auto there = std::ranges::count_if(
        wanted_, [this](const RecordKey& row) { return row.number <= Base::count(); });
    return static_cast<int>(there);
  }
  void start() override {
    Base::start();
    rewind();
  }
  [[nodiscard]] bool done() const override { return next_ == wanted_.size() || Base::done(); }
  void next() override {
    Base::next();
    ++number_;
    ++next_;
    go_to_row();
  }
  bool remove() override { return false; }
  int remove_marked(std::span<const char> /*marks*/) override { return 0; }

 private:
  using Base = ForwardingRecordIterator;

  void rewind() {
    number_ = 1;
    next_ = 0;
    go_to_row();
  }
  void go_to_row() {
    while (!done() && number_ < wanted_[next_].number) {
      Base::next();
      ++number_;
    }
  }

  std::span<const RecordKey> rows_;    // of all entities
  std::span<const RecordKey> wanted_;  // of this one
  std::int32_t number_ = 1;            // of the record that the target stands on
  std::size_t next_ = 0;               // which of the wanted that is
};

}  // namespace

ChosenRowsStore::ChosenRowsStore(ODStore& target, std::wstring_view table,
                                 std::vector<RecordKey> rows)
    : IteratingStore(target), table_(table), rows_(std::move(rows)) {
  std::ranges::sort(rows_);
}

std::unique_ptr<RecordIterator> ChosenRowsStore::records() { return records_of(table_); }

std::unique_ptr<RecordIterator> ChosenRowsStore::records_of(std::wstring_view table) {
  const std::span<const RecordKey> rows =
      table == table_ ? std::span<const RecordKey>(rows_) : std::span<const RecordKey>();
  return std::make_unique<ChosenRowsIterator>(ForwardingStore::records_of(table_), rows);
}

}  // namespace korvel
