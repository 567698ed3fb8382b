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

  // Number of tables of which a record was removed.
  int clean(EntityId entity) {
    if (!records_->open(entity, OpenMode::Write) || records_->count() < 2) return 0;
    const std::span<Noted> noted = note_records();
    int tables = 0;
    // From the back, so that the places of the records before stay what they were.
    for (std::size_t i = noted.size(); i-- > 0;) {
      const std::span<Noted> before = noted.first(i);
      const std::span<Noted> behind = noted.subspan(i + 1);
      const auto same_table = [&noted, i](const Noted& other) {
        return other.table == noted[i].table;
      };
      const bool duplicate =
          std::ranges::any_of(mode_ == DuplicateMode::First ? behind : before, same_table);
      if (!duplicate || !remove_at(i)) continue;
      noted[i].removed = true;
      const bool counted = std::ranges::any_of(
          behind, [&](const Noted& other) { return other.removed && same_table(other); });
      if (!counted) ++tables;
    }
    return tables;
  }

 private:
  struct Noted {
    std::wstring table;  // in lower case
    bool removed = false;
  };

  std::span<Noted> note_records() {
    std::size_t count = 0;
    for (; !records_->done(); records_->next()) {
      if (count == noted_.size()) noted_.emplace_back();
      lower_into(records_->table_name(), noted_[count].table);
      noted_[count].removed = false;
      ++count;
    }
    return {noted_.data(), count};
  }

  bool remove_at(std::size_t place) {
    records_->start();
    for (std::size_t i = 0; i < place; ++i)
      records_->next();
    return records_->remove();
  }

  std::unique_ptr<RecordIterator> records_;
  DuplicateMode mode_;
  std::vector<Noted> noted_;
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
