#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "host/console/exit_status.h"
#include "host/console/interrupt.h"
#include "host/files/disk.h"

namespace korvel::interrupt {
namespace {

// A signal handler can reach nothing but globals.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<int> presses = 0;
std::atomic<int> most_presses = 1;
std::atomic<bool> at_prompt = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "they are used in the signal handler");

// Written by the handler, so that a key pressed just before the waiting began ends the waiting.
std::array<int, 2> wake_pipe = {-1, -1};
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

// Files are written under another name and renamed, so leaving at any moment is safe.
void on_signal(int) {
  const int former_errno = errno;
  if (++presses >= most_presses && !at_prompt) _exit(exit_status::interrupted);
  const char byte = 0;
  [[maybe_unused]] const auto written = write(wake_pipe[1], &byte, 1);
  errno = former_errno;
}

void drain() {
  std::array<char, 64> bytes{};
  while (read(wake_pipe[0], bytes.data(), bytes.size()) > 0) {
  }
}

}  // namespace

void install(int most) {
  most_presses = most;
  if (wake_pipe[0] >= 0) return;
  struct sigaction action {};
  // A shell starts a program in the background so that Ctrl+C does not reach it.
  if (sigaction(SIGINT, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) return;
  if (pipe2(wake_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  action.sa_handler = on_signal;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

bool is_pressed() { return presses > 0 || disk::interrupt_waits(); }

int take() {
  drain();
  return presses.exchange(0);
}

bool wait_for_input(int file) {
  while (true) {
    if (take() > 0) return false;
    std::array<pollfd, 2> files = {pollfd{file, POLLIN, 0}, pollfd{wake_pipe[0], POLLIN, 0}};
    if (poll(files.data(), files.size(), -1) < 0 && errno != EINTR) return true;
    if (files[0].revents != 0 && presses == 0) return true;
  }
}

AtPrompt::AtPrompt() { at_prompt = true; }
AtPrompt::~AtPrompt() { at_prompt = false; }

}  // namespace korvel::interrupt
