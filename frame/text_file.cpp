// Decoding, reading and writing of text files.
#include "frame/text_file.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>
#include <utility>

#include "frame/format.h"
#include "frame/utf.h"
#include "frame/utf16_text.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

constexpr auto utf8_mark = "\xEF\xBB\xBF"sv;
constexpr auto utf16_little_mark = "\xFF\xFE"sv;
constexpr auto utf16_big_mark = "\xFE\xFF"sv;

#ifdef _WIN32
constexpr auto platform_line_end = "\r\n"sv;
#else
constexpr auto platform_line_end = "\n"sv;
#endif

// The characters of the bytes 0x80 to 0x9F; all other bytes are their own code points.
constexpr std::array<char16_t, 32> windows_1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::wstring decode_windows_1252(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const bool is_special = byte >= 0x80 && byte <= 0x9F;
    out.push_back(static_cast<wchar_t>(is_special ? windows_1252[byte - 0x80U] : byte));
  }
  return out;
}

enum class ByteOrder { Little, Big };

std::wstring decode_utf16(std::string_view bytes, ByteOrder order) {
  const std::size_t low = order == ByteOrder::Little ? 0 : 1;
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto low_byte = static_cast<unsigned char>(bytes[2 * i + low]);
    const auto high_byte = static_cast<unsigned char>(bytes[2 * i + 1 - low]);
    units[i] = static_cast<char16_t>(high_byte << 8 | low_byte);
  }
  std::wstring out;
  out.reserve(units.size() + 1);
  for (std::size_t at = 0; at < units.size();) {
    const CodePoint read = code_point_at(std::u16string_view(units), at);
    append_code_point(read.value, out);
    at += read.units;
  }
  if (bytes.size() % 2 != 0) append_code_point(replacement_character, out);
  return out;
}

std::wstring decode(std::string_view bytes, TextEncoding unmarked) {
  const auto behind = [bytes](std::string_view mark) { return bytes.substr(mark.size()); };
  if (bytes.starts_with(utf8_mark)) return from_utf8(behind(utf8_mark));
  if (bytes.starts_with(utf16_little_mark)) {
    return decode_utf16(behind(utf16_little_mark), ByteOrder::Little);
  }
  if (bytes.starts_with(utf16_big_mark)) {
    return decode_utf16(behind(utf16_big_mark), ByteOrder::Big);
  }
  if (unmarked == TextEncoding::Utf16) return decode_utf16(bytes, ByteOrder::Little);
  return is_valid_utf8(bytes) ? from_utf8(bytes) : decode_windows_1252(bytes);
}

void turn_crlf_into_lf(std::wstring& text) {
  std::size_t kept = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool before_lf = at + 1 < text.size() && text[at + 1] == L'\n';
    if (text[at] != L'\r' || !before_lf) text[kept++] = text[at];
  }
  text.resize(kept);
}

std::optional<TextFileError> find_long_line(std::wstring_view text) {
  std::size_t number = 1;
  for (std::size_t begin = 0; begin < text.size(); ++number) {
    const std::size_t end = std::min(text.find(L'\n', begin), text.size());
    if (end - begin > max_line_length) {
      return TextFileError{
          TextFileErrorKind::LineTooLong, number,
          format_text(L"Line %i is longer than %i characters.", number, max_line_length)};
    }
    begin = end + 1;
  }
  return std::nullopt;
}

TextFileError file_error(TextFileErrorKind kind, std::wstring_view failure, const fs::path& path,
                         std::wstring_view reason) {
  return {kind, 0, format_text(L"%s '%s': %s.", failure, path_text(path), reason)};
}

std::wstring reason_text(std::error_code code) {
  return code ? from_utf8(code.message()) : std::wstring(L"input or output error");
}

// The system's reason for the failure of the last stream operation.
std::wstring last_reason() { return reason_text({errno, std::generic_category()}); }

TextFileError cannot_write(const fs::path& target, std::wstring_view reason) {
  return file_error(TextFileErrorKind::CannotWrite, L"Cannot write", target, reason);
}

// Why the file cannot be had, or none with its bytes in `bytes`.
std::optional<TextFileError> read_bytes(const fs::path& path, std::string& bytes) {
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
  if (size > max_text_file_bytes) {
    return file_error(TooLarge, L"Cannot read", path,
                      format_text(L"it is larger than %i MB", max_text_file_bytes >> 20));
  }
  bytes.resize(static_cast<std::size_t>(size));
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad()) return file_error(CannotRead, L"Cannot read", path, last_reason());
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return std::nullopt;
}

// The file that a link leads to, so that saving replaces that and not the link.
fs::path behind_links(const fs::path& target) {
  std::error_code code;
  const fs::path real = fs::canonical(target, code);
  return code ? target : real;
}

fs::path temporary_beside(const fs::path& target) {
  std::random_device random;
  fs::path name;
  std::error_code code;
  do {
    name = target.parent_path() / (".korvel-" + std::to_string(random()) + ".tmp");
  } while (fs::exists(fs::symlink_status(name, code)) && !code);
  return name;
}

// Why the bytes could not all be written to the file, or none.
std::optional<std::wstring> write_bytes(const fs::path& path,
                                        const std::deque<std::string>& blocks) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  for (const std::string& block : blocks)
    file.write(block.data(), static_cast<std::streamsize>(block.size()));
  file.close();
  if (!file) return last_reason();
  return std::nullopt;
}

std::optional<std::wstring> replace_file(const fs::path& target,
                                         const std::deque<std::string>& blocks) {
  const fs::path temporary = temporary_beside(target);
  std::error_code code;
  std::optional<std::wstring> failure = write_bytes(temporary, blocks);
  if (!failure) {
    const fs::file_status old = fs::status(target, code);
    if (fs::exists(old)) fs::permissions(temporary, old.permissions(), code);
    fs::rename(temporary, target, code);
    if (code) failure = reason_text(code);
  }
  if (failure) fs::remove(temporary, code);
  return failure;
}

}  // namespace

std::optional<TextLine> TextReader::next_line() {
  if (next_ >= text_.size()) return std::nullopt;
  const std::size_t begin = next_;
  const std::size_t end = text_.find(L'\n', begin);
  next_ = end == std::wstring::npos ? text_.size() : end + 1;
  return TextLine{++lines_, std::wstring_view(text_).substr(begin, next_ - begin)};
}

TextReading read_text(std::string_view bytes, TextEncoding unmarked) {
  std::wstring text = decode(bytes, unmarked);
  turn_crlf_into_lf(text);
  if (std::optional<TextFileError> error = find_long_line(text)) return {{}, std::move(error)};
  return {TextReader(std::move(text)), std::nullopt};
}

TextReading read_text_file(const std::filesystem::path& path, TextEncoding unmarked) {
  std::string bytes;
  if (std::optional<TextFileError> error = read_bytes(path, bytes)) return {{}, std::move(error)};
  TextReading reading = read_text(bytes, unmarked);
  if (reading.error) {
    reading.error->message = format_text(L"'%s': %s", path_text(path), reading.error->message);
  }
  return reading;
}

TextFileWriter::TextFileWriter(TextEncoding encoding) : encoding_(encoding) {
  if (encoding_ == TextEncoding::Utf16)
    block_with_room(utf16_little_mark.size()) += utf16_little_mark;
}

void TextFileWriter::write(std::wstring_view text) {
  if (encoding_ == TextEncoding::Utf16) {
    Utf16Text units;
    units.append(text);
    write_units(units.view());
    return;
  }
  std::string bytes;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(L'\n', begin), text.size());
    append_utf8(text.substr(begin, end - begin), bytes);
    if (end < text.size()) bytes += platform_line_end;
    begin = end + 1;
  }
  block_with_room(bytes.size()) += bytes;
}

std::string_view TextFileWriter::write_units(std::u16string_view units) {
  std::string& block = block_with_room(2 * units.size());
  const std::size_t begin = block.size();
  if constexpr (std::endian::native == std::endian::little) {
    block.append(reinterpret_cast<const char*>(units.data()), 2 * units.size());
  } else {
    for (const char16_t unit : units) {
      block.push_back(static_cast<char>(unit & 0xFF));
      block.push_back(static_cast<char>(unit >> 8));
    }
  }
  return std::string_view(block).substr(begin);
}

std::string& TextFileWriter::block_with_room(std::size_t bytes) {
  constexpr std::size_t block_size = std::size_t{1} << 20;
  if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < bytes) {
    blocks_.emplace_back().reserve(std::max(bytes, block_size));
  }
  return blocks_.back();
}

std::string TextFileWriter::bytes() const {
  std::string all;
  for (const std::string& block : blocks_)
    all += block;
  return all;
}

std::optional<TextFileError> TextFileWriter::save(const std::filesystem::path& target) const {
  if (std::optional<TextFileError> error = check_writable(target)) return error;
  const fs::path file = behind_links(target);
  std::error_code code;
  const fs::file_status status = fs::status(file, code);
  const bool in_place = fs::exists(status) && !fs::is_regular_file(status);
  const auto failure = in_place ? write_bytes(file, blocks_) : replace_file(file, blocks_);
  if (failure) return cannot_write(target, *failure);
  return std::nullopt;
}

std::optional<TextFileError> check_writable(const std::filesystem::path& target) {
  const fs::path file = behind_links(target);
  std::error_code code;
  const fs::file_status status = fs::status(file, code);
  if (fs::is_directory(status)) return cannot_write(target, L"it is a folder");
  // Opening a pipe would wait for its reader.
  if (fs::exists(status) && !fs::is_regular_file(status)) return std::nullopt;
  errno = 0;
  if (fs::exists(status) && !std::ofstream(file, std::ios::binary | std::ios::app)) {
    return cannot_write(target, last_reason());
  }
  const fs::path trial = temporary_beside(file);
  if (!std::ofstream(trial, std::ios::binary)) return cannot_write(target, last_reason());
  fs::remove(trial, code);
  return std::nullopt;
}

std::wstring path_text(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return from_utf8(std::string(utf8.begin(), utf8.end()));
}

}  // namespace korvel
