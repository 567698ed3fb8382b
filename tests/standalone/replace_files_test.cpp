// Replacing files: the new ones are whole or the old ones stay, a drawing's old one is kept beside
// it, and nothing is left over.
#include "host/files/replace_files.h"

#include <array>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "frame/file_bytes.h"
#include "host/standalone/drawing_file.h"
#include "tests/standalone/drawing_bytes.h"
#include "tests/standalone/file_folder.h"
#include "tests/standalone/system_limits.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::content;
using test::put;
using ReplaceFiles = test::FileFolder;

std::optional<FailedFile> save(const fs::path& path, std::string_view bytes) {
  const NewFile file = new_file(path, bytes);
  return replace_files({&file, 1});
}

std::optional<FailedFile> save_drawing(const fs::path& path, std::string_view bytes) {
  return replace_drawing_file(new_file(path, bytes));
}

TEST_F(ReplaceFiles, KeepTheDrawingBeforeAsBak) {
  const fs::path path = folder_ / "a.b.dxf";
  ASSERT_FALSE(save_drawing(path, "one"));
  EXPECT_EQ(names(), Names{"a.b.dxf"});
  ASSERT_FALSE(save_drawing(path, "two"));
  EXPECT_EQ(content(path), "two");
  EXPECT_EQ(content(folder_ / "a.b.bak"), "one");
  ASSERT_FALSE(save_drawing(path, std::string(5 << 20, 'x')));
  EXPECT_EQ(content(path).size(), std::size_t{5} << 20);
  EXPECT_EQ(content(folder_ / "a.b.bak"), "two");

  // Both are names of one file: a save was killed just before the new file came to its place.
  std::error_code code;
  fs::remove(folder_ / "a.b.bak");
  fs::create_hard_link(path, folder_ / "a.b.bak", code);
  if (code) GTEST_SKIP() << "no hard links here: " << code.message();
  ASSERT_FALSE(save_drawing(path, "three"));
  EXPECT_EQ(content(path), "three");
  EXPECT_EQ(content(folder_ / "a.b.bak").size(), std::size_t{5} << 20);
  EXPECT_EQ(names(), (Names{"a.b.dxf", "a.b.bak"}));
}

TEST_F(ReplaceFiles, KeepPermissionsAndLinks) {
  const fs::path real = folder_ / "real.dxf";
  put(real, "old");
  constexpr fs::perms permissions =
      fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
  fs::permissions(real, permissions);
  std::error_code code;
  fs::create_symlink("real.dxf", folder_ / "link.dxf", code);
  if (code) GTEST_SKIP() << "no links here: " << code.message();
  fs::create_symlink("new.txt", folder_ / "dangling.txt");
  ASSERT_FALSE(save_drawing(folder_ / "link.dxf", "new"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.dxf"));
  EXPECT_EQ(content(real), "new");
  EXPECT_EQ(content(folder_ / "real.bak"), "old");
  EXPECT_EQ(fs::status(real).permissions(), permissions);

  const std::optional<unsigned> mask = test::change_file_mask(027);
  ASSERT_FALSE(save(folder_ / "dangling.txt", "text"));
  if (mask) test::change_file_mask(*mask);
  EXPECT_TRUE(fs::is_symlink(folder_ / "dangling.txt"));
  EXPECT_EQ(content(folder_ / "new.txt"), "text");
  EXPECT_EQ(names(), (Names{"real.dxf", "link.dxf", "real.bak", "dangling.txt", "new.txt"}));
  if (!mask) GTEST_SKIP() << "no mask of permissions here";
  EXPECT_EQ(static_cast<int>(fs::status(folder_ / "new.txt").permissions()), 0640);
}

TEST_F(ReplaceFiles, HaveNamesOfAnyLettersAndAsLongAsNamesCanBe) {
  for (const std::wstring& name :
       {L"Stra\u00DFe \u0414\U00010400.txt"s, std::wstring(251, L'x') + L".dxf"}) {
    const fs::path path = folder_ / path_of(name);
    ASSERT_FALSE(save_drawing(path, "old"));
    ASSERT_FALSE(save_drawing(path, "new"));
    EXPECT_EQ(content(path), "new");
  }
  EXPECT_EQ(names().size(), 4U);
}

TEST_F(ReplaceFiles, LeaveTheOldOneWhenTheNewOneCannotBeMade) {
  const fs::path path = folder_ / "a.dxf";
  put(path, "old");
  const auto expect_untouched = [&](const char* how) {
    EXPECT_EQ(content(path), "old") << how;
    EXPECT_EQ(names(), Names{"a.dxf"}) << how;
  };
  const auto give_up = [](const ByteSink& sink) { return sink("half") && false; };
  EXPECT_FALSE(replace_drawing_file({path, give_up}));
  expect_untouched("no longer wanted");
  const auto fail = [](const ByteSink& sink) -> bool {
    (void)sink(std::string(3 << 20, 'x'));
    throw std::runtime_error("no more bytes");
  };
  EXPECT_THROW((void)replace_drawing_file({path, fail}), std::runtime_error);
  expect_untouched("an exception");

  // A limit on the size of files stands for a full disk. The producer need not look at the sink.
  for (const std::size_t size : {std::size_t{70000}, std::size_t{3} << 20}) {
    std::optional<FailedFile> failed;
    {
      const test::SmallFiles limit;
      if (!limit.in_force()) GTEST_SKIP() << "no limit on the size of files here";
      failed = replace_drawing_file({path, [size](const ByteSink& sink) {
                                       (void)sink(std::string(size, 'x'));
                                       return sink("the rest") || true;
                                     }});
    }
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->path, path);
    EXPECT_EQ(failed->reason, reason_text(std::make_error_code(std::errc::file_too_large)));
    expect_untouched("no room");
  }
}

TEST_F(ReplaceFiles, RefuseWhatIsNoPlaceForThem) {
  fs::create_directory(folder_ / "folder");
  put(folder_ / "protected.dxf", "old");
  fs::permissions(folder_ / "protected.dxf", fs::perms::owner_read);
  fs::create_directories(folder_ / "full" / "a.bak" / "not empty");
  put(folder_ / "full" / "a.dxf", "old");
  const bool has_pipe = test::make_pipe(folder_ / "pipe");
  const Names before = names();
  std::vector<fs::path> refused = {folder_ / "folder", folder_ / "no such" / "a.dxf",
                                   folder_ / "full" / "a.dxf", folder_ / "protected.dxf"};
  if (has_pipe) refused.push_back(folder_ / "pipe");
  for (const fs::path& path : refused) {
    bool asked = false;
    const std::optional<FailedFile> failed = replace_drawing_file({path, [&](const ByteSink&) {
                                                                     asked = true;
                                                                     return true;
                                                                   }});
    ASSERT_TRUE(failed) << path;
    EXPECT_EQ(failed->path.stem(), path.stem());
    EXPECT_FALSE(failed->reason.empty());
    EXPECT_EQ(asked, path.parent_path().filename() == "full") << path;
    EXPECT_EQ(names(), before) << path;
  }
  EXPECT_EQ(content(folder_ / "full" / "a.dxf"), "old");
  EXPECT_EQ(content(folder_ / "protected.dxf"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "full"), {}), 2);
  fs::permissions(folder_ / "protected.dxf", fs::perms::owner_all);
  EXPECT_EQ(fs::is_fifo(folder_ / "pipe"), has_pipe);
  if (!has_pipe) GTEST_SKIP() << "all but the pipe: there are none here";
}

TEST_F(ReplaceFiles, AreReplacedTogetherOrNotAtAll) {
  const fs::path old = folder_ / "old";
  put(old, "old");
  const std::array both{new_file(old, "1"), new_file(folder_ / "new", "2")};
  EXPECT_FALSE(replace_files(both));
  EXPECT_EQ(content(old), "1");
  EXPECT_EQ(content(folder_ / "new"), "2");

  // The second one finds its place taken when the first one is in its own.
  const fs::path taken = folder_ / "taken";
  const std::array late{
      new_file(old, "3"), new_file(folder_ / "newer", "4"),
      NewFile{taken, [&](const ByteSink&) { return fs::create_directories(taken / "not empty"); }}};
  const std::optional<FailedFile> failed = replace_files(late);
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->path, taken);
  EXPECT_EQ(content(old), "1");
  EXPECT_EQ(names(), (Names{"old", "new", "taken"}));

  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no device that is always full";
  const std::array full{new_file("/dev/full", "5"), new_file(old, "6")};
  ASSERT_TRUE(replace_files(full));
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  EXPECT_EQ(content(old), "1");
  EXPECT_EQ(names(), (Names{"old", "new", "taken"}));
}

TEST_F(ReplaceFiles, AreReadWholeOrItIsSaidWhyNot) {
  const std::string large(std::size_t{3} << 20, 'x');
  put(folder_ / "empty", "");
  put(folder_ / "large", large);
  EXPECT_EQ(*read_file(folder_ / "empty"), "");
  EXPECT_TRUE(*read_file(folder_ / "large") == large);

  std::vector<std::string> unread = {"missing", "."};
  if (test::make_hollow_file(folder_ / "beyond all memory", std::int64_t{1} << 42)) {
    unread.emplace_back("beyond all memory");
  }
  for (const std::string& name : unread) {
    const Result<std::string> bytes = read_file(folder_ / name);
    ASSERT_FALSE(bytes) << name;
    EXPECT_TRUE(bytes.reason().starts_with((folder_ / name).string())) << bytes.reason();
  }
  if (unread.size() < 3) GTEST_SKIP() << "all but a hollow file: there are none here";
}

TEST_F(ReplaceFiles, ADrawingKnowsWhetherItIsSavedAndItsFileIsTheSame) {
  const fs::path path = folder_ / "a.dxf";
  put(path, test::sample("AC1032"));
  const auto drawing = std::move(*Drawing::open(path));
  ASSERT_TRUE(drawing->add_layer(L"New"));
  EXPECT_TRUE(drawing->save(folder_ / "no such" / "a.dxf"));
  EXPECT_TRUE(drawing->changed());
  EXPECT_FALSE(drawing->has_another_file(path));
  put(path, "another");
  EXPECT_TRUE(drawing->has_another_file(path));
  EXPECT_FALSE(drawing->save(path));
  EXPECT_FALSE(drawing->has_another_file(path));
  EXPECT_FALSE(drawing->changed());
  EXPECT_EQ(content(folder_ / "a.bak"), "another");
  EXPECT_EQ(content(path), drawing->to_bytes());
  fs::remove(path);
  EXPECT_FALSE(drawing->has_another_file(path));
  ASSERT_TRUE(drawing->undo());
  EXPECT_TRUE(drawing->changed());
}

}  // namespace
}  // namespace korvel
