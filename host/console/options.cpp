#include "host/console/options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "host/console/exit_status.h"

namespace korvel {

std::variant<Options, int> read_options(int argc, const char* const* argv) {
  Options options;
  CLI::App app("Object data of drawings as a database: opens a DXF drawing and takes commands.",
               "korvel");
  app.set_version_flag("--version", "korvel " KORVEL_VERSION);
  app.add_option("DRAWING", options.drawing, "Drawing to open (.dxf); none: a new one");
  app.add_option("-c,--command", options.commands, "One input line; repeatable, in order")
      ->type_name("LINE")
      ->allow_extra_args(false);
  app.add_option("-s,--script", options.script,
                 "Input lines from a file, after those of -c; lines that begin with ; are comments")
      ->type_name("FILE");
  app.add_option(
         "-o,--output", options.output,
         "Save the drawing there when the input has ended, unless QUIT discarded its changes")
      ->type_name("FILE");
  app.add_flag("--strict", options.strict,
               "Stop at the first line that is not understood or refused");
  app.add_flag("--overwrite", options.overwrite,
               "-o may replace a file that exists and is not the drawing itself");
  app.add_flag("--list-commands", options.list_commands, "List the commands and end");
  app.add_flag("--no-progress", options.no_progress, "Show no progress meter");
  app.add_flag("--no-color", options.no_color, "Write plain text at a terminal, too");
  app.footer(
      "Without -c and -s the input is read from standard input.\n"
      "Exit status: 0 done; 2 wrong usage; 3 an input could not be read; 4 an output could not\n"
      "be written; 5 the input ended in a prompt; 6 stopped by --strict; 130 interrupted.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool asked_for = app.exit(error) == 0;  // help or version, now printed
    return asked_for ? exit_status::done : exit_status::wrong_usage;
  }
  const char* const no_color = std::getenv("NO_COLOR");
  options.no_color = options.no_color || (no_color != nullptr && *no_color != '\0');
  return options;
}

}  // namespace korvel
