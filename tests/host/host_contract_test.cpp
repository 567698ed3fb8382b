// The stand-alone host under the contract: as it is, behind the forwarding and the tracing host.
#include "frame/forwarding_host.h"
#include "frame/tracing_host.h"
#include "tests/host/contract_suite.h"
#include "tests/host/drawing_file.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"

namespace korvel::test {
namespace {

class Standalone : public HostUnderTest {
 public:
  Standalone(const std::vector<LayerSpec>& layers, const std::vector<EntitySpec>& entities)
      : host_(make_drawing(layers, entities)),
        store_(host_.drawing()),
        entities_(ids_of(host_.drawing(), entities.size())) {}

  ODStore& store() override { return store_; }
  DrawingHost& host() override { return host_; }
  EntityList entities() override { return entities_; }
  void erase(EntityId entity) override { EXPECT_TRUE(host_.drawing().erase(entity)); }
  std::filesystem::path drawing_with(const std::vector<ODTableDef>& tables) override {
    return file_.emplace(tables).path();
  }

 private:
  ScriptedHost host_;
  StandaloneStore store_;
  EntityList entities_;
  std::optional<DrawingFile> file_;
};

class Forwarded final : public Standalone {
 public:
  using Standalone::Standalone;
  ODStore& store() override { return store_; }
  DrawingHost& host() override { return host_; }

 private:
  ForwardingStore store_{Standalone::store()};
  ForwardingHost host_{Standalone::host()};
};

class Traced final : public Standalone {
 public:
  using Standalone::Standalone;
  ODStore& store() override { return *store_; }
  DrawingHost& host() override { return *host_; }

 private:
  // Every line is one line of at most a few hundred characters, whatever the values.
  static void check(std::wstring_view line) {
    EXPECT_EQ(line.find(L'\n'), std::wstring_view::npos);
    EXPECT_LT(line.size(), 2000U);
  }
  std::unique_ptr<ODStore> store_ = tracing_store(Standalone::store(), check);
  std::unique_ptr<DrawingHost> host_ = tracing_host(Standalone::host(), check);
};

// Without the short ways of the stand-alone host: what the interfaces do by themselves.
class Plain final : public Standalone {
 public:
  using Standalone::Standalone;
  ODStore& store() override { return store_; }
  DrawingHost& host() override { return host_; }

 private:
  Failures none_;
  FailingStore store_{Standalone::store(), none_};
  FailingHost host_{Standalone::host(), none_};
};

template <class Host>
std::unique_ptr<HostUnderTest> make(const std::vector<LayerSpec>& layers,
                                    const std::vector<EntitySpec>& entities) {
  return std::make_unique<Host>(layers, entities);
}

INSTANTIATE_TEST_SUITE_P(Standalone, HostContract, testing::Values(make<Standalone>));
INSTANTIATE_TEST_SUITE_P(Forwarding, HostContract, testing::Values(make<Forwarded>));
INSTANTIATE_TEST_SUITE_P(Plain, HostContract, testing::Values(make<Plain>));
INSTANTIATE_TEST_SUITE_P(Tracing, HostContract, testing::Values(make<Traced>));

TEST(FailingStore, FailsAtWhatItWasToldToOnly) {
  ScriptedHost host(make_drawing({{L"0"}}, {{L"0"}, {L"0"}}));
  StandaloneStore target(host.drawing());
  const EntityList ids = host.model_space();
  Failures failures;
  FailingStore store(target, failures);
  ASSERT_EQ(store.define_table({L"T", {}}), TableChange::Done);
  for (const bool fails : {false, true}) {
    if (fails) failures.update = failures.remove = failures.attach = {ids[0]};
    for (const EntityId id : ids) {
      const bool expected = !fails || id == ids[1];
      EXPECT_EQ(store.attach(id, {L"T", {}}), expected);
      EXPECT_TRUE(target.attach(id, {L"T", {}}));
      const std::unique_ptr<RecordIterator> records = store.records();
      ASSERT_TRUE(records->open(id, OpenMode::Write));
      EXPECT_EQ(records->update({L"T", {}}), expected);
      EXPECT_EQ(records->remove(), expected);
    }
  }
}

TEST(StandaloneHost, NestedLocksAreOneUndoStep) {
  ScriptedHost host(make_drawing({{L"0"}}, {{L"0"}}));
  StandaloneStore store(host.drawing());
  host.lock();
  host.lock();
  ASSERT_EQ(store.define_table({L"T", {}}), TableChange::Done);
  host.unlock();
  ASSERT_TRUE(attach_default(store, host.model_space().at(0), L"T"));
  host.unlock();
  EXPECT_TRUE(host.drawing().undo());
  EXPECT_EQ(store.table_names(), std::vector<std::wstring>{});
  EXPECT_FALSE(host.drawing().undo());
}

TEST(TracingHost, WritesCallsWithArgumentsAndResults) {
  ScriptedHost target(make_drawing({{L"0"}}, {{L"0"}}));
  StandaloneStore target_store(target.drawing());
  const std::int32_t four = 4;
  std::wstring trace;
  const TraceSink sink = [&trace](std::wstring_view line) { (trace += line) += L'\n'; };
  const std::unique_ptr<DrawingHost> host = tracing_host(target, sink);
  const std::unique_ptr<ODStore> store = tracing_store(target_store, sink);
  target.strings = {std::nullopt};
  host->lock();
  store->define_table({L"A", {{L"N", ODType::Integer, four}, {L"T", ODType::Character, L""}}});
  store->attach({1}, {L"A", {four, std::wstring(70, L'x')}});
  (void)has_user_tables(*store->records(), {1}, 1);
  host->unlock();
  host->set_pick_first(EntityList(10, EntityId{1}));
  (void)host->ask_string(L"Table: ");
  host->print(L"Selected: 0\n");
  EXPECT_EQ(to_utf8(trace),
            "lock()\n"
            "define_table(\"A\"[\"N\", \"T\"]) = Done\n"
            "attach(#1, \"A\"[4, \"" +
                std::string(60, 'x') +
                "\"... (70)]) = true\n"
                "records()\n"
                "  open(#1, read) = true\n"
                "  done() = false\n"
                "  table_name() = \"A\"\n"
                "  next()\n"
                "  end()\n"
                "unlock()\n"
                "set_pick_first([#1, #1, #1, #1, #1, #1, #1, #1]... (10))\n"
                "ask_string(\"Table: \") = none\n"
                "print(\"Selected: 0\\x0A\")\n");
}

}  // namespace
}  // namespace korvel::test
