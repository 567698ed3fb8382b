#include "host/arx/host_command.h"

#include <algorithm>
#include <string>

#include "frame/case_mapping.h"
#include "host/arx/database.h"
#include "host/arx/editor_reactor.h"
#include "host/arx/guards.h"
#include "host/arx/object_ids.h"
#include "host/arx/selection.h"

namespace korvel::arx {
namespace {

constexpr const ACHAR* ask_user = L"\\";  // the host's PAUSE

// "_.Break" is "break": in whatever language, and not redefined.
bool is_command(std::wstring_view name, std::wstring_view plain) {
  name.remove_prefix(std::min(name.find_first_not_of(L"_."), name.size()));
  return lower(name) == plain;
}

// The command with an answer to every prompt of it: what becomes of one whose answers run out is
// not known. BREAK asks for its first point after an entity that is only named, or does not ask for
// it; documented is the pointed pick, an entity with a point, after which it asks for the second
// point or takes F for both. So it is given a pick, of which the point does not matter, F, and two
// pauses for the user.
ResultBuffers break_with_answers(const std::wstring& name, const ads_name& entity, Point3 pick) {
  const ads_point point = {pick.x, pick.y, pick.z};
  return ResultBuffers(acutBuildList(RTSTR, name.c_str(), RTLB, RTENAME, entity, RT3DPOINT, point,
                                     RTLE, RTSTR, L"_F", RTSTR, ask_user, RTSTR, ask_user, 0));
}

// Enough for a command that asks for one entity and nothing else.
ResultBuffers command_with_entity(const std::wstring& name, const ads_name& entity) {
  return ResultBuffers(acutBuildList(RTSTR, name.c_str(), RTENAME, entity, 0));
}

ResultBuffers answers_to(const std::wstring& name, EntityId entity) {
  ads_name named{};
  if (acdbGetAdsName(named, object_id(entity)) != Acad::eOk) return {};
  if (!is_command(name, L"break")) return command_with_entity(name, named);
  const std::optional<Extents> extents = extents_of(entity);
  return break_with_answers(name, named, extents ? extents->min : Point3{});
}

// Unconfirmed: that the host takes the whole list in one piece and nothing else.
bool run_to_end(const resbuf& answers) { return acedCmdS(&answers) == RTNORM; }

}  // namespace

bool run_command(std::wstring_view name, EntityId entity) {
  const ResultBuffers answers = answers_to(std::wstring(name), entity);
  if (!answers) return false;
  set_pick_first({});
  const bool done = run_to_end(*answers);
  leave_idle_editor();
  return done;
}

}  // namespace korvel::arx
