// The four presence searches, run as commands on entities with every combination that matters.
#include "search/presence_search.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "frame/command_handlers.h"
#include "frame/session.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using namespace std::string_literals;

struct Case {
  const char* name;
  std::vector<std::wstring> tables;  // of the records, in order
  std::string_view found_by;         // N none, A any, M multiple, D duplicated
  bool unreadable = false;
};

const std::vector<Case> cases = {
    {"no records", {}, "N"},
    {"one record", {L"ROADS"}, "A"},
    {"a topology record", {L"TPMNODE_A"}, "N"},
    {"two records of a table", {L"ROADS", L"ROADS"}, "AMD"},
    {"two tables", {L"ROADS", L"PARCELS"}, "AM"},
    {"two records of a topology table", {L"TPMNODE_A", L"TPMNODE_A"}, "ND"},
    {"two topology tables", {L"TPMNODE_A", L"CNTR_X"}, "N"},
    {"a user's among topology records", {L"TPMNODE_A", L"ROADS", L"CNTR_X"}, "A"},
    {"again after others", {L"ROADS", L"PARCELS", L"CNTR_X", L"ROADS"}, "AMD"},
    {"names that differ in case", {L"ROADS", L"Roads"}, "AM"},
    {"prefix further in", {L"XCNTR_"}, "A"},
    {"prefix in another case", {L"tpmnode_A", L"tpmnode_A"}, "AMD"},
    {"records that cannot be read", {L"ROADS", L"ROADS"}, "N", true},
};

const std::pair<char, void (*)(Session&)> commands[] = {
    {'N', has_no_od}, {'A', has_od}, {'M', has_multiple_od}, {'D', has_duplicate_od}};

class PresenceSearch : public testing::Test {
 protected:
  PresenceSearch() {
    for (std::size_t i = 0; i < cases.size(); ++i) {
      for (const std::wstring& table : cases[i].tables) {
        (void)target_.define_table({table, {}});
        EXPECT_TRUE(attach_default(target_, ids_[i], table));
      }
      if (cases[i].unreadable) unreadable_records_.open.insert(ids_[i]);
    }
  }
  // The entities that the command finds of these, and what it prints.
  std::pair<EntityList, std::wstring> run(void (*command)(Session&), DrawingHost& host) {
    host_.printed.clear();
    RememberedChoices choices;
    Palettes palettes;
    Session session{store_, host, choices, palettes};
    command(session);
    return {host_.pick_first(), host_.printed};
  }

  ScriptedHost host_{make_drawing({{L"0"}}, std::vector<EntitySpec>(cases.size(), {L"0"}))};
  StandaloneStore target_{host_.drawing()};
  EntityList ids_ = ids_of(host_.drawing(), cases.size());
  Failures unreadable_records_;
  FailingStore store_{target_, unreadable_records_};
};

TEST_F(PresenceSearch, FindsByUserTablesAndDuplicatesByAll) {
  for (const auto& [letter, command] : commands) {
    EntityList expected;
    for (std::size_t i = 0; i < cases.size(); ++i) {
      const bool wanted = cases[i].found_by.find(letter) != std::string_view::npos;
      if (wanted) expected.push_back(ids_[i]);
      host_.set_pick_first({});
      host_.selections.push_back(EntityList{ids_[i]});
      EXPECT_EQ(!run(command, host_).first.empty(), wanted) << letter << ": " << cases[i].name;
    }
    host_.set_pick_first({});
    host_.selections.push_back(EntityList{});
    const auto [found, printed] = run(command, host_);
    EXPECT_EQ(found, expected) << letter;
    EXPECT_EQ(printed, L"Selected: " + std::to_wstring(expected.size()) + L"\n");
  }
}

TEST_F(PresenceSearch, SearchesThePickFirstSetInItsOrderWithoutAsking) {
  host_.set_pick_first({ids_[4], ids_[0], ids_[3]});
  EXPECT_EQ(run(has_od, host_), (std::pair{EntityList{ids_[4], ids_[3]}, L"Selected: 2\n"s}));
  EXPECT_EQ(run(has_duplicate_od, host_), (std::pair{EntityList{ids_[3]}, L"Selected: 1\n"s}));
  EXPECT_EQ(run(has_no_od, host_), (std::pair{EntityList{}, L"Selected: 0\n"s}));
}

// Holds a pick-first set that commands do not see, as behind a command without that flag.
class UnseenPickFirst final : public ForwardingHost {
 public:
  using ForwardingHost::ForwardingHost;
  [[nodiscard]] EntityList pick_first() const override { return {}; }
};

TEST_F(PresenceSearch, EscClearsThePickFirstSet) {
  Failures esc;
  for (const auto& [letter, command] : commands) {
    host_.set_pick_first({ids_[1]});
    esc.esc_at_question = 1;
    UnseenPickFirst unseen(host_);
    FailingHost at_prompt(unseen, esc);
    EXPECT_EQ(run(command, at_prompt), (std::pair{EntityList{}, L"Selected: 0\n"s})) << letter;
  }
}

TEST_F(PresenceSearch, NumbersWithoutACriterionMeetNothing) {
  for (const int number : {-1, 1, 5})
    EXPECT_TRUE(find_by_presence(static_cast<Presence>(number), store_, ids_, host_).empty())
        << number;
}

}  // namespace
}  // namespace korvel::test
