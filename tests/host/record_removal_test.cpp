// Records removed by table, all at once and as duplicates, where some refuse to go.
#include "attach/record_removal.h"

#include "attach/duplicate_removal.h"
#include "attach/unused_tables.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

// Entities with records that are letters: R ROADS, r Roads, P PIPES, T a table that the host
// keeps. Each record knows its place, by which those that are left are named.
struct Removal {
  explicit Removal(const std::vector<std::string_view>& entities)
      : host(make_drawing({{L"0"}}, std::vector<EntitySpec>(entities.size(), {L"0"}))),
        ids(host.model_space()) {
    failures.kept_tables = {name_of('T')};
    for (std::size_t i = 0; i < entities.size(); ++i) {
      for (std::size_t place = 0; place < entities[i].size(); ++place) {
        const std::wstring table = name_of(entities[i][place]);
        (void)target.define_table({table, {{L"PLACE", ODType::Integer, 0}}});
        EXPECT_TRUE(target.attach(ids[i], {table, {static_cast<std::int32_t>(place)}}));
      }
    }
  }
  static std::wstring name_of(char letter) {
    return letter == 'R'   ? L"ROADS"
           : letter == 'r' ? L"Roads"
           : letter == 'P' ? L"PIPES"
                           : L"TPMNODE_A";
  }
  [[nodiscard]] std::string left(EntityId entity) {
    std::string places;
    const auto records = target.records();
    for (records->open(entity, OpenMode::Read); !records->done(); records->next())
      places += std::to_string(std::get<std::int32_t>(records->value(0)));
    return places;
  }

  ScriptedHost host;
  StandaloneStore target{host.drawing()};
  EntityList ids;
  Failures failures;
  FailingStore store{target, failures};
};

TEST(RemoveDuplicates, KeepsOneRecordOfEachTable) {
  struct Case {
    std::string_view records;
    std::string_view first, last;  // places left in each mode
    int tables;
  };
  const std::vector<Case> cases = {
      {"RR", "01", "01", 0},  // cannot be opened
      {"RR", "01", "01", 1},  // cannot be removed
      {"", "", "", 0},           {"RP", "01", "01", 0},   {"RPRR", "13", "01", 1},
      {"RrR", "2", "0", 1},      {"PRPr", "23", "01", 2}, {"RPPR", "23", "01", 2},
      {"TRRT", "023", "013", 2}, {"PP", "1", "0", 1},
  };
  std::vector<std::string_view> entities;
  int tables = 0;
  for (const Case& each : cases) {
    entities.push_back(each.records);
    tables += each.tables;
  }
  for (const DuplicateMode mode : {DuplicateMode::First, DuplicateMode::Last}) {
    Removal removal(entities);
    removal.failures.open = {removal.ids[0]};
    removal.failures.remove = {removal.ids[1]};
    EntityList listed = removal.ids;
    listed.insert(listed.end(), {removal.ids[4], EntityId{}});
    EXPECT_EQ(remove_duplicates(removal.store, listed, mode, removal.host), tables);
    for (std::size_t i = 0; i < cases.size(); ++i) {
      EXPECT_EQ(removal.left(removal.ids[i]),
                mode == DuplicateMode::First ? cases[i].first : cases[i].last)
          << cases[i].records;
    }
  }
}

TEST(RemoveRecords, OfTheTablesOrAll) {
  for (const bool all : {false, true}) {
    Removal removal({"RPRr", "P", "RR", "RR", "TRTP", ""});
    removal.failures.open = {removal.ids[2]};
    removal.failures.remove = {removal.ids[3]};
    EntityList listed = removal.ids;
    listed.insert(listed.begin(), {EntityId{}, removal.ids[0]});
    const std::vector<std::wstring> tables = {L"GONE", L"ROADS", L"TPMNODE_A"};
    // By table the records that went are counted, of all the entities that had any.
    EXPECT_EQ(all ? remove_all(removal.store, listed, removal.host)
                  : remove_tables(removal.store, listed, tables, removal.host),
              all ? 4 : 3);
    const auto left = all ? std::vector<std::string_view>{"", "", "01", "01", "02", ""}
                          : std::vector<std::string_view>{"13", "0", "01", "01", "023", ""};
    for (std::size_t i = 0; i < left.size(); ++i)
      EXPECT_EQ(removal.left(removal.ids[i]), left[i]) << i;
  }
}

TEST(UnusedTables, AreThoseOfNoEntityWhateverItsLayerIs) {
  ScriptedHost host(make_drawing({{L"Frozen", true}, {L"Locked"}, {L"Off", false, false, true}},
                                 {{L"Frozen"}, {L"Locked"}, {L"Off"}}));
  StandaloneStore store(host.drawing());
  const std::vector<std::wstring> used = {L"A_FROZEN", L"B_LOCKED", L"C_OFF"};
  for (const std::wstring& table : used) {
    (void)store.define_table({table, {}});
    EXPECT_TRUE(store.attach(host.model_space()[&table - used.data()], {table, {}}));
  }
  (void)store.define_table({L"D_NONE", {}});
  Layer locked = host.layers()[1];
  locked.locked = true;
  host.drawing().change_layer(locked);
  const TableUse use = table_use(store, host);
  EXPECT_EQ(use.used, used);
  EXPECT_EQ(use.unused, std::vector<std::wstring>{L"D_NONE"});
}

}  // namespace
}  // namespace korvel::test
