// What the module registers, in which order, and how it goes.
#include "frame/plugin.h"

#include <gtest/gtest.h>

#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using Lines = std::vector<std::wstring>;

// Writes down what it is told.
class RecordingStack final : public CommandStack {
 public:
  void add_command(std::wstring_view group, std::wstring_view global_name,
                   std::wstring_view local_name, int flags, CommandHandler handler) override {
    lines.push_back(std::wstring(group) + L" " + std::wstring(global_name) + L" " +
                    std::wstring(local_name) + L" " + std::to_wstring(flags));
    handlers.push_back(handler);
  }
  void remove_group(std::wstring_view group) override {
    lines.push_back(L"remove " + std::wstring(group));
  }
  void add_function(std::wstring_view name, int (*function)()) override {
    lines.push_back(L"function " + std::wstring(name) + L" = " + std::to_wstring(function()));
  }
  void remove_function(std::wstring_view name) override {
    lines.push_back(L"remove function " + std::wstring(name));
  }
  [[nodiscard]] Lines taken() { return std::exchange(lines, {}); }

  Lines lines;
  std::vector<CommandHandler> handlers;
};

class RefusingStack final : public CommandStack {
 public:
  void add_command(std::wstring_view, std::wstring_view, std::wstring_view, int,
                   CommandHandler) override {}
  void remove_group(std::wstring_view group) override { removed.emplace_back(group); }
  void add_function(std::wstring_view, int (*)()) override {}
  void remove_function(std::wstring_view) override {}
  Lines removed;
};

class RecordingPalette final : public PaletteSet {
 public:
  RecordingPalette(std::wstring name, RecordingStack& stack)
      : name_(std::move(name)), stack_(stack) {}
  ~RecordingPalette() override { stack_.lines.push_back(L"delete " + name_); }
  void show(Session&) override {}

 private:
  std::wstring name_;
  RecordingStack& stack_;
};

const Lines loaded = [] {
  Lines lines = {L"MyGroup MyCommand MyCommandLocal 0", L"MyGroup MyPickFirst MyPickFirstLocal 2",
                 L"MyGroup MySessionCmd MySessionCmdLocal 2097152",
                 L"function MyLispFunction = 5100"};
  for (const std::wstring name : {L"PSEL",
                                  L"CTL",
                                  L"LOAD_DEFINITION",
                                  L"HAS_DUPLICATE_OD",
                                  L"HAS_OD",
                                  L"HAS_MULTIPLE_OD",
                                  L"HAS_SPECIFIC_OD",
                                  L"REMOVE_DUPLICATE_OD",
                                  L"HAS_NO_OD",
                                  L"HAS_SPECIFIC_VALUES",
                                  L"RM",
                                  L"RM_ALL",
                                  L"COPY_OD",
                                  L"COPY_VALUE",
                                  L"COPY_OD_VALUE",
                                  L"COPY_ALL",
                                  L"COPY_ALL_VALUE",
                                  L"ADEATTACHDATA",
                                  L"SETTEXT",
                                  L"SETXYZ",
                                  L"SETID",
                                  L"SETPROP",
                                  L"REPLACE",
                                  L"2POLY",
                                  L"ADDVAL",
                                  L"ADDVAL_OD2OD",
                                  L"23DPOLY",
                                  L"RMUNUSED",
                                  L"STAT",
                                  L"HAS_NO_SPECIFIC_OD",
                                  L"TABLE",
                                  L"BREAK",
                                  L"ABOUT",
                                  L"EXPL",
                                  L"TRANSLATE",
                                  L"LOAD_ATTRS",
                                  L"STORE_ATTRS",
                                  L"ATTR_TEMPLATE"}) {
    lines.push_back(L"KORVEL KORVEL_" + name + L" KORVEL_" + name +
                    (name == L"LOAD_DEFINITION" ? L" 0" : L" 7"));
  }
  return lines;
}();

const Lines unloaded = {L"remove KORVEL", L"remove function MyLispFunction", L"remove MyGroup"};

TEST(Plugin, RegistersItsCommandsInOrderAgainAndAgain) {
  RecordingStack stack;
  CkorvelApp app(stack);
  for (int time = 0; time < 2; ++time) {
    app.on_load();
    EXPECT_EQ(stack.taken(), loaded);
    app.on_unload();
    EXPECT_EQ(stack.taken(), unloaded);
  }
}

TEST(Plugin, UnloadingDeletesPalettesBeforeTheGroup) {
  const struct {
    const char* name;
    bool command_palette, table_editor;
    Lines deleted;
  } cases[] = {{"both", true, true, {L"delete editor", L"delete palette"}},
               {"command palette", true, false, {L"delete palette"}},
               {"table editor", false, true, {L"delete editor"}}};
  RecordingStack stack;
  CkorvelApp app(stack);
  for (const auto& test : cases) {
    app.on_load();
    (void)stack.taken();
    if (test.command_palette)
      app.palettes.commands = std::make_unique<RecordingPalette>(L"palette", stack);
    if (test.table_editor)
      app.palettes.table_editor = std::make_unique<RecordingPalette>(L"editor", stack);
    app.on_unload();
    Lines expected = test.deleted;
    expected.insert(expected.end(), unloaded.begin(), unloaded.end());
    EXPECT_EQ(stack.taken(), expected) << test.name;
    EXPECT_FALSE(app.palettes.commands || app.palettes.table_editor) << test.name;
  }
}

TEST(Plugin, RefusedRegistrationIsSilent) {
  RefusingStack stack;
  CkorvelApp app(stack);
  app.on_load();
  app.on_unload();
  EXPECT_EQ(stack.removed, (Lines{L"KORVEL", L"MyGroup"}));
}

class ResourceHost final : public ScriptedHost {
 public:
  ResourceHost() : ScriptedHost(make_drawing({{L"0"}}, {{L"0"}})) {}
  void enter_resources() override { ++depth; }
  void leave_resources() override { --depth; }
  int depth = 0;
};

TEST(Plugin, EveryHandlerRunsWithTheModulesResources) {
  ResourceHost host;
  StandaloneStore store(host.drawing());
  RememberedChoices choices;
  Palettes palettes;
  Session session{store, host, choices, palettes};
  run_handler([](Session& s) { EXPECT_EQ(dynamic_cast<ResourceHost&>(s.host).depth, 1); }, session);
  EXPECT_EQ(host.depth, 0);
  EXPECT_THROW(run_handler([](Session&) { throw 1; }, session), int);
  EXPECT_EQ(host.depth, 0);
}

TEST(Plugin, FrameworkEntriesDoNothing) {
  RecordingStack stack;
  CkorvelApp(stack).on_load();
  ScriptedHost host(make_drawing({{L"0"}}, {{L"0"}}));
  StandaloneStore store(host.drawing());
  host.set_pick_first(host.model_space());
  RememberedChoices choices;
  Palettes palettes;
  Session session{store, host, choices, palettes};
  for (std::size_t i = 0; i < 3; ++i)
    run_handler(stack.handlers.at(i), session);
  EXPECT_EQ(host.printed, L"");
  EXPECT_EQ(host.pick_first(), host.model_space());
  EXPECT_FALSE(host.drawing().changed());
}

TEST(Plugin, AboutIsATextWindow) {
  ScriptedHost host(make_drawing({{L"0"}}, {}));
  StandaloneStore store(host.drawing());
  RememberedChoices choices;
  Palettes palettes;
  Session session{store, host, choices, palettes};
  run_handler(command_named(L"KORVEL_ABOUT").handler, session);
  ASSERT_EQ(host.text_windows.size(), 1U);
  EXPECT_TRUE(host.text_windows[0].starts_with(L"About\nKORVEL, "));
}

}  // namespace
}  // namespace korvel::test
