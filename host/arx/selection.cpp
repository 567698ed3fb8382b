#include "host/arx/selection.h"

#include "host/arx/object_ids.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the type of the count.
Adesk::Int32 count_of(const ads_name& set) {
  Adesk::Int32 count = 0;
  return acedSSLength(set, &count) == RTNORM ? count : 0;
}

class SelectionSet {
 public:
  SelectionSet() = default;
  SelectionSet(const SelectionSet&) = delete;
  SelectionSet& operator=(const SelectionSet&) = delete;
  ~SelectionSet() {
    if (made_) acedSSFree(name_);
  }

  // The host's result; there is a set only if it is RTNORM.
  int get(const ACHAR* mode) {
    const int result = acedSSGet(mode, nullptr, nullptr, nullptr, name_);
    made_ = result == RTNORM;
    return result;
  }
  void add(EntityId entity) {
    ads_name member;
    if (acdbGetAdsName(member, object_id(entity)) != Acad::eOk) return;
    if (acedSSAdd(member, made_ ? name_ : nullptr, name_) == RTNORM) made_ = true;
  }
  // What the host answers does not matter: members in another layout than the current one are
  // outside what it promises, and inside another command it sets nothing.
  void make_pick_first() const {
    if (made_) acedSSSetFirst(name_, nullptr);
  }

  [[nodiscard]] EntityList entities() const {
    EntityList found;
    const Adesk::Int32 length = made_ ? count_of(name_) : 0;
    for (Adesk::Int32 i = 0; i < length; ++i) {
      ads_name member;
      AcDbObjectId id;
      if (acedSSName(name_, i, member) != RTNORM) continue;
      if (acdbGetObjectId(id, member) == Acad::eOk) found.push_back(entity_id(id));
    }
    return found;
  }

 private:
  ads_name name_{};
  bool made_ = false;
};

}  // namespace

EntityList pick_first() {
  constexpr const ACHAR* implied = L"_I";  // unconfirmed: the line before the letter
  SelectionSet set;
  (void)set.get(implied);
  return set.entities();
}

void set_pick_first(const EntityList& entities) {
  SelectionSet set;
  for (const EntityId entity : entities)
    set.add(entity);
  acedSSSetFirst(nullptr, nullptr);
  set.make_pick_first();
}

// Anything but Esc is a selection, perhaps an empty one: what Enter alone gives is not confirmed.
std::optional<EntityList> ask_selection() {
  SelectionSet set;
  if (set.get(nullptr) == RTCAN) return std::nullopt;
  return set.entities();
}

}  // namespace korvel::arx
