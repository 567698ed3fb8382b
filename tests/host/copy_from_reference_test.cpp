// Copying from a reference, where transcripts do not reach: names in ordinal order, entities that
// refuse.
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using Names = std::vector<std::wstring>;

class CopyFromReference : public testing::Test {
 protected:
  void attach(EntityId entity, const std::wstring& table, std::int32_t value) {
    (void)target_.define_table({table, {{L"N", ODType::Integer, std::int32_t{0}}}});
    ASSERT_TRUE(target_.attach(entity, {table, {value}}));
  }
  // The entity's records as "table=value".
  [[nodiscard]] Names records_of(EntityId entity) {
    Names found;
    const std::unique_ptr<RecordIterator> records = target_.records();
    for (records->open(entity, OpenMode::Read); !records->done(); records->next()) {
      found.push_back(std::wstring(records->table_name()) + L"=" +
                      std::to_wstring(std::get<std::int32_t>(records->value(0))));
    }
    return found;
  }
  // What the command prints with these targets and the first entity as their reference.
  std::wstring run(void (*command)(Session&), const EntityList& targets) {
    host_.printed.clear();
    host_.set_pick_first(targets);
    host_.picks.push_back(reference_);
    RememberedChoices choices;
    Palettes palettes;
    Session session{store_, failing_host_, choices, palettes};
    command(session);
    return host_.printed;
  }

  ScriptedHost host_{make_drawing({{L"0"}, {L"A"}}, {{L"A"}, {L"0"}, {L"0"}, {L"0"}})};
  StandaloneStore target_{host_.drawing()};
  EntityList ids_ = host_.model_space();
  EntityId reference_ = ids_[0];
  Failures failures_;
  FailingStore store_{target_, failures_};
  FailingHost failing_host_{host_, failures_};
};

TEST_F(CopyFromReference, TablesComeInOrdinalOrderOfTheirNames) {
  for (const wchar_t* table : {L"roads", L"Z", L"TPMNODE_A", L"roads", L"\u00C4", L"Roads", L"Z1"})
    attach(reference_, table, 7);
  EXPECT_EQ(run(copy_od, {ids_[1]}), L"Completed: 1\n");
  EXPECT_EQ(records_of(ids_[1]),
            (Names{L"Roads=0", L"Z=0", L"Z1=0", L"roads=0", L"roads=0", L"\u00C4=0"}));
  EXPECT_EQ(host_.asked, Names{L"Select reference object: "});
}

TEST_F(CopyFromReference, EntitiesThatRefuseAreSkipped) {
  const EntityList targets = {ids_[1], ids_[2], ids_[3]};
  attach(reference_, L"T", 7);
  for (const EntityId id : targets)
    attach(id, L"T", 1);
  failures_.attach = failures_.update = {ids_[1]};
  failures_.open = {ids_[2]};

  EXPECT_EQ(run(copy_value, targets), L"Completed: 1\n");
  EXPECT_EQ(run(copy_od, targets), L"Completed: 3\n");
  EXPECT_EQ(run(copy_all_value, targets), L"Completed: 3\n");
  EXPECT_EQ(records_of(ids_[1]), Names{L"T=1"});
  EXPECT_EQ(host_.properties_of(ids_[1])->layer, L"A") << "its properties are not its records";
  EXPECT_EQ(records_of(ids_[2]), Names{L"T=1"});
  EXPECT_EQ(host_.properties_of(ids_[2])->layer, L"0");
  EXPECT_EQ(records_of(ids_[3]), (Names{L"T=7", L"T=0", L"T=7"}));
}

}  // namespace
}  // namespace korvel::test
