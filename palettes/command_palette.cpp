#include "palettes/command_palette.h"

#include <algorithm>
#include <string>

#include "frame/command_handlers.h"
#include "palettes/command_tree.h"

namespace korvel {
namespace {

constexpr PaletteSetTraits traits = {L"KORVEL_CTL", L"{83D95B17-1034-4af1-98F0-0E7F2F484C6D}", 300,
                                     100};

std::vector<Tree::Item> tree_items() {
  std::vector<Tree::Item> items;
  for (const CommandLeaf& leaf : command_tree) {
    std::wstring label(leaf.label);
    if (leaf.group.empty()) {
      items.push_back({std::move(label), {}});
      continue;
    }
    if (items.empty() || items.back().label != leaf.group) {
      items.push_back({std::wstring(leaf.group), {}});
    }
    items.back().leaves.push_back(std::move(label));
  }
  return items;
}

}  // namespace

std::wstring_view command_of_leaf(std::wstring_view label) {
  const auto* const leaf = std::ranges::find(command_tree, label, &CommandLeaf::label);
  return leaf == std::ranges::end(command_tree) ? std::wstring_view() : leaf->command.name;
}

MainMenu::MainMenu(std::wstring_view title) : Palette(std::wstring(title)) {
  commands_.items = tree_items();
  add(&commands_);
}

void MainMenu::activated(const Control& /*control*/) {
  DrawingHost& host = session().host;
  host.cancel_command();
  const std::wstring_view command = command_of_leaf(commands_.text());
  if (!command.empty()) host.send(std::wstring(command) + L'\n');
}

MyPaletteSet::MyPaletteSet(DrawingHost& host)
    : set_(host.make_palette_set(traits, palette_.menu())) {}

void show_commands(Session& session) {
  std::unique_ptr<PaletteSet>& set = session.palettes.commands;
  if (!set) set = std::make_unique<MyPaletteSet>(session.host);
  set->show(session);
}

}  // namespace korvel
