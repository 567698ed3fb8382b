// The promises of the drawing's host.
#include <array>
#include <filesystem>

#include "frame/command_frame.h"
#include "tests/host/contract_records.h"
#include "tests/host/contract_suite.h"

namespace korvel::test {

TEST_P(HostContract, EntitiesOpenUnlessErasedAndForWritingUnlessLocked) {
  const struct {
    const char* name;
    EntityId entity;
    bool read, write;
  } cases[] = {
      {"plain", plain_, true, true},       {"locked", locked_, true, false},
      {"unlisted", unlisted_, true, true}, {"erased", erased_, false, false},
      {"null", {}, false, false},          {"a layer", host_.layer_of(plain_), false, false}};
  for (const auto& test : cases) {
    EXPECT_EQ(host_.opens(test.entity, OpenMode::Read), test.read) << test.name;
    EXPECT_EQ(host_.opens(test.entity, OpenMode::Write), test.write) << test.name;
    EXPECT_EQ(host_.geometry_of(test.entity).has_value(), test.read) << test.name;
    EXPECT_EQ(host_.layer_of(test.entity).is_null(), !test.read) << test.name;
    EXPECT_EQ(host_.handle_of(test.entity).empty(), !test.read) << test.name;
  }
  EXPECT_EQ(host_.extents_of(plain_), (Extents{{1, 2, 3}, {1, 2, 3}}));
}

TEST_P(HostContract, EntitiesAreFoundByHandle) {
  EXPECT_EQ(host_.handle_of(plain_), L"2A");
  std::wstring appended = L"#";
  host_.append_handle(plain_, appended);
  EXPECT_EQ(appended, L"#2A");
  const struct {
    const wchar_t* handle;
    EntityId entity;
  } cases[] = {{L"2A", plain_}, {L"2a", plain_}, {L"002A", plain_},
               {L"FFFFFF", {}}, {L"", {}},       {L"2A x", {}},
               {L"-2A", {}},    {L"0", {}},      {L"123456789123456789", {}}};
  for (const auto& test : cases) {
    EXPECT_EQ(host_.entity_with_handle(test.handle), test.entity) << to_utf8(test.handle);
  }
  EXPECT_EQ(host_.entity_with_handle(host_.handle_of(locked_)), locked_);
  const std::wstring handle = host_.handle_of(other_);
  under_test_->erase(other_);
  EXPECT_TRUE(host_.entity_with_handle(handle).is_null());
}

TEST_P(HostContract, ModelSpaceIsOldestFirst) {
  EXPECT_EQ(host_.model_space(), (EntityList{plain_, other_, locked_, unlisted_}));
}

TEST_P(HostContract, PickFirstSetKeepsTheOrderOfSelection) {
  EXPECT_EQ(host_.pick_first(), EntityList{});
  host_.set_pick_first({unlisted_, erased_, plain_, locked_});
  EXPECT_EQ(host_.pick_first(), (EntityList{unlisted_, plain_, locked_}));
  EXPECT_EQ(host_.pick_first(), (EntityList{unlisted_, plain_, locked_})) << "asking takes nothing";
  host_.set_pick_first({other_, plain_});
  under_test_->erase(plain_);
  EXPECT_EQ(host_.pick_first(), EntityList{other_});
  host_.set_pick_first({});
  EXPECT_EQ(host_.pick_first(), EntityList{});
}

TEST_P(HostContract, PropertiesAreSetTogetherUnlessTheLayerIsLocked) {
  EXPECT_EQ(host_.properties_of(erased_), std::nullopt);
  EntityProperties wanted = host_.properties_of(plain_).value();
  EXPECT_EQ(wanted, (EntityProperties{L"Roads", L"ByLayer", 256, std::nullopt, 1, -1}));
  wanted = {L"Off", L"DASHED", 3, std::nullopt, 2.5, 30};
  EXPECT_TRUE(host_.set_properties(plain_, wanted));
  EXPECT_EQ(host_.properties_of(plain_), wanted);
  wanted.true_color = 0x102030;
  wanted.book_color = L"DIC COLOR GUIDE(R)$DIC 266";
  EXPECT_TRUE(host_.set_properties(plain_, wanted));
  EXPECT_EQ(host_.properties_of(plain_).value().true_color, 0x102030);
  EXPECT_EQ(host_.properties_of(plain_).value().book_color, wanted.book_color);
  wanted.book_color.clear();
  EXPECT_TRUE(host_.set_properties(plain_, wanted));
  EXPECT_EQ(host_.properties_of(plain_).value().book_color, L"");
  EXPECT_EQ(host_.layer_of(plain_), host_.layers().at(4).id);
  const EntityProperties former = host_.properties_of(locked_).value();
  EXPECT_FALSE(host_.set_properties(locked_, wanted));
  EXPECT_FALSE(host_.set_properties(erased_, wanted));
  EXPECT_EQ(host_.properties_of(locked_), former);
  // Moved to a locked layer, it is locked.
  wanted.layer = L"Locked";
  EXPECT_TRUE(host_.set_properties(plain_, wanted));
  EXPECT_FALSE(host_.opens(plain_, OpenMode::Write));
}

TEST_P(HostContract, AnotherShapeLeavesTheRestOfTheEntity) {
  ASSERT_TRUE(store_.attach(plain_, parcel(1)));
  const std::wstring handle = host_.handle_of(plain_);
  const EntityGeometry shapes[] = {
      {LineShape{{1, 2, 3}, {4, 5, 6}}},
      {ArcShape{{1, 2, 0}, {0, 0, 1}, {1, 0, 0}, 5, 1.5}},
      {EllipseShape{{1, 2, 0}, {0, 0, 1}, {4, 0, 0}, 0.5, 0, 3}},
      {PolylineShape{PolylineKind::ThreeD, {{{0, 0, 0}}, {{1, 2, 3}}}, {0, 0, 1}, true}},
      {PolylineShape{PolylineKind::Light, {{{0, 0, 1}, 0.5}, {{1, 2, 1}}}, {0, 0, 1}, false}, 2}};
  for (const EntityGeometry& shape : shapes) {
    ASSERT_TRUE(host_.set_geometry(plain_, shape));
    const std::optional<EntityGeometry> now = host_.geometry_of(plain_);
    ASSERT_TRUE(now);
    EXPECT_EQ(now->shape.index(), shape.shape.index());
    EXPECT_EQ(now->thickness, shape.thickness);
    EXPECT_EQ(host_.handle_of(plain_), handle);
    EXPECT_EQ(host_.properties_of(plain_).value().layer, L"Roads");
    EXPECT_EQ(records_of(plain_), Records{parcel(1)});
  }
  EXPECT_FALSE(host_.set_geometry(plain_, {HatchShape{}}));
  EXPECT_FALSE(host_.set_geometry(locked_, shapes[0]));
  EXPECT_FALSE(host_.set_geometry(erased_, shapes[0]));
}

TEST_P(HostContract, ExtensionEntriesAreCopiedWithTheObjectData) {
  ASSERT_TRUE(store_.attach(plain_, road(L"a")));
  ASSERT_TRUE(store_.attach(plain_, parcel(1)));
  ASSERT_TRUE(store_.attach(other_, parcel(9)));
  EXPECT_TRUE(host_.extension_entries(unlisted_).empty());
  EXPECT_TRUE(host_.extension_entries(erased_).empty());
  const std::vector<ExtensionEntry> entries = host_.extension_entries(plain_);
  ASSERT_EQ(entries.size(), 1U);
  ASSERT_TRUE(store_.attach(plain_, parcel(2))) << "a copy is what was there";

  for (const EntityId id : {other_, unlisted_})
    EXPECT_TRUE(host_.store_extension_entry(id, entries[0]));
  EXPECT_EQ(records_of(other_), (Records{road(L"a"), parcel(1)})) << "in place of what it had";
  const std::unique_ptr<RecordIterator> records = store_.records();
  ASSERT_TRUE(records->open(other_, OpenMode::Write));
  ASSERT_TRUE(records->update(road(L"b")));
  EXPECT_EQ(records_of(unlisted_), (Records{road(L"a"), parcel(1)})) << "each a copy of its own";
  for (const EntityId id : {locked_, erased_, EntityId{}})
    EXPECT_FALSE(host_.store_extension_entry(id, entries[0]));
  EXPECT_EQ(records_of(locked_), Records{});
}

TEST_P(HostContract, AttributesAreNamedAndChangedByTheirPlace) {
  const std::unique_ptr<HostUnderTest> with_references =
      GetParam()({{L"0"}, {.name = L"Locked", .locked = true}},
                 {{L"0"},
                  {L"Locked",
                   false,
                   L"Door",
                   {{L"NUM", L"1"}, {L"NUM", L"2"}, {L"WIDTH", L"0.9", L"Locked"}, {L"NOTE", L""}}},
                  {.layer = L"0", .block = L"Tree"},
                  {.layer = L"0", .block = L"Door", .attributes = {{L"NUM", L"3"}}}});
  DrawingHost& host = with_references->host();
  const EntityList ids = with_references->entities();
  const DocumentLock lock(host);
  with_references->erase(ids[3]);
  EXPECT_EQ(host.block_name_of(ids[1]), L"Door");
  EXPECT_EQ(host.block_name_of(ids[2]), L"Tree");
  for (const EntityId id : {ids[0], ids[3], EntityId{}}) {
    EXPECT_EQ(host.block_name_of(id), std::nullopt);
    EXPECT_TRUE(host.attributes_of(id).empty());
    EXPECT_EQ(host.set_attribute_texts(id, {{0, L"x"}}), 0U);
  }
  EXPECT_TRUE(host.attributes_of(ids[2]).empty());

  using Attributes = std::vector<BlockAttribute>;
  EXPECT_EQ(host.attributes_of(ids[1]),
            (Attributes{{L"NUM", L"1"}, {L"NUM", L"2"}, {L"WIDTH", L"0.9"}, {L"NOTE", L""}}));
  // The reference's layer does not count, the attribute's does.
  EXPECT_EQ(
      host.set_attribute_texts(
          ids[1], {{4, L"x"}, {3, L"former"}, {1, L""}, {2, L"1.0"}, {3, L"two\nlines ^ \u2603"}}),
      3U);
  EXPECT_EQ(host.set_attribute_texts(ids[1], {{0, L"2"}, {0, L"1"}}), 2U);
  EXPECT_EQ(
      host.attributes_of(ids[1]),
      (Attributes{
          {L"NUM", L"1"}, {L"NUM", L""}, {L"WIDTH", L"0.9"}, {L"NOTE", L"two\nlines ^ \u2603"}}));
}

TEST_P(HostContract, EntitiesAroundAPointAreThoseOfModelSpace) {
  EXPECT_EQ(host_.entities_around({1, 2, 99}), host_.model_space());
  EXPECT_EQ(host_.entities_around({1, 2.001, 3}), EntityList{});
  under_test_->erase(other_);
  EXPECT_EQ(host_.entities_around({1, 2, 3}), (EntityList{plain_, locked_, unlisted_}));
  ASSERT_TRUE(host_.set_geometry(plain_, {PointShape{{7, 8, 0}}}));
  EXPECT_EQ(host_.entities_around({1, 2, 3}), (EntityList{locked_, unlisted_}));
  EXPECT_EQ(host_.entities_around({7, 8, 3}), EntityList{plain_});
}

TEST_P(HostContract, LayersHaveTheirFlagsAlsoWithoutARecord) {
  std::vector<std::wstring> found;
  for (const Layer& layer : host_.layers()) {
    found.push_back(layer.name + (layer.frozen ? L" frozen" : L"") +
                    (layer.hidden ? L" hidden" : L"") + (layer.locked ? L" locked" : L"") +
                    (layer.off ? L" off" : L""));
    EXPECT_EQ(host_.layer_of(locked_) == layer.id, layer.name == L"Locked");
    EXPECT_EQ(host_.layer_of(unlisted_) == layer.id, layer.name == L"Unlisted");
  }
  EXPECT_EQ(found, (std::vector<std::wstring>{L"0", L"Roads", L"Locked locked", L"Frozen frozen",
                                              L"Off off", L"*Hidden hidden", L"Unlisted"}));
}

TEST_P(HostContract, IntegerVariablesAreNamedWithoutCase) {
  EXPECT_EQ(host_.variable(L"LUPREC"), 4);
  EXPECT_TRUE(host_.set_variable(L"luprec", 7));
  EXPECT_EQ(host_.variable(L"LuPrec"), 7);
  for (const wchar_t* name : {L"LTSCALE", L"CLAYER", L"NOSUCH", L""}) {
    EXPECT_EQ(host_.variable(name), std::nullopt) << to_utf8(name);
    EXPECT_FALSE(host_.set_variable(name, 1)) << to_utf8(name);
  }
}

TEST_P(HostContract, LockingNests) {
  host_.lock();
  EXPECT_TRUE(store_.attach(plain_, road(L"a")));
  host_.unlock();
  EXPECT_TRUE(store_.attach(plain_, road(L"b")));
  EXPECT_EQ(records_of(plain_), (Records{road(L"a"), road(L"b")}));
}

TEST_P(HostContract, FilesAreReplacedTogetherOrNotAtAll) {
  const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "contract.txt";
  const std::filesystem::path nowhere = file / "nowhere.txt";
  const std::array written{new_file(file, "whole")};
  EXPECT_FALSE(host_.replace_files(written));
  const std::array refused{new_file(file, "gone"), new_file(nowhere, "")};
  const std::optional<FailedFile> failed = host_.replace_files(refused);
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->path, nowhere);
  EXPECT_EQ(std::filesystem::file_size(file), 5U);
  std::filesystem::remove(file);
}

}  // namespace korvel::test
