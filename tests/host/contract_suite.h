// What every host owes the commands: the promises of the store's and the host's headers as tests.
// A host is put under them by INSTANTIATE_TEST_SUITE_P(Name, HostContract, testing::Values(make)).
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

#include "frame/drawing_host.h"
#include "frame/od_store.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {

// A host with a drawing of exactly the layers and entities that were asked for and no object data.
class HostUnderTest {
 public:
  HostUnderTest() = default;
  HostUnderTest(const HostUnderTest&) = delete;
  HostUnderTest& operator=(const HostUnderTest&) = delete;
  virtual ~HostUnderTest() = default;

  virtual ODStore& store() = 0;
  virtual DrawingHost& host() = 0;
  // The entities in the order in which they were asked for.
  virtual EntityList entities() = 0;
  virtual void erase(EntityId entity) = 0;
  // The file of another drawing, which holds these tables; it lives as long as this.
  virtual std::filesystem::path drawing_with(const std::vector<ODTableDef>& tables) = 0;
};

using MakeHost = std::unique_ptr<HostUnderTest> (*)(const std::vector<LayerSpec>&,
                                                    const std::vector<EntitySpec>&);

class HostContract : public testing::TestWithParam<MakeHost> {
 protected:
  HostContract();
  ~HostContract() override;

  [[nodiscard]] std::vector<ODRecord> records_of(EntityId entity) const;
  // All object data of the drawing, for "nothing was changed".
  using Everything = std::pair<std::vector<ODTableDef>, std::vector<std::vector<ODRecord>>>;
  [[nodiscard]] Everything everything() const;

  std::unique_ptr<HostUnderTest> under_test_;
  DrawingHost& host_;
  ODStore& store_;
  EntityId plain_, other_, locked_, unlisted_, paper_, erased_;
};

}  // namespace korvel::test
