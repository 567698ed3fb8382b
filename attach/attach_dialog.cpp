#include "attach/attach_dialog.h"

#include "attach/field_text.h"
#include "frame/message.h"

namespace korvel {
namespace {

constexpr const wchar_t* detach_label = L"Detach";

}  // namespace

AttachOD::AttachOD(const ODStore& store)
    : Dialog(L"Attach/detach OD"),
      store_(store),
      fields_(L"Fields",
              {{std::wstring(text(Message::FieldHeading)), false},
               {std::wstring(text(Message::ValueHeading)), true}},
              false) {
  tables_.items = user_tables(store);
  add(&tables_);
  add(&fields_);
  add(Button{L"Attach", ButtonRole::Accept});
  add(Button{detach_label, ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void AttachOD::changed(const Control& control) {
  if (&control != &tables_) return;
  fields_.rows.clear();
  const std::optional<ODTableDef> table = store_.table(tables_.text());
  if (!table) return;
  for (const ODColumnDef& column : table->columns) {
    fields_.rows.push_back({column.name, shown_default(column.default_value)});
  }
}

AttachRequest AttachOD::request() const {
  AttachRequest request;
  request.action = pressed() == detach_label ? AttachAction::Detach : AttachAction::Attach;
  request.table = tables_.text();
  for (const std::vector<std::wstring>& row : fields_.rows) {
    request.fields.push_back({row.front(), row.back()});
  }
  return request;
}

}  // namespace korvel
