// What the journal makes of a lack of memory.
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <sys/resource.h>

#include "host/standalone/journal.h"

namespace korvel {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool takes_limits = false;  // its own memory would not fit
#else
constexpr bool takes_limits = true;
#endif

// Changes until there is no memory for another one; whether one step holds them all, and a later
// change is a step of its own.
bool stays_in_steps() {
  constexpr rlim_t little_memory = rlim_t{256} << 20;
  const rlimit limit{little_memory, little_memory};
  if (::setrlimit(RLIMIT_AS, &limit) != 0) return false;
  Journal journal;
  std::size_t added = 0;
  try {
    const OpenStep step(journal);
    for (;; ++added)
      journal.add(ItemChange{0, {}});
  } catch (const std::bad_alloc&) {
    journal.add(ItemChange{1, {}});
  }
  const auto last = journal.take_undo();
  const auto first = journal.take_undo();
  return last && last->changes.size() == 1 && first && first->changes.size() == added;
}

TEST(Journal, ClosesAStepThatTheMemoryDidNotSufficeFor) {
  if (!takes_limits) GTEST_SKIP() << "no limit on memory under this sanitizer";
  EXPECT_EXIT(std::exit(stays_in_steps() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace korvel
