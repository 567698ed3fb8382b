// Reading and replacing of whole files.
#include "frame/file_bytes.h"

#include <array>
#include <cerrno>
#include <concepts>
#include <fstream>
#include <random>
#include <utility>

#include "frame/format.h"
#include "frame/utf.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;

using Failure = std::optional<std::wstring>;  // the reason

TextFileError file_error(TextFileErrorKind kind, std::wstring_view failure, const fs::path& path,
                         std::wstring_view reason) {
  return {kind, 0, format_text(L"%s '%s': %s.", failure, path_text(path), reason)};
}

// The system's reason for the failure of the last stream operation.
std::wstring last_reason() { return reason_text({errno, std::generic_category()}); }

TextFileError cannot_write(const fs::path& target, std::wstring_view reason) {
  return file_error(TextFileErrorKind::CannotWrite, L"Cannot write", target, reason);
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
Failure write_bytes(const fs::path& path, const std::vector<std::string_view>& pieces) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  for (const std::string_view piece : pieces)
    file.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  file.close();
  if (!file) return last_reason();
  return std::nullopt;
}

// A file on its way to its place. Whatever it laid beside the target goes when it ends.
class Replacement {
 public:
  explicit Replacement(const FileContent& content)
      : content_(content), file_(behind_links(content.target)) {
    std::error_code code;
    const fs::file_status status = fs::status(file_, code);
    exists_ = fs::exists(status);
    in_place_ = exists_ && !fs::is_regular_file(status);
    permissions_ = status.permissions();
  }
  Replacement(Replacement&& other) noexcept
      : content_(std::move(other.content_)),
        file_(std::move(other.file_)),
        temporary_(std::exchange(other.temporary_, {})),
        backup_(std::exchange(other.backup_, {})),
        exists_(other.exists_),
        in_place_(other.in_place_),
        permissions_(other.permissions_) {}
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  Replacement& operator=(Replacement&&) = delete;
  ~Replacement() {
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
    if (!backup_.empty()) fs::remove(backup_, ignored);
  }

  [[nodiscard]] const fs::path& target() const { return content_.target; }

  Failure prepare() {
    if (in_place_) return std::nullopt;
    return write_bytes(place_to_write(), content_.pieces);
  }

  // Where the bytes go at first.
  [[nodiscard]] const fs::path& place_to_write() {
    if (in_place_) return file_;
    return temporary_ = temporary_beside(file_);
  }

  // Keeps the old file, so that the new one can be taken back.
  Failure keep_old() {
    if (in_place_ || !exists_) return std::nullopt;
    backup_ = temporary_beside(file_);
    std::error_code code;
    fs::create_hard_link(file_, backup_, code);
    if (code) fs::copy_file(file_, backup_, code);
    return code ? Failure(reason_text(code)) : std::nullopt;
  }

  Failure put() {
    if (in_place_) return write_bytes(file_, content_.pieces);
    return put_written();
  }

  // The same when all bytes are where they go at first.
  Failure put_written() {
    if (in_place_) return std::nullopt;
    std::error_code code;
    if (exists_) fs::permissions(temporary_, permissions_, code);
    fs::rename(temporary_, file_, code);
    if (code) return reason_text(code);
    temporary_.clear();
    return std::nullopt;
  }

  void take_back() {
    std::error_code ignored;
    if (in_place_) return;
    if (exists_) {
      fs::rename(backup_, file_, ignored);
    } else {
      fs::remove(file_, ignored);
    }
  }

 private:
  FileContent content_;
  fs::path file_;
  fs::path temporary_;
  fs::path backup_;
  bool exists_ = false;
  bool in_place_ = false;
  fs::perms permissions_{};
};

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

std::optional<TextFileError> save_files(std::span<const FileContent> files) {
  std::vector<Replacement> replacements;
  for (const FileContent& file : files) {
    if (std::optional<TextFileError> error = check_writable(file.target)) return error;
    replacements.emplace_back(file);
  }
  for (std::size_t i = 0; i < replacements.size(); ++i) {
    Failure failure = replacements[i].prepare();
    const bool last = i + 1 == replacements.size();
    if (!failure && !last) failure = replacements[i].keep_old();
    if (failure) return cannot_write(replacements[i].target(), *failure);
  }
  for (std::size_t i = 0; i < replacements.size(); ++i) {
    const Failure failure = replacements[i].put();
    if (!failure) continue;
    for (std::size_t done = i; done-- > 0;)
      replacements[done].take_back();
    return cannot_write(replacements[i].target(), *failure);
  }
  return std::nullopt;
}

struct FileInProgress::State {
  explicit State(const fs::path& target) : replacement({target, {}}) {}

  void note_failure() {
    if (!file && !failure) failure = last_reason();
  }

  Replacement replacement;
  std::optional<TextFileError> error;
  Failure failure;
  std::ofstream file;
};

FileInProgress::FileInProgress(const std::filesystem::path& target)
    : state_(std::make_unique<State>(target)) {
  state_->error = check_writable(target);
  if (state_->error) return;
  errno = 0;
  state_->file.open(state_->replacement.place_to_write(), std::ios::binary);
  state_->note_failure();
}

// The file is closed before what was laid beside the target goes.
FileInProgress::~FileInProgress() = default;

void FileInProgress::write(std::string_view bytes) {
  if (state_->error || state_->failure) return;
  errno = 0;
  state_->file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  state_->note_failure();
}

std::optional<TextFileError> FileInProgress::finish() {
  if (state_->error) return state_->error;
  errno = 0;
  state_->file.close();
  state_->note_failure();
  if (!state_->failure) state_->failure = state_->replacement.put_written();
  if (state_->failure) return cannot_write(state_->replacement.target(), *state_->failure);
  return std::nullopt;
}

std::optional<TextFileError> save_file(const std::filesystem::path& target,
                                       std::string_view bytes) {
  const std::array<FileContent, 1> files{{{target, {bytes}}}};
  return save_files(files);
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
