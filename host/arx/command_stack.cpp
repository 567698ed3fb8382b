#include "host/arx/command_stack.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "host/arx/sdk.h"

namespace korvel::arx {
namespace {

constexpr std::size_t most_commands = 64;
constexpr short function_code = 0;  // of the module's one function

// The host knows nothing of an object behind its functions.
std::array<CommandHandler, most_commands> handlers{};
std::size_t handlers_used = 0;
ArxCommandStack::Runner run = nullptr;

template <std::size_t slot>
void run_slot() {
  run(handlers[slot]);
}

template <std::size_t... slots>
constexpr std::array<AcRxFunctionPtr, sizeof...(slots)> functions_of(
    std::index_sequence<slots...> /*all*/) {
  return {run_slot<slots>...};
}

constexpr auto functions = functions_of(std::make_index_sequence<most_commands>());

// A module that is loaded again registers the same handlers again.
std::optional<std::size_t> slot_of(CommandHandler handler) {
  for (std::size_t slot = 0; slot < handlers_used; ++slot) {
    if (handlers[slot] == handler) return slot;
  }
  if (handlers_used == most_commands) return std::nullopt;
  handlers[handlers_used] = handler;
  return handlers_used++;
}

// Unconfirmed: the form of both calls.

void define_function(const std::wstring& name, int (*function)()) {
  acedDefun(name.c_str(), function_code);
  acedRegFunc(function, function_code);
}

void undefine_function(const std::wstring& name) { acedUndef(name.c_str(), function_code); }

}  // namespace

ArxCommandStack::ArxCommandStack(Runner runner) { run = runner; }

void ArxCommandStack::add_command(std::wstring_view group, std::wstring_view global_name,
                                  std::wstring_view local_name, int flags, CommandHandler handler) {
  const std::optional<std::size_t> slot = slot_of(handler);
  if (!slot) return;
  acedRegCmds->addCommand(std::wstring(group).c_str(), std::wstring(global_name).c_str(),
                          std::wstring(local_name).c_str(), flags, functions[*slot]);
}

void ArxCommandStack::remove_group(std::wstring_view group) {
  acedRegCmds->removeGroup(std::wstring(group).c_str());
}

void ArxCommandStack::add_function(std::wstring_view name, int (*function)()) {
  define_function(std::wstring(name), function);
}

void ArxCommandStack::remove_function(std::wstring_view name) {
  undefine_function(std::wstring(name));
}

}  // namespace korvel::arx
