// The progress meter as one line on standard error that is overwritten and, at the end, erased.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvel {

class ProgressBar {
 public:
  explicit ProgressBar(bool visible) : visible_(visible) {}

  void start(std::wstring_view label, std::int64_t range);
  void move(std::int64_t position);
  void end();

 private:
  bool visible_;
  std::string label_;
  std::int64_t range_ = 0;
  int shown_percent_ = -1;
};

}  // namespace korvel
