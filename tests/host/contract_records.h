// Tables and records that the contract suite works with.
#pragma once

#include <string>
#include <vector>

#include "frame/od_table.h"

namespace korvel::test {

inline const ODTableDef roads = {L"ROADS",
                                 {{L"NAME", ODType::Character, L"none"},
                                  {L"LANES", ODType::Integer, std::int32_t{2}},
                                  {L"WIDTH", ODType::Real, 3.5},
                                  {L"START", ODType::Point, Point3{1, 2, 3}}}};
inline const ODTableDef parcels = {L"PARCELS", {{L"NUMBER", ODType::Integer, std::int32_t{0}}}};

inline ODRecord road(std::wstring name) {
  return {L"ROADS", {std::move(name), std::int32_t{1}, 2.5, Point3{4, 5, 6}}};
}
inline ODRecord parcel(std::int32_t number) { return {L"PARCELS", {number}}; }

using Records = std::vector<ODRecord>;

}  // namespace korvel::test
