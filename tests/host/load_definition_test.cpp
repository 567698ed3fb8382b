// Loading definitions, where transcripts do not reach: what the host's drawing set sees of it on
// every way out, damaged sources, drawings that take no definition.
#include "attach/load_definition.h"

#include <fstream>
#include <iterator>

#include "frame/command_handlers.h"
#include "frame/forwarding_host.h"
#include "frame/session.h"
#include "frame/text_file.h"
#include "frame/tracing_host.h"
#include "tests/host/drawing_file.h"
#include "tests/host/scripted_host.h"

namespace korvel::test {
namespace {

namespace fs = std::filesystem;

class InactiveDrawing final : public ForwardingAttachedDrawing {
 public:
  using ForwardingAttachedDrawing::ForwardingAttachedDrawing;
  bool activate() override { return false; }
};

class StoreWithoutActivation final : public ForwardingStore {
 public:
  using ForwardingStore::ForwardingStore;
  [[nodiscard]] std::unique_ptr<AttachedDrawing> attach_drawing(const fs::path& path) override {
    return std::make_unique<InactiveDrawing>(ForwardingStore::attach_drawing(path));
  }
};

std::string content(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class LoadDefinition : public testing::Test {
 protected:
  // What the command prints when this file is chosen. The file is only read.
  std::wstring load(ScriptedHost& host, ODStore& store, const fs::path& file) {
    const std::string before = content(file);
    trace_.clear();
    host.printed.clear();
    host.files.push_back(file);
    const auto traced = tracing_store(store, [this](std::wstring_view line) {
      (trace_ += line.starts_with(L"attach_drawing") ? L"attach_drawing(...)" : line) += L'\n';
    });
    RememberedChoices choices;
    Palettes palettes;
    Session session{*traced, host, choices, palettes};
    load_definition(session);
    EXPECT_EQ(content(file), before);
    return host.printed;
  }

  const DrawingFile source_{{{L"ROADS", {}}, {L"TPMNODE_A", {}}, {L"PARCELS", {}}}};
  const fs::path& file_ = source_.path();
  const std::string drive_ = file_.has_root_name() ? file_.root_name().string() : "/";
  const std::wstring unable_to_open_ =
      L"Error: unable to open '" + path_text(file_) + L"'.\nError. Operation unsuccessful.\n";
  ScriptedHost host_{make_drawing({{L"0"}}, {})};
  StandaloneStore store_{host_.drawing()};
  std::wstring trace_;
};

TEST_F(LoadDefinition, LetsTheSourceGoBeforeItsAlias) {
  StoreWithoutActivation inactive(store_);
  EXPECT_EQ(load(host_, inactive, file_), unable_to_open_);
  EXPECT_EQ(to_utf8(trace_),
            "add_path_alias(\"OBJECT_DATA\", \"" + drive_ +
                "\") = true\nattach_drawing(...)\n"
                "  activate() = false\n  detach()\nremove_path_alias(\"OBJECT_DATA\") = true\n");
  EXPECT_FALSE(host_.drawing().changed());

  EXPECT_EQ(load(host_, store_, file_), L"Operation completed.\n");
  EXPECT_EQ(to_utf8(trace_),
            "add_path_alias(\"OBJECT_DATA\", \"" + drive_ +
                "\") = true\nattach_drawing(...)\n"
                "  activate() = true\n  table_names() = [\"ROADS\", \"TPMNODE_A\", \"PARCELS\"]\n"
                "  copy_definition(\"ROADS\") = Done\n  copy_definition(\"PARCELS\") = Done\n"
                "  deactivate()\n  detach()\nremove_path_alias(\"OBJECT_DATA\") = true\n");
}

TEST_F(LoadDefinition, LeavesAnAliasThatIsNotItsOwn) {
  ASSERT_TRUE(store_.add_path_alias(L"OBJECT_DATA", L"D:"));
  EXPECT_EQ(load(host_, store_, file_), unable_to_open_);
  EXPECT_TRUE(store_.remove_path_alias(L"OBJECT_DATA"));
}

TEST_F(LoadDefinition, AliasesTheDriveOfThePath) {
  const std::pair<const char*, std::wstring> cases[] = {
      {"C:\\maps\\a.dxf", L"C:"},
      {"/maps/a:b:c.dxf", L"/maps/a:"},
      {"a.dxf", path_text(fs::current_path().root_path())}};
  for (const auto& [file, drive] : cases) {
    (void)load(host_, store_, file);
    EXPECT_EQ(trace_, L"add_path_alias(\"OBJECT_DATA\", \"" + drive +
                          L"\") = true\nattach_drawing(...)\n"
                          L"remove_path_alias(\"OBJECT_DATA\") = true\n");
  }
}

TEST_F(LoadDefinition, ADamagedSourceChangesNothing) {
  const std::string whole = content(file_);
  for (const std::size_t kept : {std::size_t{0}, whole.size() / 2, whole.size() - 5}) {
    std::ofstream(file_, std::ios::binary) << whole.substr(0, kept);
    EXPECT_EQ(load(host_, store_, file_), unable_to_open_) << kept;
  }
  EXPECT_FALSE(host_.drawing().changed());
}

TEST_F(LoadDefinition, ADrawingWithoutRoomForObjectDataRefusesEachTable) {
  ScriptedHost r12(
      std::move(*Drawing::read("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n0\n"
                               "ENDSEC\n0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n",
                               "r12.dxf")));
  StandaloneStore store(r12.drawing());
  EXPECT_EQ(load(r12, store, file_),
            L"Error: unable to copy table 'ROADS'.\nError: unable to copy table 'PARCELS'.\n"
            L"Error. Operation unsuccessful.\n");
  EXPECT_FALSE(r12.drawing().changed());
}

}  // namespace
}  // namespace korvel::test
