#include "attach/unused_tables.h"

#include <algorithm>

#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {

TableUse table_use(ODStore& store, DrawingHost& host) {
  const std::vector<std::wstring> on_entities = store.tables_on(model_space_entities(host), host);
  TableUse use;
  for (std::wstring& name : user_tables(store)) {
    const bool used = std::ranges::binary_search(on_entities, name);
    (used ? use.used : use.unused).push_back(std::move(name));
  }
  return use;
}

OptionsRmUnused::OptionsRmUnused(const TableUse& use) : Dialog(L"Remove Unused OD") {
  unused_.fill(use.unused);
  for (const std::wstring& name : use.used)
    used_.text += name + L'\n';
  add(&unused_);
  add(&used_);
  add(Button{L"Select all/nothing", ButtonRole::Act});
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void OptionsRmUnused::act(const Button& /*button*/) { unused_.toggle_all(); }

int delete_tables(ODStore& store, std::span<const std::wstring> tables, ProgressMeter& meter) {
  int deleted = 0;
  WriteWalk walk(meter, tables.size());
  for (const std::wstring& table : tables) {
    if (!walk.step()) break;
    if (store.delete_table(table) == TableChange::Done) ++deleted;
  }
  return deleted;
}

void rm_unused(Session& session) {
  OptionsRmUnused dialog(table_use(session.store, session.host));
  if (!session.host.show(dialog)) return;

  int deleted = 0;
  {
    const DocumentLock lock(session.host);
    deleted = delete_tables(session.store, dialog.checked(), session.host);
  }
  report<Message::Completed>(session.host, deleted);
}

}  // namespace korvel
