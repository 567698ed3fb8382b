// The stand-alone host at a command line: every question becomes a prompt, every answer is a line.
#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "host/console/console.h"
#include "host/console/progress_bar.h"

namespace korvel {

class TerminalHost final : public ConsoleHost {
 public:
  struct Manner {
    bool strict = false;         // the first refusal ends the run
    bool show_progress = false;  // on standard error
    bool saves_at_end = false;   // what the input leaves changed is not lost
    bool overwrite = false;      // a drawing's file that another program has changed, too
  };
  // The lines must outlive the host.
  TerminalHost(std::unique_ptr<Drawing> drawing, LineSource& lines, Manner manner);

  // Why no more commands are read.
  enum class Ending {
    None,
    InputEnded,
    InputEndedInPrompt,  // the prompt was answered with Esc and named on standard error
    Quit,
    QuitDiscarding,  // what was not saved is not wanted
    Refused,         // under --strict
    Interrupted
  };
  [[nodiscard]] Ending ending() const { return ending_; }

  [[nodiscard]] Fault worst_fault() const { return worst_fault_; }

  // A question when the console has ended already, in a conversation that goes on for it alone.
  [[nodiscard]] bool ask_yes_at_end(std::wstring_view prompt);

  // The line typed at the command prompt; none: the console ends.
  [[nodiscard]] std::optional<std::wstring> next_command();

  // Runs what a command does: whatever it throws is told and ends it alone, and what it left locked
  // is unlocked. False: it threw.
  bool run_guarded(std::wstring_view name, const std::function<void()>& action);

  // The same for a command of the host; the reactors are told how it ended.
  bool run_host_command(const HostCommand& command);

  // Holds the conversation with a palette until it is put aside or has sent something to the
  // command line. In a turn of the palette's.
  void converse_with(Palette& palette);

  [[nodiscard]] std::optional<std::wstring> ask_line(std::wstring_view prompt) override;
  void refuse(std::wstring_view sentence) override;
  void print_error(std::wstring_view message) override;
  void note_refused_input(std::wstring_view reason) override;
  [[nodiscard]] std::optional<EntityList> ask_selection_with(std::wstring_view prompt) override;
  void refuse_file(Fault fault, std::wstring_view sentence) override;
  [[nodiscard]] ChangedFile changed_file() const override;
  void quit(Changes changes) override;

  void report_failed_file(const FailedFile& failed) override;
  [[nodiscard]] std::optional<EntityList> ask_selection() override;
  void print(std::wstring_view text) override;
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override;
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override;
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override;
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override;
  [[nodiscard]] bool show(Dialog& dialog) override;
  [[nodiscard]] bool ask_yes_no(std::wstring_view caption, std::wstring_view question,
                                BoxIcon icon) override;
  void show_text(std::wstring_view title, std::wstring_view body, int width, int height) override;
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) override;
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) override;
  void start_progress(std::wstring_view label, std::int64_t range) override;
  void move_progress(std::int64_t position) override;
  void end_progress() override;
  [[nodiscard]] bool interrupted() override;
  // The entity is named by its handle; one without is refused.
  bool run_command(std::wstring_view name, EntityId entity) override;
  // What is sent becomes commands and answers at once when the running command is done.
  void cancel_command() override { sent_.clear(); }
  void send(std::wstring_view text) override;
  [[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                             Palette& content) override;
  void lock() override;
  void unlock() override;

 private:
  // Lines of a form until one closes it or the form has sent something to the command line. False:
  // it was not accepted.
  bool converse(Dialog& dialog, std::wstring_view prompt);
  // One line as it comes. None: the input ended, the console ends, or Ctrl+C.
  std::optional<std::wstring> read_line(std::wstring_view prompt);
  // An answer; `place` names the question should the input end in it.
  std::optional<std::wstring> answer(std::wstring_view prompt, std::wstring_view place);
  std::optional<std::wstring> take_sent();
  std::optional<std::wstring> ask_file_name(const FileQuestion& question, std::wstring_view prompt);
  void start_line();
  // Something was refused.
  void stop_if_strict();
  // Whether the person at the terminal, where the input ended, does not want to lose the changes.
  bool stays();
  // A script ends at the first; at a terminal the prompt is to ask at the second.
  void count_interrupts(int presses);
  // The second Ctrl+C: ends the console unless the person keeps what is not saved.
  void leave_if_wanted();

  LineSource& lines_;
  Manner manner_;
  ProgressBar progress_;
  Ending ending_ = Ending::None;
  std::wstring last_line_;
  bool at_line_start_ = true;
  int interrupts_ = 0;           // since a line was read
  bool interrupt_seen_ = false;  // by the running command, which ends for it
  Fault worst_fault_ = Fault::None;
  int locks_ = 0;
  bool escaped_ = false;                      // a question of the running command
  std::optional<std::wstring> given_answer_;  // to the next question, instead of a line
  std::deque<std::wstring> sent_;             // commands and answers that come before any line
};

}  // namespace korvel
