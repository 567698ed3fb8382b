// The dialog in which the criteria of a value search are put together.
#pragma once

#include <string>
#include <vector>

#include "frame/dialog.h"
#include "frame/message.h"
#include "search/value_search.h"

namespace korvel {

// Opens with all tables checked, because a person mostly wants to look in all of them, and without
// criteria: the user adds the rows, each of them a field and a pattern.
class FindValues final : public Dialog {
 public:
  // Lists the tables in the order given.
  FindValues(const std::vector<std::wstring>& table_names, bool extended_on);

  // What is searched for as the controls stand.
  [[nodiscard]] ValueSearch search() const;

  CheckList tables{L"Tables"};
  Grid criteria{L"Criteria",
                {{std::wstring(text(Message::FieldHeading)), true},
                 {std::wstring(text(Message::ValueHeading)), true}},
                true};
  CheckBox extended{L"Extended (>, <, <>, *)"};
};

}  // namespace korvel
