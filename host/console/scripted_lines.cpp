#include "host/console/scripted_lines.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "frame/format.h"
#include "frame/text_file.h"
#include "frame/utf.h"
#include "host/console/interrupt.h"
#include "host/console/output.h"
#include "host/console/paths.h"

namespace korvel {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

constexpr std::size_t block = 65536;

std::string reason_of(std::errc error) { return std::make_error_code(error).message(); }

// Other encodings are full of bytes that UTF-8 does not have, or of NULs.
bool is_text(std::string_view bytes) {
  return bytes.find('\0') == std::string_view::npos && is_valid_utf8(bytes);
}

std::size_t first_line_of_no_text(std::string_view bytes) {
  std::size_t number = 1;
  while (is_text(bytes.substr(0, bytes.find('\n')))) {
    bytes.remove_prefix(bytes.find('\n') + 1);
    ++number;
  }
  return number;
}

}  // namespace

LineReader::LineReader(int file, std::wstring name) : file_(file), name_(std::move(name)) {}

LineReader::LineReader(std::string bytes, std::wstring name)
    : file_(-1), name_(std::move(name)), buffer_(std::move(bytes)) {}

std::wstring LineReader::place() const { return format_text(L"%s, line %i", name_, lines_); }

bool LineReader::may_wait() const {
  if (!file_.is_open()) return false;
  const std::optional<disk::Status> status = disk::status_of(file_);
  return !status || status->kind != disk::Kind::RegularFile;
}

bool LineReader::fill() {
  if (!file_.is_open()) return false;
  interrupted_ = !interrupt::wait_for_input(file_.descriptor());
  if (interrupted_) return false;
  buffer_.resize(block);
  at_ = 0;
  const std::ptrdiff_t count = file_.read(buffer_.data(), block);
  if (count < 0) failure_ = reason_of(std::errc{errno});
  buffer_.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return count > 0;
}

LineSource::Read LineReader::next(std::string& line) {
  bool ended_by_line_feed = false;
  while (!ended_by_line_feed) {
    if (at_ == buffer_.size() && !fill()) {
      if (interrupted_) return LineSource::Read::Interrupted;
      if (begun_.empty() && !too_long_) return LineSource::Read::End;
      break;
    }
    const std::size_t line_feed = buffer_.find('\n', at_);
    ended_by_line_feed = line_feed != std::string::npos;
    const std::size_t stop = ended_by_line_feed ? line_feed : buffer_.size();
    if (begun_.size() + (stop - at_) > max_typed_bytes + 1) {  // one more: a CR before the LF
      too_long_ = true;
      begun_.clear();
    }
    if (!too_long_) begun_.append(buffer_, at_, stop - at_);
    at_ = ended_by_line_feed ? stop + 1 : stop;
  }
  ++lines_;
  line = std::exchange(begun_, {});
  if (line.ends_with('\r')) line.pop_back();
  if (std::exchange(first_line_, false) && line.starts_with(byte_order_mark)) {
    line.erase(0, byte_order_mark.size());
  }
  const bool too_long = std::exchange(too_long_, false) || line.size() > max_typed_bytes;
  if (too_long) return LineSource::Read::TooLong;
  return is_text(line) ? LineSource::Read::Line : LineSource::Read::NotUtf8;
}

Result<std::string> read_script(const std::filesystem::path& path) {
  const std::string name = to_utf8(path_text(path));
  if (is_folder(path)) return Failure{name + ": " + reason_of(std::errc::is_a_directory)};
  const disk::OpenFile file(disk::open_to_read(path));
  if (!file.is_open()) return Failure{name + ": " + reason_of(std::errc{errno})};
  std::string bytes;
  for (std::ptrdiff_t got = 1; got > 0;) {
    const std::size_t before = bytes.size();
    bytes.resize(before + block);
    got = file.read(&bytes[before], block);
    if (got < 0) return Failure{name + ": " + reason_of(std::errc{errno})};
    bytes.resize(before + static_cast<std::size_t>(got));
    if (bytes.size() > max_text_file_bytes) {
      return Failure{name + ": the script is longer than " +
                     std::to_string(max_text_file_bytes >> 20) + " MB"};
    }
  }
  if (is_text(bytes)) return bytes;
  return Failure{name + ", line " + std::to_string(first_line_of_no_text(bytes)) +
                 ": this is not valid UTF-8; scripts are UTF-8"};
}

ScriptedLines::Fetched ScriptedLines::fetch() {
  Fetched fetched;
  if (lines_taken_ < lines_.size()) {
    fetched = {Read::Line, std::move(lines_[lines_taken_])};
    fetched.place = format_text(L"-c, line %i", ++lines_taken_);
    if (fetched.line.size() > max_typed_bytes) {
      fetched.read = Read::TooLong;
    } else if (!is_text(fetched.line)) {
      fetched.read = Read::NotUtf8;
    }
    return fetched;
  }
  if (reader_ == nullptr) return fetched;
  do {
    fetched.read = reader_->next(fetched.line);
  } while (fetched.read == Read::Line && fetched.line.starts_with(';'));
  fetched.place = reader_->place();
  return fetched;
}

bool ScriptedLines::at_end() {
  const bool would_wait =
      lines_taken_ == lines_.size() && reader_ != nullptr && reader_->may_wait();
  if (!ahead_ && !would_wait) ahead_ = fetch();
  return ahead_ && ahead_->read == Read::End;
}

LineSource::Read ScriptedLines::next(std::wstring_view prompt, std::wstring& line) {
  const interrupt::AtPrompt at_prompt;
  write_output(prompt);
  flush_output();
  if (interrupt::take() > 0) {
    write_output(L"\n");
    return Read::Interrupted;
  }
  const Fetched fetched = ahead_ ? *std::exchange(ahead_, std::nullopt) : fetch();
  place_ = fetched.place;
  line.clear();
  if (fetched.read == Read::Line) line = from_utf8(fetched.line);
  write_output(line);
  write_output(L"\n");
  return fetched.read;
}

}  // namespace korvel
