// KORVEL_TRANSLATE: loads the alias files, runs the phases, and says how it went.
#include <algorithm>
#include <string>
#include <vector>

#include "exchange/alias_files.h"
#include "exchange/translation.h"
#include "exchange/translation_dialog.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/format.h"
#include "frame/session.h"

namespace korvel {
namespace {

// "table", "field" or "value".
std::wstring_view noun_of(AliasFile kind) {
  switch (kind) {
    case AliasFile::Tables:
      return L"table";
    case AliasFile::Fields:
      return L"field";
    case AliasFile::Values:
      return L"value";
  }
  return {};
}

// `announced` is the path that the first message names.
void load(DrawingHost& host, const std::filesystem::path& path,
          const std::filesystem::path& announced, AliasFile kind, AliasMaps& maps) {
  if (path.empty()) return;
  const std::wstring_view noun = noun_of(kind);
  host.print(format_text(L"Loading %s aliases from '%s'\n", noun, path_text(announced)));
  const AliasLoad load = load_alias_file(path, kind, maps);
  if (load.error) return report_unread(host, *load.error, path);
  for (const std::wstring& line : load.bad_lines)
    host.print_error(format_text(L"Error: incorrect %s alias '%s'\n", noun, line));
  host.print(format_text(L"%i %s aliases loaded\n", load.loaded, noun));
}

// Whether every table would get a name of its own.
bool check_destinations(DrawingHost& host, const Aliases& tables) {
  const std::vector<std::wstring> duplicates = duplicate_aliases(tables);
  for (const std::wstring& alias : duplicates)
    host.print_error(format_text(L"Error: duplicate destination table '%s'\n", alias));
  if (!duplicates.empty()) host.print_error(L"Error: duplicate destination table(s)\n");
  return duplicates.empty();
}

void report_columns(DrawingHost& host, const std::vector<ColumnChange>& changes) {
  for (const ColumnChange change : changes) {
    switch (change) {
      case ColumnChange::Done:
        break;
      case ColumnChange::Failed:
        report<Message::OperationUnsuccessful>(host);
        break;
      case ColumnChange::DuplicateName:
        report<Message::DuplicateColumnNames>(host);
        break;
      case ColumnChange::ColumnMissing:
        report<Message::ColumnNotFound>(host);
        break;
      case ColumnChange::TableMissing:
        report<Message::TableNotFound>(host);
        break;
    }
  }
  host.print(format_text(L"Updated %i columns\n", std::ranges::count(changes, ColumnChange::Done)));
}

void report_values(DrawingHost& host, std::size_t records) {
  host.print(format_text(L"Updated %i records with new values\n", records));
}

// The order of the phases is the point: each meets the tables and fields under the names that its
// maps know them by.
void translate_to_aliases(Session& session, const EntityList& entities, const AliasMaps& maps) {
  std::size_t records = 0;
  std::vector<ColumnChange> columns;
  {
    const DocumentLock lock(session.host);
    records = translate_values(session.store, session.host, entities, maps);
    columns = translate_columns(session.store, maps, session.host);
    translate_tables(session.store, maps.tables, session.host);
  }
  report_values(session.host, records);
  report_columns(session.host, columns);
}

void translate_to_names(Session& session, const EntityList& entities, const AliasMaps& maps) {
  std::size_t records = 0;
  std::vector<ColumnChange> columns;
  {
    const DocumentLock lock(session.host);
    translate_tables(session.store, maps.tables, session.host);
    columns = translate_columns(session.store, maps, session.host);
    records = translate_values(session.store, session.host, entities, maps);
  }
  report_columns(session.host, columns);
  report_values(session.host, records);
}

}  // namespace

void translate(Session& session) {
  DrawingHost& host = session.host;
  ODTranslate dialog;
  if (!host.show(dialog)) return;
  const TranslationRequest request = dialog.request();
  AliasMaps maps;
  // Deliberately what is said of the tables' file names that of the values.
  load(host, request.tables, request.values, AliasFile::Tables, maps);
  if (!check_destinations(host, maps.tables)) return;
  load(host, request.fields, request.fields, AliasFile::Fields, maps);
  load(host, request.values, request.values, AliasFile::Values, maps);

  const EntityList entities = model_space_entities(host);
  if (request.direction == TranslationDirection::ToAliases) {
    translate_to_aliases(session, entities, maps);
  } else {
    translate_to_names(session, entities, inverted(maps));
  }
}

}  // namespace korvel
