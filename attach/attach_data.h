// Attaches a record of one table to many entities, or detaches one from each.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/command_frame.h"
#include "frame/od_store.h"

namespace korvel {

enum class AttachAction { Attach, Detach };

// What the user left in the row of a field; empty keeps the column's default.
struct FieldText {
  std::wstring field;
  std::wstring text;
};

struct AttachRequest {
  AttachAction action = AttachAction::Attach;
  std::wstring table;  // empty: none was chosen
  std::vector<FieldText> fields;
};

// A record of the table with its defaults, overwritten by the texts: for each column the first that
// is not empty and whose field has exactly the column's name.
[[nodiscard]] ODRecord record_with(const ODTableDef& table, std::span<const FieldText> fields);

// Attaches the record to every entity that carries none of its table yet. Gives the number of
// entities that got one; what refuses it is left out.
int attach_records(ODStore& store, const EntityList& entities, const ODRecord& record,
                   ProgressMeter& meter);

// Removes one record of the table, the first, from every entity that carries any: deliberately one
// even where there are more. Gives the number of entities that lost one.
int detach_records(ODStore& store, const EntityList& entities, std::wstring_view table,
                   ProgressMeter& meter);

}  // namespace korvel
