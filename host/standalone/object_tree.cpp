// Objects of a drawing copied together with what they own.
#include "host/standalone/object_tree.h"

#include <algorithm>

namespace korvel {
namespace {

// Groups by which an object owns another: it goes with its owner.
bool owns(int code) { return code == 350 || code == 360; }

// Groups that refer to objects and follow them when they are copied; those from 320 to 329 are
// plain numbers to every program.
bool follows(int code) {
  return (code >= 330 && code <= 369) || (code >= 390 && code <= 399) ||
         (code >= 480 && code <= 481) || code == 1005;
}

class Replanting {
 public:
  Replanting(const ObjectTree& tree, const std::vector<std::uint64_t>& handles,
             std::uint64_t dictionary)
      : tree_(tree), handles_(handles), dictionary_(dictionary) {}

  // In the head, before the first subclass marker, stand an object's owner and reactors.
  [[nodiscard]] std::uint64_t target_of(std::uint64_t handle, bool in_head) const {
    const auto found = std::ranges::find(tree_.objects, handle, &CopiedObject::handle);
    if (found != tree_.objects.end()) {
      return handles_[static_cast<std::size_t>(found - tree_.objects.begin())];
    }
    const bool is_place = handle == tree_.dictionary || handle == tree_.owner;
    return in_head && handle != 0 && is_place ? dictionary_ : handle;
  }

 private:
  const ObjectTree& tree_;
  const std::vector<std::uint64_t>& handles_;
  std::uint64_t dictionary_;
};

}  // namespace

std::vector<dxf::ItemIndex> owned_objects(const dxf::Document& document, std::uint64_t handle,
                                          const std::function<bool(dxf::ItemIndex)>& is_kept,
                                          std::unordered_set<std::uint64_t>& visited) {
  struct Owned {
    std::uint64_t handle;
    std::uint64_t owner;
  };
  std::vector<dxf::ItemIndex> objects;
  std::vector<Owned> pending{{handle, 0}};
  while (!pending.empty()) {
    const auto [next, owner] = pending.back();
    pending.pop_back();
    const std::optional<dxf::ItemIndex> item = document.by_handle(next);
    if (!item || document.item(*item).section != dxf::Section::Objects) continue;
    if (document.item(*item).span.erased || is_kept(*item)) continue;
    if (dxf::is_section_mark(document.type_of(*item))) continue;
    const std::uint64_t said_owner = document.facts_of(*item).owner;
    if (owner != 0 && said_owner != 0 && said_owner != owner) continue;
    if (!visited.insert(next).second) continue;
    objects.push_back(*item);
    dxf::GroupReader reader = document.groups(*item);
    dxf::Group group;
    while (reader.next(group)) {
      if (owns(group.code)) pending.push_back({group.handle(), next});
    }
  }
  return objects;
}

std::string replanted(const ObjectTree& tree, std::size_t object,
                      const std::vector<std::uint64_t>& handles, std::uint64_t dictionary,
                      const dxf::Document& document) {
  constexpr int subclass_marker = 100;
  const Replanting replanting(tree, handles, dictionary);
  const CopiedObject& original = tree.objects[object];
  const std::string_view bytes = original.bytes;
  std::string out;
  dxf::GroupWriter writer(document.manner(), document.codec(), out);
  dxf::GroupReader reader(bytes, document.manner().framing);
  dxf::Group group;
  bool in_head = true;
  while (reader.next(group)) {
    in_head = in_head && group.code != subclass_marker;
    const bool is_own = in_head && group.code == 5 && group.handle() == original.handle;
    const std::uint64_t target =
        is_own || follows(group.code) ? replanting.target_of(group.handle(), in_head) : 0;
    if (target == 0 || target == group.handle()) {
      out += bytes.substr(group.begin, group.end - group.begin);
    } else {
      writer.raw(group.code, document.spelling_of(target));
    }
  }
  return out;
}

}  // namespace korvel
