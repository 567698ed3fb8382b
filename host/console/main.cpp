// korvel: the stand-alone host at a command line.
#include <fstream>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/console/linked_plugin.h"
#include "host/console/output.h"
#include "host/console/platform.h"
#include "host/console/program.h"

namespace korvel {
namespace {

// The variable of the environment names a file that gets every call the commands make.
std::unique_ptr<LoadedPlugin> load(TerminalHost& host) {
  const std::optional<std::string> path = platform::variable("KORVEL_TRACE");
  if (!path) return std::make_unique<LinkedPlugin>(host);
  const auto trace = std::make_shared<std::ofstream>(path_of(*path), std::ios::binary);
  if (!*trace) {
    complain(*path + ": the trace cannot be written");
    return nullptr;
  }
  // Flushed line by line: what matters most is what stood there before a crash.
  return std::make_unique<LinkedPlugin>(
      host, [trace](std::wstring_view call) { *trace << to_utf8(call) << std::endl; });
}

}  // namespace
}  // namespace korvel

int main(int argc, char** argv) { return korvel::run_program(argc, argv, korvel::load); }
