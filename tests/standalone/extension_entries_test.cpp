// Entries of extension dictionaries copied from entity to entity: whole trees under new handles,
// object data with them, and no trace after UNDO.
#include <gtest/gtest.h>

#include "tests/standalone/drawing_bytes.h"

namespace korvel {
namespace {

using test::attach;
using test::difference;
using test::framed;
using test::read;
using test::records_of;
using test::replaced;
using test::sample_lines;

// The sample with a second entry on the LWPOLYLINE 22: a dictionary with a record that refers to
// its dictionary, to itself, to the LINE 20, and holds a number that only looks like a reference.
std::string tree_sample(const std::string& version, test::Form form = {}) {
  const std::string flag = version >= "AC1015" ? "280 1\n" : "";
  const std::string tree =
      "0 DICTIONARY\n5 32\n102 {ACAD_REACTORS\n330 30\n102 }\n330 30\n100 AcDbDictionary\n280 1\n"
      "281 1\n3 LEAF\n360 33\n0 XRECORD\n5 33\n102 {ACAD_REACTORS\n330 32\n102 }\n330 32\n"
      "100 AcDbXrecord\n" +
      flag + "330 32\n340 33\n330 20\n330 30\n320 33\n5 33\n";
  return framed(replaced(sample_lines(version, tree), "3 OTHER\n360 31\n",
                         "3 OTHER\n360 31\n3 TREE\n360 32\n"),
                form);
}

EntityId at(const Drawing& drawing, std::uint64_t handle) {
  return drawing.by_handle(handle).value_or(EntityId{});
}

std::vector<std::wstring> names(const Drawing& drawing, std::uint64_t handle) {
  std::vector<std::wstring> found;
  for (const ExtensionEntry& entry : drawing.extension_entries(at(drawing, handle)))
    found.push_back(entry.name);
  return found;
}

// As one step of UNDO.
bool store_all(Drawing& drawing, std::uint64_t handle, const std::vector<ExtensionEntry>& entries) {
  bool stored = true;
  drawing.journal().open();
  for (const ExtensionEntry& entry : entries)
    stored = drawing.store_extension_entry(at(drawing, handle), entry) && stored;
  drawing.journal().close();
  return stored;
}

using Names = std::vector<std::wstring>;

const test::Form forms[] = {{}, {dxf::Framing::Ascii, "\r\n"}, {dxf::Framing::BinaryTwoByte, ""}};

TEST(ExtensionEntries, TreesAreCopiedUnderNewHandlesAndGoWithUndo) {
  for (const char* version : {"AC1012", "AC1015", "AC1032"}) {
    for (const test::Form& form : forms) {
      const std::string file = tree_sample(version, form);
      const auto drawing = read(file);
      const auto entries = drawing->extension_entries(at(*drawing, 0x22));
      ASSERT_EQ(entries.size(), 2u);
      for (const std::uint64_t target : {0x20U, 0x24U}) {
        ASSERT_TRUE(store_all(*drawing, target, entries));
        EXPECT_EQ(names(*drawing, target), (Names{L"OTHER", L"TREE"}));
      }
      const std::string stored = drawing->to_bytes();
      EXPECT_EQ(difference(file, stored),
                "+100 +101 +102 +103 +104 +105 +106 +107 ~$HANDSEED ~20 ~24");
      const auto again = read(stored);
      ASSERT_TRUE(again);
      EXPECT_EQ(names(*again, 0x20), (Names{L"OTHER", L"TREE"}));

      ASSERT_TRUE(drawing->undo() && drawing->undo());
      EXPECT_EQ(names(*drawing, 0x20), Names{});
      EXPECT_EQ(difference(file, drawing->to_bytes()), "~$HANDSEED");
      ASSERT_TRUE(drawing->redo() && drawing->redo());
      EXPECT_EQ(names(*drawing, 0x24), (Names{L"OTHER", L"TREE"}));
      EXPECT_EQ(difference(stored, drawing->to_bytes()), "same");
      ASSERT_TRUE(drawing->erase(at(*drawing, 0x20)) && drawing->erase(at(*drawing, 0x24)));
      EXPECT_EQ(difference(file, drawing->to_bytes()), "-20 -24 ~$HANDSEED");
    }
  }
}

TEST(ExtensionEntries, ReferencesWithinTheTreeFollowOthersStay) {
  const auto drawing = read(tree_sample("AC1032"));
  ASSERT_TRUE(store_all(*drawing, 0x20, drawing->extension_entries(at(*drawing, 0x22))));
  const std::string bytes = drawing->to_bytes();
  for (const char* expected :
       {"0 LINE\n5 20\n102 {ACAD_XDICTIONARY\n360 100\n102 }\n330 15\n",
        "0 DICTIONARY\n5 100\n330 20\n100 AcDbDictionary\n280 1\n281 1\n3 OTHER\n360 101\n3 TREE\n"
        "360 102\n",
        "0 XRECORD\n5 101\n330 100\n100 AcDbXrecord\n280 1\n1 kept\n",
        "0 DICTIONARY\n5 102\n102 {ACAD_REACTORS\n330 100\n102 }\n330 100\n100 AcDbDictionary\n"
        "280 1\n281 1\n3 LEAF\n360 103\n",
        "0 XRECORD\n5 103\n102 {ACAD_REACTORS\n330 102\n102 }\n330 102\n100 AcDbXrecord\n280 1\n"
        "330 102\n340 103\n330 20\n330 30\n320 33\n5 33\n"}) {
    // Numbers may be padded, so both are compared without blanks.
    std::string wanted = framed(expected);
    std::string found = bytes;
    std::erase(wanted, ' ');
    std::erase(found, ' ');
    EXPECT_NE(found.find(wanted), found.npos) << expected;
  }
}

TEST(ExtensionEntries, ObjectDataAreAmongThemAlsoBeforeSaving) {
  const ODTableDef table{L"T", {{L"V", ODType::Character, std::wstring()}}};
  const ODRecord one{L"T", {std::wstring(L"one")}};
  const ODRecord two{L"T", {std::wstring(L"two")}};
  const std::string file = tree_sample("AC1032");
  const auto drawing = read(file);
  ASSERT_EQ(StandaloneStore(*drawing).define_table(table), TableChange::Done);
  ASSERT_TRUE(attach(*drawing, 0x22, one) && attach(*drawing, 0x22, two));
  ASSERT_TRUE(attach(*drawing, 0x20, two));
  const std::string before = drawing->to_bytes();  // gives 20 a dictionary in the file alone
  EXPECT_EQ(names(*drawing, 0x20), Names{L"KORVEL_OD"});
  EXPECT_EQ(names(*drawing, 0x22), (Names{L"OTHER", L"TREE", L"KORVEL_OD"}));

  const auto entries = drawing->extension_entries(at(*drawing, 0x22));
  ASSERT_TRUE(store_all(*drawing, 0x20, entries) && store_all(*drawing, 0x21, entries));
  ASSERT_TRUE(attach(*drawing, 0x22, one)) << "the copies are their own";
  for (int round = 0; round < 2; ++round) {
    const auto again = read(drawing->to_bytes());
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->notices().empty());
    for (const std::uint64_t handle : {0x20U, 0x21U}) {
      EXPECT_EQ(names(*again, handle), (Names{L"OTHER", L"TREE", L"KORVEL_OD"}));
      EXPECT_EQ(records_of(*again, handle), (std::vector{one, two}));
    }
    EXPECT_EQ(difference(drawing->to_bytes(), again->to_bytes()), "same");
    for (int i = 0; i < 3; ++i)
      ASSERT_TRUE(drawing->undo());
    EXPECT_EQ(records_of(*drawing, 0x20), std::vector{two});
    const std::string left = difference(before, drawing->to_bytes());
    EXPECT_EQ(left, "~$HANDSEED");
    for (int i = 0; i < 3; ++i)
      ASSERT_TRUE(drawing->redo());
  }
}

TEST(ExtensionEntries, RecordsOfATableThatHasChangedAreNotStored) {
  const auto drawing = read(tree_sample("AC1032"));
  StandaloneStore store(*drawing);
  for (const wchar_t* const name : {L"Kept", L"Changed", L"Gone"}) {
    ASSERT_EQ(store.define_table({name, {{L"V", ODType::Integer, 1}}}), TableChange::Done);
    ASSERT_TRUE(attach(*drawing, 0x22, {name, {1}}));
  }
  const auto entries = drawing->extension_entries(at(*drawing, 0x22));
  ASSERT_EQ(store.add_column(L"Changed", {L"W", ODType::Integer, 2}, 1), ColumnChange::Done);
  ASSERT_EQ(store.delete_table(L"Gone"), TableChange::Done);
  ASSERT_TRUE(store_all(*drawing, 0x20, entries));
  EXPECT_EQ(records_of(*drawing, 0x20), (std::vector{ODRecord{L"Kept", {1}}}));
}

TEST(ExtensionEntries, EntryOfTheSameNameIsReplacedWithAllItOwns) {
  const std::string file = tree_sample("AC1032");
  const auto drawing = read(file);
  const auto entries = drawing->extension_entries(at(*drawing, 0x22));
  ASSERT_TRUE(drawing->store_extension_entry(at(*drawing, 0x22), {L"tree", entries[0].object}));
  EXPECT_EQ(difference(file, drawing->to_bytes()), "+100 -32 -33 ~$HANDSEED ~30");
  EXPECT_EQ(names(*drawing, 0x22), (Names{L"OTHER", L"TREE"}));
}

TEST(ExtensionEntries, ReplacingAnEntryLeavesTheObjectDataAloneThatItNames) {
  const auto with_data = read(tree_sample("AC1032"));
  const ODRecord one{L"T", {}};
  ASSERT_EQ(StandaloneStore(*with_data).define_table({L"T", {}}), TableChange::Done);
  ASSERT_TRUE(attach(*with_data, 0x22, one));
  const auto entries = with_data->extension_entries(at(*with_data, 0x22));
  const std::string data = with_data->to_bytes();
  const std::size_t handle = data.find("360\n", data.find("\nKORVEL_OD\n")) + 4;
  const auto damaged =
      read(replaced(data, "OTHER\n360\n31\n", "OTHER\n360\n" + data.substr(handle, 3) + "\n"));
  ASSERT_EQ(records_of(*damaged, 0x22), std::vector{one});
  ASSERT_TRUE(damaged->store_extension_entry(at(*damaged, 0x22), {L"OTHER", entries[1].object}));
  EXPECT_EQ(records_of(*read(damaged->to_bytes()), 0x22), std::vector{one});
}

TEST(ExtensionEntries, RefusedOnesChangeNothing) {
  const std::string file = tree_sample("AC1032");
  const auto drawing = read(file);
  ASSERT_EQ(StandaloneStore(*drawing).define_table({L"T", {}}), TableChange::Done);
  ASSERT_TRUE(attach(*drawing, 0x22, {L"T", {}}));
  const std::string before = drawing->to_bytes();
  const auto entries = drawing->extension_entries(at(*drawing, 0x22));
  ASSERT_EQ(entries.size(), 3u);
  const EntityId plain = at(*drawing, 0x20);
  EXPECT_FALSE(drawing->store_extension_entry(at(*drawing, 0x23), entries[0])) << "locked";
  EXPECT_FALSE(drawing->store_extension_entry({}, entries[0]));
  EXPECT_FALSE(drawing->store_extension_entry(plain, {L"NOTHING", nullptr}));
  EXPECT_FALSE(drawing->store_extension_entry(plain, {L"Korvel_OD", entries[0].object}));
  EXPECT_FALSE(drawing->store_extension_entry(plain, {L"DATA", entries[2].object}));
  EXPECT_EQ(difference(before, drawing->to_bytes()), "same");
  EXPECT_TRUE(drawing->extension_entries({}).empty());
}

}  // namespace
}  // namespace korvel
