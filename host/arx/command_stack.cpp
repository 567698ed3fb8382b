#include "host/arx/command_stack.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "host/arx/sdk.h"

namespace korvel::arx {
namespace {

constexpr std::size_t most_commands = 64;
constexpr short function_code = 0;  // of the module's one function

struct Slot {
  std::wstring name;
  CommandHandler handler = nullptr;
  friend bool operator==(const Slot&, const Slot&) = default;
};

// The host knows nothing of an object behind its functions.
std::array<Slot, most_commands> slots;
std::size_t slots_used = 0;
ArxCommandStack::Runner run = nullptr;

template <std::size_t slot>
void run_slot() {
  run(slots[slot].name, slots[slot].handler);
}

template <std::size_t... all>
constexpr std::array<AcRxFunctionPtr, sizeof...(all)> functions_of(
    std::index_sequence<all...> /*all*/) {
  return {run_slot<all>...};
}

constexpr auto functions = functions_of(std::make_index_sequence<most_commands>());

// A module that is loaded again registers the same commands again.
std::optional<std::size_t> slot_of(const Slot& wanted) {
  const auto used = std::span(slots).first(slots_used);
  const auto slot = static_cast<std::size_t>(std::ranges::find(used, wanted) - used.begin());
  if (slot == most_commands) return std::nullopt;
  if (slot == slots_used) slots[slots_used++] = wanted;
  return slot;
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
  const std::optional<std::size_t> slot = slot_of({std::wstring(global_name), handler});
  if (!slot) return;
  acedRegCmds->addCommand(std::wstring(group).c_str(), std::wstring(global_name).c_str(),
                          std::wstring(local_name).c_str(), flags, functions[*slot]);
}

void ArxCommandStack::remove_group(std::wstring_view group) {
  acedRegCmds->removeGroup(std::wstring(group).c_str());
}

void ArxCommandStack::add_function(std::wstring_view name, int (*function)()) {
  functions_.push_back({std::wstring(name), function});
  define_functions();
}

void ArxCommandStack::remove_function(std::wstring_view name) {
  undefine_function(std::wstring(name));
  std::erase_if(functions_, [name](const Function& known) { return known.name == name; });
}

void ArxCommandStack::define_functions() const {
  for (const Function& known : functions_)
    define_function(known.name, known.function);
}

}  // namespace korvel::arx
