// The questions that host commands ask, in the manner of a CAD command line: a wrong answer gets
// one line and the question again, Esc (or the end of input) cancels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "frame/drawing_host.h"
#include "frame/od_value.h"
#include "host/console/console.h"

namespace korvel {

// Option keywords, such as "LOck": the capitals (and signs) at the beginning are the shortest form.
using Keywords = std::span<const std::wstring_view>;

// Index of the keyword that the answer is a form of, in either case; none if it is of none.
[[nodiscard]] std::optional<std::size_t> keyword_of(std::wstring_view answer, Keywords keywords);

// A line without blanks at its ends; Enter is an empty one. None: cancelled.
[[nodiscard]] std::optional<std::wstring> ask_word(ConsoleHost& host, std::wstring_view prompt);

// An option; the value is its index.
[[nodiscard]] Answer<std::size_t> ask_option(ConsoleHost& host, std::wstring_view prompt,
                                             Keywords keywords);

template <class Value>
[[nodiscard]] bool is_given(const Answer<Value>& answer) {
  return answer.kind == Answer<Value>::Kind::Given;
}
template <class Value>
[[nodiscard]] bool is_cancelled(const Answer<Value>& answer) {
  return answer.kind == Answer<Value>::Kind::Cancelled;
}

// Yes or No, where Enter is No. None: cancelled.
[[nodiscard]] std::optional<bool> ask_yes_or_no(ConsoleHost& host, std::wstring_view prompt);

// The same where Esc is No too.
[[nodiscard]] bool ask_yes(ConsoleHost& host, std::wstring_view prompt);

// A point or one of the options.
using PointOrOption = std::variant<Point3, std::size_t>;

struct PointQuestion {
  std::wstring_view prompt;
  std::optional<Point3> last;  // what "@" is relative to
  Keywords keywords{};
  bool takes_enter = false;  // otherwise Enter is a wrong answer
};

[[nodiscard]] Answer<PointOrOption> ask_point_or_option(ConsoleHost& host,
                                                        const PointQuestion& question);

// A point that must be given; none: cancelled.
[[nodiscard]] std::optional<Point3> ask_required_point(ConsoleHost& host, std::wstring_view prompt);

// A path as typed, quotes around it taken off; with `.dxf` behind a name without extension.
[[nodiscard]] std::filesystem::path drawing_path(std::wstring_view answer);
// What is there and is a folder or a device keeps its name.
[[nodiscard]] std::filesystem::path with_drawing_extension(std::filesystem::path path);

// The entities a command of the host works on: the pick-first set, which it uses up, else those
// selected at the prompt, which become the previous selection. Erased ones are left out. None:
// cancelled.
[[nodiscard]] std::optional<EntityList> selected_entities(ConsoleHost& host);

// The last word of a command that Ctrl+C ended.
inline constexpr std::wstring_view cancel_line = L"*Cancel*\n";

// Whether the user pressed Ctrl+C, after saying that the command ends for it. Commands that go
// through many entities ask at each.
[[nodiscard]] bool cancelled(ConsoleHost& host);

// Line breaks and tabs show as \n, \r and \t.
[[nodiscard]] std::wstring on_one_line(std::wstring_view text);

// "1 layer", "3 layers".
[[nodiscard]] std::wstring counted(std::size_t count, std::wstring_view one,
                                   std::wstring_view many);

}  // namespace korvel
