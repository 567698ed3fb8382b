#include "attach/record_removal.h"

#include <algorithm>
#include <set>
#include <vector>

#include "attach/table_list.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

// Removes records of one entity after the other.
class Remover {
 public:
  explicit Remover(ODStore& store) : records_(store.records()) {}

  [[nodiscard]] bool is_carrier(EntityId entity) {
    return records_->open(entity, OpenMode::Read) && !records_->done();
  }

  // Those of the tables that `goes`; gives the number of records that went.
  template <class Goes>
  int remove(EntityId entity, const Goes& goes) {
    if (!records_->open(entity, OpenMode::Write)) return 0;
    marks_.clear();
    for (; !records_->done(); records_->next())
      marks_.push_back(goes(records_->table_name()) ? 1 : 0);
    return std::ranges::count(marks_, 1) == 0 ? 0 : records_->remove_marked(marks_);
  }

 private:
  std::unique_ptr<RecordIterator> records_;
  std::vector<char> marks_;
};

}  // namespace

int remove_tables(ODStore& store, const EntityList& entities, std::span<const std::wstring> tables,
                  ProgressMeter& meter) {
  const std::set<std::wstring_view> chosen(tables.begin(), tables.end());
  const auto is_chosen = [&chosen](std::wstring_view table) { return chosen.contains(table); };
  Remover remover(store);
  int removed = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    removed += remover.remove(entity, is_chosen);
  }
  return removed;
}

int remove_all(ODStore& store, const EntityList& entities, ProgressMeter& meter) {
  const auto any = [](std::wstring_view /*table*/) { return true; };
  Remover remover(store);
  int carriers = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    if (!remover.is_carrier(entity)) continue;
    ++carriers;
    remover.remove(entity, any);
  }
  return carriers;
}

void rm(Session& session) {
  const EntityList selection = selected_entities(session.host);
  if (selection.empty()) return report<Message::NoObjectsSelected>(session.host);
  PGUIODList dialog(std::wstring(text(Message::DetachSelected)),
                    session.store.tables_on(selection, session.host));
  if (!session.host.show(dialog)) return;

  int removed = 0;
  {
    const DocumentLock lock(session.host);
    removed = remove_tables(session.store, selection, dialog.checked(), session.host);
  }
  report<Message::Completed>(session.host, removed);
}

void rm_all(Session& session) {
  if (!session.host.ask_yes_no(text(Message::WarningTitle), text(Message::DetachAllWarning),
                               BoxIcon::Exclamation)) {
    return;
  }
  const EntityList selection = selected_entities(session.host);
  if (selection.empty()) return report<Message::NoObjectsSelected>(session.host);

  int carriers = 0;
  {
    const DocumentLock lock(session.host);
    carriers = remove_all(session.store, selection, session.host);
  }
  report<Message::CompletedOutOf>(session.host, carriers, selection.size());
}

}  // namespace korvel
