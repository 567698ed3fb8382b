// Attributes and object data: mapping files, and what the transcripts do not reach of the transfers
// and the template.
#include "attributes/attribute_transfer.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "attributes/attribute_mapping.h"
#include "attributes/attribute_template.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using namespace std::string_literals;

class AttributeTest : public testing::Test {
 protected:
  explicit AttributeTest(const std::vector<EntitySpec>& entities = {})
      : host_(make_drawing({{L"0"}, {.name = L"Locked", .locked = true}}, entities)),
        ids_(ids_of(host_.drawing(), entities.size())) {
    (void)store_.define_table({L"T",
                               {{L"N", ODType::Integer, 5},
                                {L"R", ODType::Real, 0.5},
                                {L"C", ODType::Character, std::wstring(L"c")},
                                {L"P", ODType::Point, Point3{1, 1, 1}}}});
    (void)store_.define_table({L"TPMNODE_T", {{L"ID", ODType::Integer, 0}}});
  }

  void attach(std::size_t entity, const ODRecord& record) {
    ASSERT_TRUE(store_.attach(ids_[entity], record));
  }

  std::vector<ODRecord> records(std::size_t entity) {
    std::vector<ODRecord> found;
    const std::unique_ptr<RecordIterator> walk = store_.records();
    for (walk->open(ids_[entity], OpenMode::Read); !walk->done(); walk->next())
      walk->read(found.emplace_back());
    return found;
  }

  std::vector<std::wstring> texts(std::size_t entity) {
    std::vector<std::wstring> found;
    for (const BlockAttribute& attribute : host_.attributes_of(ids_[entity]))
      found.push_back(attribute.text);
    return found;
  }

  ScriptedHost host_;
  StandaloneStore store_{host_.drawing()};
  EntityList ids_;
};

ODRecord record(std::int32_t n, double r, std::wstring c, Point3 p) {
  return {L"T", {n, r, std::move(c), p}};
}

using MappingFile = AttributeTest;

TEST_F(MappingFile, LinesAreMappingsCommentsOrFaults) {
  const struct {
    std::string bytes;
    std::size_t count;
    bool failed;
    std::wstring_view messages;
  } cases[] = {
      {"", 0, false, L""},
      {"\xEF\xBB", 0, true, L"Error: invalid mapping '\u00ef\u00bb'\n"},  // a mark cut short
      {"Door\tNUM\tT\tN", 1, false, L""},
      {"\xEF\xBB\xBF"
       "Door\tNUM\tT\tN\r\n",
       1, false, L""},
      {"\xFF\xFE"
       "D\0\t\0A\0\t\0T\0\t\0N\0\n\0"s,
       1, false, L""},
      {"Door\tNUM\tT\tN\t? the number\tof\tit", 1, false, L""},
      {"Door\t\tNUM\t\t\tT\tN\t\t", 1, false, L""},
      {"\tDoor \t NUM\tT \tN ", 1, false, L""},
      {"?BlockName\t?AttributeName\tT\tN\t?Integer", 0, false, L""},
      {"Door\tNUM\t?TableName\t?ColumnName", 0, true, L"Error: invalid mapping 'Door\tNUM'\n"},
      {"Door\tNUM\tT \nDoor\tNUM\tT\tN\n", 1, true, L"Error: invalid mapping 'Door\tNUM\tT'\n"},
      {"a\tb\tT\tN\tx", 0, true, L"Error: invalid mapping 'a\tb\tT\tN\tx'\n"},
      {"a\tb\tU\tN\na\tb\tt\tN", 0, false, L"Error: table U not found\nError: table t not found\n"},
      {"a\tb\tT\tn\na\tb\tT\tR", 1, false, L"Error: column n not found in table T\n"},
      {"a\rb\tc\tT\tN\r\r\n \t\r\n\n", 1, false, L""},
      {"a\0\tb\tT\tN\n"s, 1, false, L""},
      {"a\tb\t \tN", 0, false, L"Error: table  not found\n"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.bytes);
    TextReading text = read_text(test.bytes, TextEncoding::Ansi);
    const MappingReading reading = read_attribute_mapping(std::move(text.text), store_);
    EXPECT_EQ(reading.count, test.count);
    EXPECT_EQ(reading.failed, test.failed);
    EXPECT_EQ(reading.messages, test.messages);
  }
}

TEST_F(MappingFile, BlocksComeInOrdinalOrderAndTheirLinesAsInTheFile) {
  TextReading text =
      read_text("b\tZ\tT\tN\na\tX\tT\tR\nb\tA\tT\tC\nB\tQ\tT\tP\nb\tZ\tT\tN\n", TextEncoding::Ansi);
  EXPECT_EQ(
      read_attribute_mapping(std::move(text.text), store_).mapping,
      (AttributeMapping{{L"B", {{L"Q", L"T", L"P"}}},
                        {L"a", {{L"X", L"T", L"R"}}},
                        {L"b", {{L"Z", L"T", L"N"}, {L"A", L"T", L"C"}, {L"Z", L"T", L"N"}}}}));
}

class Transfer : public AttributeTest {
 protected:
  Transfer()
      : AttributeTest({
            {L"0",
             false,
             L"Door",
             {{L"NUM", L"12abc"}, {L"NUM", L"99"}, {L"num", L"7"}, {L"AT", L"1,2"}}},
            {L"Locked", false, L"Door", {{L"NUM", L"1"}, {L"AT", L"1, 2, 3e0 x"}}},
            {.layer = L"0", .block = L"Door"},
            {L"0", false, L"door", {{L"NUM", L"1"}}},
            {L"0"},
            {L"0", false, L"Door", {{L"W", L"1e999"}, {L"NUM", L"3"}, {L"NOTE", L"n", L"Locked"}}},
        }) {}

  const AttributeMapping mapping_{
      {L"Door",
       {{L"W", L"T", L"R"}, {L"NUM", L"T", L"N"}, {L"AT", L"T", L"P"}, {L"NOTE", L"T", L"C"}}}};
};

TEST_F(Transfer, LoadingFillsEveryRecordAndAttachesWhatIsMissing) {
  attach(0, record(1, 1, L"first", {}));
  attach(0, {L"TPMNODE_T", {4}});
  attach(0, record(2, 2, L"second", {}));
  const DocumentLock lock(host_);
  EXPECT_EQ(load_attributes(mapping_, store_, host_, ids_), (AttributeTransfer{2, 4}));
  using Records = std::vector<ODRecord>;
  EXPECT_EQ(
      records(0),
      (Records{record(12, 1, L"first", {}), {L"TPMNODE_T", {4}}, record(12, 2, L"second", {})}));
  EXPECT_EQ(records(1), Records{}) << "its layer is locked";
  EXPECT_EQ(records(2), Records{record(5, 0.5, L"c", {1, 1, 1})}) << "no attribute says anything";
  EXPECT_EQ(records(3), Records{});
  EXPECT_EQ(records(4), Records{});
  EXPECT_EQ(records(5), Records{record(3, 0.5, L"n", {1, 1, 1})}) << "infinity is no value";
  EXPECT_EQ(load_attributes(mapping_, store_, host_, ids_), (AttributeTransfer{0, 4}));

  // The last line of several for one column stays.
  const AttributeMapping twice{{L"Door", {{L"NUM", L"T", L"C"}, {L"num", L"T", L"C"}}}};
  (void)load_attributes(twice, store_, host_, {ids_[0]});
  EXPECT_EQ(records(0)[2], record(12, 2, L"7", {}));
}

TEST_F(Transfer, StoringSetsEveryAttributeOfTheTagAndCountsEach) {
  attach(0, record(1, 3.0, L"", {1, 2, 3}));
  attach(0, record(-2, 0.1, L"", {-0.0000001, 1e20, 2.5}));
  attach(3, record(8, 8, L"", {}));
  attach(4, record(8, 8, L"", {}));
  attach(5, record(8, 2.5, L"note", {}));
  EXPECT_TRUE(store_.attach(ids_[2], record(8, 8, L"", {})));
  const DocumentLock lock(host_);
  // Entity 0: NUM twice and AT, for each record; entity 5: W and NUM, as NOTE is locked.
  EXPECT_EQ(store_attributes(mapping_, store_, host_, ids_), (AttributeTransfer{8, 4}));
  using Texts = std::vector<std::wstring>;
  EXPECT_EQ(texts(0),
            (Texts{L"-2", L"-2", L"7", L"-0.000000, 100000000000000000000.000000, 2.500000"}));
  EXPECT_EQ(texts(1), (Texts{L"1", L"1, 2, 3e0 x"}));
  EXPECT_EQ(texts(3), Texts{L"1"});
  EXPECT_EQ(texts(5), (Texts{L"2.5", L"8", L"n"}));
}

TEST_F(Transfer, ValuesBecomeTexts) {
  const struct {
    const wchar_t* column;
    ODRecord from;
    const wchar_t* text;
  } cases[] = {
      {L"R", record(0, 2.5, L"", {}), L"2.5"},
      {L"R", record(0, 3, L"", {}), L"3.0"},
      {L"R", record(0, 0.1, L"", {}), L"0.1"},
      {L"R", record(0, 1e-13, L"", {}), L"0.0"},
      {L"N", record(-2147483647 - 1, 0, L"", {}), L"-2147483648"},
      {L"C", record(0, 0, L" as\nit ^ stands ", {}), L" as\nit ^ stands "},
      {L"P", record(0, 0, L"", {1, 2, 3}), L"1.000000, 2.000000, 3.000000"},
  };
  const DocumentLock lock(host_);
  for (const auto& test : cases) {
    ASSERT_TRUE(store_.attach(ids_[5], test.from));
    (void)store_attributes({{L"Door", {{L"W", L"T", test.column}}}}, store_, host_, {ids_[5]});
    EXPECT_EQ(texts(5)[0], test.text);
  }
}

TEST_F(Transfer, FailuresCostOneReferenceAndAreNotCounted) {
  Failures failures;
  failures.open = {ids_[0]};
  failures.attach = {ids_[2]};
  failures.texts = {ids_[5]};
  FailingStore store(store_, failures);
  FailingHost host(host_, failures);
  const DocumentLock lock(host_);
  EXPECT_EQ(load_attributes(mapping_, store, host, ids_), (AttributeTransfer{1, 3}));
  EXPECT_EQ(store_attributes(mapping_, store, host, ids_), (AttributeTransfer{0, 3}));
}

TEST_F(Transfer, AMappingThatSaysNothingEndsTheCommand) {
  const std::filesystem::path path =
      std::filesystem::path(testing::TempDir()) / ("korvel_map_" + std::to_string(getpid()));
  RememberedChoices choices;
  Palettes palettes;
  Session session{store_, host_, choices, palettes};
  const std::pair<std::string, const wchar_t*> cases[] = {
      {"Door\tNUM\tU\tN\n", L"Error: table U not found\n0 attribute mappings loaded\n"},
      {"Door\tNUM\tT\tN\nx\n", L"Error: invalid mapping 'x'\n1 attribute mappings loaded\n"},
      {"", L"0 attribute mappings loaded\n"}};
  for (const auto& [bytes, messages] : cases) {
    std::ofstream(path, std::ios::binary) << bytes;
    host_.printed.clear();
    host_.files = {path};
    load_attrs(session);  // asks for no selection
    EXPECT_EQ(host_.printed,
              L"Loading attributes map from '" + path_text(path) + L"'\n" + messages);
  }
  std::ofstream(path, std::ios::binary) << std::string(max_line_length + 1, 'x');
  host_.printed.clear();
  host_.files = {path};
  store_attrs(session);
  EXPECT_TRUE(host_.printed.starts_with(L"Error: ") && host_.printed.ends_with(L".\n"))
      << "the reader's own words: " << to_utf8(host_.printed);
  EXPECT_EQ(std::ranges::count(host_.printed, L'\n'), 1);
  std::filesystem::remove(path);
  EXPECT_TRUE(records(0).empty());
}

class Template : public AttributeTest {
 protected:
  Template()
      : AttributeTest({{L"0", false, L"b", {{L"B", L""}, {L"A", L""}}},
                       {L"0", false, L"b", {{L"B", L""}, {L"C", L""}}},
                       {.layer = L"0", .block = L"none"},
                       {L"0"},
                       {L"0", false, L"B", {{L"b", L""}}}}) {}
};

TEST_F(Template, ListsTagsOfEveryBlockOnceAndUserTables) {
  const BlockCatalogue blocks = block_catalogue(host_, ids_);
  EXPECT_EQ(blocks, (BlockCatalogue{{L"B", {L"b"}}, {L"b", {L"A", L"B", L"C"}}}));
  const std::wstring first =
      L"B\tb\t?TableName\t?ColumnName\nb\tA\t?TableName\t?ColumnName\n"
      L"b\tB\t?TableName\t?ColumnName\nb\tC\t?TableName\t?ColumnName\n\n";
  const AttributeTemplate made = attribute_template(blocks, store_);
  EXPECT_EQ(made.tables, 1U);
  EXPECT_EQ(made.text, first +
                           L"?BlockName\t?AttributeName\tT\tN\t?Integer\n"
                           L"?BlockName\t?AttributeName\tT\tR\t?Real\n"
                           L"?BlockName\t?AttributeName\tT\tC\t?Character\n"
                           L"?BlockName\t?AttributeName\tT\tP\t?Point\n");
  ASSERT_EQ(store_.delete_table(L"T"), TableChange::Done);
  EXPECT_EQ(attribute_template(blocks, store_).tables, 0U);
  EXPECT_EQ(attribute_template(blocks, store_).text, first);
}

}  // namespace
}  // namespace korvel::test
