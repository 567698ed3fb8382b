// How commands gather their entities, leave a selection, show progress and lock the document.
#include "frame/command_frame.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

// Each entity is a letter. Small ones are usable; the large ones are frozen, hidden, locked, off,
// or (X) do not open; p lies in paper space, all others in model space.
constexpr std::string_view letters = "abcdeFHLOXp";

class CommandFrame : public testing::Test {
 protected:
  CommandFrame() { failures_.open = ids("X"); }

  static std::vector<EntitySpec> entities() {
    std::vector<EntitySpec> all;
    for (const char letter : letters) {
      const wchar_t* const layer = letter == 'F'   ? L"Frozen"
                                   : letter == 'H' ? L"*Hidden"
                                   : letter == 'L' ? L"Locked"
                                   : letter == 'O' ? L"Off"
                                                   : L"0";
      all.push_back({layer, letter == 'p'});
    }
    return all;
  }
  [[nodiscard]] EntityList list(std::string_view wanted) const {
    EntityList found;
    for (const char letter : wanted)
      found.push_back(all_.at(letters.find(letter)));
    return found;
  }
  [[nodiscard]] std::set<EntityId> ids(std::string_view wanted) const {
    const EntityList found = list(wanted);
    return {found.begin(), found.end()};
  }
  [[nodiscard]] std::string text(const EntityList& found) const {
    std::string named;
    for (const EntityId id : found)
      named += letters.at(static_cast<std::size_t>(std::ranges::find(all_, id) - all_.begin()));
    return named;
  }

  ScriptedHost scripted_{make_drawing({{L"0"},
                                       {L"Frozen", true},
                                       {L"*Hidden"},
                                       {L"Locked", false, true},
                                       {L"Off", false, false, true}},
                                      entities())};
  EntityList all_ = ids_of(scripted_.drawing(), letters.size());
  Failures failures_;
  FailingHost host_{scripted_, failures_};
};

TEST_F(CommandFrame, UsableFilterPutsTheLastInTheDroppedOnesPlace) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},      {"abc", "abc"},          {"Labc", "cab"}, {"aLbc", "acb"},
      {"abL", "ab"}, {"LabF", "ba"},          {"LFHOX", ""},   {"aFbHcOd", "adbc"},
      {"LbX", "b"},  {"XaLbFcHdOe", "eadbc"}, {"paX", "pa"},   {"aLa", "aa"},
  };
  for (const auto& [before, after] : cases) {
    EntityList entities = list(before);
    usable_filter(host_, entities);
    EXPECT_EQ(text(entities), after) << before;
  }
}

TEST_F(CommandFrame, GathersFromTheFirstSourceThatHasAny) {
  const char* const esc = "ESC";
  const struct {
    const char* name;
    std::string_view pick_first;
    std::optional<std::string_view> answer;  // none: nobody asks
    std::string_view gathered;
  } cases[] = {
      {"pick-first set, nobody asks", "cab", std::nullopt, "cab"},
      {"one of three is locked", "bLa", std::nullopt, "ba"},
      {"nothing usable does not ask again", "LFHO", std::nullopt, ""},
      {"the selection made", "", "dba", "dba"},
      {"selection of nothing usable", "", "LFHOX", ""},
      {"Enter: model space without what is not usable", "", "", "abcde"},
      {"paper space by selection only", "", "pa", "pa"},
      {"Esc", "", esc, ""},
  };
  for (const auto& test : cases) {
    scripted_.set_pick_first(list(test.pick_first));
    scripted_.asked.clear();
    if (test.answer == esc) scripted_.selections.push_back(std::nullopt);
    if (test.answer && test.answer != esc) scripted_.selections.push_back(list(*test.answer));
    const Gathered gathered = gather(host_);
    EXPECT_EQ(text(gathered.entities), test.gathered) << test.name;
    EXPECT_EQ(gathered.cancelled, test.answer == esc) << test.name;
    EXPECT_EQ(scripted_.asked.size(), test.answer ? 1U : 0U) << test.name;
  }
  EXPECT_EQ(scripted_.printed, L"");
}

// Counts what is asked of model space and the calls that set the pick-first set.
class WatchedHost final : public ForwardingHost {
 public:
  using ForwardingHost::ForwardingHost;
  [[nodiscard]] EntityList model_space() const override {
    ++scans;
    return ForwardingHost::model_space();
  }
  void set_pick_first(const EntityList& entities) override {
    sets.push_back(entities);
    ForwardingHost::set_pick_first(entities);
  }
  mutable int scans = 0;
  std::vector<EntityList> sets;
};

TEST_F(CommandFrame, EscLooksAtNothingElse) {
  failures_.esc_at_question = 1;
  WatchedHost watched(host_);
  EXPECT_TRUE(gather(watched).cancelled);
  EXPECT_EQ(watched.scans, 0);
}

TEST_F(CommandFrame, ModelSpaceLeavesOutWhatDoesNotOpen) {
  EXPECT_EQ(text(model_space_entities(host_)), "abcdeFHLO");
}

TEST_F(CommandFrame, WhatWasFoundIsGatheredByTheNextCommand) {
  scripted_.set_pick_first(list("ab"));
  WatchedHost watched(host_);
  leave_selected(watched, list("dca"));
  EXPECT_EQ(watched.sets, (std::vector<EntityList>{{}, list("dca")}));
  EXPECT_EQ(text(gather(host_).entities), "dca");
  leave_selected(host_, {});
  EXPECT_EQ(text(host_.pick_first()), "");
}

TEST_F(CommandFrame, ProgressMovesForwardAtMostAHundredTimes) {
  for (const std::int64_t range : {0, 1, 99, 100, 101, 199, 250, 1000, 123457}) {
    {
      ReadWalk walk(host_, static_cast<std::size_t>(range));
      for (std::int64_t i = 0; i < range; ++i)
        walk.step();
    }
    const std::vector<std::int64_t>& seen = scripted_.progress;
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), range);
    EXPECT_LE(seen.size() - 1, 100U) << range;
    EXPECT_TRUE(range == 0 || seen.size() > 1) << range;
    EXPECT_TRUE(std::is_sorted(seen.begin() + 1, seen.end())) << range;
    EXPECT_LE(seen.back(), range);
    EXPECT_FALSE(scripted_.progress_runs);
  }
}

TEST_F(CommandFrame, LockEndsWithItsScope) {
  {
    const DocumentLock outer(host_);
    const DocumentLock inner(host_);
    EXPECT_EQ(scripted_.locks, 2);
  }
  EXPECT_EQ(scripted_.locks, 0);
}

}  // namespace
}  // namespace korvel::test
