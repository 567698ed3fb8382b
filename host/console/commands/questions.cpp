// Reading of answers.
#include "host/console/commands/questions.h"

#include <array>
#include <utility>

#include "frame/case_mapping.h"
#include "frame/file_bytes.h"
#include "frame/format.h"
#include "frame/utf.h"
#include "host/console/paths.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

std::size_t shortest_form(std::wstring_view keyword) {
  std::size_t length = 0;
  while (length < keyword.size() && !(keyword[length] >= L'a' && keyword[length] <= L'z'))
    ++length;
  return length;
}

}  // namespace

std::optional<std::size_t> keyword_of(std::wstring_view answer, Keywords keywords) {
  if (answer.starts_with(L'_')) answer.remove_prefix(1);  // as scripts for any language write it
  for (std::size_t i = 0; i < keywords.size(); ++i) {
    const std::wstring_view keyword = keywords[i];
    if (answer.size() < shortest_form(keyword) || answer.size() > keyword.size()) continue;
    if (equal_ignoring_case(answer, keyword.substr(0, answer.size()))) return i;
  }
  return std::nullopt;
}

std::optional<std::wstring> ask_word(ConsoleHost& host, std::wstring_view prompt) {
  std::optional<std::wstring> line = host.ask_line(prompt);
  if (line) *line = std::wstring(trimmed(*line));
  return line;
}

Answer<std::size_t> ask_option(ConsoleHost& host, std::wstring_view prompt, Keywords keywords) {
  using Kind = Answer<std::size_t>::Kind;
  while (const std::optional<std::wstring> answer = ask_word(host, prompt)) {
    if (answer->empty()) return {Kind::Enter};
    if (const auto keyword = keyword_of(*answer, keywords)) return {Kind::Given, *keyword};
    host.refuse(L"Invalid option keyword.");
  }
  return {Kind::Cancelled};
}

std::optional<bool> ask_yes_or_no(ConsoleHost& host, std::wstring_view prompt) {
  constexpr std::array<std::wstring_view, 2> keywords = {L"Yes", L"No"};
  const Answer<std::size_t> answer = ask_option(host, prompt, keywords);
  if (is_cancelled(answer)) return std::nullopt;
  return is_given(answer) && answer.value == 0;
}

bool ask_yes(ConsoleHost& host, std::wstring_view prompt) {
  return ask_yes_or_no(host, prompt).value_or(false);
}

Answer<PointOrOption> ask_point_or_option(ConsoleHost& host, const PointQuestion& question) {
  using Kind = Answer<PointOrOption>::Kind;
  while (const std::optional<std::wstring> answer = ask_word(host, question.prompt)) {
    if (answer->empty() && question.takes_enter) return {Kind::Enter};
    if (const auto point = point_of(*answer, question.last)) return {Kind::Given, *point};
    if (const auto option = keyword_of(*answer, question.keywords)) return {Kind::Given, *option};
    host.refuse(question.keywords.empty() ? L"Point required."
                                          : L"Point or option keyword required.");
  }
  return {Kind::Cancelled};
}

std::optional<Point3> ask_required_point(ConsoleHost& host, std::wstring_view prompt) {
  const Answer<PointOrOption> answer = ask_point_or_option(host, {prompt, std::nullopt});
  if (!is_given(answer)) return std::nullopt;
  return std::get<Point3>(answer.value);
}

std::filesystem::path drawing_path(std::wstring_view answer) {
  return with_drawing_extension(path_of(unquoted(answer).value_or(std::wstring(answer))));
}

std::filesystem::path with_drawing_extension(std::filesystem::path path) {
  if (path.has_filename() && !path.has_extension() && !is_no_file(path)) path += ".dxf";
  return path;
}

std::optional<EntityList> selected_entities(ConsoleHost& host) {
  EntityList entities = host.pick_first();
  if (!entities.empty()) {
    std::erase_if(entities, [&host](EntityId id) { return !host.drawing().exists(id); });
    host.set_pick_first({});
    host.print(counted(entities.size(), L"found\n", L"found\n"));
  } else {
    std::optional<EntityList> asked = host.ask_selection_with(L"Select objects: ");
    if (!asked) return std::nullopt;
    entities = std::move(*asked);
  }
  if (!entities.empty()) host.set_previous_selection(entities);
  return entities;
}

bool cancelled(ConsoleHost& host) {
  if (!host.interrupted()) return false;
  host.print(cancel_line);
  return true;
}

std::wstring on_one_line(std::wstring_view text) {
  std::wstring line;
  for (const wchar_t c : text) {
    if (c == L'\n') {
      line += L"\\n";
    } else if (c == L'\r') {
      line += L"\\r";
    } else if (c == L'\t') {
      line += L"\\t";
    } else {
      line += c;
    }
  }
  return line;
}

std::wstring counted(std::size_t count, std::wstring_view one, std::wstring_view many) {
  return format_text(L"%i %s", count, count == 1 ? one : many);
}

}  // namespace korvel
