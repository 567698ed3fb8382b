#include "frame/file_bytes.h"

#include <cerrno>
#include <concepts>
#include <fstream>

#include "frame/format.h"
#include "frame/utf.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;

TextFileError file_error(TextFileErrorKind kind, std::wstring_view failure, const fs::path& path,
                         std::wstring_view reason) {
  return {kind, 0, std::wstring(reason),
          format_text(L"%s '%s': %s.", failure, path_text(path), reason)};
}

// The system's reason for the failure of the last stream operation.
std::wstring last_reason() { return reason_text({errno, std::generic_category()}); }

}  // namespace

std::optional<TextFileError> read_file(const std::filesystem::path& path, std::size_t most_bytes,
                                       std::string& bytes) {
  using enum TextFileErrorKind;
  std::error_code code;
  const fs::file_status status = fs::status(path, code);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return file_error(CannotOpen, L"Cannot open", path, L"it is not a file");
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) return file_error(CannotOpen, L"Cannot open", path, last_reason());
  const auto size = fs::file_size(path, code);
  if (code) return file_error(CannotRead, L"Cannot read", path, reason_text(code));
  if (size > most_bytes) {
    return file_error(TooLarge, L"Cannot read", path,
                      format_text(L"it is larger than %i MB", most_bytes >> 20));
  }
  bytes.resize(static_cast<std::size_t>(size));
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad()) return file_error(CannotRead, L"Cannot read", path, last_reason());
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return std::nullopt;
}

std::wstring path_text(const std::filesystem::path& path) {
  // Names of 16-bit units need not be well-formed UTF-16.
  if constexpr (std::same_as<fs::path::value_type, wchar_t>) return path.wstring();
  const std::u8string utf8 = path.u8string();
  return from_utf8(std::string(utf8.begin(), utf8.end()));
}

std::filesystem::path path_of(std::wstring_view text) {
  if constexpr (std::same_as<fs::path::value_type, wchar_t>) return {text};
  return path_of(to_utf8(text));
}

std::filesystem::path path_of(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::wstring reason_text(std::error_code code) {
  if (!code) return L"input or output error";
  return from_utf8(code.default_error_condition().message());
}

}  // namespace korvel
