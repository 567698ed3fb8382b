// Prompts, messages, variables and the progress meter of the host's editor, and its document.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/drawing_host.h"

namespace korvel::arx {

// As DrawingHost has them.
void print(std::wstring_view text);
[[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt);
[[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt);
[[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt);
[[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt);

[[nodiscard]] std::optional<int> variable(std::wstring_view name);
bool set_variable(std::wstring_view name, int value);

void start_progress(std::wstring_view label, std::int64_t range);
void move_progress(std::int64_t position);
void end_progress();
[[nodiscard]] bool interrupted();

void lock();
void unlock();
void cancel_command();
void send(std::wstring_view text);

}  // namespace korvel::arx
