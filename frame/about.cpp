// KORVEL_ABOUT: what this program is, who made it, and on what terms.
#include <string_view>

#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

constexpr std::wstring_view about_text =
    L"KORVEL, a plug-in for Civil 3D and Map 3D that handles object data as an internal "
    L"database.\n"
    L"\n"
    L"Made by the KORVEL developers.\n"
    L"\n"
    L"This program is subject to the terms of the Mozilla Public License, version 2.0. It may be\n"
    L"copied and passed on under those terms only.\n"
    L"\n"
    L"It is provided as it is, without warranty of any kind, either expressed or implied: no\n"
    L"warranty that it is free of defects, merchantable, or fit for a particular purpose. You use\n"
    L"it at your own risk; keep copies of your drawings.\n";

}  // namespace

void about(Session& session) { session.host.show_text(L"About", about_text, 500, 400); }

}  // namespace korvel
