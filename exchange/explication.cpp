#include "exchange/explication.h"

#include <algorithm>

#include "exchange/explication_columns.h"
#include "exchange/explication_dialog.h"
#include "exchange/explication_groups.h"
#include "exchange/explication_text.h"
#include "exchange/record_reader.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

// Writes the groups of records one by one.
class Explication {
 public:
  Explication(ODStore& store, DrawingHost& host, const EntityList& entities,
              const ExplicationColumns& columns, const ExplicationRequest& request,
              const ByteSink& sink)
      : host_(host),
        entities_(entities),
        records_(store.records()),
        text_(columns, request, sink) {}

  void write(const ExplicationGroups& groups) {
    ReadWalk walk(host_, groups.record_count());
    for (const ExplicationGroup& group : groups.in_order()) {
      text_.begin_group(group.key);
      std::size_t entity_count = 0;
      std::optional<std::uint32_t> entity;
      for (const ExplainedRecord& record : group.records) {
        walk.step();
        const EntityId id = entities_[record.entity];
        if (record.entity != entity) {
          entity = record.entity;
          ++entity_count;
          handle_.clear();
          host_.append_handle(id, handle_);
        }
        text_.add_record(handle_, record.table, records_.at({id, record.number}));
      }
      text_.end_group(entity_count);
    }
    text_.finish();
  }

 private:
  DrawingHost& host_;
  const EntityList& entities_;
  RecordReader records_;
  std::wstring handle_;  // of the entity whose records are written
  ExplicationText text_;
};

// Why the request cannot be met; empty when it can.
std::wstring_view missing_input(const ExplicationRequest& request) {
  if (request.tables.empty()) return L"no table is chosen";
  if (request.separator.empty()) return L"there is no separator";
  if (request.type_field && request.type_field->empty()) return L"no type field is chosen";
  return {};
}

std::vector<std::wstring> user_tables_on(ODStore& store, const EntityList& entities,
                                         ProgressMeter& meter) {
  std::vector<std::wstring> tables = store.tables_on(entities, meter);
  std::erase_if(tables, [](const std::wstring& name) { return !is_user_table(name); });
  return tables;
}

}  // namespace

void explicate(ODStore& store, DrawingHost& host, EntityList entities,
               const ExplicationRequest& request, const ByteSink& sink) {
  if (!std::ranges::is_sorted(entities)) std::ranges::sort(entities);
  entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
  const ExplicationColumns columns = explication_columns(store, request);
  const ExplicationGroups groups(store, entities, columns, request.type_field.has_value(), host);
  Explication(store, host, entities, columns, request, sink).write(groups);
}

void expl(Session& session) {
  DrawingHost& host = session.host;
  const EntityList entities = selected_entities(host);
  if (entities.empty()) return;
  SelectSharedCol dialog(session.store, user_tables_on(session.store, entities, host));
  if (!host.show(dialog)) return;
  const ExplicationRequest request = dialog.request();
  if (const std::wstring_view missing = missing_input(request); !missing.empty()) {
    return host.note_refused_input(missing);
  }
  const auto file = host.choose_file_to_save({L"CSV files (*.csv)|*.csv||", L"csv", true});
  if (!file) return;
  const NewFile target{*file, [&](const ByteSink& sink) {
                         explicate(session.store, host, entities, request, sink);
                         return true;
                       }};
  // Deliberately nothing is printed of a file that cannot be written.
  if (const auto failed = host.replace_files({&target, 1})) host.report_failed_file(*failed);
}

}  // namespace korvel
