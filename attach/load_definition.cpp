#include "attach/load_definition.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/text_file.h"

namespace korvel {
namespace {

// The path up to its first colon: the drive. A path without one is named by its root directory,
// because an alias cannot stand for an empty path.
std::wstring drive_of(const std::filesystem::path& file) {
  const std::wstring path = path_text(file);
  const std::size_t colon = path.find(L':');
  if (colon != std::wstring::npos) return path.substr(0, colon + 1);
  std::error_code ignored;
  return path_text(std::filesystem::absolute(file, ignored).root_path());
}

// The name under which the host's drawing set knows the drive while a drawing of it is attached.
class DriveAlias {
 public:
  DriveAlias(ODStore& store, const std::filesystem::path& file)
      : store_(store), added_(store.add_path_alias(name, drive_of(file))) {}
  ~DriveAlias() {
    if (added_) store_.remove_path_alias(name);
  }
  DriveAlias(const DriveAlias&) = delete;
  DriveAlias& operator=(const DriveAlias&) = delete;

  [[nodiscard]] bool added() const { return added_; }

 private:
  static constexpr std::wstring_view name = L"OBJECT_DATA";

  ODStore& store_;
  bool added_;
};

// While it lives, the drawing can be read, unless the host refused.
class Activation {
 public:
  explicit Activation(AttachedDrawing& drawing) : drawing_(drawing), done_(drawing.activate()) {}
  ~Activation() {
    if (done_) drawing_.deactivate();
  }
  Activation(const Activation&) = delete;
  Activation& operator=(const Activation&) = delete;

  [[nodiscard]] bool done() const { return done_; }

 private:
  AttachedDrawing& drawing_;
  bool done_;
};

DefinitionLoad load(AttachedDrawing& source, ODStore& store, const std::wstring& table) {
  switch (source.copy_definition(table)) {
    case TableChange::Done:
      return DefinitionLoad::Copied;
    case TableChange::TableExists:
      return store.table(table) == source.table(table) ? DefinitionLoad::AlreadyThere
                                                       : DefinitionLoad::DoesNotMatch;
    case TableChange::Failed:
    case TableChange::TableMissing:
      break;
  }
  return DefinitionLoad::Refused;
}

std::vector<LoadedDefinition> load_all(AttachedDrawing& source, DrawingHost& host, ODStore& store) {
  std::vector<std::wstring> tables = source.table_names();
  std::erase_if(tables, [](const std::wstring& table) { return !is_user_table(table); });
  std::vector<LoadedDefinition> loaded;
  const DocumentLock lock(host);
  WriteWalk walk(host, tables.size());
  for (const std::wstring& table : tables) {
    const bool goes_on = walk.step();
    if (!goes_on && loaded.empty()) throw Interrupted();
    loaded.push_back({table, goes_on ? load(source, store, table) : DefinitionLoad::NotReached});
  }
  return loaded;
}

void report_definition(DrawingHost& host, const LoadedDefinition& definition) {
  switch (definition.result) {
    case DefinitionLoad::Copied:
    case DefinitionLoad::NotReached:
      break;
    case DefinitionLoad::AlreadyThere:
      report<Message::AlreadyExists>(host, definition.table);
      break;
    case DefinitionLoad::DoesNotMatch:
      report<Message::TableDoesNotMatch>(host, definition.table);
      break;
    case DefinitionLoad::Refused:
      report<Message::UnableToCopyTable>(host, definition.table);
      break;
  }
}

bool is_there(const LoadedDefinition& definition) {
  return definition.result == DefinitionLoad::Copied ||
         definition.result == DefinitionLoad::AlreadyThere;
}

}  // namespace

std::optional<std::vector<LoadedDefinition>> load_definitions(DrawingHost& host, ODStore& store,
                                                              const std::filesystem::path& file) {
  const DriveAlias alias(store, file);  // outlives the drawing that is attached under it
  if (!alias.added()) return std::nullopt;
  const std::unique_ptr<AttachedDrawing> source = store.attach_drawing(file);
  if (!source) return std::nullopt;
  const Activation activation(*source);
  if (!activation.done()) return std::nullopt;
  return load_all(*source, host, store);
}

void load_definition(Session& session) {
  DrawingHost& host = session.host;
  const auto file = host.choose_file_to_open({text(Message::DrawingAndTemplateFilter), L""});
  if (!file) return;
  const auto loaded = load_definitions(host, session.store, *file);
  if (!loaded) {
    report<Message::UnableToOpen>(host, path_text(*file));
    host.report_failed_file({*file, FileDirection::Read, L"it cannot be opened", true});
    return report<Message::OperationUnsuccessful>(host);
  }
  for (const LoadedDefinition& definition : *loaded)
    report_definition(host, definition);
  if (std::ranges::all_of(*loaded, is_there)) return report<Message::OperationCompleted>(host);
  report<Message::OperationUnsuccessful>(host);
}

}  // namespace korvel
