// The decimals of lengths, LUPREC, while a command runs with its own.
#pragma once

#include <optional>

#include "frame/drawing_host.h"

namespace korvel {

// The drawing's own; what CAD programs take for a drawing without it.
[[nodiscard]] inline int unit_precision_of(const DrawingHost& host) {
  constexpr int usual = 4;
  return host.variable(L"LUPREC").value_or(usual);
}

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

 private:
  static constexpr const wchar_t* name = L"LUPREC";

  DrawingHost& host_;
  std::optional<int> kept_;
};

}  // namespace korvel
