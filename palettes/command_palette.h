// The command palette: the plug-in's commands in a tree, grouped by purpose.
#pragma once

#include <memory>
#include <string_view>

#include "frame/palette.h"
#include "frame/palette_set.h"

namespace korvel {

// The command that the tree's leaf of this label starts; empty for a group and for anything else.
[[nodiscard]] std::wstring_view command_of_leaf(std::wstring_view label);

// The tree. Activating a leaf cancels the command that is running and starts the leaf's, as if its
// name had been typed; activating a group cancels only.
class MainMenu : public Palette {
 public:
  explicit MainMenu(std::wstring_view title);

  void activated(const Control& control) override;
  // Neither key may close what is part of a palette.
  [[nodiscard]] bool swallows(DialogKey /*key*/) const override { return true; }

 private:
  Tree commands_{L"Commands"};
};

// The one palette of the set.
class CommandsPalette {
 public:
  [[nodiscard]] MainMenu& menu() { return menu_; }

 private:
  MainMenu menu_{L"KORVEL_CTL"};
};

class MyPaletteSet final : public PaletteSet {
 public:
  explicit MyPaletteSet(DrawingHost& host);

  void show(Session& session) override { set_->show(session); }

 private:
  CommandsPalette palette_;
  std::unique_ptr<PaletteSet> set_;  // the host's
};

}  // namespace korvel
