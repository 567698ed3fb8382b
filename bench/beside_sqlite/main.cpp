// The commands' work on a large drawing beside SQLite's on the same data in memory, in one run.
//
// Every case is answered by both sides by turns; the best time of each counts, and for SQLite the
// best of several statements. Both must give the same number, or the program fails.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "bench/beside_sqlite/cases.h"
#include "bench/measuring.h"

namespace korvel::bench {
namespace {

void compare(std::uint64_t size, std::string_view wanted) {
  Comparison run(size, wanted);
  compare_searches(run);
  compare_explication(run);
  compare_changes(run);
}

}  // namespace
}  // namespace korvel::bench

int main(int count, char** arguments) {
  const std::uint64_t size = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1'000'000;
  if (size == 0) korvel::bench::fail("usage: beside_sqlite [ENTITIES [CASES]]");
  const std::string_view wanted = count > 2 ? arguments[2] : "";
  korvel::bench::compare(size, wanted);
  korvel::bench::compare_csv(size, wanted);
}
