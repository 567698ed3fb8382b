// Ctrl+C in a console window.
#include <atomic>
#include <cstdlib>
#include <io.h>
#include <windows.h>

#include "host/console/exit_status.h"
#include "host/console/interrupt.h"
#include "host/files/disk.h"

namespace korvel::interrupt {
namespace {

// The system calls the handler in a thread of its own.
std::atomic<int> presses = 0;         // NOLINT
std::atomic<int> most_presses = 1;    // NOLINT
std::atomic<bool> at_prompt = false;  // NOLINT

// Files are written under another name and renamed, so leaving at any moment is safe.
BOOL WINAPI on_event(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  if (++presses >= most_presses && !at_prompt) std::_Exit(exit_status::interrupted);
  return TRUE;
}

}  // namespace

void install(int most) {
  static const BOOL installed = SetConsoleCtrlHandler(on_event, TRUE);
  (void)installed;
  most_presses = most;
}

bool is_pressed() { return presses > 0 || disk::interrupt_waits(); }

int take() { return presses.exchange(0); }

bool wait_for_input(int file) {
  // Nothing in the system waits for a pipe and for the key, so a pipe is looked into now and then.
  // Looking fails for everything else, and at the pipe's end: there the reading says what is.
  constexpr DWORD pause_in_ms = 10;
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));  // NOLINT
  while (true) {
    if (take() > 0) return false;
    DWORD waiting = 0;
    const bool is_open_pipe = PeekNamedPipe(handle, nullptr, 0, nullptr, &waiting, nullptr) != 0;
    if (!is_open_pipe || waiting > 0) return true;
    Sleep(pause_in_ms);
  }
}

AtPrompt::AtPrompt() { at_prompt = true; }
AtPrompt::~AtPrompt() { at_prompt = false; }

}  // namespace korvel::interrupt
