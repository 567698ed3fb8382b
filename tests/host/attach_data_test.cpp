// Texts as values of fields, and records attached to and detached from entities that may refuse.
#include "attach/attach_data.h"

#include <gtest/gtest.h>
#include <limits>

#include "attach/field_text.h"
#include "host/standalone/standalone_store.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using namespace std::string_literals;

TEST(FieldText, IsReadByTheTypeOfTheValue) {
  struct Case {
    ODValue before;
    std::wstring_view text;
    ODValue after;
  };
  const Point3 old{7, 8, 9};
  const std::vector<Case> cases = {
      {7, L" -12abc", -12},
      {7, L"2147483648", std::numeric_limits<std::int32_t>::max()},
      {7, L"abc", 0},
      {0.5, L"2.5e3 m", 2500.0},
      {0.5, L"1,5", 1.0},
      {0.5, L"abc", 0.0},
      {0.5, L"-1e999", 0.5},
      {L"old"s, L" 1,2 ", L" 1,2 "s},
      {old, L"5", Point3{5, 5, 5}},
      {old, L"abc", Point3{}},
      {old, L"1,2,3", Point3{1, 2, 3}},
      {old, L" 1 , x,-3e1mm", Point3{1, 0, -30}},
      {old, L",,", Point3{}},
      {old, L"1,2", old},
      {old, L"1,2,3,", old},
      {old, L"1,2,3,4", old},
      {old, L"1e999", old},
      {old, L"1,2,1e999", old},
      {std::monostate{}, L"1", std::monostate{}},
  };
  for (const auto& [before, text, after] : cases) {
    ODValue value = before;
    store_field_text(text, value);
    EXPECT_EQ(value, after) << to_utf8(text);
  }
}

const ODTableDef roads = {L"ROADS",
                          {{L"NAME", ODType::Character, L"none"s}, {L"LANES", ODType::Integer, 2}}};

TEST(AttachRecord, HasTheFirstTextOfAColumnThatIsNotEmpty) {
  const std::vector<FieldText> fields = {{L"name", L"other case"}, {L"NAME", L""},
                                         {L"NAME", L"A"},          {L"NAME", L"second"},
                                         {L"LANES", L""},          {L"GONE", L"x"}};
  EXPECT_EQ(record_with(roads, fields), (ODRecord{L"ROADS", {L"A"s, 2}}));
}

class AttachData : public testing::Test {
 protected:
  AttachData() {
    EXPECT_EQ(target_.define_table(roads), TableChange::Done);
    EXPECT_EQ(target_.define_table({L"Roads", {}}), TableChange::Done);
    EXPECT_TRUE(target_.attach(has_roads_, old_));
    EXPECT_TRUE(target_.attach(has_roads_, old_));
    EXPECT_TRUE(target_.attach(has_others_, other_));
    failures_.attach = {refuses_};
    failures_.open = {closed_};
  }
  using Records = std::vector<ODRecord>;
  // Of each entity, in the order of ids_.
  [[nodiscard]] std::vector<Records> records() {
    std::vector<Records> all;
    const auto walk = target_.records();
    for (const EntityId entity : ids_) {
      Records& found = all.emplace_back();
      for (walk->open(entity, OpenMode::Read); !walk->done(); walk->next())
        walk->read(found.emplace_back());
    }
    return all;
  }

  inline static const ODRecord old_ = {L"ROADS", {L"old"s, 4}};
  inline static const ODRecord other_ = {L"Roads", {}};
  inline static const ODRecord fresh_ = {L"ROADS", {L"new"s, 1}};
  ScriptedHost host_{make_drawing({{L"0"}, {L"Locked", false, true}},
                                  {{L"0"}, {L"0"}, {L"0"}, {L"Locked"}, {L"0"}, {L"0"}})};
  StandaloneStore target_{host_.drawing()};
  EntityList ids_ = ids_of(host_.drawing(), 6);
  EntityId plain_ = ids_[0], has_roads_ = ids_[1], has_others_ = ids_[2], locked_ = ids_[3],
           refuses_ = ids_[4], closed_ = ids_[5];
  // With a null identifier, and with one entity twice.
  EntityList all_ = {plain_,   has_roads_, EntityId{}, has_others_,
                     refuses_, closed_,    locked_,    plain_};
  Failures failures_;
  FailingStore store_{target_, failures_};
};

TEST_F(AttachData, AttachesToWhatCarriesNoneOfTheTable) {
  EXPECT_EQ(attach_records(store_, all_, fresh_, host_), 2);
  EXPECT_EQ(host_.progress, (std::vector<std::int64_t>{8, 1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(records(),
            (std::vector<Records>{{fresh_}, {old_, old_}, {other_, fresh_}, {}, {}, {}}));
}

TEST_F(AttachData, DetachesTheFirstRecordOfTheTableFromEach) {
  ASSERT_TRUE(target_.attach(plain_, old_) && target_.attach(plain_, fresh_) &&
              target_.attach(refuses_, old_));
  failures_.remove = {refuses_};
  // plain_ is there twice and loses both of its records, each of them counted.
  EXPECT_EQ(detach_records(store_, all_, L"ROADS", host_), 3);
  EXPECT_EQ(host_.progress.back(), 8);
  EXPECT_EQ(records(), (std::vector<Records>{{}, {old_}, {other_}, {}, {old_}, {}}));
}

}  // namespace
}  // namespace korvel::test
