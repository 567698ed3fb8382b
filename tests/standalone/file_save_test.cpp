// Saving a file: the new one is whole or the old one stays, the old one is kept beside it, and
// nothing is left over.
#include "host/standalone/file_save.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/standalone/drawing_bytes.h"

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
  fs::create_symlink("real.dxf", folder_ / "link.dxf");
  ASSERT_FALSE(save(folder_ / "link.dxf", "new"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.dxf"));
  EXPECT_EQ(content(real), "new");
  EXPECT_EQ(content(folder_ / "real.bak"), "old");
  EXPECT_EQ(fs::status(real).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_EQ(names(), (Names{"real.dxf", "link.dxf", "real.bak"}));

  const mode_t mask = ::umask(027);
  ASSERT_FALSE(save(folder_ / "new.dxf", "new"));
  ::umask(mask);
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
  rlimit former{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
  const auto former_handler = std::signal(SIGXFSZ, SIG_IGN);
  for (const std::size_t size : {std::size_t{70000}, std::size_t{3} << 20}) {
    const rlimit small{65536, former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::optional<Failure> failed = save(path, std::string(size, 'x'));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &former), 0);
    expect_untouched(failed, "no room");
  }
  (void)std::signal(SIGXFSZ, former_handler);
}

TEST_F(FileSave, RefusesWhatIsNoPlaceForADrawing) {
  fs::create_directory(folder_ / "folder");
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  fs::create_directories(folder_ / "full" / "a.bak" / "not empty");
  put(folder_ / "full" / "a.dxf", "old");
  const Names before = names();
  for (const fs::path& path : {folder_ / "folder", folder_ / "no such" / "a.dxf", folder_ / "pipe",
                               folder_ / "full" / "a.dxf"}) {
    const std::optional<Failure> failed = save(path, "new");
    ASSERT_TRUE(failed) << path;
    EXPECT_NE(failed->reason.find(path.stem().string()), std::string::npos) << failed->reason;
    EXPECT_EQ(names(), before) << path;
  }
  EXPECT_TRUE(fs::is_fifo(folder_ / "pipe"));
  EXPECT_TRUE(fs::is_empty(folder_ / "folder"));
  EXPECT_EQ(content(folder_ / "full" / "a.dxf"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "full"), {}), 2);
}

TEST_F(FileSave, ReadsWholeFilesAndSaysWhyItCannot) {
  const std::string large(std::size_t{3} << 20, 'x');
  put(folder_ / "empty", "");
  put(folder_ / "large", large);
  EXPECT_EQ(*read_file(folder_ / "empty"), "");
  EXPECT_TRUE(*read_file(folder_ / "large") == large);

  put(folder_ / "beyond all memory", "");
  ASSERT_EQ(::truncate((folder_ / "beyond all memory").c_str(), off_t{1} << 42), 0);
  for (const char* const name : {"missing", ".", "beyond all memory"}) {
    const Result<std::string> bytes = read_file(folder_ / name);
    ASSERT_FALSE(bytes) << name;
    EXPECT_TRUE(bytes.reason().starts_with((folder_ / name).string())) << bytes.reason();
  }
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
