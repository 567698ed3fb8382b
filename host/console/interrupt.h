// Ctrl+C: noticed by commands that work long and at the next prompt, and obeyed at once when it
// comes again before that.
#pragma once

namespace korvel::interrupt {

// From now on SIGINT does not end the program by itself.
void install();

// Whether Ctrl+C was pressed since it was last taken, also if it waits until a file is in its
// place.
[[nodiscard]] bool is_pressed();
// The same, and takes it.
[[nodiscard]] bool take();

// Waits until the file has something to read, or its end. False: Ctrl+C was pressed.
[[nodiscard]] bool wait_for_input(int file);

// While one exists, a second Ctrl+C waits for the prompt to see it: the terminal may be in a state
// that has to be put back.
class AtPrompt {
 public:
  AtPrompt();
  ~AtPrompt();
  AtPrompt(const AtPrompt&) = delete;
  AtPrompt& operator=(const AtPrompt&) = delete;
};

}  // namespace korvel::interrupt
