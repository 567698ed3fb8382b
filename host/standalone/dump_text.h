// The words of a drawing's dump: names, texts, numbers, points and values, as drawing_dump.h says.
#pragma once

#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

void append_name(std::wstring_view name, std::wstring& out);
void append_quoted(std::wstring_view text, std::wstring& out);
void append_number(double number, std::wstring& out);
void append_point(Point3 point, std::wstring& out);
void append_value(const ODValueView& value, std::wstring& out);

}  // namespace korvel
