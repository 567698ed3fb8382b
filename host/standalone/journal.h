// What undo and redo remember.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/standalone/dxf/document.h"
#include "host/standalone/od_change.h"

namespace korvel {

// An item's former bytes.
struct ItemChange {
  dxf::ItemIndex item;
  dxf::Span span;
};

// Every change holds what stood there before; undoing swaps it with what stands there now, so the
// same change then serves redo.
using Change = std::variant<ItemChange, OdChange>;

enum class JournalDirection { Undo, Redo };

class Journal {
 public:
  struct Step {
    std::uint64_t number = 0;
    std::wstring name;
    std::vector<Change> changes;
  };

  // Brackets a step; pairs nest and the outermost counts. A step without changes is none. Only the
  // opening can fail, for lack of memory.
  void open();
  void close() noexcept;
  // Names the steps that are closed from now on, after the command that makes them.
  void name_steps(std::wstring name) { name_ = std::move(name); }

  // Outside a step the change is a step of its own. What fails to be added must not be done: it
  // could not be taken back.
  void add(Change change);
  // The next adding of one change cannot fail, for what is known only when it is done.
  void make_room();

  // The same for an entity's records and for a value; what comes in a row is kept together.
  void add_records(std::uint32_t entity, RecordSpan former);
  void add_value(std::uint32_t table, std::uint32_t column, std::uint32_t row, const Cell& former);

  // Whether what the open step did last was to change this item, which was there before the step.
  [[nodiscard]] bool just_changed(dxf::ItemIndex item) const;

  // Takes the newest step off; the caller swaps its changes, newest first, and hands it back with
  // `undone` (or the other way round for redo).
  [[nodiscard]] std::optional<Step> take_undo();
  [[nodiscard]] std::optional<Step> take_redo();
  void undone(Step step) { redo_.push_back(std::move(step)); }
  void redone(Step step) { undo_.push_back(std::move(step)); }

  // Names the state that the changes so far have led to; undoing and redoing lead back to the same
  // names. The first state is 0.
  [[nodiscard]] std::uint64_t state() const { return undo_.empty() ? 0 : undo_.back().number; }

 private:
  static std::optional<Step> take(std::vector<Step>& steps);
  // The newest change that `fits`, if only changes of records and values came after it.
  template <class Run, class Fits>
  [[nodiscard]] Run* run(const Fits& fits);

  std::wstring name_;
  Step current_;
  int depth_ = 0;
  std::vector<Step> undo_;
  std::vector<Step> redo_;
  std::uint64_t steps_made_ = 0;
};

// One pair, closed on every way out.
class OpenStep {
 public:
  explicit OpenStep(Journal& journal) : journal_(journal) { journal_.open(); }
  ~OpenStep() { journal_.close(); }
  OpenStep(const OpenStep&) = delete;
  OpenStep& operator=(const OpenStep&) = delete;

 private:
  Journal& journal_;
};

}  // namespace korvel
