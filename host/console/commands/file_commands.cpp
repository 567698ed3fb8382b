// NEW, OPEN, SAVE, SAVEAS, CLOSE, QUIT.
#include "host/console/commands/file_commands.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <new>
#include <utility>

#include "frame/case_mapping.h"
#include "frame/format.h"
#include "frame/text_file.h"
#include "frame/utf.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/output.h"
#include "host/console/paths.h"

namespace korvel {
namespace {

void refuse_failure(ConsoleHost& host, Fault fault, std::string_view reason) {
  host.refuse_file(fault, from_utf8(reason) + L".");
}

Failure failure(const std::filesystem::path& path, std::string_view what) {
  return {to_utf8(path_text(path)) + ": " + std::string(what)};
}

// `work` with what it throws as a failure that names the file.
template <class Work>
auto guarded(const std::filesystem::path& path, const Work& work) -> decltype(work()) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return failure(path, "there is not enough memory");
  } catch (const std::exception& error) {
    return failure(path, error.what());
  }
}

// Whether another program's changes would be lost, and may not.
bool keeps_changed_file(ConsoleHost& host, const std::filesystem::path& path,
                        const YesQuestion& ask) {
  using enum ConsoleHost::ChangedFile;
  if (replaces_another(path, host.file) || !host.drawing().has_another_file(path)) return false;
  if (host.changed_file() != Ask) return host.changed_file() == Keep;
  return !ask(
      L"Another program has changed the drawing file. Do you want to replace it? [Yes/No] <N>: ");
}

void start_blank(ConsoleHost& host) {
  host.replace_drawing(Drawing::blank());
  host.file.clear();
}

void save_to(ConsoleHost& host, const std::filesystem::path& path) {
  const auto ask = [&host](std::wstring_view question) { return ask_yes(host, question); };
  if (const std::optional<Failure> failure = save_unless_changed(host, path, ask)) {
    refuse_failure(host, Fault::NotWritten, failure->reason);
    return;
  }
  host.file = path;
  host.print(format_text(L"Saved %s.\n", path_text(path)));
}

}  // namespace

Result<std::unique_ptr<Drawing>> open_drawing(const std::filesystem::path& path) {
  return guarded(path, [&] { return Drawing::open(path); });
}

std::optional<Failure> save_drawing(Drawing& drawing, const std::filesystem::path& path) {
  return guarded(path, [&] { return drawing.save(path); });
}

std::optional<Failure> save_unless_changed(ConsoleHost& host, const std::filesystem::path& path,
                                           const YesQuestion& ask) {
  if (!keeps_changed_file(host, path, ask)) return save_drawing(host.drawing(), path);
  return failure(path, "not saved: another program has changed it; --overwrite replaces it");
}

bool has_drawing_extension(const std::filesystem::path& path) {
  return equal_ignoring_case(path_text(path.extension()), L".dxf");
}

void print_notices(const Drawing& drawing) {
  for (const std::string& notice : drawing.notices())
    complain(notice);
}

std::wstring contents_of(const Drawing& drawing) {
  const std::vector<OdTable>& tables = drawing.od().tables();
  const auto table_count = static_cast<std::size_t>(
      std::ranges::count_if(tables, [](const OdTable& table) { return !table.deleted; }));
  return format_text(L"%s, %s, %s",
                     counted(drawing.entities(Space::Model).size(), L"entity", L"entities"),
                     counted(drawing.layers().size(), L"layer", L"layers"),
                     counted(table_count, L"object-data table", L"object-data tables"));
}

bool may_leave_drawing(ConsoleHost& host) {
  return !host.drawing().changed() ||
         ask_yes(host, L"Discard all changes to drawing? [Yes/No] <No>: ");
}

namespace host_command {

void new_drawing(ConsoleHost& host) {
  if (may_leave_drawing(host)) start_blank(host);
}

void close(ConsoleHost& host) { new_drawing(host); }

void quit(ConsoleHost& host) {
  const Changes changes = host.drawing().changed() ? Changes::Discarded : Changes::Kept;
  if (may_leave_drawing(host)) host.quit(changes);
}

void open(ConsoleHost& host) {
  if (!may_leave_drawing(host)) return;
  const std::optional<std::wstring> answer = ask_word(host, L"Enter name of drawing to open: ");
  if (!answer || answer->empty()) return;
  const std::filesystem::path path = drawing_path(*answer);
  Result<std::unique_ptr<Drawing>> opened = open_drawing(path);
  if (!opened) {
    refuse_failure(host, Fault::NotRead, opened.reason());
    return;
  }
  host.replace_drawing(std::move(*opened));
  host.file = path;
  print_notices(host.drawing());
  host.print(format_text(L"Opened %s: %s.\n", path_text(path), contents_of(host.drawing())));
}

void save(ConsoleHost& host) {
  if (host.file.empty()) {
    save_as(host);
  } else {
    save_to(host, host.file);
  }
}

void save_as(ConsoleHost& host) {
  const std::optional<std::wstring> answer = ask_word(host, L"Save drawing as: ");
  if (!answer || answer->empty()) return;
  const std::filesystem::path path = drawing_path(*answer);
  if (!has_drawing_extension(path)) {
    host.refuse_file(Fault::NotWritten, drawing_extension_refusal);
    return;
  }
  // Nobody is asked about a folder: it cannot be replaced, which saving says.
  if (!is_folder(path) && replaces_another(path, host.file) &&
      !ask_yes(host,
               L"A drawing with this name already exists. Do you want to replace it? "
               L"[Yes/No] <N>: ")) {
    return;
  }
  save_to(host, path);
}

}  // namespace host_command
}  // namespace korvel
