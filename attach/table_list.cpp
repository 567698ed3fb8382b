#include "attach/table_list.h"

namespace korvel {

PGUIODList::PGUIODList(std::wstring title, const std::vector<std::wstring>& names)
    : Dialog(std::move(title)) {
  tables_.fill(names);
  add(&tables_);
  add(Button{L"Select all/nothing", ButtonRole::Act});
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void PGUIODList::act(const Button& /*button*/) { tables_.toggle_all(); }

}  // namespace korvel
