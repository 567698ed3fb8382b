#include "search/find_values_dialog.h"

namespace korvel {

FindValues::FindValues(const std::vector<std::wstring>& table_names, bool extended_on)
    : Dialog(L"Find entities with specific OD values") {
  tables.fill(table_names);
  tables.check_all(true);
  extended.on = extended_on;
  add(&tables);
  add(&criteria);
  add(&extended);
  add({L"OK", ButtonRole::Accept});
  add({L"Cancel", ButtonRole::Cancel});
}

ValueSearch FindValues::search() const {
  ValueSearch request{tables.checked(), {}, extended.on};
  for (const std::vector<std::wstring>& cells : criteria.rows)
    request.criteria.push_back({cells[0], cells[1]});
  return request;
}

}  // namespace korvel
