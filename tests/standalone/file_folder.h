// An empty folder for a test that works with files.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace korvel::test {

inline void put(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FileFolder : public testing::Test {
 protected:
  using Names = std::set<std::string>;

  void SetUp() override {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] Names names() const {
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
      names.insert(entry.path().filename().string());
    return names;
  }

  const std::filesystem::path folder_ =
      std::filesystem::path(testing::TempDir()) /
      (std::string("korvel_files_") +
       testing::UnitTest::GetInstance()->current_test_info()->name());
};

}  // namespace korvel::test
