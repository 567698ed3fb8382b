// The tree. Nothing is changed in the model until an item is activated.
#include <algorithm>
#include <cstddef>

#include "host/windows/control_view.h"

namespace korvel::windows {
namespace {

bool same(const Tree::Item& a, const Tree::Item& b) {
  return a.label == b.label && a.leaves == b.leaves;
}

class TreeView final : public ControlView {
 public:
  TreeView(Tree& tree, ViewSite& site)
      : ControlView(site),
        tree_(tree),
        window_(make(WC_TREEVIEWW, {WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                                        TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP,
                                    WS_EX_CLIENTEDGE})) {}

  [[nodiscard]] std::vector<HWND> windows() const override { return {window_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Block,
            .width = characters(40),
            .least_height = lines(3),
            .wanted_height = lines(24)};
  }
  void show() override {
    if (std::ranges::equal(shown_, tree_.items, same)) return;
    shown_ = tree_.items;
    SendMessageW(window_.get(), WM_SETREDRAW, FALSE, 0);
    fill();
    SendMessageW(window_.get(), WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window_.get(), nullptr, TRUE);
  }
  LRESULT on_notify(const NMHDR& header) override {
    // A double click beside the labels means none of them.
    if (header.code == NM_DBLCLK) activate(item_under_pointer());
    return 0;
  }
  bool on_key(HWND /*focus*/, WPARAM key) override {
    if (key != VK_RETURN) return false;
    activate(TreeView_GetSelection(window_.get()));
    return true;
  }

 private:
  void fill() {
    TreeView_DeleteAllItems(window_.get());
    places_.clear();
    HTREEITEM first = nullptr;
    for (std::size_t item = 0; item < shown_.size(); ++item) {
      const HTREEITEM heading = insert(TVI_ROOT, shown_[item].label, {item, std::nullopt});
      for (std::size_t leaf = 0; leaf < shown_[item].leaves.size(); ++leaf)
        insert(heading, shown_[item].leaves[leaf], {item, leaf});
      TreeView_Expand(window_.get(), heading, TVE_EXPAND);
      if (first == nullptr) first = heading;
    }
    if (first != nullptr) TreeView_EnsureVisible(window_.get(), first);
  }

  HTREEITEM insert(HTREEITEM parent, std::wstring label, Tree::Place place) {
    TVINSERTSTRUCTW inserted{};
    inserted.hParent = parent;
    inserted.hInsertAfter = TVI_LAST;
    inserted.item.mask = TVIF_TEXT | TVIF_PARAM;
    inserted.item.pszText = label.data();
    inserted.item.lParam = static_cast<LPARAM>(places_.size());
    places_.push_back(place);
    return TreeView_InsertItem(window_.get(), &inserted);
  }

  [[nodiscard]] HTREEITEM item_under_pointer() const {
    const DWORD position = GetMessagePos();
    TVHITTESTINFO hit{};
    hit.pt = {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    ScreenToClient(window_.get(), &hit.pt);
    const HTREEITEM item = TreeView_HitTest(window_.get(), &hit);
    return (hit.flags & TVHT_ONITEM) != 0 ? item : nullptr;
  }

  void activate(HTREEITEM handle) {
    if (handle == nullptr) return;
    TVITEMW item{};
    item.mask = TVIF_PARAM;
    item.hItem = handle;
    TreeView_GetItem(window_.get(), &item);
    const Tree::Place place = places_[static_cast<std::size_t>(item.lParam)];
    site().activate(tree_, [this, place] { tree_.selected = place; });
  }

  Tree& tree_;
  OwnedWindow window_;
  std::vector<Tree::Item> shown_;
  std::vector<Tree::Place> places_;  // by item, in the order in which they were inserted
};

}  // namespace

std::unique_ptr<ControlView> make_view(Tree& tree, ViewSite& site) {
  return std::make_unique<TreeView>(tree, site);
}

}  // namespace korvel::windows
