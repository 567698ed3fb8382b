// What the module registers in the host, and what the host's functions run.
#include "host/arx/command_stack.h"

#include <gtest/gtest.h>

#include "frame/utf.h"
#include "tests/arx_double/rx_classes.h"

namespace korvel::test {
namespace {

std::vector<CommandHandler> started;

void note(std::wstring_view /*name*/, CommandHandler handler) { started.push_back(handler); }

TEST(ArxCommandStack, RegistersEveryCommandInOrderAgainAfterAnUnload) {
  auto& commands = acedRegCmds->commands;
  arx::ArxCommandStack stack(note);
  CkorvelApp app(stack);
  for (int time = 0; time < 3; ++time) {
    app.on_load();
    ASSERT_EQ(commands.size(), 3 + command_table.size());
    EXPECT_EQ(arx_double::call_function(L"MyLispFunction"), 5100);
    started.clear();
    for (std::size_t i = 0; i < command_table.size(); ++i) {
      const AcEdCommandStack::Command& registered = commands[3 + i];
      const Command& command = command_table[i];
      EXPECT_EQ(registered.group, L"KORVEL");
      EXPECT_EQ(registered.global_name, command.name);
      EXPECT_EQ(registered.local_name, command.name);
      EXPECT_EQ(registered.flags, command.flags) << to_utf8(command.name);
      registered.function();
      ASSERT_EQ(started.size(), i + 1);
      EXPECT_EQ(started.back(), command.handler) << to_utf8(command.name);
    }
    app.on_unload();
    EXPECT_TRUE(commands.empty());
    EXPECT_EQ(arx_double::call_function(L"MyLispFunction"), 0);
  }
}

}  // namespace
}  // namespace korvel::test
