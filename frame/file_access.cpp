#include "frame/file_access.h"

#include "frame/file_bytes.h"
#include "frame/format.h"

namespace korvel {

std::wstring sentence_of(const FailedFile& file) {
  const std::wstring_view failure =
      file.direction == FileDirection::Read ? L"Cannot read" : L"Cannot write";
  return format_text(L"%s '%s': %s.", failure, path_text(file.path), file.reason);
}

}  // namespace korvel
