// The text files that a person hands to a command or gets from it: mappings, aliases, templates,
// tables.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "frame/file_bytes.h"

namespace korvel {

// How characters lie in a file. Ansi is the host's multibyte text. Here that is: written as UTF-8
// without a byte-order mark; read as UTF-8 if all of it is valid UTF-8 and else as Windows-1252,
// whose five free bytes read as the control characters of their numbers. Utf16 is little-endian;
// it is written with a mark.
enum class TextEncoding { Ansi, Utf16 };

// Longest line, in units of wchar_t without the line end, and largest file, that are read.
inline constexpr std::size_t max_line_length = 10240;
inline constexpr std::size_t max_text_file_bytes = std::size_t{128} << 20;

// A line with its number, counted from 1, and its text with the "\n" that ended it; the last line
// of a text may have none.
struct TextLine {
  std::size_t number = 0;
  std::wstring_view text;
};

// Hands out the lines of a text in order. The views live as long as the reader stays in place.
class TextReader {
 public:
  TextReader() = default;
  explicit TextReader(std::wstring text) : text_(std::move(text)) {}

  [[nodiscard]] std::optional<TextLine> next_line();

 private:
  std::wstring text_;
  std::size_t next_ = 0;
  std::size_t lines_ = 0;
};

// A text without lines if there is an error: a file is read as a whole or not at all.
struct TextReading {
  TextReader text;
  std::optional<TextFileError> error;
};

// Decodes bytes and cuts them into lines. A byte-order mark (UTF-8, or UTF-16 of either byte order)
// decides the encoding and is dropped; without one `unmarked` does. A mark cut short is text.
//
// LF ends a line and CR LF counts as LF; a CR elsewhere, NUL and Ctrl+Z are characters of their
// line. Ill-formed UTF-8 under a mark, a surrogate without its partner and an odd byte at the end
// of UTF-16 become U+FFFD. The only error is LineTooLong.
[[nodiscard]] TextReading read_text(std::string_view bytes, TextEncoding unmarked);

// The same for a file. Anything but a regular file cannot be opened.
[[nodiscard]] TextReading read_text_file(const std::filesystem::path& path, TextEncoding unmarked);

// Puts a whole file into `utf8`, decoded as read_text does it, with its line ends as they are and
// lines of any length; the mark is dropped. Needs little more memory than the text.
[[nodiscard]] std::optional<TextFileError> read_utf8_file(const std::filesystem::path& path,
                                                          std::size_t most_bytes,
                                                          TextEncoding unmarked, std::string& utf8);

// Assembles the bytes of a text file.
class TextFileWriter {
 public:
  explicit TextFileWriter(TextEncoding encoding);

  // Appends text in which "\n" ends a line: CR LF in Utf16, the platform's line end in Ansi. Both
  // halves of a surrogate pair must come in one call.
  void write(std::wstring_view text);

  // The file as it stands so far.
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  TextEncoding encoding_;
  std::string bytes_;
};

}  // namespace korvel
