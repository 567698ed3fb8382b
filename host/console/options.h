// What the program was asked to do on its command line.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace korvel {

struct Options {
  std::optional<std::filesystem::path> drawing;
  std::vector<std::string> commands;  // input lines, in order
  std::optional<std::filesystem::path> script;
  std::optional<std::filesystem::path> output;
  bool strict = false;
  bool overwrite = false;
  bool list_commands = false;
  bool no_progress = false;
  bool no_color = false;
};

// The options that the arguments say, the first of which is the program's name; or, when everything
// was said already (help, version, wrong usage), the exit status.
[[nodiscard]] std::variant<Options, int> read_options(const std::vector<std::string>& arguments);

}  // namespace korvel
