// Arguments, environment and terminals on Windows.
#include <fcntl.h>
#include <io.h>

#include "host/console/platform.h"

// shellapi.h needs the other before it.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include "frame/utf.h"

namespace korvel::platform {

Utf8Streams::Utf8Streams()
    : former_input_page_(GetConsoleCP()), former_output_page_(GetConsoleOutputCP()) {
  for (const int stream : {standard_input, standard_output, standard_error})
    _setmode(stream, _O_BINARY);
  SetConsoleCP(CP_UTF8);
  SetConsoleOutputCP(CP_UTF8);
}

// The pages belong to the console, which the next program will use.
Utf8Streams::~Utf8Streams() {
  SetConsoleCP(former_input_page_);
  SetConsoleOutputCP(former_output_page_);
}

void ignore_closed_pipes() {}  // it always fails

std::vector<std::string> arguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i)
    arguments.push_back(to_utf8(words[i]));
  LocalFree(static_cast<HLOCAL>(words));
  return arguments;
}

std::optional<std::string> variable(const char* name) {
  const std::wstring wide_name = from_utf8(name);
  std::wstring value(GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0), L'\0');
  const auto capacity = static_cast<DWORD>(value.size());
  value.resize(GetEnvironmentVariableW(wide_name.c_str(), value.data(), capacity));
  if (value.empty()) return std::nullopt;
  return to_utf8(value);
}

// The library takes the null device for a terminal, too.
bool is_terminal(int stream) {
  DWORD mode = 0;
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(stream));  // NOLINT
  return GetConsoleMode(handle, &mode) != 0;
}

}  // namespace korvel::platform
