// Ctrl+C: noticed by commands that work long and at the next prompt. Where neither looks at it, it
// ends the program when it is pressed often enough.
#pragma once

namespace korvel::interrupt {

// From now on SIGINT does not end the program by itself, unless it comes for the `most`-th time
// before it is taken: the first time while a drawing is read, the last resort when a command hangs.
void install(int most);

// Whether Ctrl+C was pressed since it was last taken, also if it waits until a file is in its
// place.
[[nodiscard]] bool is_pressed();
// How often it was, and takes it.
[[nodiscard]] int take();

// Waits until the file has something to read, or its end. False: Ctrl+C was pressed.
[[nodiscard]] bool wait_for_input(int file);

// While one exists, Ctrl+C waits for the prompt to see it, however often it comes: the terminal may
// be in a state that has to be put back.
class AtPrompt {
 public:
  AtPrompt();
  ~AtPrompt();
  AtPrompt(const AtPrompt&) = delete;
  AtPrompt& operator=(const AtPrompt&) = delete;
};

}  // namespace korvel::interrupt
