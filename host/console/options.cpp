#include "host/console/options.h"

#include <CLI/CLI.hpp>
#include <functional>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/console/commands/file_commands.h"
#include "host/console/commands/questions.h"
#include "host/console/exit_status.h"
#include "host/console/paths.h"
#include "host/console/platform.h"

namespace korvel {
namespace {

std::function<void(const std::string&)> into(std::optional<std::filesystem::path>& path) {
  return [&path](const std::string& argument) { path = path_of(argument); };
}

// As SAVEAS takes it.
std::function<void(const std::string&)> into_output(std::optional<std::filesystem::path>& path) {
  return [&path](const std::string& argument) {
    path = with_drawing_extension(path_of(argument));
    if (is_no_file(*path) || has_drawing_extension(*path)) return;
    throw CLI::ValidationError("--output", to_utf8(drawing_extension_refusal));
  };
}

}  // namespace

std::variant<Options, int> read_options(const std::vector<std::string>& arguments) {
  Options options;
  CLI::App app("Object data of drawings as a database: opens a DXF drawing and takes commands.",
               "korvel");
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.set_version_flag("--version", "korvel " KORVEL_VERSION);
  app.add_option_function("DRAWING", into(options.drawing),
                          "Drawing to open (.dxf); none: a new one");
  app.add_option("-c,--command", options.commands, "One input line; repeatable, in order")
      ->type_name("LINE")
      ->allow_extra_args(false);
  app.add_option_function(
         "-s,--script", into(options.script),
         "Input lines from a file, after those of -c; lines that begin with ; are comments")
      ->type_name("FILE");
  app.add_option_function(
         "-o,--output", into_output(options.output),
         "Save the drawing there when the input has ended, unless QUIT discarded its changes")
      ->type_name("FILE");
  app.add_flag("--strict", options.strict,
               "Stop at the first line that is not understood or refused");
  app.add_flag("--overwrite", options.overwrite,
               "-o may replace a file that exists and is not the drawing itself; SAVE and -o may\n"
               "replace a drawing that another program has changed");
  app.add_flag("--list-commands", options.list_commands, "List the commands and end");
  app.add_flag("--no-progress", options.no_progress, "Show no progress meter");
  app.add_flag("--no-color", options.no_color, "Write plain text at a terminal, too");
  app.footer(
      "Without -c and -s the input is read from standard input.\n"
      "Exit status: 0 done; 2 wrong usage; 3 an input could not be read; 4 an output could not\n"
      "be written; 5 the input ended in a prompt; 6 stopped by --strict; 130 interrupted.");
  try {
    std::vector<const char*> words;
    words.reserve(arguments.size());
    for (const std::string& argument : arguments)
      words.push_back(argument.c_str());
    app.parse(static_cast<int>(words.size()), words.data());
  } catch (const CLI::ParseError& error) {
    const bool asked_for = app.exit(error) == 0;  // help or version, now printed
    return asked_for ? exit_status::done : exit_status::wrong_usage;
  }
  options.no_color = options.no_color || platform::variable("NO_COLOR").has_value();
  return options;
}

}  // namespace korvel
