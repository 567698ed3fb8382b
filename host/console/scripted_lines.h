// Lines that nobody types: of the command line, of a script, of a pipe.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/console/console.h"
#include "host/files/disk.h"
#include "host/standalone/result.h"

namespace korvel {

// Cuts bytes into lines, LF or CR LF; of a file it holds no more than a line.
class LineReader {
 public:
  // Takes over the open file.
  LineReader(int file, std::wstring name);
  LineReader(std::string bytes, std::wstring name);

  // Interrupted: the line begun so far is kept for the next call.
  LineSource::Read next(std::string& line);

  // Of the line that came last: "roads.scr, line 12".
  [[nodiscard]] std::wstring place() const;
  // Looking at the next line may wait for somebody.
  [[nodiscard]] bool may_wait() const;
  // Why reading stopped before the end.
  [[nodiscard]] const std::optional<std::string>& failure() const { return failure_; }

 private:
  // False: nothing more, or Ctrl+C.
  bool fill();

  disk::OpenFile file_;
  std::wstring name_;
  std::size_t lines_ = 0;
  std::string buffer_;
  std::size_t at_ = 0;
  std::string begun_;
  bool too_long_ = false;
  bool first_line_ = true;
  bool interrupted_ = false;
  std::optional<std::string> failure_;
};

// The whole of a script, which is UTF-8 and at most 128 MB long. A pipe is read to its end. The
// failure names the file and, where it is one of a line, the line.
[[nodiscard]] Result<std::string> read_script(const std::filesystem::path& path);

// First the given lines, which are those of -c, then those of the reader, if there is one. There a
// line that begins with a semicolon is a comment and is not shown.
class ScriptedLines final : public LineSource {
 public:
  ScriptedLines(std::vector<std::string> lines, LineReader* reader)
      : lines_(std::move(lines)), reader_(reader) {}

  Read next(std::wstring_view prompt, std::wstring& line) override;
  [[nodiscard]] std::wstring place() const override { return place_; }
  [[nodiscard]] bool is_terminal() const override { return false; }
  [[nodiscard]] bool at_end() override;

 private:
  struct Fetched {
    Read read = Read::End;
    std::string line;
    std::wstring place = {};
  };
  Fetched fetch();

  std::vector<std::string> lines_;
  std::size_t lines_taken_ = 0;
  LineReader* reader_;
  std::optional<Fetched> ahead_;
  std::wstring place_;
};

}  // namespace korvel
