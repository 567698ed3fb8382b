#include "bench/beside_sqlite/lines.h"

#include <cstdio>

namespace korvel::bench {
namespace {

void print_number(int width, int decimals, std::optional<double> number) {
  if (number) {
    std::printf(" %*.*f", width, decimals, *number);
  } else {
    std::printf(" %*s", width, "");
  }
}

void print_milliseconds(int width, std::optional<double> time) {
  print_number(width, 2, time ? std::optional(*time * 1e3) : std::nullopt);
}

}  // namespace

void print_heads() {
  std::printf("%-44s %10s %10s %8s %9s %12s\n", "", "korvel ms", "SQLite ms", "ratio", "undo ms",
              "found");
}

void print_line(std::string_view name, double ours, std::optional<double> theirs,
                std::optional<double> undoing, std::optional<std::size_t> found) {
  std::printf("%-44.*s", static_cast<int>(name.size()), name.data());
  print_milliseconds(10, ours);
  print_milliseconds(10, theirs);
  print_number(8, 1, theirs ? std::optional(*theirs / ours) : std::nullopt);
  print_milliseconds(9, undoing);
  if (found) std::printf(" %12zu", *found);
  std::printf("\n");
}

}  // namespace korvel::bench
