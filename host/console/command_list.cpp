#include "host/console/command_list.h"

#include "host/console/console.h"

namespace korvel {
namespace {

constexpr std::size_t name_width = 28;
constexpr std::size_t flags_width = 28;

std::wstring padded(std::wstring text, std::size_t width) {
  if (text.size() < width) text.resize(width, L' ');
  return text;
}

std::wstring flag_names(int flags) {
  std::wstring names;
  const auto name_if = [&](int flag, std::wstring_view name) {
    if ((flags & flag) == 0) return;
    if (!names.empty()) names += L',';
    names += name;
  };
  name_if(command_flag::transparent, L"transparent");
  name_if(command_flag::uses_pick_set, L"pickset");
  name_if(command_flag::redraw, L"redraw");
  name_if(command_flag::session, L"session");
  return names.empty() ? L"modal" : names;
}

std::wstring row(std::wstring_view name, std::wstring flags, std::wstring_view summary) {
  return padded(std::wstring(name), name_width) + padded(std::move(flags), flags_width) +
         std::wstring(summary);
}

}  // namespace

std::wstring command_list() {
  std::wstring list;
  for (const Command& command : command_table) {
    list += row(command.name, flag_names(command.flags), command.summary) + L'\n';
  }
  for (const HostCommand& command : host_commands()) {
    list += row(command.name, L"host", command.summary) + L'\n';
  }
  return list;
}

}  // namespace korvel
