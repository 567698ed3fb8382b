#include "host/console/program.h"

#include <cstdio>
#include <exception>
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
int status_of(Fault worst, const LineSource& lines) {
  if (lines.is_terminal()) return exit_status::done;
  switch (worst) {
    case Fault::NotWritten:
    case Fault::NotFinished:
      return exit_status::output_not_written;
    case Fault::NotRead:
      return exit_status::input_not_read;
    default:
      return exit_status::done;
  }
}

int status_of(const TerminalHost& host, const LineSource& lines) {
  switch (host.ending()) {
    case TerminalHost::Ending::Refused:
      return exit_status::stopped_by_strict;
    case TerminalHost::Ending::Interrupted:
      return exit_status::interrupted;
    default:
      break;
  }
  const int file_status = status_of(host.worst_fault(), lines);
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

// The input ended with changes that were neither saved nor discarded.
void warn_of_lost_changes(const TerminalHost& host) {
  const bool ended = host.ending() == TerminalHost::Ending::InputEnded ||
                     host.ending() == TerminalHost::Ending::InputEndedInPrompt;
  if (!ended || !host.drawing().changed()) return;
  const std::string drawing = host.file.empty() ? "the new drawing" : to_utf8(path_text(host.file));
  complain("the changes of " + drawing + " were not saved");
}

int save_output(const Options& options, TerminalHost& host, int status) {
  if (!options.output) warn_of_lost_changes(host);
  if (!options.output || !wants_saving(host.ending())) return status;
  if (!may_write_output(options, host.file)) return exit_status::output_not_written;
  const std::optional<Failure> failure = save_unless_changed(
      host, *options.output,
      [&host](std::wstring_view question) { return host.ask_yes_at_end(question); });
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
  using namespace platform;
  Input input;
  const bool scripted = !options.commands.empty() || options.script;
  if (!scripted && is_terminal(standard_input) && is_terminal(standard_output)) {
    input.lines = make_terminal_lines(options.no_color ? PromptStyle::Plain : PromptStyle::Bold);
    return input;
  }
  if (options.script) {
    Result<std::string> script = read_script(*options.script);
    if (!script) return script.failure();
    input.reader = std::make_unique<LineReader>(std::move(*script), path_text(*options.script));
  } else if (!scripted) {
    input.reader = std::make_unique<LineReader>(standard_input, L"standard input");
  }
  input.lines = std::make_unique<ScriptedLines>(options.commands, input.reader.get());
  return input;
}

int run_console(const Options& options, const PluginLoader& load_plugin) {
  const Result<Input> input = open_input(options);
  if (!input) {
    complain(input.reason());
    return exit_status::input_not_read;
  }
  if (!may_write_output(options, options.drawing.value_or(std::filesystem::path()))) {
    return exit_status::output_not_written;
  }
  interrupt::install(1);
  Result<std::unique_ptr<Drawing>> drawing =
      options.drawing ? open_drawing(*options.drawing) : Drawing::blank();
  if (!drawing) {
    complain(drawing.reason());
    return exit_status::input_not_read;
  }
  print_notices(**drawing);

  interrupt::install(input->lines->is_terminal() ? 3 : 2);
  const bool progress = !options.no_progress && platform::is_terminal(platform::standard_error);
  TerminalHost host(std::move(*drawing), *input->lines,
                    {options.strict, progress, options.output.has_value(), options.overwrite});
  if (options.drawing) host.file = *options.drawing;
  if (const std::unique_ptr<LoadedPlugin> plugin = load_plugin(host)) {
    CommandLoop(host, *input->lines, *plugin).run();
  } else {
    return exit_status::output_not_written;
  }

  if (input->reader && input->reader->failure()) {
    complain("the input could not be read: " + *input->reader->failure());
    return exit_status::input_not_read;
  }
  return save_output(options, host, status_of(host, *input->lines));
}

int run(const std::vector<std::string>& arguments, const PluginLoader& load_plugin) {
  const std::variant<Options, int> read = read_options(arguments);
  if (const auto* const status = std::get_if<int>(&read)) return *status;
  const auto& options = std::get<Options>(read);
  if (!options.list_commands) return run_console(options, load_plugin);
  write_output(command_list());
  return exit_status::done;
}

bool output_was_written() { return std::fflush(stdout) == 0 && std::ferror(stdout) == 0; }

}  // namespace

int run_program(int argc, char** argv, const PluginLoader& load_plugin) try {
  const platform::Utf8Streams streams;
  platform::ignore_closed_pipes();
  const int status = run(platform::arguments(argc, argv), load_plugin);
  if (output_was_written()) return status;
  complain("standard output could not be written");
  return exit_status::output_not_written;
} catch (const std::exception& error) {  // out of memory, at last
  (void)std::fprintf(stderr, "korvel: %s\n", error.what());
  return exit_status::output_not_written;
}

}  // namespace korvel
