// Arguments, environment and terminals on POSIX systems.
#include <csignal>
#include <cstdlib>
#include <unistd.h>

#include "host/console/platform.h"

namespace korvel::platform {

Utf8Streams::Utf8Streams() = default;
Utf8Streams::~Utf8Streams() = default;

void ignore_closed_pipes() { (void)std::signal(SIGPIPE, SIG_IGN); }

std::vector<std::string> arguments(int argc, char** argv) { return {argv, argv + argc}; }

std::optional<std::string> variable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

bool is_terminal(int stream) { return isatty(stream) == 1; }

}  // namespace korvel::platform
