// The promises of the store.
#include "tests/host/contract_suite.h"

#include <cmath>
#include <limits>

#include "tests/host/contract_records.h"

namespace korvel::test {
namespace {

const std::vector<LayerSpec> layers = {{L"0"},
                                       {L"Roads"},
                                       {L"Locked", false, true},
                                       {L"Frozen", true},
                                       {L"Off", false, false, true},
                                       {L"*Hidden"}};
const std::vector<EntitySpec> entities = {{L"Roads"},    {L"0"},           {L"Locked"},
                                          {L"Unlisted"}, {L"Roads", true}, {L"Roads"}};

// What a function says of a value.
template <class Passes>
class TestBy final : public ValueTest {
 public:
  explicit TestBy(const Passes& passes) : passes_(passes) {}
  bool passes(std::monostate none) override { return passes_(none); }
  bool passes(std::int32_t number) override { return passes_(number); }
  bool passes(double number) override { return passes_(number); }
  bool passes(std::wstring_view text) override { return passes_(text); }
  bool passes(const Point3& point) override { return passes_(point); }

 private:
  const Passes& passes_;
};

}  // namespace

HostContract::HostContract()
    : under_test_(GetParam()(layers, entities)),
      host_(under_test_->host()),
      store_(under_test_->store()) {
  const EntityList ids = under_test_->entities();
  plain_ = ids[0], other_ = ids[1], locked_ = ids[2], unlisted_ = ids[3], paper_ = ids[4];
  erased_ = ids[5];
  host_.lock();
  EXPECT_EQ(store_.define_table(roads), TableChange::Done);
  EXPECT_EQ(store_.define_table(parcels), TableChange::Done);
  EXPECT_TRUE(store_.attach(erased_, road(L"gone")));
  under_test_->erase(erased_);
}

HostContract::~HostContract() { host_.unlock(); }

std::vector<ODRecord> HostContract::records_of(EntityId entity) const {
  std::vector<ODRecord> found;
  const std::unique_ptr<RecordIterator> records = store_.records();
  for (records->open(entity, OpenMode::Read); !records->done(); records->next())
    records->read(found.emplace_back());
  return found;
}

HostContract::Everything HostContract::everything() const {
  Everything all;
  for (const std::wstring& name : store_.table_names())
    all.first.push_back(store_.table(name).value());
  for (const EntityId id : under_test_->entities())
    all.second.push_back(records_of(id));
  return all;
}

TEST_P(HostContract, RecordsComeInTheOrderOfAttachment) {
  const Records attached = {road(L"a"), parcel(7), road(L"b"), road(L"a")};
  for (const ODRecord& record : attached)
    ASSERT_TRUE(store_.attach(plain_, record));
  ASSERT_TRUE(store_.attach(other_, parcel(8)));
  ASSERT_TRUE(store_.attach(plain_, parcel(9)));

  EXPECT_EQ(records_of(plain_),
            (Records{road(L"a"), parcel(7), road(L"b"), road(L"a"), parcel(9)}));
  EXPECT_EQ(records_of(other_), Records{parcel(8)});
}

TEST_P(HostContract, ValuesComeBackAsTheyWereAttached) {
  std::wstring all_unicode;
  for (char32_t c = 1; c <= 0x10FFFF; c = c == 0xD7FF ? 0xE000 : c + 1)
    append_code_point(c, all_unicode);
  const Records cases = {
      {L"ROADS", {L"", std::numeric_limits<std::int32_t>::min(), 5e-324, Point3{-1e300, 0, 0.1}}},
      {L"ROADS",
       {std::wstring(100000, L'x'), std::numeric_limits<std::int32_t>::max(), 1e308, Point3{}}},
      {L"ROADS", {all_unicode, std::int32_t{0}, 0.1 + 0.2, Point3{1, 2, 3}}}};
  for (const ODRecord& record : cases)
    ASSERT_TRUE(store_.attach(plain_, record));
  EXPECT_TRUE(records_of(plain_) == cases);

  ASSERT_TRUE(store_.attach(other_, {L"ROADS", {L"", std::int32_t{0}, 0.0, Point3{}}}));
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(other_, OpenMode::Write));
  ASSERT_TRUE(records->update({L"ROADS", {L"", std::int32_t{0}, -0.0, Point3{}}}));
  EXPECT_TRUE(std::signbit(std::get<double>(records->value(2)))) << "zero became negative zero";
}

TEST_P(HostContract, CurrentRecordIsReadInPlace) {
  ASSERT_TRUE(attach_default(store_, plain_, L"ROADS"));
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(plain_, OpenMode::Read));
  EXPECT_EQ(records->count(), 1);
  EXPECT_EQ(records->table_name(), L"ROADS");
  ASSERT_EQ(records->value_count(), 4);
  EXPECT_EQ(records->value(0), ODValueView(std::wstring_view(L"none")));
  EXPECT_EQ(records->value(3), ODValueView(Point3{1, 2, 3}));
  EXPECT_EQ(records->value(4), ODValueView());
  ODRecord reused = {L"OLD", std::vector<ODValue>(9, L"old")};
  records->read(reused);
  EXPECT_EQ(reused, default_record(roads));
  records->next();
  EXPECT_TRUE(records->done());
  EXPECT_EQ(records->count(), 1);
  records->start();
  EXPECT_FALSE(records->done());
}

TEST_P(HostContract, IteratorOnNothingWalksNothing) {
  const struct {
    const char* name;
    EntityId entity;
    OpenMode mode;
  } cases[] = {{"null", {}, OpenMode::Read},
               {"erased", erased_, OpenMode::Read},
               {"locked layer", locked_, OpenMode::Write}};
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  const std::unique_ptr<RecordIterator> records = store_.records();
  EXPECT_EQ(records->count(), 0);
  EXPECT_TRUE(records->done());
  for (const auto& test : cases) {
    ASSERT_TRUE(records->open(plain_, OpenMode::Write));
    EXPECT_FALSE(records->open(test.entity, test.mode)) << test.name;
    EXPECT_EQ(records->count(), 0) << test.name;
    records->start();
    EXPECT_TRUE(records->done()) << test.name;
    EXPECT_FALSE(records->update(road(L"b"))) << test.name;
    EXPECT_FALSE(records->remove()) << test.name;
  }
  EXPECT_TRUE(records->open(locked_, OpenMode::Read));
  EXPECT_EQ(records_of(plain_), Records{road(L"a")});
}

TEST_P(HostContract, UpdateWritesTheCurrentRecordOnly) {
  for (const auto* name : {L"a", L"b", L"c"})
    ASSERT_TRUE(store_.attach(plain_, road(name)));
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(plain_, OpenMode::Write));
  records->next();
  const ODRecord changed = {L"ROADS", {L"new", std::int32_t{9}, 9.5, Point3{9, 9, 9}}};
  EXPECT_TRUE(records->update(changed));
  records->next();
  EXPECT_EQ(std::get<std::wstring_view>(records->value(0)), L"c");
  EXPECT_EQ(records_of(plain_), (Records{road(L"a"), changed, road(L"c")}));
}

TEST_P(HostContract, OneValueIsWrittenUnlessItDoesNotFit) {
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  ASSERT_TRUE(store_.attach(plain_, parcel(1)));
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(plain_, OpenMode::Write));
  EXPECT_TRUE(records->set_value(0, std::wstring_view(L"new")));
  EXPECT_TRUE(records->set_value(2, 9.5));
  EXPECT_FALSE(records->set_value(-1, 9.5));
  EXPECT_FALSE(records->set_value(4, 9.5));
  EXPECT_FALSE(records->set_value(1, 9.5)) << "a real for an integer";
  EXPECT_FALSE(records->set_value(2, std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(records->set_value(2, {}));
  records->next();
  EXPECT_TRUE(records->set_value(0, std::int32_t{7}));
  records->next();
  EXPECT_FALSE(records->set_value(0, std::int32_t{8})) << "at the end";
  const Records expected = {{L"ROADS", {L"new", std::int32_t{1}, 9.5, Point3{4, 5, 6}}}, parcel(7)};
  EXPECT_EQ(records_of(plain_), expected);
  ASSERT_TRUE(records->open(plain_, OpenMode::Read));
  EXPECT_FALSE(records->set_value(2, 1.0)) << "opened for reading";
  EXPECT_EQ(records_of(plain_), expected);
}

TEST_P(HostContract, RefusedUpdatesChangeNothing) {
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  const std::int32_t one = 1;
  const struct {
    const char* name;
    ODRecord record;
    OpenMode mode = OpenMode::Write;
  } cases[] = {
      {"opened for reading", road(L"b"), OpenMode::Read},
      {"another table", parcel(1)},
      {"another table's name", {L"PARCELS", road(L"b").values}},
      {"name in another case", {L"roads", road(L"b").values}},
      {"no values", {L"ROADS", {}}},
      {"a value too few", {L"ROADS", {L"b", one, 1.0}}},
      {"a value too many", {L"ROADS", {L"b", one, 1.0, Point3{}, one}}},
      {"last value of a wrong type", {L"ROADS", {L"b", one, 1.0, L"c"}}},
      {"integer for a real", {L"ROADS", {L"b", one, one, Point3{}}}},
      {"no value", {L"ROADS", {L"b", ODValue{}, 1.0, Point3{}}}},
  };
  for (const auto& test : cases) {
    const std::unique_ptr<RecordIterator> records = store_.records();
    ASSERT_TRUE(records->open(plain_, test.mode));
    EXPECT_FALSE(records->update(test.record)) << test.name;
    EXPECT_EQ(records_of(plain_), Records{road(L"a")}) << test.name;
  }
}

TEST_P(HostContract, RemovalLeavesTheIteratorOnNothing) {
  for (const auto* name : {L"a", L"b", L"c"})
    ASSERT_TRUE(store_.attach(plain_, road(name)));
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(plain_, OpenMode::Read));
  EXPECT_FALSE(records->remove());

  ASSERT_TRUE(records->open(plain_, OpenMode::Write));
  records->next();
  EXPECT_TRUE(records->remove());
  EXPECT_TRUE(records->done());
  EXPECT_FALSE(records->remove());
  EXPECT_EQ(records_of(plain_), (Records{road(L"a"), road(L"c")}));

  records->start();
  EXPECT_EQ(records->count(), 2);
  for (; !records->done(); records->start())
    ASSERT_TRUE(records->remove());
  EXPECT_EQ(records_of(plain_), Records{});
}

TEST_P(HostContract, MarkedRecordsGoAtOnce) {
  const Records attached = {parcel(0), road(L"1"), parcel(2), road(L"3"), road(L"4"), parcel(5)};
  const struct {
    const wchar_t* table;  // of the iterator; none: all
    std::vector<char> marks;
    Records left;
  } cases[] = {
      {nullptr, {}, attached},
      {nullptr, {0, 0, 0, 0, 0, 0}, attached},
      {nullptr, {1, 1, 0, 0}, {attached.begin() + 2, attached.end()}},
      {nullptr, {1, 0, 0, 1, 1, 1}, {attached[1], attached[2]}},
      {nullptr, {0, 1, 0, 1, 0, 1}, {attached[0], attached[2], attached[4]}},
      {nullptr, {1, 1, 1, 1, 1, 1, 1, 1}, {}},
      {L"ROADS", {1, 0, 1, 1}, {attached[0], attached[2], attached[3], attached[5]}},
      {L"PARCELS", {0, 1, 1}, {attached[0], attached[1], attached[3], attached[4]}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(&test - cases);
    for (const ODRecord& record : attached)
      ASSERT_TRUE(store_.attach(plain_, record));
    const std::unique_ptr<RecordIterator> records =
        test.table == nullptr ? store_.records() : store_.records_of(test.table);
    ASSERT_TRUE(records->open(plain_, OpenMode::Read));
    EXPECT_EQ(records->remove_marked(test.marks), 0) << "opened for reading";
    EXPECT_TRUE(records->done());
    EXPECT_EQ(records_of(plain_), attached);
    ASSERT_TRUE(records->open(plain_, OpenMode::Write));
    EXPECT_EQ(records->remove_marked(test.marks), attached.size() - test.left.size());
    EXPECT_TRUE(records->done());
    EXPECT_EQ(records_of(plain_), test.left);
    const std::unique_ptr<RecordIterator> rest = store_.records();
    ASSERT_TRUE(rest->open(plain_, OpenMode::Write));
    rest->remove_marked(std::vector<char>(attached.size(), 1));
  }
}

TEST_P(HostContract, RecordsRemovedByOthersLeaveTheIteratorOnNothing) {
  for (const auto* name : {L"a", L"b"})
    ASSERT_TRUE(store_.attach(plain_, road(name)));
  const std::unique_ptr<RecordIterator> records = store_.records();
  const std::unique_ptr<RecordIterator> other = store_.records();
  ASSERT_TRUE(records->open(plain_, OpenMode::Write));
  ASSERT_TRUE(other->open(plain_, OpenMode::Write));
  ASSERT_TRUE(other->remove());
  EXPECT_TRUE(records->done());
  EXPECT_FALSE(records->update(road(L"c")));
  EXPECT_FALSE(records->remove());
  records->start();
  EXPECT_FALSE(records->done());
  ASSERT_EQ(store_.delete_table(L"ROADS"), TableChange::Done);
  EXPECT_TRUE(records->done());
  EXPECT_FALSE(records->remove());
  EXPECT_EQ(records->count(), 0);
}

TEST_P(HostContract, IteratorOfATableSeesItsRecordsOnly) {
  for (const ODRecord& record : {parcel(1), road(L"a"), parcel(2), road(L"b"), road(L"c")})
    ASSERT_TRUE(store_.attach(plain_, record));
  const std::unique_ptr<RecordIterator> records = store_.records_of(L"ROADS");
  ASSERT_TRUE(records->open(plain_, OpenMode::Write));
  EXPECT_EQ(records->count(), 3);
  for (const std::wstring name : {L"a", L"b", L"c"}) {
    ASSERT_FALSE(records->done());
    EXPECT_EQ(records->value(0), ODValueView(std::wstring_view(name)));
    ASSERT_TRUE(records->update(road(name + name)));
    records->next();
  }
  EXPECT_TRUE(records->done());
  records->start();
  ASSERT_TRUE(records->remove());
  EXPECT_TRUE(records->done());
  records->start();
  EXPECT_EQ(records->count(), 2);
  EXPECT_EQ(records_of(plain_), (Records{parcel(1), parcel(2), road(L"bb"), road(L"cc")}));
  EXPECT_TRUE(records->open(other_, OpenMode::Read));
  EXPECT_TRUE(records->done());
  const std::unique_ptr<RecordIterator> none = store_.records_of(L"roads");
  EXPECT_TRUE(none->open(plain_, OpenMode::Read));
  EXPECT_TRUE(none->done());
  EXPECT_EQ(none->count(), 0);
}

TEST_P(HostContract, PassesGiveWhatIteratorsGive) {
  for (const ODRecord& record : {road(L"a"), parcel(1), road(L"b"), road(L"a")})
    ASSERT_TRUE(store_.attach(plain_, record));
  ASSERT_TRUE(store_.attach(other_, road(L"b")));
  const EntityList all = {other_, plain_, unlisted_, erased_, plain_, EntityId{}};
  using Names = std::vector<std::wstring>;

  EXPECT_EQ(store_.count_records(all, Names{L"ROADS"}, host_), (std::vector{1, 3, 0, 0, 3, 0}));
  EXPECT_EQ(store_.count_records(all, Names{L"PARCELS", L"ROADS", L"NONE", L"ROADS"}, host_),
            (std::vector{1, 4, 0, 0, 4, 0}));
  EXPECT_EQ(store_.count_records(all, {}, host_), (std::vector{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(store_.tables_on(all, host_), (Names{L"PARCELS", L"ROADS"}));
  EXPECT_EQ(store_.tables_on({other_}, host_), Names{L"ROADS"});

  const auto marked = [&](std::wstring_view table, int column, const auto& passes) {
    std::vector<char> marks = {0, 0, 0, 0, 1, 0};
    TestBy test(passes);
    store_.mark_passing(all, table, column, test, marks, host_);
    return std::string(marks.begin(), marks.end());
  };
  const auto is = [](std::wstring_view text) {
    return [text](const ODValueView& value) {
      const auto* const held = std::get_if<std::wstring_view>(&value);
      return held != nullptr && *held == text;
    };
  };
  const auto always = [](const ODValueView&) { return true; };
  EXPECT_EQ(marked(L"ROADS", 0, is(L"a")), std::string("\0\1\0\0\1\0", 6));
  EXPECT_EQ(marked(L"ROADS", 0, is(L"b")), std::string("\1\1\0\0\1\0", 6));
  const auto is_one = [](const ODValueView& value) {
    const auto* const held = std::get_if<std::int32_t>(&value);
    return held != nullptr && *held == 1;
  };
  EXPECT_EQ(marked(L"ROADS", 1, is_one), std::string("\1\1\0\0\1\0", 6));
  EXPECT_EQ(marked(L"PARCELS", 0, always), std::string("\0\1\0\0\1\0", 6));
  EXPECT_EQ(marked(L"NONE", 0, always), std::string("\0\0\0\0\1\0", 6));
}

TEST_P(HostContract, AliasesAreAddedOnceAndRemovedOnce) {
  EXPECT_TRUE(store_.add_path_alias(L"DATA", L"C:"));
  EXPECT_FALSE(store_.add_path_alias(L"DATA", L"D:"));
  EXPECT_TRUE(store_.remove_path_alias(L"DATA"));
  EXPECT_FALSE(store_.remove_path_alias(L"DATA"));
}

TEST_P(HostContract, DefinitionsComeFromAnAttachedDrawing) {
  const ODTableDef other_parcels = {L"PARCELS", {{L"NUMBER", ODType::Real, 0.0}}};
  const ODTableDef rivers = {L"RIVERS", roads.columns};
  const std::filesystem::path file = under_test_->drawing_with({rivers, other_parcels});
  const Everything before = everything();
  const std::unique_ptr<AttachedDrawing> attached = store_.attach_drawing(file);
  ASSERT_NE(attached, nullptr);
  ASSERT_TRUE(attached->activate());
  EXPECT_EQ(attached->table_names(), (std::vector<std::wstring>{L"RIVERS", L"PARCELS"}));
  EXPECT_EQ(attached->table(L"RIVERS"), rivers);
  EXPECT_EQ(attached->table(L"ROADS"), std::nullopt);
  EXPECT_EQ(attached->copy_definition(L"ROADS"), TableChange::TableMissing);
  EXPECT_EQ(attached->copy_definition(L"PARCELS"), TableChange::TableExists);
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(attached->copy_definition(L"RIVERS"), TableChange::Done);
  EXPECT_EQ(attached->copy_definition(L"RIVERS"), TableChange::TableExists);
  attached->deactivate();
  EXPECT_EQ(store_.table(L"RIVERS"), rivers);
  EXPECT_EQ(everything().second, before.second);
  EXPECT_EQ(host_.model_space(), (EntityList{plain_, other_, locked_, unlisted_}));

  EXPECT_EQ(store_.attach_drawing(file.parent_path() / "no such drawing"), nullptr);
  EXPECT_EQ(store_.attach_drawing(file.parent_path()), nullptr);
}

TEST_P(HostContract, NothingIsAttachedWhereAnIteratorStands) {
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  ASSERT_TRUE(store_.attach(other_, road(L"b")));
  std::unique_ptr<RecordIterator> records = store_.records();
  const std::unique_ptr<RecordIterator> elsewhere = store_.records();
  ASSERT_TRUE(elsewhere->open(other_, OpenMode::Read));
  ASSERT_TRUE(records->open(plain_, OpenMode::Read));
  EXPECT_FALSE(store_.attach(plain_, parcel(1)));
  EXPECT_EQ(records->count(), 1);
  EXPECT_FALSE(store_.attach(other_, parcel(1)));
  records->next();
  EXPECT_TRUE(store_.attach(plain_, parcel(2))) << "ended";
  records->start();
  EXPECT_FALSE(store_.attach(plain_, parcel(1)));
  ASSERT_TRUE(records->open(other_, OpenMode::Write));
  EXPECT_TRUE(store_.attach(plain_, parcel(3))) << "gone elsewhere";
  ASSERT_TRUE(records->open(plain_, OpenMode::Write));
  ASSERT_TRUE(records->remove());
  EXPECT_TRUE(store_.attach(plain_, parcel(4))) << "stands on nothing";
  records->start();
  EXPECT_FALSE(store_.attach(plain_, parcel(1)));
  records.reset();
  EXPECT_TRUE(store_.attach(plain_, parcel(5))) << "destroyed";
  EXPECT_EQ(records_of(plain_), (Records{parcel(2), parcel(3), parcel(4), parcel(5)}));
  EXPECT_EQ(records_of(other_), Records{road(L"b")});
}

TEST_P(HostContract, RefusedAttachingChangesNothing) {
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  const Everything before = everything();
  const struct {
    const char* name;
    EntityId entity;
    ODRecord record;
  } cases[] = {{"null entity", {}, road(L"b")},
               {"erased entity", erased_, road(L"b")},
               {"locked layer", locked_, road(L"b")},
               {"no such table", plain_, {L"RIVERS", {}}},
               {"name in another case", plain_, {L"Parcels", {std::int32_t{1}}}},
               {"no values", plain_, {L"PARCELS", {}}},
               {"too many values", plain_, {L"PARCELS", {std::int32_t{1}, std::int32_t{1}}}},
               {"wrong type", plain_, {L"PARCELS", {1.0}}}};
  for (const auto& test : cases) {
    EXPECT_FALSE(store_.attach(test.entity, test.record)) << test.name;
    EXPECT_EQ(everything(), before) << test.name;
  }
  EXPECT_FALSE(attach_default(store_, plain_, L"Roads"));
}

TEST_P(HostContract, TablesAreDefinedUnlessUnsound) {
  const ODColumnDef number = {L"N", ODType::Integer, std::int32_t{5}};
  const struct {
    const char* name;
    ODTableDef table;
    TableChange change;
  } cases[] = {
      {"one that exists", {L"ROADS", {number}}, TableChange::TableExists},
      {"empty name", {L"", {number}}, TableChange::Failed},
      {"empty column name",
       {L"NEW", {{L"", ODType::Integer, std::int32_t{5}}}},
       TableChange::Failed},
      {"column twice", {L"NEW", {number, number}}, TableChange::Failed},
      {"default of another type",
       {L"NEW", {{L"N", ODType::Real, std::int32_t{5}}}},
       TableChange::Failed},
      {"no default", {L"NEW", {{L"N", ODType::Character, {}}}}, TableChange::Failed},
  };
  const Everything before = everything();
  for (const auto& test : cases) {
    EXPECT_EQ(store_.define_table(test.table), test.change) << test.name;
    EXPECT_EQ(everything(), before) << test.name;
  }
  const ODTableDef in_other_case = {L"Roads", {number}};
  EXPECT_EQ(store_.define_table(in_other_case), TableChange::Done);
  EXPECT_EQ(store_.table(L"Roads"), in_other_case);
  EXPECT_EQ(store_.table(L"ROADS"), roads);
  EXPECT_EQ(store_.table(L"roads"), std::nullopt);
  EXPECT_EQ(store_.table_names(), (std::vector<std::wstring>{L"ROADS", L"PARCELS", L"Roads"}));
}

TEST_P(HostContract, DeletingATableDeletesItsRecordsEverywhere) {
  for (const EntityId id : {plain_, other_, unlisted_, paper_}) {
    for (const ODRecord& record : {road(L"a"), parcel(1), road(L"b"), parcel(2), road(L"c")})
      ASSERT_TRUE(store_.attach(id, record));
  }
  EXPECT_EQ(store_.delete_table(L"Roads"), TableChange::TableMissing);
  EXPECT_EQ(store_.delete_table(L"ROADS"), TableChange::Done);
  EXPECT_EQ(store_.table_names(), std::vector<std::wstring>{L"PARCELS"});
  for (const EntityId id : {plain_, other_, unlisted_, paper_})
    EXPECT_EQ(records_of(id), (Records{parcel(1), parcel(2)}));
  EXPECT_FALSE(store_.attach(plain_, road(L"a")));

  ASSERT_EQ(store_.define_table({L"ROADS", parcels.columns}), TableChange::Done);
  EXPECT_EQ(records_of(plain_), (Records{parcel(1), parcel(2)}));
}

TEST_P(HostContract, RecordsFollowARenamedTable) {
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  const Everything before = everything();
  const struct {
    const wchar_t *from, *to;
    TableChange change;
  } cases[] = {{L"RIVERS", L"NEW", TableChange::TableMissing},
               {L"roads", L"NEW", TableChange::TableMissing},
               {L"ROADS", L"PARCELS", TableChange::TableExists},
               {L"ROADS", L"ROADS", TableChange::Done}};
  for (const auto& test : cases) {
    EXPECT_EQ(store_.rename_table(test.from, test.to), test.change) << to_utf8(test.from);
    EXPECT_EQ(everything(), before);
  }
  EXPECT_EQ(store_.rename_table(L"ROADS", L"Roads"), TableChange::Done);
  EXPECT_EQ(store_.table(L"ROADS"), std::nullopt);
  EXPECT_EQ(records_of(plain_), (Records{{L"Roads", road(L"a").values}}));
}

TEST_P(HostContract, ColumnsAreRenamedAddedAndRemoved) {
  ASSERT_TRUE(store_.attach(plain_, parcel(7)));
  ASSERT_TRUE(store_.attach(other_, parcel(8)));
  const auto text = [](const wchar_t* name) { return ODColumnDef{name, ODType::Character, L"*"}; };
  const ODColumnDef unsound = {L"NEW", ODType::Integer, L"*"};
  const Everything before = everything();
  const std::pair<ColumnChange, ColumnChange> refusals[] = {
      {store_.rename_column(L"parcels", L"NUMBER", L"NEW"), ColumnChange::TableMissing},
      {store_.rename_column(L"PARCELS", L"number", L"NEW"), ColumnChange::ColumnMissing},
      {store_.rename_column(L"ROADS", L"NAME", L"WIDTH"), ColumnChange::DuplicateName},
      {store_.add_column(L"parcels", text(L"NEW"), 0), ColumnChange::TableMissing},
      {store_.add_column(L"PARCELS", text(L"NUMBER"), 0), ColumnChange::DuplicateName},
      {store_.add_column(L"PARCELS", text(L"NEW"), 2), ColumnChange::Failed},
      {store_.add_column(L"PARCELS", text(L"NEW"), -1), ColumnChange::Failed},
      {store_.add_column(L"PARCELS", unsound, 0), ColumnChange::Failed},
      {store_.remove_column(L"parcels", 0), ColumnChange::TableMissing},
      {store_.remove_column(L"PARCELS", 1), ColumnChange::ColumnMissing},
      {store_.remove_column(L"PARCELS", -1), ColumnChange::ColumnMissing}};
  for (const auto& [change, expected] : refusals)
    EXPECT_EQ(change, expected) << "refusal " << &change - &refusals[0].first;
  EXPECT_EQ(everything(), before);

  EXPECT_EQ(store_.rename_column(L"PARCELS", L"NUMBER", L"Number"), ColumnChange::Done);
  EXPECT_EQ(store_.add_column(L"PARCELS", text(L"FIRST"), 0), ColumnChange::Done);
  EXPECT_EQ(store_.add_column(L"PARCELS", text(L"LAST"), 2), ColumnChange::Done);
  EXPECT_EQ(
      store_.table(L"PARCELS"),
      (ODTableDef{L"PARCELS",
                  {text(L"FIRST"), {L"Number", ODType::Integer, std::int32_t{0}}, text(L"LAST")}}));
  EXPECT_EQ(records_of(plain_), (Records{{L"PARCELS", {L"*", std::int32_t{7}, L"*"}}}));
  EXPECT_EQ(store_.remove_column(L"PARCELS", 0), ColumnChange::Done);
  EXPECT_EQ(records_of(other_), (Records{{L"PARCELS", {std::int32_t{8}, L"*"}}}));
  EXPECT_FALSE(store_.attach(plain_, parcel(9)));
  EXPECT_TRUE(store_.attach(plain_, {L"PARCELS", {std::int32_t{9}, L"end"}}));
}

}  // namespace korvel::test
