// A flag that is on for a while, whatever is thrown meanwhile.
#pragma once

#include <utility>

namespace korvel::windows {

class FlagGuard {
 public:
  explicit FlagGuard(bool& flag) : flag_(flag), former_(std::exchange(flag, true)) {}
  ~FlagGuard() { flag_ = former_; }
  FlagGuard(const FlagGuard&) = delete;
  FlagGuard& operator=(const FlagGuard&) = delete;

  [[nodiscard]] bool was_on() const { return former_; }

 private:
  bool& flag_;
  bool former_;
};

}  // namespace korvel::windows
