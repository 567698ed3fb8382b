#include "host/console/scripted_lines.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/console/interrupt.h"
#include "host/console/output.h"
#include "host/console/paths.h"

namespace korvel {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

std::string reason_of(std::errc error) { return std::make_error_code(error).message(); }

}  // namespace

LineReader::LineReader(int file) : file_(file) {}

bool LineReader::is_regular_file() const {
  const std::optional<disk::Status> status = disk::status_of(file_);
  return status && status->kind == disk::Kind::RegularFile;
}

bool LineReader::fill() {
  constexpr std::size_t block = 65536;
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
  line = std::exchange(begun_, {});
  if (line.ends_with('\r')) line.pop_back();
  if (std::exchange(first_line_, false) && line.starts_with(byte_order_mark)) {
    line.erase(0, byte_order_mark.size());
  }
  const bool too_long = std::exchange(too_long_, false) || line.size() > max_typed_bytes;
  return too_long ? LineSource::Read::TooLong : LineSource::Read::Line;
}

Result<int> open_for_reading(const std::filesystem::path& path) {
  const std::string name = to_utf8(path_text(path));
  if (is_folder(path)) return Failure{name + ": " + reason_of(std::errc::is_a_directory)};
  const int file = disk::open_to_read(path);
  if (file < 0) return Failure{name + ": " + reason_of(std::errc{errno})};
  return file;
}

ScriptedLines::Fetched ScriptedLines::fetch() {
  Fetched fetched;
  if (!lines_.empty()) {
    fetched = {Read::Line, std::move(lines_.front())};
    lines_.pop_front();
    if (fetched.line.size() > max_typed_bytes) fetched.read = Read::TooLong;
    return fetched;
  }
  if (reader_ == nullptr) return fetched;
  do {
    fetched.read = reader_->next(fetched.line);
  } while (fetched.read == Read::Line && comments_ == Comments::Skip &&
           fetched.line.starts_with(';'));
  return fetched;
}

bool ScriptedLines::at_end() {
  const bool would_wait = lines_.empty() && reader_ != nullptr && !reader_->is_regular_file();
  if (!ahead_ && !would_wait) ahead_ = fetch();
  return ahead_ && ahead_->read == Read::End;
}

LineSource::Read ScriptedLines::next(std::wstring_view prompt, std::wstring& line) {
  const interrupt::AtPrompt at_prompt;
  write_output(prompt);
  flush_output();
  if (interrupt::take()) {
    write_output(L"\n");
    return Read::Interrupted;
  }
  const Fetched fetched = ahead_ ? *std::exchange(ahead_, std::nullopt) : fetch();
  line.clear();
  if (fetched.read == Read::Line) line = from_utf8(fetched.line);
  write_output(line);
  write_output(L"\n");
  return fetched.read;
}

}  // namespace korvel
