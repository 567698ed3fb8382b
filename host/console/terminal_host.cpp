#include "host/console/terminal_host.h"

#include <algorithm>
#include <utility>

#include "frame/case_mapping.h"
#include "frame/dialog.h"
#include "frame/message.h"
#include "frame/palette.h"
#include "frame/plugin.h"
#include "frame/text_file.h"
#include "frame/utf.h"
#include "host/console/commands/file_commands.h"
#include "host/console/commands/questions.h"
#include "host/console/form.h"
#include "host/console/interrupt.h"
#include "host/console/output.h"
#include "host/console/paths.h"
#include "host/console/pick.h"
#include "host/console/selection_prompt.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

constexpr std::size_t longest_string = 132;

// "Text files (*.txt), All files (*.*)": the labels of a chooser's filter.
std::wstring filter_labels(std::wstring_view filter) {
  std::wstring labels;
  while (!filter.empty() && !filter.starts_with(L'|')) {
    const std::wstring_view label = filter.substr(0, filter.find(L'|'));
    if (!labels.empty()) labels += L", ";
    labels += label;
    const std::size_t next = filter.find(L'|', std::min(label.size() + 1, filter.size()));
    filter = next == std::wstring_view::npos ? std::wstring_view{} : filter.substr(next + 1);
  }
  return labels;
}

// A folder or a device that was named by mistake or on purpose must not become another file.
bool can_take_extension(const std::filesystem::path& path) {
  const std::filesystem::path name = path.filename();
  std::error_code ignored;
  return !name.empty() && name != "." && name != ".." && !name.has_extension() &&
         !std::filesystem::is_character_file(path, ignored);
}

std::filesystem::path with_extension(std::filesystem::path path, std::wstring_view extension) {
  if (!extension.empty() && can_take_extension(path)) {
    path += '.';
    path += path_of(extension);
  }
  return path;
}

// "roads.scr, line 12: text"; either may be empty.
std::wstring at_place(std::wstring place, std::wstring_view text) {
  if (!place.empty() && !text.empty()) place += L": ";
  return place.append(text);
}

}  // namespace

TerminalHost::TerminalHost(std::unique_ptr<Drawing> drawing, LineSource& lines, Manner manner)
    : ConsoleHost(std::move(drawing)),
      lines_(lines),
      manner_(manner),
      progress_(manner.show_progress) {}

// --- Lines ------------------------------------------------------------------------------------

void TerminalHost::start_line() {
  if (!at_line_start_) print(L"\n");
}

std::optional<std::wstring> TerminalHost::read_line(std::wstring_view prompt) {
  // The line editor redraws the last line alone, so what stands before it is printed here.
  const std::size_t last_line = prompt.rfind(L'\n') + 1;
  std::wstring line;
  if (std::exchange(interrupt_seen_, false)) count_interrupts(interrupt::take());
  while (ending_ == Ending::None) {
    print(prompt.substr(0, last_line));
    const LineSource::Read read = lines_.next(prompt.substr(last_line), line);
    at_line_start_ = true;
    if (read == LineSource::Read::Interrupted) {
      count_interrupts(1);
      return std::nullopt;
    }
    interrupts_ = 0;
    last_line_ = line;
    if (read == LineSource::Read::Line) return line;
    if (read == LineSource::Read::End) {
      ending_ = Ending::InputEnded;
    } else if (read == LineSource::Read::TooLong) {
      refuse(L"The line is longer than " + std::to_wstring(max_typed_bytes) +
             L" bytes and is left out.");
    } else {
      refuse(L"The line is not valid UTF-8 and is left out.");
    }
  }
  return std::nullopt;
}

bool TerminalHost::stays() {
  const bool ended = ending_ == Ending::InputEnded || ending_ == Ending::InputEndedInPrompt;
  const bool loses_changes = !manner_.saves_at_end && drawing().changed();
  if (!ended || !lines_.is_terminal() || !loses_changes) return false;
  ending_ = Ending::None;
  if (may_leave_drawing(*this)) quit(Changes::Discarded);
  return ending_ == Ending::None;
}

void TerminalHost::count_interrupts(int presses) {
  interrupts_ += presses;
  if (ending_ == Ending::None && !lines_.is_terminal()) ending_ = Ending::Interrupted;
}

void TerminalHost::leave_if_wanted() {
  interrupts_ = 0;
  if (may_leave_drawing(*this)) ending_ = Ending::Interrupted;
}

std::optional<std::wstring> TerminalHost::next_command() {
  start_line();
  if (!lines_.is_terminal() && interrupted()) count_interrupts(interrupt::take());
  while (ending_ == Ending::None || stays()) {
    if (interrupts_ > 1) {
      leave_if_wanted();
      continue;
    }
    if (std::optional<std::wstring> sent = take_sent()) return sent;
    if (lines_.at_end()) {
      ending_ = Ending::InputEnded;
    } else if (std::optional<std::wstring> line = read_line(command_prompt)) {
      return line;
    }
  }
  return std::nullopt;
}

std::optional<std::wstring> TerminalHost::answer(std::wstring_view prompt,
                                                 std::wstring_view place) {
  const bool asked = ending_ == Ending::None;
  if (asked) start_line();
  std::optional<std::wstring> given = std::exchange(given_answer_, std::nullopt);
  if (!given) given = take_sent();
  if (given) {
    print(std::wstring(prompt) + *given + L'\n');
    return given;
  }
  std::optional<std::wstring> line = read_line(prompt);
  if (asked && ending_ == Ending::InputEnded) {
    ending_ = Ending::InputEndedInPrompt;
    complain("the input ended " + to_utf8(place));
  }
  if (line && trimmed(*line) == L"ESC") line.reset();
  if (!line) escaped_ = true;
  return line;
}

std::optional<std::wstring> TerminalHost::ask_line(std::wstring_view prompt) {
  return answer(prompt, L"at the prompt \"" + std::wstring(trimmed(prompt)) + L'"');
}

void TerminalHost::print(std::wstring_view text) {
  if (text.empty()) return;
  write_output(text);
  at_line_start_ = text.ends_with(L'\n');
}

void TerminalHost::refuse(std::wstring_view sentence) {
  start_line();
  print(std::wstring(sentence) + L'\n');
  stop_if_strict();
}

void TerminalHost::print_error(std::wstring_view message) {
  print(message);
  stop_if_strict();
}

void TerminalHost::note_refused_input(std::wstring_view reason) {
  complain(to_utf8(at_place(lines_.place(), reason)));
  stop_if_strict();
}

void TerminalHost::stop_if_strict() {
  if (!manner_.strict || ending_ != Ending::None) return;
  ending_ = Ending::Refused;
  complain("stopped at " + to_utf8(at_place(lines_.place(), last_line_)));
}

void TerminalHost::quit(Changes changes) {
  if (ending_ != Ending::None) return;
  ending_ = changes == Changes::Discarded ? Ending::QuitDiscarding : Ending::Quit;
}

void TerminalHost::refuse_file(Fault fault, std::wstring_view sentence) {
  worst_fault_ = std::max(worst_fault_, fault);
  refuse(sentence);
}

void TerminalHost::report_failed_file(const FailedFile& failed) {
  const bool read = failed.direction == FileDirection::Read;
  worst_fault_ = std::max(worst_fault_, read ? Fault::NotRead : Fault::NotWritten);
  if (!failed.announced) {
    const std::wstring_view failure = read ? L"cannot be read" : L"cannot be written";
    const std::wstring text =
        format_text(L"%s: %s: %s", path_text(failed.path), failure, failed.reason);
    complain(to_utf8(at_place(lines_.place(), text)));
  }
  stop_if_strict();
}

ConsoleHost::ChangedFile TerminalHost::changed_file() const {
  if (manner_.overwrite) return ChangedFile::Replace;
  return lines_.is_terminal() ? ChangedFile::Ask : ChangedFile::Keep;
}

bool TerminalHost::ask_yes_at_end(std::wstring_view prompt) {
  const Ending ended = std::exchange(ending_, Ending::None);
  const bool yes = ask_yes(*this, prompt);
  ending_ = ended;
  return yes;
}

// --- Prompts ----------------------------------------------------------------------------------

std::optional<std::wstring> TerminalHost::ask_string(std::wstring_view prompt) {
  std::optional<std::wstring> line = ask_line(prompt);
  if (line && line->size() > longest_string) line->resize(longest_string);
  return line;
}

Answer<std::int32_t> TerminalHost::ask_integer(std::wstring_view prompt) {
  while (const std::optional<std::wstring> line = ask_line(prompt)) {
    const std::wstring_view typed = trimmed(*line);
    if (typed.empty()) return {Answer<std::int32_t>::Kind::Enter};
    if (const auto number = integer_of(typed)) {
      return {Answer<std::int32_t>::Kind::Given, *number};
    }
    refuse(L"Requires an integer value.");
  }
  return {};
}

Answer<Point3> TerminalHost::ask_point(std::wstring_view prompt) {
  while (const std::optional<std::wstring> line = ask_line(prompt)) {
    const std::wstring_view typed = trimmed(*line);
    if (typed.empty()) return {Answer<Point3>::Kind::Enter};
    if (const auto point = point_of(typed)) return {Answer<Point3>::Kind::Given, *point};
    refuse(L"Invalid point: x,y or x,y,z is required.");
  }
  return {};
}

std::optional<EntityId> TerminalHost::ask_entity(std::wstring_view prompt) {
  const std::optional<PickedEntity> picked = ask_picked_entity(*this, prompt);
  return picked ? std::optional(picked->entity) : std::nullopt;
}

std::optional<EntityList> TerminalHost::ask_selection() {
  return ask_selection_with(text(Message::SelectObjectsPrompt));
}

std::optional<EntityList> TerminalHost::ask_selection_with(std::wstring_view prompt) {
  return SelectionPrompt(*this).ask(prompt);
}

// --- Dialogs ----------------------------------------------------------------------------------

bool TerminalHost::show(Dialog& dialog) {
  const bool accepted = converse(dialog, L"dialog> ");
  if (!accepted) dialog.cancel();
  return accepted;
}

bool TerminalHost::converse(Dialog& dialog, std::wstring_view prompt) {
  start_line();
  print(form_text(dialog));
  const std::wstring place = L"in the dialog \"" + dialog.title() + L'"';
  while (const std::optional<std::wstring> line = answer(prompt, place)) {
    const FormReply reply = apply_line(dialog, *line);
    if (reply.kind == FormReply::Kind::Accepted) return true;
    if (reply.kind == FormReply::Kind::Cancelled) return false;
    if (reply.kind == FormReply::Kind::Refused) {
      refuse(reply.text);
    } else {
      print(reply.text);
    }
    if (!sent_.empty()) return false;
  }
  return false;
}

// The palette's form holds the conversation: a console shows one thing at a time.
class ConsolePaletteSet final : public PaletteSet {
 public:
  ConsolePaletteSet(TerminalHost& host, Palette& content) : host_(host), content_(content) {}

  void show(Session& session) override {
    const Palette::Turn turn(content_, session);
    content_.shown();
    host_.converse_with(content_);
  }

 private:
  TerminalHost& host_;
  Palette& content_;
};

void TerminalHost::converse_with(Palette& palette) { converse(palette, L"palette> "); }

std::unique_ptr<PaletteSet> TerminalHost::make_palette_set(const PaletteSetTraits& /*traits*/,
                                                           Palette& content) {
  return std::make_unique<ConsolePaletteSet>(*this, content);
}

bool TerminalHost::ask_yes_no(std::wstring_view caption, std::wstring_view question, BoxIcon) {
  question = question.substr(0, question.find_last_not_of(L'\n') + 1);
  const std::wstring prompt = std::wstring(caption) + L": " + std::wstring(question) + L" [Y/N]: ";
  start_line();
  while (const std::optional<std::wstring> line = ask_line(prompt)) {
    const std::wstring word = lower(trimmed(*line));
    if (word == L"y" || word == L"yes") return true;
    if (word == L"n" || word == L"no") return false;
    refuse(L"Y or N is required.");
  }
  return false;
}

void TerminalHost::show_text(std::wstring_view title, std::wstring_view body, int, int) {
  start_line();
  print(std::wstring(title) + L'\n');
  print(body);
  start_line();
}

// A path as typed, in quotes or not; none: cancelled.
std::optional<std::wstring> TerminalHost::ask_file_name(const FileQuestion& question,
                                                        std::wstring_view prompt) {
  start_line();
  print(filter_labels(question.filter));
  start_line();
  const std::optional<std::wstring> line = ask_line(prompt);
  if (!line) return std::nullopt;
  const std::wstring_view typed = trimmed(*line);
  if (typed.empty()) return std::nullopt;
  return unquoted(typed).value_or(std::wstring(typed));
}

std::optional<std::filesystem::path> TerminalHost::choose_file_to_open(
    const FileQuestion& question) {
  const auto typed = ask_file_name(question, L"File to open: ");
  if (!typed) return std::nullopt;
  std::filesystem::path path = path_of(*typed);
  return is_there(path) ? path : with_extension(std::move(path), question.default_extension);
}

std::optional<std::filesystem::path> TerminalHost::choose_file_to_save(
    const FileQuestion& question) {
  while (const auto typed = ask_file_name(question, L"File to save: ")) {
    std::filesystem::path path = with_extension(path_of(*typed), question.default_extension);
    const bool asks = question.confirm_overwrite && is_there(path);
    if (!asks ||
        ask_yes_no(text(Message::WarningTitle),
                   format<Message::FileExistsOverwrite>(path_text(path)), BoxIcon::Exclamation)) {
      return path;
    }
  }
  return std::nullopt;
}

// --- Progress, document -----------------------------------------------------------------------

void TerminalHost::start_progress(std::wstring_view label, std::int64_t range) {
  progress_.start(label, range);
}

void TerminalHost::move_progress(std::int64_t position) { progress_.move(position); }

void TerminalHost::end_progress() { progress_.end(); }

// The key stays pressed until the next prompt, so that pressing it again and again leaves.
bool TerminalHost::interrupted() {
  interrupt_seen_ = interrupt_seen_ || interrupt::is_pressed();
  return interrupt_seen_;
}

void TerminalHost::lock() {
  ++locks_;
  StandaloneHost::lock();
}

void TerminalHost::unlock() {
  --locks_;
  StandaloneHost::unlock();
}

// --- Commands ---------------------------------------------------------------------------------

bool TerminalHost::run_guarded(std::wstring_view name, const std::function<void()>& action) {
  const int locks_before = locks_;
  const std::optional<std::wstring> failure = run_or_explain(name, action);
  if (failure) {
    worst_fault_ = std::max(worst_fault_, Fault::NotFinished);
    refuse(*failure);
  }
  end_progress();
  while (locks_ > locks_before)
    unlock();
  return !failure;
}

bool TerminalHost::run_host_command(const HostCommand& command) {
  const bool escaped_before = std::exchange(escaped_, false);
  const bool finished = run_guarded(command.name, [&] { command.run(*this); });
  const bool cancelled = std::exchange(escaped_, escaped_before) || interrupt_seen_;
  const CommandEnd end = cancelled ? CommandEnd::Cancelled : CommandEnd::Ended;
  tell_reactors(command.name, finished ? end : CommandEnd::Failed);
  return finished;
}

bool TerminalHost::run_command(std::wstring_view name, EntityId entity) {
  const HostCommand* const command = find_host_command(command_name(name));
  const std::wstring handle = handle_of(entity);
  if (command == nullptr || handle.empty()) return false;
  set_pick_first({});
  given_answer_ = L"HANDLE " + handle;
  const bool finished = run_host_command(*command);
  given_answer_.reset();
  return finished;
}

void TerminalHost::send(std::wstring_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(L" \n"), text.size());
    sent_.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::optional<std::wstring> TerminalHost::take_sent() {
  if (sent_.empty()) return std::nullopt;
  std::wstring line = std::move(sent_.front());
  sent_.pop_front();
  return line;
}

}  // namespace korvel
