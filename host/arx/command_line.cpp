#include "host/arx/command_line.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

#include "host/arx/documents.h"
#include "host/arx/object_ids.h"
#include "host/arx/sdk.h"
#include "host/arx/texts.h"

namespace korvel::arx {
namespace {

// The host prints and reads no more characters at a time.
constexpr std::size_t longest_text = 132;

// Unconfirmed: the form of the call. Points are given in the user's coordinate system.
Point3 world_point(const ads_point& point) {
  ads_point world{};
  acdbUcs2Wcs(point, world, false);
  return {world[0], world[1], world[2]};
}

// None: Esc, or something that is no answer.
template <class Value>
Answer<Value> answer_of(int result, const Value& value) {
  using Kind = typename Answer<Value>::Kind;
  if (result == RTNORM) return {Kind::Given, value};
  return {result == RTNONE ? Kind::Enter : Kind::Cancelled};
}

// A negative position would be a step.
int whole(std::int64_t number) {
  return static_cast<int>(std::clamp<std::int64_t>(number, 0, std::numeric_limits<int>::max()));
}

// The locks that were asked for, also those that the host refused: giving one of these back would
// take away the lock that the host itself holds for the command.
struct Lock {
  AcApDocument* document;
  bool held;
};
std::vector<Lock> locks;

// The end of the piece, which does not part a surrogate pair.
std::size_t piece_end(std::wstring_view text) {
  if (text.size() <= longest_text) return text.size();
  const wchar_t last = text[longest_text - 1];
  return last >= 0xD800 && last <= 0xDBFF ? longest_text - 1 : longest_text;
}

// Unconfirmed: the names and forms of these calls. A plain array suits both the form of the answer
// that is documented and one that takes its length from the array.

bool is_between_commands() { return document_manager().isApplicationContext(); }

int get_string(const std::wstring& prompt, std::wstring& answer) {
  constexpr int blanks_allowed = 1;
  ACHAR typed[longest_text + 1] = {};  // NOLINT(*-avoid-c-arrays)
  const int result = acedGetString(blanks_allowed, prompt.c_str(), typed);
  answer = typed;
  return result;
}

int get_point(const std::wstring& prompt, ads_point& point) {
  return acedGetPoint(nullptr, prompt.c_str(), point);
}

void unlock_document(AcApDocument* document) { document_manager().unlockDocument(document); }

}  // namespace

// As an argument, not as the format: texts of users may hold percent signs.
void print(std::wstring_view text) {
  while (!text.empty()) {
    const std::wstring piece(text.substr(0, piece_end(text)));
    acutPrintf(L"%s", piece.c_str());
    text.remove_prefix(piece.size());
  }
}

std::optional<std::wstring> ask_string(std::wstring_view prompt) {
  std::wstring answer;
  return get_string(std::wstring(prompt), answer) == RTNORM ? std::optional(answer) : std::nullopt;
}

Answer<std::int32_t> ask_integer(std::wstring_view prompt) {
  int number = 0;
  const int result = acedGetInt(std::wstring(prompt).c_str(), &number);
  return answer_of(result, std::int32_t{number});
}

Answer<Point3> ask_point(std::wstring_view prompt) {
  ads_point point{};
  const int result = get_point(std::wstring(prompt), point);
  return answer_of(result, world_point(point));
}

std::optional<EntityId> ask_entity(std::wstring_view prompt) {
  ads_name picked{};
  ads_point point{};
  AcDbObjectId id;
  if (acedEntSel(std::wstring(prompt).c_str(), picked, point) != RTNORM) return std::nullopt;
  if (acdbGetObjectId(id, picked) != Acad::eOk) return std::nullopt;
  return entity_id(id);
}

std::optional<int> variable(std::wstring_view name) {
  resbuf value{};
  if (acedGetVar(std::wstring(name).c_str(), &value) != RTNORM) return std::nullopt;
  if (value.restype == RTSTR) give_back(value.resval.rstring);
  return value.restype == RTSHORT ? std::optional<int>(value.resval.rint) : std::nullopt;
}

bool set_variable(std::wstring_view name, int value) {
  using Short = std::numeric_limits<short>;
  if (value < Short::min() || value > Short::max()) return false;
  resbuf given{};
  given.restype = RTSHORT;
  given.resval.rint = static_cast<short>(value);
  return acedSetVar(std::wstring(name).c_str(), &given) == RTNORM;
}

void start_progress(std::wstring_view label, std::int64_t range) {
  acedSetStatusBarProgressMeter(std::wstring(label).c_str(), 0, whole(range));
}

void move_progress(std::int64_t position) { acedSetStatusBarProgressMeterPos(whole(position)); }

void end_progress() { acedRestoreStatusBar(); }

bool interrupted() { return acedUsrBrk() != 0; }

// In a command the host has locked already and one more lock is allowed; in a palette it is needed.
void lock() {
  AcApDocument* const current = current_document();
  locks.push_back({current, false});
  locks.back().held = current != nullptr && document_manager().lockDocument(current) == Acad::eOk;
}

// The user may have changed to another document and back since the lock.
void unlock() {
  AcApDocument* const current = current_document();
  const auto last = std::find_if(locks.rbegin(), locks.rend(),
                                 [&](const Lock& lock) { return lock.document == current; });
  if (last == locks.rend()) return;
  if (last->held) unlock_document(current);
  locks.erase(std::next(last).base());
}

// Unconfirmed: the call, which the kit's headers may not declare, and what the host does with this
// text. Two escape characters in front of the next command are the documented way.
void cancel_command() { acedPostCommand(L"CANCELCMD"); }

// A palette's text brings the document to the front. A command's must not: activating, the host
// would suspend the command that is running and take the text at once.
void send(std::wstring_view text) {
  AcApDocument* const current = current_document();
  const bool activate = is_between_commands();
  constexpr bool wrap_up_inactive = false;
  constexpr bool echo = false;
  if (current == nullptr) return;
  document_manager().sendStringToExecute(current, std::wstring(text).c_str(), activate,
                                         wrap_up_inactive, echo);
}

}  // namespace korvel::arx
