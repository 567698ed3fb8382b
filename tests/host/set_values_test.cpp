// Coordinates and identifiers where transcripts do not reach: records that refuse, numbers without
// end, values that nothing tells.
#include <gtest/gtest.h>
#include <limits>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/dialog.h"
#include "frame/session.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"
#include "values/coordinates.h"
#include "values/identifiers.h"

namespace korvel::test {
namespace {

constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();

class SetValues : public testing::Test {
 protected:
  SetValues() : ids_(ids_of(host_.drawing(), 4)) {
    (void)store_.define_table({L"T",
                               {{L"N", ODType::Integer, 0},
                                {L"C", ODType::Character, std::wstring()},
                                {L"R", ODType::Real, 0.0},
                                {L"P", ODType::Point, Point3{}}}});
  }

  void attach(std::size_t entity, ODValue number, ODValue text = std::wstring(),
              ODValue real = 0.0) {
    const ODRecord record{L"T", {std::move(number), std::move(text), std::move(real), Point3{}}};
    ASSERT_TRUE(store_.attach(ids_[entity], record));
  }

  // The values of a column as they follow each other in the drawing.
  std::vector<ODValue> column(int index) {
    std::vector<ODValue> values;
    const std::unique_ptr<RecordIterator> records = store_.records();
    for (const EntityId entity : ids_) {
      for (records->open(entity, OpenMode::Read); !records->done(); records->next())
        values.push_back(copy_of(records->value(index)));
    }
    return values;
  }

  ScriptedHost host_{make_drawing({{L"0"}}, std::vector<EntitySpec>(4, {L"0"}))};
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  Session session_{store_, host_, choices_, palettes_};
  EntityList ids_;
};

TEST_F(SetValues, NumbersGoBackwardsAndPassWhatRefuses) {
  for (const std::size_t entity : {0u, 1u, 1u, 2u, 3u})
    attach(entity, 0);
  Failures failures;
  failures.update = {ids_[2]};
  failures.open = {ids_[3]};
  FailingStore store(store_, failures);
  EXPECT_EQ(number_records(store, ids_, {L"T", L"N", L"", L"", 5}, host_), 3);
  EXPECT_EQ(column(0), (std::vector<ODValue>{7, 5, 6, 0, 0}));
  EXPECT_EQ(number_records(store, ids_, {L"T", L"C", L"P-", L"", 1}, host_), 3);
  EXPECT_EQ(column(1)[0], ODValue(std::wstring(L"P-3")));
  EXPECT_EQ(number_records(store, ids_, {L"T", L"n", L"", L"", 1}, host_), 0) << "no such column";
  EXPECT_EQ(number_records(store, ids_, {L"t", L"N", L"", L"", 1}, host_), 0) << "no such table";
}

TEST_F(SetValues, NumbersEndAtTheLargest) {
  for (const std::size_t entity : {0u, 1u, 2u})
    attach(entity, 0);
  EXPECT_EQ(number_records(store_, ids_, {L"T", L"N", L"", L"", most - 1}, host_), 2);
  EXPECT_EQ(column(0), (std::vector<ODValue>{0, most, most - 1}));
  EXPECT_EQ(number_records(store_, ids_, {L"T", L"C", L"", L"", most}, host_), 1);
}

// A host whose entity has a point where its column has numbers.
class OddStore final : public ForwardingStore {
 public:
  OddStore(ODStore& target, EntityId odd) : ForwardingStore(target), odd_(odd) {}
  [[nodiscard]] std::unique_ptr<RecordIterator> records_of(std::wstring_view table) override {
    return std::make_unique<Records>(ForwardingStore::records_of(table), odd_);
  }

 private:
  class Records final : public ForwardingRecordIterator {
   public:
    Records(std::unique_ptr<RecordIterator> target, EntityId odd)
        : ForwardingRecordIterator(std::move(target)), odd_(odd) {}
    bool open(EntityId entity, OpenMode mode) override {
      on_odd_ = entity == odd_;
      return ForwardingRecordIterator::open(entity, mode);
    }
    [[nodiscard]] ODValueView value(int index) const override {
      return on_odd_ ? ODValueView(Point3{}) : ForwardingRecordIterator::value(index);
    }

   private:
    EntityId odd_;
    bool on_odd_ = false;
  };
  EntityId odd_;
};

TEST_F(SetValues, PointStopsTheNumberingAndWhatIsNumberedStays) {
  for (const std::size_t entity : {0u, 1u, 2u})
    attach(entity, 0);
  OddStore store(store_, ids_[1]);
  EXPECT_EQ(number_records(store, ids_, {L"T", L"N", L"", L"", 5}, host_), 0);
  EXPECT_EQ(column(0), (std::vector<ODValue>{0, 0, 5}));
}

TEST_F(SetValues, RepeatedEntitiesKeepTheirFirstPlace) {
  EntityList list = {ids_[2], ids_[0], ids_[2], ids_[1], ids_[0]};
  drop_repeated(list);
  EXPECT_EQ(list, (EntityList{ids_[2], ids_[0], ids_[1]}));
}

TEST_F(SetValues, FirstNumberIsProposedFromTheFirstRecords) {
  struct Case {
    std::vector<std::wstring> texts;
    std::int32_t proposed;
  };
  const Case cases[] = {{{L"ID12", L"ID9", L"X"}, 13},
                        {{L"7", L"A3", L""}, 0},
                        {{L"A70B900", L"-7-"}, 71},
                        {{L"99999999999"}, most},
                        {{L"\u0661\u0662"}, 0}};
  for (const Case& c : cases) {
    for (std::size_t i = 0; i < c.texts.size(); ++i)
      attach(i, 0, c.texts[i]);
    attach(0, 0, std::wstring(L"B500"));  // a second record does not count
    EXPECT_EQ(proposed_first(store_, ids_, L"T", L"C", host_), c.proposed);
    const std::unique_ptr<RecordIterator> records = store_.records();
    for (const EntityId entity : ids_) {
      for (records->open(entity, OpenMode::Write); !records->done(); records->start())
        ASSERT_TRUE(records->remove());
    }
  }
  attach(0, -8, std::wstring(), 3.99);
  EXPECT_EQ(proposed_first(store_, ids_, L"T", L"N", host_), 0);
  EXPECT_EQ(proposed_first(store_, ids_, L"T", L"R", host_), 4);
  EXPECT_EQ(proposed_first(store_, ids_, L"T", L"P", host_), 0);
  attach(1, most, std::wstring(), 1e20);
  EXPECT_EQ(proposed_first(store_, ids_, L"T", L"N", host_), most);
  EXPECT_EQ(proposed_first(store_, ids_, L"T", L"R", host_), most);
}

TEST(TypedFirst, TakesDigitsAlone) {
  EXPECT_EQ(typed_first(L""), 0);
  EXPECT_EQ(typed_first(L"0042"), 42);
  EXPECT_EQ(typed_first(L"99999999999"), most);
  for (const wchar_t* text : {L"-1", L"+1", L"1.0", L" 1", L"1 ", L"\u0661"})
    EXPECT_EQ(typed_first(text), invalid_first);
}

TEST_F(SetValues, CoordinatesCountWhatOpensAndWhatIsWritten) {
  for (const std::size_t entity : {0u, 1u, 2u})
    attach(entity, 0);
  Failures failures;
  failures.update = {ids_[1]};
  failures.open = {ids_[2]};
  FailingStore store(store_, failures);
  FailingHost host(host_, failures);
  const CoordinateRequest request{L"T", {L"C", L"N", L"R"}, {}, 3, 0};
  const CoordinateCount count =
      set_coordinates(host, store, {ids_[0], ids_[1], ids_[2], ids_[3], ids_[0]}, request);
  EXPECT_EQ(count.completed, 2u) << "an entity listed twice counts twice";
  EXPECT_EQ(count.opened, 4u);
  EXPECT_EQ(column(1),
            (std::vector<ODValue>{std::wstring(L"1.000000"), std::wstring(), std::wstring()}));
  EXPECT_EQ(column(2), (std::vector<ODValue>{3.0, 0.0, 0.0}));
}

// Knows no extents and no shapes.
class BlindHost final : public ForwardingHost {
 public:
  using ForwardingHost::ForwardingHost;
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId /*entity*/) const override {
    return EntityGeometry{};
  }
  [[nodiscard]] std::optional<Extents> extents_of(EntityId /*entity*/) const override {
    return std::nullopt;
  }
};

TEST_F(SetValues, WhatNothingTellsIsTheLargestNumber) {
  attach(0, 0);
  BlindHost host(host_);
  EXPECT_EQ(set_coordinates(host, store_, ids_, {L"T", {L"R", L"", L"N"}, {}, 2, 2}).completed, 1u);
  EXPECT_EQ(column(2)[0], ODValue(std::numeric_limits<double>::max()));
  EXPECT_EQ(column(0)[0], ODValue(most));
}

TEST_F(SetValues, UnitPrecisionIsEightDuringTheRunAlone) {
  attach(0, 0);
  std::vector<std::optional<int>> seen;
  const auto see = [&](bool accept) {
    return [&, accept](Dialog& dialog) {
      seen.push_back(host_.variable(L"LUPREC"));
      if (accept) {
        auto& tables = *std::get<ListBox*>(dialog.controls()[0]);
        tables.selected = 0;
        dialog.changed(tables);
        std::get<DropDown*>(dialog.controls()[1])->selected = 1;
      }
      return accept;
    };
  };
  host_.dialogs = {see(false), see(true), see(true)};
  host_.selections = {std::nullopt, ids_};
  for (int run = 0; run < 3; ++run) {
    set_xyz(session_);
    EXPECT_EQ(host_.variable(L"LUPREC"), 4) << run;
  }
  EXPECT_EQ(seen, (std::vector<std::optional<int>>{8, 8, 8}));
  EXPECT_EQ(column(0)[0], ODValue(1));
}

}  // namespace
}  // namespace korvel::test
