#include "attach/duplicate_removal.h"

#include <algorithm>
#include <span>

#include "frame/case_mapping.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

// Cleans one entity after the other; the texts noted of one are written over by those of the next.
class DuplicateRemover {
 public:
  DuplicateRemover(ODStore& store, DuplicateMode mode) : records_(store.records()), mode_(mode) {}

  // Number of tables that had duplicates.
  int clean(EntityId entity) {
    if (!records_->open(entity, OpenMode::Read) || records_->count() < 2) return 0;
    const std::span<Noted> noted = note_records();
    marks_.assign(noted.size(), 0);
    const int tables = mark_duplicates(noted);
    if (tables > 0 && records_->open(entity, OpenMode::Write)) records_->remove_marked(marks_);
    return tables;
  }

 private:
  struct Noted {
    std::wstring table;  // in lower case
    std::size_t place = 0;

    auto operator<=>(const Noted&) const = default;
  };

  std::span<Noted> note_records() {
    std::size_t count = 0;
    for (; !records_->done(); records_->next()) {
      if (count == noted_.size()) noted_.emplace_back();
      lower_into(records_->table_name(), noted_[count].table);
      noted_[count].place = count;
      ++count;
    }
    return {noted_.data(), count};
  }

  int mark_duplicates(std::span<Noted> noted) {
    std::ranges::sort(noted);
    int tables = 0;
    for (std::size_t first = 0, end = 0; first < noted.size(); first = end) {
      while (end < noted.size() && noted[end].table == noted[first].table)
        ++end;
      if (end - first < 2) continue;
      ++tables;
      const std::size_t kept = mode_ == DuplicateMode::First ? end - 1 : first;
      for (std::size_t i = first; i < end; ++i)
        marks_[noted[i].place] = i == kept ? 0 : 1;
    }
    return tables;
  }

  std::unique_ptr<RecordIterator> records_;
  DuplicateMode mode_;
  std::vector<Noted> noted_;
  std::vector<char> marks_;
};

}  // namespace

std::optional<DuplicateMode> duplicate_mode_of(std::wstring_view answer) {
  const std::wstring word = lower(answer);
  if (text(Message::ModeFirst).starts_with(word)) return DuplicateMode::First;
  if (text(Message::ModeLast).starts_with(word)) return DuplicateMode::Last;
  return std::nullopt;
}

int remove_duplicates(ODStore& store, const EntityList& entities, DuplicateMode mode,
                      ProgressMeter& meter) {
  DuplicateRemover remover(store, mode);
  int tables = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    tables += remover.clean(entity);
  }
  return tables;
}

void remove_duplicate_od(Session& session) {
  const EntityList selection = selected_entities(session.host);
  if (selection.empty()) return report<Message::NoObjectsSelected>(session.host);
  const std::optional<std::wstring> answer =
      session.host.ask_string(text(Message::ModeFirstLastPrompt));
  if (!answer) return;
  const std::optional<DuplicateMode> mode = duplicate_mode_of(*answer);
  if (!mode) return report<Message::InvalidParameters>(session.host);

  int tables = 0;
  {
    const DocumentLock lock(session.host);
    tables = remove_duplicates(session.store, selection, *mode, session.host);
  }
  report<Message::Completed>(session.host, tables);
}

}  // namespace korvel
