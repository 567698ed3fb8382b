// The binding under the contract, over a double of the CAD host.
#include "frame/forwarding_host.h"
#include "host/arx/block_references.h"
#include "host/arx/command_line.h"
#include "host/arx/database.h"
#include "host/arx/editor_reactor.h"
#include "host/arx/extension_dictionary.h"
#include "host/arx/geometry.h"
#include "host/arx/host_command.h"
#include "host/arx/object_data.h"
#include "host/arx/properties.h"
#include "host/arx/reshaping.h"
#include "host/arx/selection.h"
#include "tests/arx_double/db_classes.h"
#include "tests/arx_double/dictionary_classes.h"
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
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity) const override {
    return arx::geometry_of(entity);
  }
  bool set_geometry(EntityId entity, const EntityGeometry& geometry) override {
    return arx::set_geometry(entity, geometry);
  }
  [[nodiscard]] std::optional<EntityProperties> properties_of(EntityId entity) const override {
    return arx::properties_of(entity);
  }
  bool set_properties(EntityId entity, const EntityProperties& properties) override {
    return arx::set_properties(entity, properties);
  }
  [[nodiscard]] std::vector<Layer> layers() const override { return arx::layers(); }
  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity) const override {
    return arx::extension_entries(entity);
  }
  bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) override {
    return arx::store_extension_entry(entity, entry);
  }
  [[nodiscard]] std::optional<std::wstring> block_name_of(EntityId entity) const override {
    return arx::block_name_of(entity);
  }
  [[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId reference) const override {
    return arx::attributes_of(reference);
  }
  std::size_t set_attribute_texts(EntityId reference,
                                  const std::vector<AttributeText>& texts) override {
    return arx::set_attribute_texts(reference, texts);
  }
  [[nodiscard]] EntityList pick_first() const override { return arx::pick_first(); }
  void set_pick_first(const EntityList& entities) override { arx::set_pick_first(entities); }
  [[nodiscard]] std::optional<EntityList> ask_selection() override { return arx::ask_selection(); }
  void print(std::wstring_view text) override { arx::print(text); }
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override {
    return arx::ask_string(prompt);
  }
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override {
    return arx::ask_integer(prompt);
  }
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override {
    return arx::ask_point(prompt);
  }
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override {
    return arx::ask_entity(prompt);
  }
  void start_progress(std::wstring_view label, std::int64_t range) override {
    arx::start_progress(label, range);
  }
  void move_progress(std::int64_t position) override { arx::move_progress(position); }
  void end_progress() override { arx::end_progress(); }
  [[nodiscard]] bool interrupted() override { return arx::interrupted(); }
  [[nodiscard]] std::optional<int> variable(std::wstring_view name) const override {
    return arx::variable(name);
  }
  bool set_variable(std::wstring_view name, int value) override {
    return arx::set_variable(name, value);
  }
  bool run_command(std::wstring_view name, EntityId entity) override {
    return arx::run_command(name, entity);
  }
  void add_reactor(EditorReactor& reactor) override { arx::add_reactor(reactor); }
  void remove_reactor(EditorReactor& reactor) override { arx::remove_reactor(reactor); }
  void lock() override { arx::lock(); }
  void unlock() override { arx::unlock(); }
  void cancel_command() override { arx::cancel_command(); }
  void send(std::wstring_view text) override { arx::send(text); }
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
    EXPECT_EQ(arx_double::open_selection_sets(), 0);
    EXPECT_EQ(arx_double::undeleted_dictionary_iterators(), 0);
    EXPECT_EQ(arx_double::texts_kept(), 0);
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
  EXPECT_TRUE(store.feature_classes().empty());
  EXPECT_FALSE(store.classify({1}, L"ROAD"));
}

// Knows two feature classes.
class ClassifyingStore final : public ForwardingStore {
 public:
  using ForwardingStore::ForwardingStore;
  [[nodiscard]] std::vector<std::wstring> feature_classes() const override {
    return {L"ROAD", L"RIVER"};
  }
  bool classify(EntityId entity, std::wstring_view feature_class) override {
    classified.emplace_back(entity, feature_class);
    return feature_class == L"ROAD";
  }
  std::vector<std::pair<EntityId, std::wstring>> classified;
};

TEST(ArxStore, ClassifiesThroughMap) {
  ScriptedHost drawing(make_drawing({{L"0"}}, {{L"0"}}));
  StandaloneStore plain(drawing.drawing());
  ClassifyingStore classes(plain);
  const arx_double::DatabaseOver database(drawing);
  const arx_double::MapOverStore map(classes);
  arx::ArxStore store;
  const EntityId entity = drawing.model_space().at(0);
  EXPECT_EQ(store.feature_classes(), (std::vector<std::wstring>{L"ROAD", L"RIVER"}));
  EXPECT_TRUE(store.classify(entity, L"ROAD"));
  EXPECT_FALSE(store.classify(entity, L"LAKE"));
  EXPECT_EQ(classes.classified,
            (std::vector<std::pair<EntityId, std::wstring>>{{entity, L"ROAD"}, {entity, L"LAKE"}}));
}

// A point that cannot be erased again would stay.
TEST(ArxStore, BringsDefinitionsByAPointOnALayerThatIsNotLocked) {
  const ODTableDef rivers{L"RIVERS", {{L"NAME", ODType::Character, L"*"}}};
  const DrawingFile file({rivers});
  for (const bool all_locked : {false, true}) {
    ScriptedHost drawing(
        make_drawing({{.name = L"0", .locked = true}, {.name = L"1", .locked = all_locked}}, {}));
    StandaloneStore tables(drawing.drawing());
    const arx_double::DatabaseOver database(drawing);
    const arx_double::MapOverStore map(tables);
    arx::ArxStore store;
    const auto source = store.attach_drawing(file.path());
    ASSERT_TRUE(source && source->activate());
    EXPECT_EQ(source->copy_definition(L"RIVERS"),
              all_locked ? TableChange::Failed : TableChange::Done);
    EXPECT_EQ(tables.table(L"RIVERS").has_value(), !all_locked);
    EXPECT_EQ(drawing.model_space(), EntityList{});
  }
}

TEST(CommandLine, ALockThatWasRefusedIsNotGivenBack) {
  ScriptedHost drawing(make_drawing({{L"0"}}, {}));
  const arx_double::DatabaseOver database(drawing);
  arx::lock();
  arx_double::refuse_locks(true);
  arx::lock();
  arx_double::refuse_locks(false);
  arx::unlock();
  EXPECT_EQ(drawing.locks, 1);
  arx::unlock();
  arx::unlock();
  EXPECT_EQ(drawing.locks, 0);
}

TEST(CommandLine, PrintsLongTextsInPiecesAndNeverAsAFormat) {
  ScriptedHost drawing(make_drawing({{L"0"}}, {}));
  const arx_double::DatabaseOver database(drawing);
  const std::wstring text = std::wstring(300, L'%') + L"s\n";
  arx::print(text);
  EXPECT_EQ(drawing.printed, text);
}

TEST(Selection, FreesEverySetItMade) {
  ScriptedHost drawing(make_drawing({{L"0"}}, {{L"0"}, {L"0"}}));
  const arx_double::DatabaseOver database(drawing);
  const EntityList ids = drawing.model_space();
  for (int time = 0; time < 200; ++time) {  // more than the host has room for
    arx::set_pick_first({ids[1], ids[0]});
    ASSERT_EQ(arx::pick_first(), (EntityList{ids[1], ids[0]}));
    arx::set_pick_first({});
    ASSERT_EQ(arx::pick_first(), EntityList{});
    drawing.selections = {EntityList{ids[0]}};
    ASSERT_EQ(arx::ask_selection(), EntityList{ids[0]});
  }
  drawing.selections = {std::nullopt, EntityList{}};
  EXPECT_EQ(arx::ask_selection(), std::nullopt);
  EXPECT_EQ(arx::ask_selection(), EntityList{});
  EXPECT_EQ(arx_double::open_selection_sets(), 0);
}

}  // namespace
}  // namespace korvel::test
