#include "bench/measuring.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace korvel::bench {

void fail(const std::string& why) {
  (void)std::fprintf(stderr, "%s\n", why.c_str());
  std::exit(1);
}

double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace korvel::bench
