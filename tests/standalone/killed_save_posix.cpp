// Saves that signals and other saves meet half-way.
#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/files/disk.h"
#include "host/files/replace_files.h"
#include "tests/standalone/file_folder.h"

namespace korvel {
namespace {

using test::content;
using test::put;
using KilledSave = test::FileFolder;
using ReplaceFiles = test::FileFolder;

NewFile meeting(const std::filesystem::path& path, int signal) {
  return {path, [signal](const ByteSink& sink) {
            return sink(std::string(3 << 20, 'x')) && raise(signal) == 0 && sink("the rest");
          }};
}

// What wishes the end of the program waits until the file is in its place.
TEST_F(KilledSave, IsFinishedWhenTheProgramIsToEnd) {
  const std::filesystem::path path = folder_ / "a.dxf";
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    put(path, "old");
    EXPECT_EXIT((void)replace_drawing_file(meeting(path, signal)), testing::KilledBySignal(signal),
                "");
    EXPECT_TRUE(content(path).ends_with("the rest")) << signal;
    EXPECT_EQ(names(), (Names{"a.dxf", "a.bak"})) << signal;
  }
  bool waited = false;
  (void)std::signal(SIGINT, [](int) {});
  EXPECT_FALSE(replace_drawing_file({path, [&](const ByteSink&) {
                                       (void)raise(SIGINT);
                                       waited = disk::interrupt_waits();
                                       return true;
                                     }}));
  EXPECT_TRUE(waited);
  EXPECT_FALSE(disk::interrupt_waits());
  (void)std::signal(SIGINT, SIG_DFL);
}

TEST_F(KilledSave, IsTidiedUpByTheNextOneOfTheSameFile) {
  const std::filesystem::path path = folder_ / "a.txt";
  const std::filesystem::path other = folder_ / "b.txt";
  put(path, "old");
  for (const auto& killed : {path, path, other}) {
    const NewFile file = meeting(killed, SIGKILL);
    EXPECT_EXIT((void)replace_files({&file, 1}), testing::KilledBySignal(SIGKILL), "");
  }
  EXPECT_EQ(content(path), "old");
  EXPECT_EQ(names().size(), 3U);
  // What belongs to a save that goes on stays.
  const NewFile inner = new_file(path, "inner");
  const NewFile outer{path, [&](const ByteSink& sink) {
                        const bool saved = !replace_files({&inner, 1});
                        EXPECT_EQ(content(path), "inner");
                        return saved && sink("outer");
                      }};
  EXPECT_FALSE(replace_files({&outer, 1}));
  EXPECT_EQ(content(path), "outer");
  EXPECT_EQ(names().size(), 2U);  // and what is left of the other file
}

TEST_F(ReplaceFiles, KeepOwnerAndGroup) {
  const std::filesystem::path path = folder_ / "a.dxf";
  put(path, "old");
  constexpr uid_t owner = 4711;
  constexpr gid_t group = 4712;
  if (::chown(path.c_str(), owner, group) != 0) GTEST_SKIP() << "only the superuser may do that";
  ASSERT_FALSE(replace_drawing_file(new_file(path, "new")));
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, owner);
  EXPECT_EQ(status.st_gid, group);
}

}  // namespace
}  // namespace korvel
