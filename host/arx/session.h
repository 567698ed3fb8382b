// What a command or a palette works with, made for one run or one turn.
#pragma once

#include <functional>
#include <string_view>

#include "frame/plugin.h"

namespace korvel::arx {

// The plug-in whose remembered choices and palettes sessions are given; null: none is loaded.
void set_plugin(korvel::CkorvelApp* plugin);

// Runs it. Nothing is thrown out of this, into the host: it is told at the command line, by the
// name of the command or the palette that did it.
void run_guarded(std::wstring_view name, const std::function<void()>& action);

// Runs what the command or palette of this name does, guarded, with a session for the current
// document.
void run_in_session(std::wstring_view name, const std::function<void(Session&)>& action);

// The same for a handler of the command table.
void run_command_handler(std::wstring_view name, CommandHandler handler);

}  // namespace korvel::arx
