// The file of a drawing without entities that holds object-data tables; it goes when this does.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "host/standalone/standalone_store.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {

class DrawingFile {
 public:
  explicit DrawingFile(const std::vector<ODTableDef>& tables) {
    const std::unique_ptr<Drawing> drawing = make_drawing({{L"0"}}, {});
    for (const ODTableDef& table : tables)
      EXPECT_EQ(StandaloneStore(*drawing).define_table(table), TableChange::Done);
    EXPECT_FALSE(drawing->save(path_));
  }
  ~DrawingFile() { std::filesystem::remove(path_); }
  DrawingFile(const DrawingFile&) = delete;
  DrawingFile& operator=(const DrawingFile&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  const std::filesystem::path path_ = std::filesystem::path(testing::TempDir()) /
                                      ("korvel_tables_" + std::to_string(getpid()) + ".dxf");
};

}  // namespace korvel::test
