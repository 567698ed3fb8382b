// Breaking an entity: what its pieces carry, and the watcher's states.
#include "geometry/break_entity.h"

#include <gtest/gtest.h>

#include "frame/command_handlers.h"
#include "frame/session.h"
#include "host/standalone/standalone_store.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using CommandEnd = ScriptedHost::CommandEnd;

class Breaking : public testing::Test {
 protected:
  Breaking() {
    EXPECT_EQ(store_.define_table({L"T", {{L"N", ODType::Integer, std::int32_t{0}}}}),
              TableChange::Done);
    broken_ = host_.model_space().at(0);
    EXPECT_TRUE(store_.attach(broken_, {L"T", {std::int32_t{7}}}));
  }

  // A break command that adds so many entities.
  void script(CommandEnd end, int pieces = 1) {
    host_.commands.push_back([this, end, pieces](EntityId entity) {
      EXPECT_EQ(entity, broken_);
      for (int i = 0; i < pieces; ++i)
        (void)host_.drawing().add_entity({PointShape{}}, {});
      return end;
    });
  }

  std::vector<int> counts() { return store_.count_records(host_.model_space(), tables_, host_); }
  void run() { break_entity(session_); }

  const std::vector<std::wstring> tables_ = {L"T"};
  ScriptedHost host_{make_drawing({{L"0"}}, {{L"0"}, {L"0"}})};
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  Session session_{store_, host_, choices_, palettes_};
  EntityId broken_;
};

TEST_F(Breaking, EveryNewEntityGetsTheRecordsWhenTheCommandEnds) {
  host_.picks = {broken_};
  script(CommandEnd::Ended, 2);
  run();
  EXPECT_EQ(counts(), (std::vector{1, 0, 1, 1}));
  EXPECT_EQ(host_.asked, (std::vector<std::wstring>{L"Select object: ", L"_.break"}));
  EXPECT_TRUE(choices_.entries_of_broken.empty());
  EXPECT_EQ(host_.printed, L"");
  EXPECT_TRUE(host_.drawing().undo());
  EXPECT_EQ(counts(), (std::vector{1, 0})) << "one step";
}

TEST_F(Breaking, CancelAndFailureKeepTheSavedEntriesUntilTheNextRun) {
  for (const CommandEnd end : {CommandEnd::Cancelled, CommandEnd::Failed}) {
    host_.set_pick_first({broken_});
    script(end);
    run();
    EXPECT_EQ(choices_.entries_of_broken.size(), 1u);
  }
  EXPECT_EQ(counts(), (std::vector{1, 0, 0, 0}));
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(broken_, OpenMode::Write));
  ASSERT_TRUE(records->remove());
  host_.set_pick_first({broken_});
  script(CommandEnd::Ended);
  run();
  EXPECT_EQ(counts(), (std::vector{0, 0, 0, 0, 0})) << "there is nothing to hand on any more";
}

TEST_F(Breaking, SelectionOfSeveralIsNoAnswerAndEscEndsSilently) {
  host_.set_pick_first(host_.model_space());
  host_.picks = {std::nullopt};
  run();
  EXPECT_EQ(host_.asked, std::vector<std::wstring>{L"Select object: "});
  EXPECT_EQ(host_.printed, L"");
}

TEST_F(Breaking, PieceThatDoesNotOpenIsSkipped) {
  Failures failures;
  failures.open = {Drawing::id_of(2)};
  FailingHost failing(host_, failures);
  script(CommandEnd::Ended, 2);
  std::vector<ExtensionEntry> saved;
  break_carrying_data(failing, broken_, saved);
  EXPECT_EQ(counts(), (std::vector{1, 0, 0, 1}));
}

TEST_F(Breaking, WatcherMindsItsCommandOnly) {
  int calls = 0;
  EntityList seen;
  detail::command watcher(host_);
  const auto call = [&](const EntityList& snapshot) {
    ++calls;
    seen = snapshot;
  };
  watcher.command_ended(L"BREAK");
  EXPECT_FALSE(watcher.is_active());
  for (const CommandEnd end : {CommandEnd::Cancelled, CommandEnd::Failed, CommandEnd::Ended}) {
    watcher.watch(L"Break", call);
    watcher.watch(L"Break", call);
    watcher.command_ended(L"BREAKER");
    watcher.command_cancelled(L"LINE");
    watcher.command_failed(L"");
    EXPECT_TRUE(watcher.is_active());
    script(end);
    EXPECT_TRUE(host_.run_command(L"_.BREAK", broken_));
    EXPECT_FALSE(watcher.is_active());
    EXPECT_EQ(calls, end == CommandEnd::Ended ? 1 : 0);
  }
  EXPECT_EQ(seen.size(), 4u) << "as it was when the watch began";
  script(CommandEnd::Ended);
  EXPECT_TRUE(host_.run_command(L"_.BREAK", broken_));
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace korvel::test
