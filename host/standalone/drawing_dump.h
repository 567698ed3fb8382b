// A drawing as text, for people and for comparing two drawings line by line.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "frame/entity_id.h"
#include "host/standalone/drawing.h"

namespace korvel {

// One line for an entity, without a line end:
//
//   2B4 LINE layer=ROADS from 0,0,0 to 10,0,0 | ROADS(NAME="Main St", WIDTH=3.5) | TPMLINK_A(ID=7)
//
// handle ("-" if there is none), type, where it stands if not in model space (`space=paper`,
// `block=NAME`), layer, the properties that are not at their default (color, truecolor as RRGGBB,
// linetype, ltscale, lineweight), its shape in world coordinates, its attributes if it has any
// (`attributes(TAG="text", ...)`), and behind " | " each record in order, topology included.
//
// Names of letters, digits and _ $ - * . stand bare, others in double quotes. Texts always stand in
// double quotes; in quotes a quote, line feed, tab, carriage return and backslash are \" \n \t \r
// \\. Numbers are the shortest text that reads back as the same number; reals in records have a
// decimal at least. Angles (degrees) and directions are rounded to ten decimals. Points are x,y,z.
// An empty value is `none`.
[[nodiscard]] std::wstring dump_line(const Drawing& drawing, EntityId id);

using TextSink = std::function<void(std::wstring_view line)>;

// Hands out, line by line and without line ends: a line for every layer
// (`LAYER ROADS current frozen off locked`), for every table
// (`TABLE ROADS(NAME Character "", WIDTH Real 3.5)`), and for every entity of model space, paper
// space and the block definitions in file order. Saving and opening again changes no line.
void dump(const Drawing& drawing, const TextSink& sink);

}  // namespace korvel
