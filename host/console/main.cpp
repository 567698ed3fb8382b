// korvel: the stand-alone host at a command line.
#include <cstdio>
#include <exception>
#include <fstream>
#include <memory>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/console/command_list.h"
#include "host/console/command_loop.h"
#include "host/console/commands/file_commands.h"
#include "host/console/exit_status.h"
#include "host/console/interrupt.h"
#include "host/console/options.h"
#include "host/console/output.h"
#include "host/console/paths.h"
#include "host/console/platform.h"
#include "host/console/scripted_lines.h"
#include "host/console/terminal_lines.h"

namespace korvel {
namespace {

bool may_write_output(const Options& options, const std::filesystem::path& own) {
  if (!options.output) return true;
  if (is_folder(*options.output)) {
    complain(to_utf8(path_text(*options.output)) + " is a directory");
    return false;
  }
  if (options.overwrite || !replaces_another(*options.output, own)) return true;
  complain(to_utf8(path_text(*options.output)) +
           " exists and is not the drawing; --overwrite replaces it");
  return false;
}

// What a script could not read or write counts; a person at a terminal has seen to it.
int status_of(FileFault worst, const LineSource& lines) {
  if (lines.is_terminal()) return exit_status::done;
  switch (worst) {
    case FileFault::NotWritten:
      return exit_status::output_not_written;
    case FileFault::NotRead:
      return exit_status::input_not_read;
    default:
      return exit_status::done;
  }
}

int status_of(const TerminalHost& host, const LineSource& lines) {
  switch (host.ending()) {
    case TerminalHost::Ending::Refused:
      complain("stopped at the first refused line");
      return exit_status::stopped_by_strict;
    case TerminalHost::Ending::Interrupted:
      return exit_status::interrupted;
    default:
      break;
  }
  const int file_status = status_of(host.worst_file_fault(), lines);
  if (file_status != exit_status::done) return file_status;
  return host.ending() == TerminalHost::Ending::InputEndedInPrompt
             ? exit_status::input_ended_in_prompt
             : exit_status::done;
}

// What was stopped is not saved: the drawing may be in the middle of what was wanted.
bool wants_saving(TerminalHost::Ending ending) {
  using Ending = TerminalHost::Ending;
  return ending != Ending::Refused && ending != Ending::Interrupted &&
         ending != Ending::QuitDiscarding;
}

int save_output(const Options& options, TerminalHost& host, int status) {
  if (!options.output || !wants_saving(host.ending())) return status;
  if (!may_write_output(options, host.file)) return exit_status::output_not_written;
  const std::optional<Failure> failure = save_drawing(host.drawing(), *options.output);
  if (!failure) return status;
  complain(failure->reason);
  return exit_status::output_not_written;
}

// Where the input comes from: -c and -s, or standard input when there are neither.
struct Input {
  std::unique_ptr<LineReader> reader;
  std::unique_ptr<LineSource> lines;
};

Result<Input> open_input(const Options& options) {
  using Comments = ScriptedLines::Comments;
  using namespace platform;
  Input input;
  const bool scripted = !options.commands.empty() || options.script;
  if (!scripted && is_terminal(standard_input) && is_terminal(standard_output)) {
    input.lines = make_terminal_lines(options.no_color ? PromptStyle::Plain : PromptStyle::Bold);
    return input;
  }
  if (options.script) {
    const Result<int> file = open_for_reading(*options.script);
    if (!file) return file.failure();
    input.reader = std::make_unique<LineReader>(*file);
  } else if (!scripted) {
    input.reader = std::make_unique<LineReader>(platform::standard_input);
  }
  input.lines = std::make_unique<ScriptedLines>(
      options.commands, input.reader.get(), options.script ? Comments::Skip : Comments::AreLines);
  return input;
}

int run_console(const Options& options) {
  const Result<Input> input = open_input(options);
  if (!input) {
    complain(input.reason());
    return exit_status::input_not_read;
  }
  if (!may_write_output(options, options.drawing.value_or(std::filesystem::path()))) {
    return exit_status::output_not_written;
  }
  Result<std::unique_ptr<Drawing>> drawing =
      options.drawing ? open_drawing(*options.drawing) : Drawing::blank();
  if (!drawing) {
    complain(drawing.reason());
    return exit_status::input_not_read;
  }
  print_notices(**drawing);

  interrupt::install();
  const bool progress = !options.no_progress && platform::is_terminal(platform::standard_error);
  TerminalHost host(std::move(*drawing), *input->lines, {options.strict, progress});
  if (options.drawing) host.file = *options.drawing;
  ConsoleCommandStack commands;
  CkorvelApp plugin(commands);
  plugin.on_load();
  CommandLoop loop(host, *input->lines, commands, plugin);
  std::ofstream trace;
  if (const std::optional<std::string> path = platform::variable("KORVEL_TRACE")) {
    trace.open(path_of(*path), std::ios::binary);
    if (!trace) {
      complain(*path + ": the trace cannot be written");
      return exit_status::output_not_written;
    }
    // Flushed line by line: what matters most is what stood there before a crash.
    loop.trace_to([&trace](std::wstring_view call) { trace << to_utf8(call) << std::endl; });
  }
  loop.run();
  plugin.on_unload();

  if (input->reader && input->reader->failure()) {
    complain("the input could not be read: " + *input->reader->failure());
    return exit_status::input_not_read;
  }
  return save_output(options, host, status_of(host, *input->lines));
}

int run(const std::vector<std::string>& arguments) {
  const std::variant<Options, int> read = read_options(arguments);
  if (const auto* const status = std::get_if<int>(&read)) return *status;
  const Options& options = std::get<Options>(read);
  if (!options.list_commands) return run_console(options);
  write_output(command_list());
  return exit_status::done;
}

bool output_was_written() { return std::fflush(stdout) == 0 && std::ferror(stdout) == 0; }

}  // namespace
}  // namespace korvel

int main(int argc, char** argv) try {
  const korvel::platform::Utf8Streams streams;
  const int status = korvel::run(korvel::platform::arguments(argc, argv));
  if (korvel::output_was_written()) return status;
  korvel::complain("standard output could not be written");
  return korvel::exit_status::output_not_written;
} catch (const std::exception& error) {  // out of memory, at last
  (void)std::fprintf(stderr, "korvel: %s\n", error.what());
  return korvel::exit_status::output_not_written;
}
