// The binding under the contract, over a double of the CAD host.
#include "frame/forwarding_host.h"
#include "host/arx/database.h"
#include "host/arx/object_data.h"
#include "tests/arx_double/db_classes.h"
#include "tests/arx_double/map_classes.h"
#include "tests/host/contract_suite.h"
#include "tests/host/drawing_file.h"
#include "tests/host/scripted_host.h"

namespace korvel::test {
namespace {

// What the binding has of the drawing's host; the rest is passed on to the stand-alone one.
class BoundHost final : public ForwardingHost {
 public:
  using ForwardingHost::ForwardingHost;

  [[nodiscard]] EntityList model_space() const override { return arx::model_space(); }
  [[nodiscard]] bool opens(EntityId entity, OpenMode mode) const override {
    return arx::opens(entity, mode);
  }
  [[nodiscard]] EntityId layer_of(EntityId entity) const override { return arx::layer_of(entity); }
  [[nodiscard]] std::wstring handle_of(EntityId entity) const override {
    return arx::handle_of(entity);
  }
  [[nodiscard]] EntityId entity_with_handle(std::wstring_view handle) const override {
    return arx::entity_with_handle(handle);
  }
  [[nodiscard]] std::optional<Extents> extents_of(EntityId entity) const override {
    return arx::extents_of(entity);
  }
  [[nodiscard]] std::vector<Layer> layers() const override { return arx::layers(); }
};

class OverDouble final : public HostUnderTest {
 public:
  OverDouble(const std::vector<LayerSpec>& layers, const std::vector<EntitySpec>& entities)
      : drawing_(make_drawing(layers, entities)),
        drawing_store_(drawing_.drawing()),
        database_(drawing_),
        map_(drawing_store_),
        entities_(ids_of(drawing_.drawing(), entities.size())) {}
  ~OverDouble() override {
    store_.reset();
    EXPECT_EQ(arx_double::undeleted_map_objects(), undeleted_before_);
    EXPECT_EQ(arx_double::open_objects(), 0);
  }

  ODStore& store() override { return *store_; }
  DrawingHost& host() override { return host_; }
  EntityList entities() override { return entities_; }
  void erase(EntityId entity) override { EXPECT_TRUE(drawing_.drawing().erase(entity)); }
  std::filesystem::path drawing_with(const std::vector<ODTableDef>& tables) override {
    return file_.emplace(tables).path();
  }

 private:
  int undeleted_before_ = arx_double::undeleted_map_objects();  // by a host beside this one
  ScriptedHost drawing_;
  StandaloneStore drawing_store_;
  arx_double::DatabaseOver database_;
  arx_double::MapOverStore map_;
  BoundHost host_{drawing_};
  std::unique_ptr<arx::ArxStore> store_ = std::make_unique<arx::ArxStore>();
  EntityList entities_;
  std::optional<DrawingFile> file_;
};

std::unique_ptr<HostUnderTest> make(const std::vector<LayerSpec>& layers,
                                    const std::vector<EntitySpec>& entities) {
  return std::make_unique<OverDouble>(layers, entities);
}

INSTANTIATE_TEST_SUITE_P(BindingOverDouble, HostContract, testing::Values(make));

TEST(ArxStore, WithoutMapHasNothingAndDoesNothing) {
  arx::ArxStore store;
  EXPECT_TRUE(store.table_names().empty());
  EXPECT_EQ(store.table(L"T"), std::nullopt);
  EXPECT_EQ(store.define_table({L"T", {}}), TableChange::Failed);
  EXPECT_EQ(store.delete_table(L"T"), TableChange::TableMissing);
  EXPECT_FALSE(store.attach({1}, {L"T", {}}));
  EXPECT_FALSE(store.records()->open({1}, OpenMode::Read));
  EXPECT_FALSE(store.add_path_alias(L"DATA", L"C:"));
  EXPECT_EQ(store.attach_drawing("drawing.dxf"), nullptr);
}

}  // namespace
}  // namespace korvel::test
