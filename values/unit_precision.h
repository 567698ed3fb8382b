// The decimals of lengths, LUPREC, while a command runs with its own.
#pragma once

#include <optional>

#include "frame/drawing_host.h"

namespace korvel {

// Sets LUPREC and puts it back on every way out. A drawing without it stays without.
class UnitPrecision {
 public:
  UnitPrecision(DrawingHost& host, int during_run) : host_(host), kept_(host.variable(name)) {
    if (kept_) host_.set_variable(name, during_run);
  }
  ~UnitPrecision() {
    if (kept_) host_.set_variable(name, *kept_);
  }
  UnitPrecision(const UnitPrecision&) = delete;
  UnitPrecision& operator=(const UnitPrecision&) = delete;

  // What the drawing has outside the run.
  [[nodiscard]] int of_drawing() const { return kept_.value_or(usual); }

 private:
  static constexpr const wchar_t* name = L"LUPREC";
  static constexpr int usual = 4;

  DrawingHost& host_;
  std::optional<int> kept_;
};

}  // namespace korvel
