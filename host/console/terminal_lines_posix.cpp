#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <histedit.h>
#include <langinfo.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "frame/case_mapping.h"
#include "frame/utf.h"
#include "host/console/interrupt.h"
#include "host/console/output.h"
#include "host/console/terminal_lines.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

constexpr int history_length = 500;

// Marks the escape sequences in a prompt: they take no room on the screen.
constexpr char escape_mark = '\1';

// The line editor writes what is typed in the locale's encoding, and the console speaks UTF-8.
void use_utf8() {
  (void)std::setlocale(LC_CTYPE, "");
  if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") (void)std::setlocale(LC_CTYPE, "C.UTF-8");
}

std::size_t bytes_led_by(unsigned char lead) {
  return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
}

// The line editor loses an escape sequence that nothing follows, so the last letter stays plain; in
// nearly every prompt it is a blank.
void make_bold(std::string& prompt) {
  const bool ends_in_ascii = !prompt.empty() && static_cast<unsigned char>(prompt.back()) < 0x80;
  if (!ends_in_ascii) return;
  const std::string mark(1, escape_mark);
  prompt.insert(prompt.size() - 1, mark + "\033[0m" + mark);
  prompt.insert(0, mark + "\033[1m" + mark);
}

// What all the words begin with.
std::string common_beginning(const std::vector<std::string>& words) {
  std::string common = words.front();
  for (const std::string& word : words) {
    const auto [end, other] = std::ranges::mismatch(common, word);
    common.erase(end, common.end());
  }
  return common;
}

class TerminalLines final : public LineSource {
 public:
  explicit TerminalLines(PromptStyle style);

  Read next(std::wstring_view prompt, std::wstring& line) override;
  [[nodiscard]] bool is_terminal() const override { return true; }
  void set_words(const std::vector<std::wstring>& words) override;

 private:
  static TerminalLines& of(EditLine* editor);
  static int read_character(EditLine* editor, wchar_t* character);
  static unsigned char complete(EditLine* editor, int key);

  struct EditorEnd {
    void operator()(EditLine* editor) const { el_end(editor); }
  };
  struct HistoryEnd {
    void operator()(History* history) const { history_end(history); }
  };

  PromptStyle style_;
  std::unique_ptr<History, HistoryEnd> history_;
  std::unique_ptr<EditLine, EditorEnd> editor_;
  std::vector<std::string> words_;  // upper case
  std::string prompt_;
  bool at_command_ = false;
  bool interrupted_ = false;
};

TerminalLines::TerminalLines(PromptStyle style) : style_(style) {
  use_utf8();
  history_.reset(history_init());
  editor_.reset(el_init("korvel", stdin, stdout, stderr));
  HistEvent event;
  history(history_.get(), &event, H_SETSIZE, history_length);
  history(history_.get(), &event, H_SETUNIQUE, 1);

  EditLine* const editor = editor_.get();
  el_set(editor, EL_CLIENTDATA, this);
  el_set(editor, EL_SIGNAL, 0);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_HIST, history, history_.get());
  el_set(editor, EL_GETCFN, &TerminalLines::read_character);
  el_set(editor, EL_ADDFN, "korvel-complete", "Completes a command name", &TerminalLines::complete);
  el_set(editor, EL_BIND, "^I", "korvel-complete", nullptr);
  char* (*const prompt)(EditLine*) = [](EditLine* e) { return of(e).prompt_.data(); };
  el_set(editor, EL_PROMPT_ESC, prompt, escape_mark);
}

TerminalLines& TerminalLines::of(EditLine* editor) {
  TerminalLines* lines = nullptr;
  el_get(editor, EL_CLIENTDATA, &lines);
  return *lines;
}

void TerminalLines::set_words(const std::vector<std::wstring>& words) {
  words_.clear();
  for (const std::wstring& word : words)
    words_.push_back(to_utf8(word));
  std::ranges::sort(words_);
}

int TerminalLines::read_character(EditLine* editor, wchar_t* character) {
  std::array<char, 4> bytes{};
  std::size_t count = 0;
  do {
    if (!interrupt::wait_for_input(STDIN_FILENO)) {
      of(editor).interrupted_ = true;
      errno = EINTR;
      return -1;
    }
    const ssize_t got = read(STDIN_FILENO, &bytes[count], 1);
    if (got <= 0) return static_cast<int>(got);
    ++count;
  } while (count < bytes_led_by(static_cast<unsigned char>(bytes[0])));
  *character = from_utf8({bytes.data(), count}).front();
  return 1;
}

unsigned char TerminalLines::complete(EditLine* editor, int) {
  const TerminalLines& lines = of(editor);
  const LineInfo* info = el_line(editor);
  if (!lines.at_command_ || info->cursor != info->lastchar) return CC_ERROR;
  const std::string typed(info->buffer, info->cursor);
  std::vector<std::string> fitting;
  std::ranges::copy_if(lines.words_, std::back_inserter(fitting), [&](const std::string& word) {
    return begins_with(from_utf8(word), from_utf8(typed));
  });
  if (fitting.empty()) return CC_ERROR;

  const std::string common = common_beginning(fitting);
  if (common.size() > typed.size()) {
    el_deletestr(editor, static_cast<int>(typed.size()));
    return el_insertstr(editor, common.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  }
  if (fitting.size() == 1) return CC_NORM;
  std::wstring list = L"\n";
  for (const std::string& word : fitting)
    list += from_utf8(word) + L'\n';
  write_output(list);
  flush_output();
  return CC_REDISPLAY;
}

TerminalLines::Read TerminalLines::next(std::wstring_view prompt, std::wstring& line) {
  const interrupt::AtPrompt at_prompt;
  prompt_ = to_utf8(visible(prompt));
  if (style_ == PromptStyle::Bold) make_bold(prompt_);
  at_command_ = prompt == command_prompt;
  interrupted_ = false;
  flush_output();
  el_resize(editor_.get());
  int count = 0;
  const char* const typed = el_gets(editor_.get(), &count);
  if (typed == nullptr || count <= 0) {
    write_output(L"\n");
    if (interrupted_) el_reset(editor_.get());
    return interrupted_ ? Read::Interrupted : Read::End;
  }
  std::string_view bytes(typed, static_cast<std::size_t>(count));
  while (bytes.ends_with('\n') || bytes.ends_with('\r'))
    bytes.remove_suffix(1);
  if (bytes.size() > max_typed_bytes) return Read::TooLong;
  line = from_utf8(bytes);
  HistEvent event;
  if (!line.empty()) history(history_.get(), &event, H_ENTER, std::string(bytes).c_str());
  return Read::Line;
}

}  // namespace

std::unique_ptr<LineSource> make_terminal_lines(PromptStyle style) {
  return std::make_unique<TerminalLines>(style);
}

}  // namespace korvel
