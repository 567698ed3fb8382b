// Lines that nobody types: of the command line, of a script, of a pipe.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/console/console.h"
#include "host/standalone/disk.h"
#include "host/standalone/result.h"

namespace korvel {

// Cuts what a file holds into lines, LF or CR LF, without holding more of it than a line.
class LineReader {
 public:
  // Takes over the open file.
  explicit LineReader(int file);

  // Interrupted: the line begun so far is kept for the next call.
  LineSource::Read next(std::string& line);

  // Looking at the next line does not wait for anybody.
  [[nodiscard]] bool is_regular_file() const;
  // Why reading stopped before the end.
  [[nodiscard]] const std::optional<std::string>& failure() const { return failure_; }

 private:
  // False: nothing more, or Ctrl+C.
  bool fill();

  disk::OpenFile file_;
  std::string buffer_;
  std::size_t at_ = 0;
  std::string begun_;
  bool too_long_ = false;
  bool first_line_ = true;
  bool interrupted_ = false;
  std::optional<std::string> failure_;
};

// Opens a file for a LineReader. The failure names it.
[[nodiscard]] Result<int> open_for_reading(const std::filesystem::path& path);

// First the given lines, then those of the reader, if there is one.
class ScriptedLines final : public LineSource {
 public:
  // In a script a line that begins with a semicolon is a comment, which nobody sees.
  enum class Comments { Skip, AreLines };

  ScriptedLines(const std::vector<std::string>& lines, LineReader* reader, Comments comments)
      : lines_(lines.begin(), lines.end()), reader_(reader), comments_(comments) {}

  Read next(std::wstring_view prompt, std::wstring& line) override;
  [[nodiscard]] bool is_terminal() const override { return false; }
  [[nodiscard]] bool at_end() override;

 private:
  struct Fetched {
    Read read = Read::End;
    std::string line;
  };
  Fetched fetch();

  std::deque<std::string> lines_;
  LineReader* reader_;
  Comments comments_;
  std::optional<Fetched> ahead_;
};

}  // namespace korvel
