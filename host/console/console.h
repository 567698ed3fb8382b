// The console's conversation: one line in, one line out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/plugin.h"
#include "host/standalone/standalone_host.h"

namespace korvel {

inline constexpr std::wstring_view command_prompt = L"Command: ";

// Longest line that is taken, in bytes of UTF-8 without the line end.
inline constexpr std::size_t max_typed_bytes = std::size_t{1} << 20;

// Where the lines of a conversation come from. A script or a pipe echoes each line it hands out
// behind its prompt, as a terminal shows what was typed.
class LineSource {
 public:
  LineSource() = default;
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;
  virtual ~LineSource() = default;

  enum class Read { Line, TooLong, NotUtf8, End, Interrupted };
  // Shows the prompt and reads a line without its line end. The cursor is at the beginning of a
  // line afterwards. TooLong: more than max_typed_bytes; NotUtf8: other bytes; the line is lost.
  // Interrupted: Ctrl+C.
  virtual Read next(std::wstring_view prompt, std::wstring& line) = 0;
  // Where the line that came last is from: "roads.scr, line 12"; empty where a person typed it.
  [[nodiscard]] virtual std::wstring place() const { return {}; }
  [[nodiscard]] virtual bool is_terminal() const = 0;
  // No line will come any more, as far as can be told without waiting.
  [[nodiscard]] virtual bool at_end() { return false; }
  // Words to complete at the command prompt.
  virtual void set_words(const std::vector<std::wstring>& /*words*/) {}
};

// What makes a script fail, the worse the greater: a file was not read, or not written, or a
// command was not finished for lack of memory.
enum class Fault { None, NotRead, NotWritten, NotFinished };

enum class Changes { Kept, Discarded };

// The front end of the stand-alone host at a command line: prompts, forms and messages.
class ConsoleHost : public StandaloneHost {
 public:
  using StandaloneHost::StandaloneHost;

  // A line for this prompt; none: Esc, Ctrl+C, or the end of input. Every question of the console,
  // and of the host's own commands, is asked through here.
  [[nodiscard]] virtual std::optional<std::wstring> ask_line(std::wstring_view prompt) = 0;

  // One sentence about a mistake, printed on a line of its own; under --strict it ends the run.
  virtual void refuse(std::wstring_view sentence) = 0;

  // The selection conversation with the given prompt ("Select objects: ").
  [[nodiscard]] virtual std::optional<EntityList> ask_selection_with(std::wstring_view prompt) = 0;

  // The same about a drawing file; the worst fault decides how the program ends.
  virtual void refuse_file(Fault fault, std::wstring_view sentence) = 0;

  // What to do about the drawing's own file when another program has changed it.
  enum class ChangedFile { Ask, Keep, Replace };
  [[nodiscard]] virtual ChangedFile changed_file() const = 0;

  // Ends the console after the current command. Discarded: the user gave up what is not saved.
  virtual void quit(Changes changes) = 0;

  // The file the drawing came from or goes to; empty for a new drawing.
  std::filesystem::path file;
};

// A command of the host itself (LINE, SAVE, ...); the plug-in's are in its own table.
struct HostCommand {
  std::wstring_view name;
  std::wstring_view aliases;  // further names, separated by blanks
  std::wstring_view summary;
  void (*run)(ConsoleHost&);
};

[[nodiscard]] const std::vector<HostCommand>& host_commands();

// By its name or an alias, without case.
[[nodiscard]] bool is_called(const HostCommand& command, std::wstring_view name);

// Null when no command is called so.
[[nodiscard]] const HostCommand* find_host_command(std::wstring_view name);

// The command's name in what was typed: without blanks around it, and without what people put in
// front who want it untranslated, undisturbed or not redefined; here it is all the same.
[[nodiscard]] std::wstring_view command_name(std::wstring_view typed);

}  // namespace korvel
