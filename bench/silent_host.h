// The stand-alone host with nobody in front of it: every question is answered by Esc.
#pragma once

#include "host/standalone/standalone_host.h"

namespace korvel::bench {

class SilentHost final : public StandaloneHost {
 public:
  using StandaloneHost::StandaloneHost;

  [[nodiscard]] std::optional<EntityList> ask_selection() override { return {}; }
  void print(std::wstring_view /*text*/) override {}
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view /*prompt*/) override {
    return {};
  }
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view /*prompt*/) override {
    return {};
  }
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view /*prompt*/) override { return {}; }
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view /*prompt*/) override {
    return {};
  }
  [[nodiscard]] bool show(Dialog& /*dialog*/) override { return false; }
  [[nodiscard]] bool ask_yes_no(std::wstring_view /*caption*/, std::wstring_view /*text*/,
                                BoxIcon /*icon*/) override {
    return false;
  }
  void show_text(std::wstring_view /*title*/, std::wstring_view /*text*/, int /*width*/,
                 int /*height*/) override {}
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& /*question*/) override {
    return {};
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& /*question*/) override {
    return {};
  }
  bool run_command(std::wstring_view /*name*/, EntityId /*entity*/) override { return false; }
  [[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& /*traits*/,
                                                             Palette& /*content*/) override {
    return nullptr;
  }
  void cancel_command() override {}
  void send(std::wstring_view /*text*/) override {}
  void start_progress(std::wstring_view /*label*/, std::int64_t /*range*/) override {}
  void move_progress(std::int64_t /*position*/) override {}
  void end_progress() override {}
};

}  // namespace korvel::bench
