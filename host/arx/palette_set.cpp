#include "host/arx/palette_set.h"

#include <string>
#include <vector>

#include "host/arx/palette_window.h"
#include "host/arx/sdk.h"

namespace korvel::arx {
namespace {

class ArxPaletteSet;
std::vector<ArxPaletteSet*> palette_sets;

class ArxPaletteSet final : public PaletteSet {
 public:
  ArxPaletteSet(const PaletteSetTraits& traits, Palette& content);
  ~ArxPaletteSet() override;

  void show(Session& session) override;
  void show_anew_later();
  void clear() { palette_.clear(); }

 private:
  CAdUiPaletteSet set_;
  PaletteWindow palette_;
  bool made_ = false;
};

// Unconfirmed, the whole sequence: the arguments of each, and that the set is registered before the
// palette is in it. Registered, the host opens it again in its next run by the command of its name.
bool make(CAdUiPaletteSet& set, PaletteWindow& palette, const PaletteSetTraits& traits) {
  const std::wstring name(traits.name);
  const CRect place(0, 0, traits.min_width, traits.min_height);
  GUID tool{};
  if (CLSIDFromString(std::wstring(traits.tool_id).c_str(), &tool) != S_OK) return false;
  if (!set.Create(name.c_str(), WS_OVERLAPPED | WS_DLGFRAME, place, acedGetAcadFrame(), 0)) {
    return false;
  }
  set.SetToolID(&tool);
  AdUiRegisterTool(name.c_str(), L"", &tool);
  if (!palette.make_in(set)) return false;
  set.AddPalette(&palette);
  set.EnableDocking(CBRS_ALIGN_ANY);
  set.RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
  return true;
}

ArxPaletteSet::ArxPaletteSet(const PaletteSetTraits& traits, Palette& content)
    : palette_(content), made_(make(set_, palette_, traits)) {
  palette_sets.push_back(this);
}

ArxPaletteSet::~ArxPaletteSet() {
  std::erase(palette_sets, this);
  palette_.DestroyWindow();
  set_.DestroyWindow();
}

void ArxPaletteSet::show(Session& /*session*/) {
  if (!made_) return;
  palette_.show_anew();
  acedGetAcadFrame()->ShowControlBar(&set_, TRUE, FALSE);
}

void ArxPaletteSet::show_anew_later() {
  if (made_ && set_.IsWindowVisible()) palette_.show_anew_later();
}

}  // namespace

std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits, Palette& content) {
  return std::make_unique<ArxPaletteSet>(traits, content);
}

void show_palettes_anew_later() {
  for (ArxPaletteSet* const set : palette_sets)
    set->show_anew_later();
}

void clear_palettes() {
  for (ArxPaletteSet* const set : palette_sets)
    set->clear();
}

}  // namespace korvel::arx
