#include "host/console/progress_bar.h"

#include <algorithm>
#include <cstdio>

#include "frame/utf.h"
#include "host/console/output.h"

namespace korvel {
namespace {

constexpr int bar_width = 30;
constexpr std::string_view erase_line = "\r\033[K";

void write_error(std::string_view bytes) {
  (void)std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

}  // namespace

void ProgressBar::start(std::wstring_view label, std::int64_t range) {
  label_ = to_utf8(label);
  range_ = range;
  shown_percent_ = -1;
  move(0);
}

void ProgressBar::move(std::int64_t position) {
  if (!visible_ || range_ <= 0) return;
  const double part = static_cast<double>(position) / static_cast<double>(range_);
  const int percent = static_cast<int>(100 * std::clamp(part, 0.0, 1.0));
  if (percent == shown_percent_) return;
  if (shown_percent_ < 0) flush_output();
  shown_percent_ = percent;
  const auto filled = static_cast<std::size_t>(percent * bar_width / 100);
  write_error(std::string(erase_line) + label_ + " [" + std::string(filled, '#') +
              std::string(bar_width - filled, '.') + "] " + std::to_string(percent) + "%");
}

void ProgressBar::end() {
  if (shown_percent_ >= 0) write_error(erase_line);
  shown_percent_ = -1;
}

}  // namespace korvel
