// Drawings that CAD programs wrote, where a folder of them is at hand: kept byte for byte, and
// object data put into them and taken out again.
#include "tests/standalone/shared_drawings.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "host/standalone/drawing_dump.h"
#include "host/standalone/drawing_file.h"
#include "tests/standalone/drawing_bytes.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;
using test::difference;

std::vector<std::wstring> lines_of(const Drawing& drawing) {
  std::vector<std::wstring> lines;
  dump(drawing, [&lines](std::wstring_view line) { lines.emplace_back(line); });
  return lines;
}

class SharedDrawings : public testing::Test {
 protected:
  void SetUp() override {
    if (drawings_.empty()) GTEST_SKIP() << "no folder of shared drawings is at hand";
  }
  const std::vector<fs::path> drawings_ = test::shared_drawings();
};

TEST_F(SharedDrawings, AreWrittenBackByteForByte) {
  for (const fs::path& path : drawings_) {
    const Result<std::unique_ptr<Drawing>> drawing = Drawing::open(path);
    ASSERT_TRUE(drawing) << drawing.reason();
    const Result<std::string> file = read_file(path);
    EXPECT_TRUE((*drawing)->to_bytes() == *file) << path;
    EXPECT_FALSE((*drawing)->entities(Space::Model).empty()) << path;
  }
}

TEST_F(SharedDrawings, TakeAttributeTextsAndNameDynamicBlocks) {
  std::size_t set = 0;
  std::set<std::wstring> definitions;
  for (const fs::path& path : drawings_) {
    SCOPED_TRACE(path);
    const std::string file = *read_file(path);
    const auto drawing = test::read(file);
    ASSERT_TRUE(drawing);
    std::map<EntityId, std::vector<BlockAttribute>> wanted;
    drawing->journal().open();
    for (const EntityId id : drawing->entities(Space::Model)) {
      const std::optional<std::wstring> block = drawing->block_name_of(id);
      if (!block) continue;
      const EntityGeometry shape = drawing->geometry_of(id);
      if (*block != std::get<BlockReferenceShape>(shape.shape).block) definitions.insert(*block);
      wanted[id] = drawing->attributes_of(id);
      for (std::size_t i = 0; i < wanted[id].size(); ++i) {
        const std::wstring text = wanted[id][i].text + L"\n\u00e9 \u2603^ \\";
        if (drawing->set_attribute_texts(id, {{i, text}}) == 0) continue;
        wanted[id][i].text = text;
        ++set;
      }
    }
    drawing->journal().close();
    const auto reopened = test::read(drawing->to_bytes());
    ASSERT_TRUE(reopened);
    for (const auto& [id, attributes] : wanted)
      EXPECT_EQ(reopened->attributes_of(id), attributes);
    (void)drawing->undo();
    EXPECT_TRUE(drawing->to_bytes() == file);
  }
  EXPECT_GE(set, 10U);
  EXPECT_TRUE(definitions.contains(L"block_visibility_parameter"));
  EXPECT_TRUE(definitions.contains(L"my-dynamic-block")) << "whose definition may be anonymous";
}

TEST_F(SharedDrawings, CarryObjectDataAndLoseThemAgain) {
  const ODTableDef table{L"Korvel Test",
                         {{L"NAME", ODType::Character, std::wstring(L"none")},
                          {L"COUNT", ODType::Integer, std::int32_t{0}},
                          {L"SIZE", ODType::Real, 0.0},
                          {L"AT", ODType::Point, Point3{}}}};
  const ODRecord record{table.name,
                        {L"Stra\u00DFe \u4E2D\n^J \"x\"" + std::wstring(600, L'y'),
                         std::int32_t{-7}, 0.1, Point3{1, 2, 1.0 / 3}}};
  std::size_t carriers = 0;
  for (const fs::path& path : drawings_) {
    SCOPED_TRACE(path);
    const std::string file = *read_file(path);
    const auto drawing = test::read(file);
    ASSERT_TRUE(drawing);
    if (drawing->why_no_object_data()) continue;
    const std::vector<std::wstring> before = lines_of(*drawing);
    StandaloneStore store(*drawing);
    drawing->journal().open();
    ASSERT_EQ(store.define_table(table), TableChange::Done);
    EntityList attached;
    for (const EntityId id : drawing->entities(Space::Model)) {
      if (attached.size() < 4 && store.attach(id, record)) attached.push_back(id);
    }
    drawing->journal().close();
    ASSERT_EQ(attached.size(), std::min<std::size_t>(4, drawing->entities(Space::Model).size()));

    const fs::path saved = fs::path(testing::TempDir()) / path.filename();
    const std::optional<Failure> failed = drawing->save(saved);
    ASSERT_FALSE(failed) << failed->reason;
    const auto reopened = Drawing::open(saved);
    ASSERT_TRUE(reopened) << reopened.reason();
    EXPECT_TRUE(lines_of(**reopened) == lines_of(*drawing));
    for (const EntityId id : attached) {
      EXPECT_TRUE(test::records_of(**reopened, drawing->handle_of(id)) == std::vector{record});
    }

    // What is neither a carrier nor a dictionary that got an entry is the same.
    const std::string parts = " " + difference(file, *read_file(saved)) + " ";
    EXPECT_EQ(parts.find(" -"), parts.npos) << parts;
    EXPECT_EQ(parts.find("reordered"), parts.npos) << parts;
    EXPECT_LE(std::ranges::count(parts, '~'), 2 + static_cast<int>(attached.size())) << parts;
    EXPECT_LE(std::ranges::count(parts, '+'), 2 + 2 * static_cast<int>(attached.size())) << parts;

    ASSERT_TRUE(drawing->undo());
    EXPECT_EQ(difference(file, drawing->to_bytes()), "~$HANDSEED");
    EXPECT_TRUE(lines_of(*drawing) == before);
    const auto untouched = test::read(file);
    ASSERT_EQ(StandaloneStore(*untouched).define_table(table), TableChange::Done);
    ASSERT_TRUE(test::attach(*untouched, untouched->handle_of(attached[0]), record));
    ASSERT_TRUE(untouched->undo());
    ASSERT_TRUE(untouched->undo());
    EXPECT_TRUE(untouched->to_bytes() == file);
    fs::remove(saved);
    ++carriers;
  }
  EXPECT_GT(carriers, 0U);
}

}  // namespace
}  // namespace korvel
