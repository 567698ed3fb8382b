#include "tests/arx_double/ed_classes.h"

#include <algorithm>
#include <cstdarg>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "frame/utf.h"

namespace {

constexpr std::size_t most_sets = 128;
constexpr std::size_t longest_print = 132;
constexpr std::int64_t set_mark = -1;  // the second half of a set's name

std::map<std::int64_t, std::vector<AcDbObjectId>> sets;
std::int64_t last_set = 0;
bool locks_are_refused = false;
int locks = 0;
korvel::arx_double::RunningIn::Context current_context = korvel::arx_double::RunningIn::Command;

korvel::StandaloneHost& host() { return korvel::arx_double::working_drawing(); }

korvel::EntityId entity_of(const AcDbObjectId& id) {
  return {static_cast<std::uint64_t>(id.asOldId())};
}

AcDbObjectId id_of(korvel::EntityId entity) {
  AcDbObjectId id;
  id.setFromOldId(static_cast<Adesk::IntDbId>(entity.value));
  return id;
}

int make_set(std::vector<AcDbObjectId> members, ads_name set) {
  if (sets.size() == most_sets) return RTERROR;
  set[0] = ++last_set;
  set[1] = set_mark;
  sets[last_set] = std::move(members);
  return RTNORM;
}

std::vector<AcDbObjectId>* members_of(const ads_name set) {
  const auto found = set[1] == set_mark ? sets.find(set[0]) : sets.end();
  return found == sets.end() ? nullptr : &found->second;
}

int set_of(const korvel::EntityList& entities, ads_name set) {
  std::vector<AcDbObjectId> members;
  for (const korvel::EntityId entity : entities)
    members.push_back(id_of(entity));
  return make_set(std::move(members), set);
}

// Whatever is no whole number.
int text_variable(const ACHAR* name, resbuf& value) {
  const auto held = host().drawing().variable(korvel::to_utf8(name));
  if (!held) return RTERROR;
  const std::wstring text = korvel::from_utf8(*held);
  value.restype = RTSTR;
  value.resval.rstring = korvel::arx_double::hand_out(text);
  return RTNORM;
}

}  // namespace

int acedSSGet(const ACHAR* mode, const void* /*point1*/, const void* /*point2*/,
              const resbuf* /*filter*/, ads_name set) {
  const korvel::EntityList implied = host().pick_first();
  if (!implied.empty()) return set_of(implied, set);
  if (mode != nullptr) return RTERROR;
  const std::optional<korvel::EntityList> asked = host().ask_selection();
  if (!asked) return RTCAN;
  return asked->empty() ? RTERROR : set_of(*asked, set);
}

int acedSSLength(const ads_name set, Adesk::Int32* length) {
  const auto* const members = members_of(set);
  if (members == nullptr) return RTERROR;
  *length = static_cast<Adesk::Int32>(members->size());
  return RTNORM;
}

int acedSSName(const ads_name set, int index, ads_name entity) {
  const auto* const members = members_of(set);
  if (members == nullptr || index < 0 || static_cast<std::size_t>(index) >= members->size()) {
    return RTERROR;
  }
  return acdbGetAdsName(entity, (*members)[static_cast<std::size_t>(index)]) == Acad::eOk ? RTNORM
                                                                                          : RTERROR;
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
  std::vector<AcDbObjectId> added;
  if (entity != nullptr) {
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
    added.push_back(id);
  }
  if (set == nullptr) return make_set(std::move(added), result);
  auto* const members = members_of(set);
  if (members == nullptr) return RTERROR;
  for (const AcDbObjectId& id : added) {
    if (std::ranges::find(*members, id) == members->end()) members->push_back(id);
  }
  std::copy_n(set, 2, result);
  return RTNORM;
}

int acedSSFree(const ads_name set) {
  if (members_of(set) == nullptr) return RTERROR;
  sets.erase(set[0]);
  return RTNORM;
}

int acedSSSetFirst(const ads_name pick_set, const ads_name /*unused*/) {
  korvel::EntityList entities;
  if (pick_set != nullptr) {
    const auto* const members = members_of(pick_set);
    if (members == nullptr) return RTERROR;
    for (const AcDbObjectId& id : *members)
      entities.push_back(entity_of(id));
  }
  host().set_pick_first(entities);
  return RTNORM;
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name entity) {
  if (entity[1] == set_mark) return Acad::eError;
  id.setFromOldId(entity[0]);
  return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name entity, AcDbObjectId id) {
  if (!host().opens(entity_of(id), korvel::OpenMode::Read)) return Acad::eWasErased;
  entity[0] = id.asOldId();
  entity[1] = 0;
  return Acad::eOk;
}

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point /*point*/) {
  const std::optional<korvel::EntityId> picked = host().ask_entity(prompt);
  if (!picked) return RTERROR;
  return acdbGetAdsName(entity, id_of(*picked)) == Acad::eOk ? RTNORM : RTERROR;
}

int acedGetString(int /*cronly*/, const ACHAR* prompt, ACHAR* text) {
  const std::optional<std::wstring> typed = host().ask_string(prompt);
  if (!typed) return RTCAN;
  const std::size_t length = std::min(typed->size(), longest_print);
  typed->copy(text, length);
  text[length] = L'\0';
  return RTNORM;
}

int acedGetInt(const ACHAR* prompt, int* number) {
  using Kind = korvel::Answer<std::int32_t>::Kind;
  const korvel::Answer<std::int32_t> answer = host().ask_integer(prompt);
  if (answer.kind == Kind::Cancelled) return RTCAN;
  if (answer.kind == Kind::Enter) return RTNONE;
  *number = answer.value;
  return RTNORM;
}

int acedGetPoint(const ads_point /*base*/, const ACHAR* prompt, ads_point point) {
  using Kind = korvel::Answer<korvel::Point3>::Kind;
  const korvel::Answer<korvel::Point3> answer = host().ask_point(prompt);
  if (answer.kind == Kind::Cancelled) return RTCAN;
  if (answer.kind == Kind::Enter) return RTNONE;
  point[0] = answer.value.x;
  point[1] = answer.value.y;
  point[2] = answer.value.z;
  return RTNORM;
}

int acutPrintf(const ACHAR* format, ...) {
  if (std::wstring_view(format) != L"%s") {
    throw std::logic_error("a text of the user's was printed as a format");
  }
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring_view text = va_arg(arguments, const ACHAR*);
  va_end(arguments);
  host().print(text.substr(0, longest_print));
  return RTNORM;
}

int acedGetVar(const ACHAR* name, resbuf* value) {
  const std::optional<int> held = host().variable(name);
  if (!held) return text_variable(name, *value);
  value->restype = RTSHORT;
  value->resval.rint = static_cast<short>(*held);
  return RTNORM;
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
  if (value->restype != RTSHORT) return RTERROR;
  return host().set_variable(name, value->resval.rint) ? RTNORM : RTERROR;
}

bool acdbUcs2Wcs(const ads_point from, ads_point to, bool /*is_vector*/) {
  std::copy_n(from, 3, to);
  return true;
}

int acedSetStatusBarProgressMeter(const ACHAR* label, int /*least*/, int most) {
  host().start_progress(label, most);
  return 0;
}

int acedSetStatusBarProgressMeterPos(int position) {
  host().move_progress(position);
  return 0;
}

void acedRestoreStatusBar() { host().end_progress(); }

int acedUsrBrk() { return host().interrupted() ? 1 : 0; }

bool AcApDocManager::isApplicationContext() const {
  return current_context == korvel::arx_double::RunningIn::Application;
}

AcApDocument* AcApDocManager::curDocument() { return &documents_.at(current_); }

AcApDocument* AcApDocManager::other_document() { return &documents_.at(1 - current_); }

Acad::ErrorStatus AcApDocManager::lockDocument(AcApDocument* /*document*/,
                                               AcAp::DocLockMode /*mode*/) {
  if (locks_are_refused) return Acad::eError;
  host().lock();
  ++locks;
  return Acad::eOk;
}

Acad::ErrorStatus AcApDocManager::unlockDocument(AcApDocument* /*document*/) {
  host().unlock();
  --locks;
  return Acad::eOk;
}

Acad::ErrorStatus AcApDocManager::sendStringToExecute(AcApDocument* /*document*/, const ACHAR* text,
                                                      bool /*activate*/, bool /*wrap_up_inactive*/,
                                                      bool /*echo*/) {
  host().send(text);
  return Acad::eOk;
}

void AcApDocManager::close_document(AcApDocument* document) {
  for (AcApDocManagerReactor* const reactor : reactors_)
    reactor->documentToBeDestroyed(document);
}

void AcApDocManager::make_current(AcApDocument* document) {
  current_ = document == &documents_.front() ? 0 : 1;
  for (AcApDocManagerReactor* const reactor : reactors_)
    reactor->documentBecameCurrent(document);
}

AcApDocManager* acDocManagerPtr() {
  static AcApDocManager manager;
  return &manager;
}

void acedPostCommand(const ACHAR* text) {
  if (std::wstring_view(text) == L"CANCELCMD") host().cancel_command();
}

namespace korvel::arx_double {

bool is_writable() { return current_context == RunningIn::Command || locks > 0; }

RunningIn::RunningIn(Context context) : former_(std::exchange(current_context, context)) {}

RunningIn::~RunningIn() { current_context = former_; }

void refuse_locks(bool refuse) { locks_are_refused = refuse; }

int open_selection_sets() { return static_cast<int>(sets.size()); }

}  // namespace korvel::arx_double
