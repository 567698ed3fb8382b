// The dialog in which the tables of a table search are ticked.
#include "search/object_data_list.h"

namespace korvel {

ObjectDataList::ObjectDataList(std::wstring_view caption, const std::vector<std::wstring>& names,
                               bool all_at_once)
    : Dialog(std::wstring(caption)) {
  tables.fill(names);
  simultaneous.on = all_at_once;
  add(&tables);
  add(&simultaneous);
  add({L"Select all/nothing", ButtonRole::Act});
  add({L"OK", ButtonRole::Accept});
  add({L"Cancel", ButtonRole::Cancel});
}

void ObjectDataList::act(const Button& /*select_all*/) { tables.toggle_all(); }

}  // namespace korvel
