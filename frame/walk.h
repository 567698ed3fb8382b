// Walks over many entities, records, rows or parts of a file: the progress meter moves, and the
// user can interrupt.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "frame/progress_meter.h"

namespace korvel {

// The user interrupted before anything was changed: the command ends as after Esc. Thrown by
// ReadWalk and caught where commands are run, so that no command goes on with a part of what it
// wanted to know. Deliberately no std::exception: nothing went wrong.
struct Interrupted {};

// What both kinds of walk share. The meter is shown from the beginning to the end of its life; it
// moves at most a hundred times. The host is asked for the interrupt at the first step and then
// about every ProgressMeter::time_between_questions.
class Walk {
 public:
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;

 protected:
  // The range is the number of items that are to come.
  Walk(ProgressMeter& meter, std::size_t range);
  ~Walk() { meter_.end_progress(); }

  // To be called before each item, or each lot of items. False: the user interrupted, now or at an
  // earlier step.
  bool take_step(std::size_t items) {
    left_ -= static_cast<std::int64_t>(items);
    return left_ > 0 || look();
  }

 private:
  using Clock = std::chrono::steady_clock;

  bool look();
  [[nodiscard]] std::int64_t next_stride(Clock::duration since_last_look) const;

  ProgressMeter& meter_;
  std::chrono::milliseconds patience_;
  std::int64_t meter_stride_ = 1;
  std::int64_t next_move_ = 1;
  std::int64_t done_ = 0;    // at the last look
  std::int64_t stride_ = 1;  // items from one look at the clock to the next
  std::int64_t left_ = 1;    // of them
  Clock::time_point looked_;
  Clock::time_point asked_;
  bool interrupted_ = false;
};

// Over what is only read: gathering, searching, counting, filling a dialog, planning.
class ReadWalk : public Walk {
 public:
  ReadWalk(ProgressMeter& meter, std::size_t range) : Walk(meter, range) {}

  // Throws Interrupted.
  void step(std::size_t items = 1) {
    if (!take_step(items)) throw Interrupted();
  }
};

// Calls work(index) for each of `count` items, which take a few nanoseconds each, and steps in
// lots.
template <class Work>
void read_in_lots(ReadWalk& walk, std::size_t count, const Work& work) {
  constexpr std::size_t lot = 1024;
  for (std::size_t begin = 0; begin < count; begin += lot) {
    const std::size_t end = std::min(begin + lot, count);
    walk.step(end - begin);
    for (std::size_t i = begin; i < end; ++i)
      work(i);
  }
}

// Over what is changed. After an interrupt what was changed stays, and the command reports it.
class WriteWalk : public Walk {
 public:
  WriteWalk(ProgressMeter& meter, std::size_t range) : Walk(meter, range) {}

  // False: the item is to be left alone, and all that follow.
  [[nodiscard]] bool step() { return take_step(1); }
};

}  // namespace korvel
