#include "frame/tab_separated.h"

#include <algorithm>

#include "frame/trim.h"

namespace korvel {

std::wstring_view without_comment(std::wstring_view line, wchar_t comment_mark) {
  const std::wstring_view said = line.substr(0, std::min(line.find(comment_mark), line.size()));
  return said.substr(0, said.find_last_not_of(L" \t\r\n") + 1);  // npos + 1 is 0
}

std::vector<std::wstring_view> fields_of(std::wstring_view line, wchar_t comment_mark,
                                         std::wstring_view trimmed) {
  std::vector<std::wstring_view> fields;
  std::wstring_view rest = without_comment(line, comment_mark);
  while (true) {
    rest.remove_prefix(std::min(rest.find_first_not_of(L'\t'), rest.size()));
    if (rest.empty()) return fields;
    const std::size_t end = std::min(rest.find(L'\t'), rest.size());
    fields.push_back(without_ends(rest.substr(0, end), trimmed));
    rest.remove_prefix(end);
  }
}

}  // namespace korvel
