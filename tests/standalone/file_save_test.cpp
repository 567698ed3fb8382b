// Saving a file: the new one is whole or the old one stays, the old one is kept beside it, and
// nothing is left over.
#include "host/standalone/file_save.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "tests/standalone/drawing_bytes.h"
#include "tests/standalone/system_limits.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

using Names = std::set<std::string>;

class FileSave : public testing::Test {
 protected:
  void SetUp() override {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  static void put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static std::optional<Failure> save(const fs::path& path, std::string_view bytes) {
    return replace_file(path, [bytes](const ByteWriter& write) { return write(bytes); });
  }
  [[nodiscard]] Names names() const {
    Names names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_))
      names.insert(entry.path().filename().string());
    return names;
  }

  const fs::path folder_ =
      fs::path(testing::TempDir()) /
      ("file_save_"s + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(FileSave, KeepsTheFileBeforeAsBak) {
  const fs::path path = folder_ / "a.b.dxf";
  ASSERT_FALSE(save(path, "one"));
  EXPECT_EQ(names(), Names{"a.b.dxf"});
  ASSERT_FALSE(save(path, "two"));
  EXPECT_EQ(content(path), "two");
  EXPECT_EQ(content(folder_ / "a.b.bak"), "one");
  ASSERT_FALSE(save(path, std::string(5 << 20, 'x')));
  EXPECT_EQ(content(path).size(), std::size_t{5} << 20);
  EXPECT_EQ(content(folder_ / "a.b.bak"), "two");
  EXPECT_EQ(names(), (Names{"a.b.dxf", "a.b.bak"}));
}

TEST_F(FileSave, KeepsPermissionsAndLinks) {
  const fs::path real = folder_ / "real.dxf";
  put(real, "old");
  fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  std::error_code code;
  fs::create_symlink("real.dxf", folder_ / "link.dxf", code);
  if (code) GTEST_SKIP() << "no links here: " << code.message();
  ASSERT_FALSE(save(folder_ / "link.dxf", "new"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.dxf"));
  EXPECT_EQ(content(real), "new");
  EXPECT_EQ(content(folder_ / "real.bak"), "old");
  EXPECT_EQ(fs::status(real).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_EQ(names(), (Names{"real.dxf", "link.dxf", "real.bak"}));

  const std::optional<unsigned> mask = test::change_file_mask(027);
  if (!mask) GTEST_SKIP() << "no mask of permissions here";
  ASSERT_FALSE(save(folder_ / "new.dxf", "new"));
  test::change_file_mask(*mask);
  EXPECT_EQ(static_cast<int>(fs::status(folder_ / "new.dxf").permissions()), 0640);
}

TEST_F(FileSave, LeavesTheOldFileWhenTheNewOneCannotBeMade) {
  const fs::path path = folder_ / "a.dxf";
  put(path, "old");
  const auto expect_untouched = [&](const std::optional<Failure>& failed, const char* how) {
    ASSERT_TRUE(failed) << how;
    EXPECT_TRUE(failed->reason.starts_with(path.string() + ": ")) << failed->reason;
    EXPECT_EQ(content(path), "old") << how;
    EXPECT_EQ(names(), Names{"a.dxf"}) << how;
  };
  const auto give_up = [](const ByteWriter& write) { return write("half") && false; };
  expect_untouched(replace_file(path, give_up), "the producer gives up");

  // A limit on the size of files stands for a full disk.
  for (const std::size_t size : {std::size_t{70000}, std::size_t{3} << 20}) {
    std::optional<Failure> failed;
    {
      const test::SmallFiles limit;
      if (!limit.in_force()) GTEST_SKIP() << "no limit on the size of files here";
      failed = save(path, std::string(size, 'x'));
    }
    expect_untouched(failed, "no room");
  }
}

TEST_F(FileSave, RefusesWhatIsNoPlaceForADrawing) {
  fs::create_directory(folder_ / "folder");
  const bool has_pipe = test::make_pipe(folder_ / "pipe");
  fs::create_directories(folder_ / "full" / "a.bak" / "not empty");
  put(folder_ / "full" / "a.dxf", "old");
  const Names before = names();
  std::vector<fs::path> refused = {folder_ / "folder", folder_ / "no such" / "a.dxf",
                                   folder_ / "full" / "a.dxf"};
  if (has_pipe) refused.push_back(folder_ / "pipe");
  for (const fs::path& path : refused) {
    const std::optional<Failure> failed = save(path, "new");
    ASSERT_TRUE(failed) << path;
    EXPECT_NE(failed->reason.find(path.stem().string()), std::string::npos) << failed->reason;
    EXPECT_EQ(names(), before) << path;
  }
  EXPECT_EQ(fs::is_fifo(folder_ / "pipe"), has_pipe);
  EXPECT_TRUE(fs::is_empty(folder_ / "folder"));
  EXPECT_EQ(content(folder_ / "full" / "a.dxf"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "full"), {}), 2);
  if (!has_pipe) GTEST_SKIP() << "all but the pipe: there are none here";
}

TEST_F(FileSave, ReadsWholeFilesAndSaysWhyItCannot) {
  const std::string large(std::size_t{3} << 20, 'x');
  put(folder_ / "empty", "");
  put(folder_ / "large", large);
  EXPECT_EQ(*read_file(folder_ / "empty"), "");
  EXPECT_TRUE(*read_file(folder_ / "large") == large);

  std::vector<std::string> names = {"missing", "."};
  if (test::make_hollow_file(folder_ / "beyond all memory", std::int64_t{1} << 42)) {
    names.emplace_back("beyond all memory");
  }
  for (const std::string& name : names) {
    const Result<std::string> bytes = read_file(folder_ / name);
    ASSERT_FALSE(bytes) << name;
    EXPECT_TRUE(bytes.reason().starts_with((folder_ / name).string())) << bytes.reason();
  }
  if (names.size() < 3) GTEST_SKIP() << "all but a hollow file: there are none here";
}

TEST_F(FileSave, ADrawingThatCannotBeSavedIsStillChanged) {
  const fs::path path = folder_ / "a.dxf";
  put(path, test::sample("AC1032"));
  const auto drawing = std::move(*Drawing::open(path));
  ASSERT_TRUE(drawing->add_layer(L"New"));
  EXPECT_TRUE(drawing->save(folder_ / "no such" / "a.dxf"));
  EXPECT_TRUE(drawing->changed());
  EXPECT_FALSE(drawing->save(path));
  EXPECT_FALSE(drawing->changed());
  EXPECT_EQ(content(folder_ / "a.bak"), test::sample("AC1032"));
  EXPECT_EQ(content(path), drawing->to_bytes());
  ASSERT_TRUE(drawing->undo());
  EXPECT_TRUE(drawing->changed());
}

}  // namespace
}  // namespace korvel
