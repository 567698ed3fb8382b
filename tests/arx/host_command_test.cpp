// Commands of the host run by the binding, and what its reactors are told.
#include "host/arx/host_command.h"

#include <gtest/gtest.h>

#include "frame/forwarding_host.h"
#include "geometry/break_entity.h"
#include "host/arx/editor_reactor.h"
#include "host/arx/extension_dictionary.h"
#include "host/standalone/standalone_store.h"
#include "tests/arx_double/ed_classes.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using CommandEnd = ScriptedHost::CommandEnd;

class BoundHost final : public ForwardingHost {
 public:
  using ForwardingHost::ForwardingHost;
  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity) const override {
    return arx::extension_entries(entity);
  }
  bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) override {
    return arx::store_extension_entry(entity, entry);
  }
  bool run_command(std::wstring_view name, EntityId entity) override {
    return arx::run_command(name, entity);
  }
  void add_reactor(EditorReactor& reactor) override { arx::add_reactor(reactor); }
  void remove_reactor(EditorReactor& reactor) override { arx::remove_reactor(reactor); }
};

class HostCommands : public testing::Test {
 protected:
  ~HostCommands() override {
    EXPECT_EQ(arx_double::unreleased_buffers(), 0);
    EXPECT_EQ(arx_double::editor_reactors(), 0);
    EXPECT_EQ(arx_double::open_objects(), 0);
  }
  // A command that adds a point.
  void script(CommandEnd end) {
    drawing_.commands.push_back([this, end](EntityId entity) {
      EXPECT_EQ(entity, first_);
      EXPECT_EQ(drawing_.pick_first(), EntityList{}) << "is let go before";
      (void)drawing_.drawing().add_entity({PointShape{}}, {});
      return end;
    });
  }

  ScriptedHost drawing_{make_drawing({{L"0"}}, {{L"0"}})};
  StandaloneStore store_{drawing_.drawing()};
  arx_double::DatabaseOver database_{drawing_};
  BoundHost host_{drawing_};
  EntityId first_ = drawing_.model_space().at(0);
};

TEST_F(HostCommands, BreakIsGivenEveryAnswerAndItsPiecesTheData) {
  ASSERT_EQ(store_.define_table({L"T", {}}), TableChange::Done);
  ASSERT_TRUE(store_.attach(first_, {L"T", {}}));
  std::vector<ExtensionEntry> saved;
  const struct {
    CommandEnd end;
    int records;
    std::size_t saved;
  } cases[] = {
      {CommandEnd::Cancelled, 0, 1}, {CommandEnd::Failed, 0, 1}, {CommandEnd::Ended, 1, 0}};
  for (const auto& test : cases) {
    drawing_.set_pick_first({first_});
    script(test.end);
    break_carrying_data(host_, first_, saved);
    const EntityList last = {drawing_.model_space().back()};
    EXPECT_EQ(store_.count_records(last, std::vector<std::wstring>{L"T"}, drawing_),
              std::vector{test.records});
    EXPECT_EQ(saved.size(), test.saved);
    EXPECT_EQ(arx_double::editor_reactors(), 0);
  }
  EXPECT_EQ(drawing_.asked, std::vector<std::wstring>(3, L"_.break"));
}

TEST_F(HostCommands, WhatIsBrokenInAnotherDocumentIsLeftAlone) {
  ASSERT_EQ(store_.define_table({L"T", {}}), TableChange::Done);
  ASSERT_TRUE(store_.attach(first_, {L"T", {}}));
  AcApDocManager& documents = *acDocManagerPtr();
  documents.make_current(documents.other_document());
  std::vector<ExtensionEntry> saved;
  drawing_.commands.push_back([&](EntityId /*entity*/) {
    documents.make_current(documents.other_document());
    script(CommandEnd::Ended);
    EXPECT_TRUE(drawing_.run_command(L"_.break", first_)) << "by the user, over there";
    documents.make_current(documents.other_document());
    return CommandEnd::Cancelled;
  });
  break_carrying_data(host_, first_, saved);
  const EntityList last = {drawing_.model_space().back()};
  EXPECT_EQ(store_.count_records(last, std::vector<std::wstring>{L"T"}, drawing_), std::vector{0});
  EXPECT_EQ(saved.size(), 1U);
}

TEST_F(HostCommands, OthersAreGivenTheEntityAlone) {
  script(CommandEnd::Ended);
  EXPECT_TRUE(arx::run_command(L"_.explode", first_));
  EXPECT_FALSE(arx::run_command(L"_.explode", EntityId{}));
}

// Removes itself and another one, or throws.
class Quarrelsome final : public EditorReactor {
 public:
  Quarrelsome(std::vector<std::wstring>& heard, EditorReactor* other)
      : heard_(heard), other_(other) {
    arx::add_reactor(*this);
  }
  void command_ended(std::wstring_view name) override {
    heard_.push_back(L"ended " + std::wstring(name));
    if (other_ == nullptr) throw std::runtime_error("of a fault");
    arx::remove_reactor(*other_);
    arx::remove_reactor(*this);
  }
  void command_cancelled(std::wstring_view name) override {
    heard_.push_back(L"cancelled " + std::wstring(name));
  }
  void command_failed(std::wstring_view name) override {
    heard_.push_back(L"failed " + std::wstring(name));
  }

 private:
  std::vector<std::wstring>& heard_;
  EditorReactor* other_;
};

TEST_F(HostCommands, ReactorsMayGoAndThrowWhileTheyAreTold) {
  std::vector<std::wstring> heard;
  Quarrelsome thrower(heard, nullptr);
  {
    Quarrelsome removed(heard, nullptr);
    arx::remove_reactor(removed);
    Quarrelsome remover(heard, &removed);
    arx::add_reactor(removed);
    for (const CommandEnd end : {CommandEnd::Failed, CommandEnd::Ended}) {
      script(end);
      EXPECT_TRUE(arx::run_command(L"_.Break", first_));
    }
  }
  EXPECT_EQ(heard, (std::vector<std::wstring>{L"failed BREAK", L"failed BREAK", L"failed BREAK",
                                              L"ended BREAK", L"ended BREAK"}));
  EXPECT_EQ(arx_double::editor_reactors(), 1) << "one for all";
  arx::remove_reactor(thrower);
}

}  // namespace
}  // namespace korvel::test
