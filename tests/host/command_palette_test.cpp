// The command palette: what its tree starts, and how often it is made.
#include "palettes/command_palette.h"

#include <gtest/gtest.h>
#include <set>

#include "palettes/command_tree.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using Lines = std::vector<std::wstring>;

void activate(Palette& palette, Tree::Place place) {
  Tree& tree = *std::get<Tree*>(palette.controls().front());
  tree.selected = place;
  palette.activated(tree);
}

class CommandPalette : public testing::Test {
 protected:
  ScriptedHost host_{make_drawing({{L"0"}}, {})};
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  Session session_{store_, host_, choices_, palettes_};
};

TEST_F(CommandPalette, IsMadeOnceAndShownEachTime) {
  for (int time = 0; time < 2; ++time) {
    host_.palettes.push_back([](Palette& palette) {
      EXPECT_EQ(palette.title(), L"KORVEL_CTL");
      EXPECT_TRUE(palette.buttons().empty());
      EXPECT_TRUE(palette.swallows(DialogKey::Enter));
      EXPECT_TRUE(palette.swallows(DialogKey::Escape));
    });
    show_commands(session_);
  }
  EXPECT_EQ(host_.palette_sets,
            Lines{L"KORVEL_CTL {83D95B17-1034-4af1-98F0-0E7F2F484C6D} 300 by 100"});
  EXPECT_EQ(host_.sent, Lines{});
}

TEST_F(CommandPalette, ALeafCancelsAndStartsItsCommandAGroupCancelsAlone) {
  const struct {
    Tree::Place place;
    Lines sent;
  } cases[] = {{{2, 1}, {L"<cancel>", L"KORVEL_RM_ALL\n"}},
               {{5, 0}, {L"<cancel>", L"KORVEL_2POLY\n"}},
               {{8, std::nullopt}, {L"<cancel>", L"KORVEL_ABOUT\n"}},
               {{2, std::nullopt}, {L"<cancel>"}}};
  for (const auto& test : cases) {
    host_.sent.clear();
    host_.palettes.push_back([&test](Palette& palette) { activate(palette, test.place); });
    show_commands(session_);
    EXPECT_EQ(host_.sent, test.sent);
  }
}

TEST(CommandTree, StartsEveryCommandButThreeUnderALabelOfItsOwn) {
  std::set<std::wstring_view> missing;
  for (const Command& command : command_table)
    missing.insert(command.name);
  std::set<std::wstring_view> labels;
  for (const CommandLeaf& leaf : command_tree) {
    EXPECT_TRUE(labels.insert(leaf.label).second) << to_utf8(leaf.label);
    EXPECT_EQ(missing.erase(leaf.command.name), 1u) << to_utf8(leaf.label);
  }
  EXPECT_EQ(missing,
            (std::set<std::wstring_view>{L"KORVEL_ATTR_TEMPLATE", L"KORVEL_CTL", L"KORVEL_PSEL"}));
}

}  // namespace
}  // namespace korvel::test
