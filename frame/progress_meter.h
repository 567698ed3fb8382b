// The host's progress meter, and whether the user wants the command to stop.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace korvel {

class ProgressMeter {
 public:
  ProgressMeter() = default;
  ProgressMeter(const ProgressMeter&) = delete;
  ProgressMeter& operator=(const ProgressMeter&) = delete;
  virtual ~ProgressMeter() = default;

  // One meter at a time: started with its label and its range from 0, moved, and ended. Ending one
  // that was not started does nothing.
  virtual void start_progress(std::wstring_view label, std::int64_t range) = 0;
  virtual void move_progress(std::int64_t position) = 0;
  virtual void end_progress() = 0;

  // Whether the user pressed Esc since the last prompt was answered. Once true, it stays true until
  // the next prompt. A host that cannot say answers false.
  [[nodiscard]] virtual bool interrupted() { return false; }

  // How long a walk goes on before it asks again; 0: it asks at every step.
  [[nodiscard]] virtual std::chrono::milliseconds time_between_questions() const {
    return std::chrono::milliseconds(20);
  }
};

}  // namespace korvel
