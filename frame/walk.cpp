#include "frame/walk.h"

#include <algorithm>

namespace korvel {

Walk::Walk(ProgressMeter& meter, std::size_t range)
    : meter_(meter), patience_(meter.time_between_questions()) {
  constexpr std::int64_t most_moves = 100;
  const auto items = static_cast<std::int64_t>(range);
  meter_stride_ = std::max<std::int64_t>((items + most_moves - 1) / most_moves, 1);
  next_move_ = meter_stride_;
  looked_ = Clock::now();
  asked_ = looked_ - patience_;
  meter_.start_progress(L"KORVEL", items);
}

bool Walk::look() {
  if (interrupted_) return false;
  done_ += stride_ - left_;
  const Clock::time_point now = Clock::now();
  if (now - asked_ >= patience_) {
    asked_ = now;
    interrupted_ = meter_.interrupted();
    if (interrupted_) return false;
  }
  if (done_ >= next_move_) {
    meter_.move_progress(done_);
    next_move_ = done_ + meter_stride_;
  }
  stride_ = next_stride(now - looked_);
  left_ = stride_;
  looked_ = now;
  return true;
}

// Quick items come in long strides, so that looking at the clock costs nothing. A slow one makes
// the stride short again.
std::int64_t Walk::next_stride(Clock::duration since_last_look) const {
  constexpr std::int64_t longest = 64;
  constexpr std::chrono::microseconds quick(100);
  constexpr std::chrono::milliseconds slow(1);
  if (patience_.count() == 0 || since_last_look > slow) return 1;
  return since_last_look < quick ? std::min(2 * stride_, longest) : stride_;
}

}  // namespace korvel
