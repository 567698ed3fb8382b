// Extension dictionaries that are not as the contract knows them.
#include "host/arx/extension_dictionary.h"

#include <gtest/gtest.h>

#include "host/standalone/standalone_store.h"
#include "tests/arx_double/dictionary_classes.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"
#include "tests/standalone/drawing_bytes.h"

namespace korvel::test {
namespace {

TEST(ExtensionDictionary, ThatWasErasedAndIsStillNamedGivesAndTakesNothing) {
  ScriptedHost host(make_drawing({{L"0"}}, {{L"0"}, {L"0"}}));
  const arx_double::DatabaseOver database(host);
  StandaloneStore store(host.drawing());
  const EntityList ids = host.model_space();
  ASSERT_EQ(store.define_table({L"T", {}}), TableChange::Done);
  ASSERT_TRUE(store.attach(ids[0], {L"T", {}}));
  const std::vector<ExtensionEntry> entries = arx::extension_entries(ids[0]);
  ASSERT_EQ(entries.size(), 1U);
  const arx_double::ErasedDictionary erased(ids[1]);
  EXPECT_FALSE(arx::store_extension_entry(ids[1], entries[0]));
  EXPECT_TRUE(arx::extension_entries(ids[1]).empty());
  EXPECT_EQ(store.count_records(ids, std::vector<std::wstring>{L"T"}, host), (std::vector{1, 0}));
}

TEST(ExtensionDictionary, ObjectsOfOtherProgramsAreCopiedAndForeignCopiesRefused) {
  ScriptedHost host(read(framed(sample_lines("AC1032", ""))));
  const arx_double::DatabaseOver database(host);
  const EntityId from = host.entity_with_handle(L"22");
  const EntityId to = host.entity_with_handle(L"20");
  const std::vector<ExtensionEntry> entries = arx::extension_entries(from);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_FALSE(arx::store_extension_entry(to, {L"OTHER", nullptr}));
  EXPECT_FALSE(arx::store_extension_entry(to, host.extension_entries(from).at(0)));
  EXPECT_TRUE(arx::store_extension_entry(to, entries[0]));
  const std::vector<ExtensionEntry> stored = host.extension_entries(to);
  ASSERT_EQ(stored.size(), 1U);
  EXPECT_EQ(stored[0].name, L"OTHER");
}

}  // namespace
}  // namespace korvel::test
