// The module from its loading to its unloading, as the host does it.
#include "frame/command_table.h"
#include "frame/utf.h"
#include "host/arx/documents.h"
#include "host/arx/resources.h"
#include "host/arx/session.h"
#include "tests/arx_double/ed_classes.h"
#include "tests/arx_double/map_classes.h"
#include "tests/arx_double/rx_classes.h"
#include "tests/arx_double/ui_classes.h"
#include "tests/host/drawing_file.h"
#include "tests/host/scripted_host.h"

namespace korvel::test {
namespace {

class ArxModule : public testing::Test {
 protected:
  static void run(std::wstring_view name) {
    for (const AcEdCommandStack::Command& command : acedRegCmds->commands) {
      if (command.global_name == name) command.function();
    }
  }

  ScriptedHost drawing{make_drawing({{L"0"}}, {{L"0"}})};
  StandaloneStore store{drawing.drawing()};
  arx_double::DatabaseOver database{drawing};
  arx_double::MapOverStore map{store};
};

using Titles = std::vector<std::wstring>;

TEST_F(ArxModule, ClosesThePalettesThereAreTheTableEditorFirst) {
  const std::size_t tools_before = arx_double::registered_tools().size();
  const auto closed_since = [](std::size_t before) {
    const Titles& all = arx_double::closed_windows();
    return Titles(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
  };
  struct Case {
    Titles commands;
    Titles closed;  // each palette and the set around it
  };
  for (const Case& c : {
           Case{{}, {}}, Case{{L"KORVEL_CTL"}, {L"KORVEL_CTL", L"KORVEL_CTL"}},
           Case{{L"KORVEL_CTL", L"KORVEL_TABLE", L"KORVEL_CTL"},
                {L"KORVEL_TABLE", L"KORVEL_TABLE", L"KORVEL_CTL", L"KORVEL_CTL"}},
           Case{{}, {}},  // no pointer of the runs before
       }) {
    const std::size_t before = arx_double::closed_windows().size();
    ASSERT_TRUE(arx_double::load_module());
    EXPECT_EQ(acedRegCmds->commands.size(), 3 + command_table.size());
    for (const std::wstring& command : c.commands)
      run(command);
    EXPECT_TRUE(arx_double::unload_module());
    EXPECT_EQ(closed_since(before), c.closed);
    EXPECT_TRUE(acedRegCmds->commands.empty());
    EXPECT_EQ(arx_double::call_function(L"MyLispFunction"), 0);
  }
  EXPECT_EQ(arx_double::registered_tools().size() - tools_before, 3U);
}

TEST_F(ArxModule, TellsWhatACommandThrowsAndGoesOn) {
  ASSERT_TRUE(arx_double::load_module());
  const HINSTANCE resources = AfxGetResourceHandle();
  arx::run_command_handler(L"FIRST", [](Session& session) {
    session.host.start_progress(L"KORVEL", 1);
    throw std::runtime_error("a fault");
  });
  arx::run_command_handler(L"SECOND", [](Session&) { throw 1; });
  EXPECT_EQ(drawing.printed, L"FIRST was not finished: a fault.\n");
  EXPECT_EQ(AfxGetResourceHandle(), resources);
  EXPECT_TRUE(arx_double::unload_module());
}

TEST_F(ArxModule, GivesTheHostItsResourcesBackWhenCommandsOfTwoDocumentsTakeTurns) {
  ASSERT_TRUE(arx_double::load_module());
  const HINSTANCE of_host = AfxGetResourceHandle();
  auto first = std::make_optional<arx::ModuleResources>();
  auto second = std::make_optional<arx::ModuleResources>();
  first.reset();
  EXPECT_NE(AfxGetResourceHandle(), of_host);
  second.reset();
  EXPECT_EQ(AfxGetResourceHandle(), of_host);
  EXPECT_TRUE(arx_double::unload_module());
}

// A dialog with a control at whose change something goes wrong.
class Faulty final : public Dialog {
 public:
  Faulty() : Dialog(L"Faulty") {
    add(&name);
    add(Button{L"OK"});
  }
  void changed(const Control& /*control*/) override { throw std::runtime_error("a fault"); }
  Edit name{L"Name"};
};

TEST_F(ArxModule, ClosesADialogThatThrowsAndTellsTheCommand) {
  ASSERT_TRUE(arx_double::load_module());
  drawing.dialogs = {[](Dialog& dialog) {
    dialog.changed(control_of(dialog.controls().front()));
    return true;
  }};
  arx::run_command_handler(L"FIRST", [](Session& session) {
    Faulty dialog;
    EXPECT_TRUE(session.host.show(dialog)) << "it was closed as if it had been accepted";
  });
  EXPECT_EQ(drawing.printed, L"FIRST was not finished: a fault.\n");
  EXPECT_EQ(arx_double::closed_windows().back(), L"Faulty");
  EXPECT_TRUE(arx_double::unload_module());
}

std::size_t lines_of(const Palette& palette) {
  for (const ControlPointer& control : palette.controls()) {
    if (const auto* const grid = std::get_if<LongGrid*>(&control)) {
      return (*grid)->lines->line_count();
    }
  }
  return 0;
}

TEST_F(ArxModule, ShowsNothingOfADrawingThatIsClosed) {
  ASSERT_EQ(store.define_table({L"ROADS", {{L"WIDTH", ODType::Real, 1.5}}}), TableChange::Done);
  ASSERT_TRUE(attach_default(store, drawing.model_space()[0], L"ROADS"));
  const Palette* editor = nullptr;
  arx_double::set_palette_user([&editor](Palette& palette) { editor = &palette; });
  ASSERT_TRUE(arx_double::load_module());
  run(L"KORVEL_TABLE");
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(lines_of(*editor), 1U);
  AcApDocManager& documents = *acDocManagerPtr();
  documents.close_document(documents.other_document());
  EXPECT_EQ(lines_of(*editor), 1U) << "that was another one";
  documents.close_document(documents.curDocument());
  EXPECT_EQ(lines_of(*editor), 0U);
  documents.make_current(documents.other_document());
  EXPECT_EQ(lines_of(*editor), 0U) << "nothing is read within the notice";
  arx_double::deliver_posted_messages();
  EXPECT_EQ(lines_of(*editor), 1U);
  EXPECT_TRUE(arx_double::unload_module());
  arx_double::set_palette_user({});
}

}  // namespace
}  // namespace korvel::test
