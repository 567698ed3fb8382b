// The commands of the double's editor, and its reactors.
#include <algorithm>
#include <cstdarg>
#include <cwctype>
#include <optional>
#include <stdexcept>
#include <utility>

#include "frame/case_mapping.h"
#include "tests/arx_double/ed_classes.h"

namespace {

int unreleased = 0;

korvel::StandaloneHost& host() { return korvel::arx_double::working_drawing(); }

resbuf* text_buffer(const ACHAR* text) {
  const std::wstring_view copied(text);
  auto* const buffer = new resbuf;
  buffer->resval.rstring = new ACHAR[copied.size() + 1]();
  copied.copy(buffer->resval.rstring, copied.size());
  return buffer;
}

// A list of answers, read from its beginning.
class Answers {
 public:
  explicit Answers(const resbuf* first) : next_(first) {}

  [[nodiscard]] bool done() const { return next_ == nullptr; }
  const resbuf* take(int type) {
    const resbuf* const taken = next_ != nullptr && next_->restype == type ? next_ : nullptr;
    if (taken != nullptr) next_ = taken->rbnext;
    return taken;
  }
  std::optional<std::wstring> text() {
    const resbuf* const taken = take(RTSTR);
    return taken == nullptr ? std::nullopt : std::optional<std::wstring>(taken->resval.rstring);
  }
  std::optional<AcDbObjectId> entity() {
    const resbuf* const taken = take(RTENAME);
    AcDbObjectId id;
    if (taken == nullptr || acdbGetObjectId(id, taken->resval.rlname) != Acad::eOk) return {};
    return id;
  }
  std::optional<AcDbObjectId> pointed_pick() {
    if (take(RTLB) == nullptr) return std::nullopt;
    const std::optional<AcDbObjectId> id = entity();
    return take(RT3DPOINT) != nullptr && take(RTLE) != nullptr ? id : std::nullopt;
  }

 private:
  const resbuf* next_;
};

// After F the stand-alone BREAK is where it is anyway with an entity that is given to it.
std::optional<AcDbObjectId> entity_to_break(Answers& answers) {
  const std::optional<AcDbObjectId> entity = answers.pointed_pick();
  const std::optional<std::wstring> option = answers.text();
  if (!option || korvel::lower(*option) != L"_f") return std::nullopt;
  for (int point = 0; point < 2; ++point) {
    if (answers.text() != L"\\") return std::nullopt;
  }
  return entity;
}

// Tells the editor's reactors what the stand-alone host tells.
class Relay final : public korvel::EditorReactor {
 public:
  void add(AcEditorReactor* reactor) {
    if (reactors_.empty()) {
      told_by_ = &host();
      told_by_->add_reactor(*this);
    }
    change([&] { reactors_.push_back(reactor); });
  }
  void remove(AcEditorReactor* reactor) {
    change([&] { std::erase(reactors_, reactor); });
    if (reactors_.empty()) told_by_->remove_reactor(*this);
  }
  [[nodiscard]] int count() const { return static_cast<int>(reactors_.size()); }

  void command_ended(std::wstring_view name) override {
    tell(&AcEditorReactor::commandEnded, name);
  }
  void command_cancelled(std::wstring_view name) override {
    tell(&AcEditorReactor::commandCancelled, name);
  }
  void command_failed(std::wstring_view name) override {
    tell(&AcEditorReactor::commandFailed, name);
  }

 private:
  template <class Change>
  void change(Change make) {
    if (telling_) throw std::logic_error("the editor's reactors changed while they were told");
    make();
  }
  void tell(void (AcEditorReactor::*notification)(const ACHAR*), std::wstring_view name) {
    std::wstring upper(name);
    std::ranges::transform(upper, upper.begin(),
                           [](wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); });
    telling_ = true;
    for (AcEditorReactor* const reactor : reactors_)
      (reactor->*notification)(upper.c_str());
    telling_ = false;
  }

  korvel::StandaloneHost* told_by_ = nullptr;
  std::vector<AcEditorReactor*> reactors_;
  bool telling_ = false;
};

Relay relay;

}  // namespace

resbuf* acutBuildList(int type, ...) {
  resbuf* first = nullptr;
  resbuf** end = &first;
  std::va_list values;
  va_start(values, type);
  for (; type != 0; type = va_arg(values, int)) {
    if (type == RTSTR) {
      *end = text_buffer(va_arg(values, const ACHAR*));
    } else {
      *end = new resbuf;
      auto& held = (*end)->resval;
      if (type == RTENAME) std::copy_n(va_arg(values, const std::int64_t*), 2, held.rlname);
      if (type == RT3DPOINT) std::copy_n(va_arg(values, const ads_real*), 3, held.rpoint);
    }
    ++unreleased;
    (*end)->restype = static_cast<short>(type);
    end = &(*end)->rbnext;
  }
  va_end(values);
  return first;
}

int acutRelRb(resbuf* list) {
  while (list != nullptr) {
    if (list->restype == RTSTR) delete[] list->resval.rstring;
    delete std::exchange(list, list->rbnext);
    --unreleased;
  }
  return RTNORM;
}

int acedCmdS(const resbuf* list, bool /*for_future_use*/, AcApDocument* /*document*/) {
  Answers answers(list);
  const std::optional<std::wstring> name = answers.text();
  if (!name) return RTERROR;
  const bool breaks = korvel::lower(*name).ends_with(L"break");
  const std::optional<AcDbObjectId> entity = breaks ? entity_to_break(answers) : answers.entity();
  if (!entity || !answers.done()) return RTERROR;
  return host().run_command(*name, {static_cast<std::uint64_t>(entity->asOldId())}) ? RTNORM
                                                                                    : RTERROR;
}

void AcEditor::addReactor(AcEditorReactor* reactor) { relay.add(reactor); }

void AcEditor::removeReactor(AcEditorReactor* reactor) { relay.remove(reactor); }

AcEditor* the_editor() {
  static AcEditor editor;
  return &editor;
}

namespace korvel::arx_double {

int unreleased_buffers() { return unreleased; }

int editor_reactors() { return relay.count(); }

}  // namespace korvel::arx_double
