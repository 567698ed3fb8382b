// Decoding, reading and writing of texts in files.
#include "frame/text_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "frame/format.h"
#include "frame/utf.h"
#include "frame/utf16_text.h"

namespace korvel {
namespace {

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

// The decoders append to wide text as well as to UTF-8.
template <class Text>
void decode_windows_1252(std::string_view bytes, Text& out) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const bool is_special = byte >= 0x80 && byte <= 0x9F;
    append_code_point(is_special ? windows_1252[byte - 0x80U] : byte, out);
  }
}

enum class ByteOrder { Little, Big };

template <class Text>
void decode_utf16(std::string_view bytes, ByteOrder order, Text& out) {
  const std::size_t low = order == ByteOrder::Little ? 0 : 1;
  const auto unit = [&](std::size_t index) {
    const auto low_byte = static_cast<unsigned char>(bytes[2 * index + low]);
    const auto high_byte = static_cast<unsigned char>(bytes[2 * index + 1 - low]);
    return static_cast<char16_t>(high_byte << 8 | low_byte);
  };
  const std::size_t units = bytes.size() / 2;
  for (std::size_t at = 0; at < units;) {
    const std::array<char16_t, 2> pair = {unit(at), at + 1 < units ? unit(at + 1) : u'\0'};
    const CodePoint read = code_point_at(std::u16string_view(pair.data(), pair.size()), 0);
    append_code_point(read.value, out);
    at += read.units;
  }
  if (bytes.size() % 2 != 0) append_code_point(replacement_character, out);
}

enum class Form { Utf8, BrokenUtf8, Utf16Little, Utf16Big, Windows1252 };

struct Encoded {
  Form form;
  std::string_view bytes;  // without the mark
};

Encoded form_of(std::string_view bytes, TextEncoding unmarked) {
  const auto behind = [bytes](std::string_view mark) { return bytes.substr(mark.size()); };
  if (bytes.starts_with(utf8_mark)) {
    const std::string_view rest = behind(utf8_mark);
    return {is_valid_utf8(rest) ? Form::Utf8 : Form::BrokenUtf8, rest};
  }
  if (bytes.starts_with(utf16_little_mark)) return {Form::Utf16Little, behind(utf16_little_mark)};
  if (bytes.starts_with(utf16_big_mark)) return {Form::Utf16Big, behind(utf16_big_mark)};
  if (unmarked == TextEncoding::Utf16) return {Form::Utf16Little, bytes};
  return {is_valid_utf8(bytes) ? Form::Utf8 : Form::Windows1252, bytes};
}

template <class Text>
Text decode(const Encoded& encoded) {
  Text out;
  out.reserve(encoded.bytes.size());
  switch (encoded.form) {
    case Form::Utf8:
    case Form::BrokenUtf8:
      append_from_utf8(encoded.bytes, out);
      break;
    case Form::Utf16Little:
      decode_utf16(encoded.bytes, ByteOrder::Little, out);
      break;
    case Form::Utf16Big:
      decode_utf16(encoded.bytes, ByteOrder::Big, out);
      break;
    case Form::Windows1252:
      decode_windows_1252(encoded.bytes, out);
      break;
  }
  return out;
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
          format_text(L"line %i is longer than %i characters", number, max_line_length),
          format_text(L"Line %i is longer than %i characters.", number, max_line_length)};
    }
    begin = end + 1;
  }
  return std::nullopt;
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
  auto text = decode<std::wstring>(form_of(bytes, unmarked));
  turn_crlf_into_lf(text);
  if (std::optional<TextFileError> error = find_long_line(text)) return {{}, std::move(error)};
  return {TextReader(std::move(text)), std::nullopt};
}

TextReading read_text_file(const std::filesystem::path& path, TextEncoding unmarked) {
  std::string bytes;
  if (std::optional<TextFileError> error = read_file(path, max_text_file_bytes, bytes))
    return {{}, std::move(error)};
  TextReading reading = read_text(bytes, unmarked);
  if (reading.error) {
    reading.error->message = format_text(L"'%s': %s", path_text(path), reading.error->message);
  }
  return reading;
}

std::optional<TextFileError> read_utf8_file(const std::filesystem::path& path,
                                            std::size_t most_bytes, TextEncoding unmarked,
                                            std::string& utf8) {
  if (std::optional<TextFileError> error = read_file(path, most_bytes, utf8)) return error;
  const Encoded encoded = form_of(utf8, unmarked);
  if (encoded.form == Form::Utf8) {
    utf8.erase(0, utf8.size() - encoded.bytes.size());
  } else {
    utf8 = decode<std::string>(encoded);
  }
  return std::nullopt;
}

TextFileWriter::TextFileWriter(TextEncoding encoding) : encoding_(encoding) {
  if (encoding_ == TextEncoding::Utf16) bytes_ = utf16_little_mark;
}

void TextFileWriter::write(std::wstring_view text) {
  if (encoding_ == TextEncoding::Utf16) {
    Utf16Text units;
    units.append(text);
    std::string room;
    bytes_ += little_endian_bytes(units.view(), room);
    return;
  }
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(L'\n', begin), text.size());
    append_utf8(text.substr(begin, end - begin), bytes_);
    if (end < text.size()) bytes_ += platform_line_end;
    begin = end + 1;
  }
}

}  // namespace korvel
