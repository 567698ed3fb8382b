#include "host/arx/drawing_set.h"

#include <algorithm>

#include "host/arx/database.h"
#include "host/arx/map_calls.h"
#include "host/arx/object_ids.h"

namespace korvel::arx {
namespace map {
namespace {

// Each a call that is not confirmed in its form.

AcMapAliases* aliases() {
  AcMapSession* const session = AcMapGetSession();
  AcMapAliases* aliases = nullptr;
  return session != nullptr && session->GetAliases(aliases) == AcMap::kOk ? aliases : nullptr;
}

AcMapDrawingSet* drawing_set() {
  AcMapSession* const session = AcMapGetSession();
  AcMapProject* project = nullptr;
  if (session == nullptr || session->GetProject(project) != AcMap::kOk || project == nullptr) {
    return nullptr;
  }
  AcMapDrawingSet* set = nullptr;
  return project->GetDrawingSet(set) == AcMap::kOk ? set : nullptr;
}

// Unconfirmed: also that what is handed out is the drawing set's, to which it is given back by
// detaching.
AcMapAttachedDrawing* attach(AcMapDrawingSet& set, const std::wstring& aliased_path) {
  AcMapAttachedDrawing* drawing = nullptr;
  return set.AttachDrawing(drawing, aliased_path.c_str()) == AcMap::kOk ? drawing : nullptr;
}

void detach(AcMapDrawingSet& set, const std::wstring& aliased_path) {
  set.DetachDrawing(aliased_path.c_str());
}

bool activate(AcMapAttachedDrawing& drawing) { return drawing.Activate() == AcMap::kOk; }

void deactivate(AcMapAttachedDrawing& drawing) { drawing.Deactivate(); }

std::vector<std::wstring> names_of_tables(const AcMapAttachedDrawing& drawing) {
  AcMapStringArray held;
  return drawing.GetODTableNames(held) == AcMap::kOk ? texts_of(held) : std::vector<std::wstring>();
}

}  // namespace

bool add_alias(const std::wstring& name, const std::wstring& path) {
  AcMapAliases* const held = aliases();
  AcMapDriveAlias* made = nullptr;
  if (held == nullptr || held->AddAlias(made, name.c_str(), path.c_str()) != AcMap::kOk) {
    return false;
  }
  const std::unique_ptr<AcMapDriveAlias> copy(made);  // the caller's; the alias itself stays
  return true;
}

bool remove_alias(const std::wstring& name) {
  AcMapAliases* const held = aliases();
  return held != nullptr && held->RemoveAlias(name.c_str()) == AcMap::kOk;
}

}  // namespace map

namespace {

class ArxAttachedDrawing final : public AttachedDrawing {
 public:
  ArxAttachedDrawing(const ODStore& active, AcMapDrawingSet& set, std::wstring aliased_path)
      : own_tables_(active.table_names()), set_(set), aliased_path_(std::move(aliased_path)) {}
  ArxAttachedDrawing(const ArxAttachedDrawing&) = delete;
  ArxAttachedDrawing& operator=(const ArxAttachedDrawing&) = delete;
  // A drawing left attached would be written into the project.
  ~ArxAttachedDrawing() override {
    deactivate();
    if (drawing_ != nullptr) map::detach(set_, aliased_path_);
  }

  // First of all.
  bool attach() {
    drawing_ = map::attach(set_, aliased_path_);
    return drawing_ != nullptr;
  }

  bool activate() override { return is_active_ = map::activate(*drawing_); }
  void deactivate() override {
    if (is_active_) map::deactivate(*drawing_);
    is_active_ = false;
  }
  [[nodiscard]] std::vector<std::wstring> table_names() const override {
    return map::names_of_tables(*drawing_);
  }
  // Of two tables of one name the host knows the active drawing's alone.
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override {
    const std::unique_ptr<AcMapODTable> found = open(name);
    return found ? map::definition_of(*found, std::wstring(name)) : std::nullopt;
  }
  TableChange copy_definition(std::wstring_view name) override {
    const std::unique_ptr<AcMapODTable> found = open(name);
    if (!found) return TableChange::TableMissing;
    if (std::ranges::find(own_tables_, name) != own_tables_.end()) return TableChange::TableExists;
    AcMapODTableRecord record;
    const CarrierPoint carrier;
    const bool copied = carrier.exists() && map::begin_record(*found, record) &&
                        map::add_record(*found, record, carrier.id());
    if (!copied) return TableChange::Failed;
    own_tables_.emplace_back(name);
    return TableChange::Done;
  }

 private:
  // The host finds the tables of an active source drawing among those of the project.
  [[nodiscard]] std::unique_ptr<AcMapODTable> open(std::wstring_view name) const {
    const std::vector<std::wstring> names = table_names();
    AcMapODContainer* const container = map::container();
    if (container == nullptr || std::ranges::find(names, name) == names.end()) return nullptr;
    return map::open_table(*container, std::wstring(name));
  }

  // Of the active drawing, listed before another one's can stand among them.
  std::vector<std::wstring> own_tables_;
  AcMapDrawingSet& set_;
  AcMapAttachedDrawing* drawing_ = nullptr;
  std::wstring aliased_path_;
  bool is_active_ = false;
};

}  // namespace

std::unique_ptr<AttachedDrawing> open_attached_drawing(const ODStore& active,
                                                       const std::wstring& aliased_path) {
  AcMapDrawingSet* const set = map::drawing_set();
  if (set == nullptr) return nullptr;
  auto drawing = std::make_unique<ArxAttachedDrawing>(active, *set, aliased_path);
  return drawing->attach() ? std::move(drawing) : nullptr;
}

}  // namespace korvel::arx
