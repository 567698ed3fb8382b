// Lines typed at a terminal, with editing, completion, and a history kept for the run.
#pragma once

#include <histedit.h>
#include <memory>
#include <string>
#include <vector>

#include "host/console/console.h"

namespace korvel {

// There is one at a time, on standard input and output.
class TerminalLines final : public LineSource {
 public:
  enum class PromptStyle { Bold, Plain };
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

}  // namespace korvel
