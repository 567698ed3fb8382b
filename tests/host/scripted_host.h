// The stand-alone host with a script in the place of the person.
#pragma once

#include <deque>
#include <functional>
#include <gtest/gtest.h>

#include "frame/palette.h"
#include "frame/utf.h"
#include "host/standalone/standalone_host.h"

namespace korvel::test {

// Every question takes the next answer of its kind. A question without an answer fails the test
// (and is answered by Esc), so does an answer that was never asked for.
class ScriptedHost : public StandaloneHost {
 public:
  using StandaloneHost::StandaloneHost;
  ~ScriptedHost() override {
    EXPECT_TRUE(selections.empty() && strings.empty() && integers.empty() && points.empty() &&
                picks.empty() && dialogs.empty() && palettes.empty() && boxes.empty() &&
                files.empty() && commands.empty())
        << "answers are left over";
    EXPECT_EQ(locks, 0) << "the document was left locked";
    EXPECT_FALSE(progress_runs) << "the progress meter was left running";
  }

  std::deque<std::optional<EntityList>> selections;
  std::deque<std::optional<std::wstring>> strings;
  std::deque<Answer<std::int32_t>> integers;
  std::deque<Answer<Point3>> points;
  std::deque<std::optional<EntityId>> picks;
  std::deque<std::function<bool(Dialog&)>> dialogs;    // changes controls, presses a button
  std::deque<std::function<void(Palette&)>> palettes;  // what the user does in a turn
  std::deque<bool> boxes;
  std::deque<std::optional<std::filesystem::path>> files;
  using StandaloneHost::CommandEnd;
  std::deque<std::function<CommandEnd(EntityId)>> commands;  // what a command of the host does

  std::wstring printed;
  std::vector<std::wstring> asked;  // prompts, box texts and file filters, in order
  std::vector<std::wstring> text_windows;
  std::vector<std::wstring> palette_sets;  // name, tool and size of those made
  std::vector<std::wstring> sent;          // to the command line, and L"<cancel>"
  std::vector<std::int64_t> progress;      // range, then positions, of the last meter
  bool progress_runs = false;
  int locks = 0;

  [[nodiscard]] std::optional<EntityList> ask_selection() override {
    return take(selections, L"Select objects: ");
  }
  void print(std::wstring_view text) override { printed += text; }
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override {
    return take(strings, prompt);
  }
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override {
    return take(integers, prompt);
  }
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override {
    return take(points, prompt);
  }
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override {
    return take(picks, prompt);
  }
  [[nodiscard]] bool show(Dialog& dialog) override {
    const std::function<bool(Dialog&)> answer = take(dialogs, L"a dialog");
    return answer && answer(dialog);
  }
  [[nodiscard]] bool ask_yes_no(std::wstring_view /*caption*/, std::wstring_view text,
                                BoxIcon /*icon*/) override {
    return take(boxes, text);
  }
  void show_text(std::wstring_view title, std::wstring_view text, int /*width*/,
                 int /*height*/) override {
    text_windows.push_back(std::wstring(title) + L"\n" + std::wstring(text));
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) override {
    return take(files, question.filter);
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) override {
    return take(files, question.filter);
  }
  [[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                             Palette& content) override {
    palette_sets.push_back(std::wstring(traits.name) + L" " + std::wstring(traits.tool_id) + L" " +
                           std::to_wstring(traits.min_width) + L" by " +
                           std::to_wstring(traits.min_height));
    return std::make_unique<ScriptedPaletteSet>(*this, content);
  }
  void cancel_command() override { sent.emplace_back(L"<cancel>"); }
  void send(std::wstring_view text) override { sent.emplace_back(text); }
  void start_progress(std::wstring_view /*label*/, std::int64_t range) override {
    EXPECT_FALSE(progress_runs) << "a second progress meter";
    progress = {range};
    progress_runs = true;
  }
  void move_progress(std::int64_t position) override { progress.push_back(position); }
  void end_progress() override { progress_runs = false; }
  // Asked at every step, so that what tests see does not depend on the clock.
  [[nodiscard]] std::chrono::milliseconds time_between_questions() const override { return {}; }
  bool run_command(std::wstring_view name, EntityId entity) override {
    const std::function<CommandEnd(EntityId)> run = take(commands, name);
    if (!run) return false;
    tell_reactors(name.substr(name.find_first_not_of(L"_.")), run(entity));
    return true;
  }
  void lock() override {
    ++locks;
    StandaloneHost::lock();
  }
  void unlock() override {
    --locks;
    StandaloneHost::unlock();
  }

 private:
  class ScriptedPaletteSet final : public PaletteSet {
   public:
    ScriptedPaletteSet(ScriptedHost& host, Palette& content) : host_(host), content_(content) {}
    void show(Session& session) override {
      const Palette::Turn turn(content_, session);
      content_.shown();
      if (const auto act = host_.take(host_.palettes, L"a palette")) act(content_);
    }

   private:
    ScriptedHost& host_;
    Palette& content_;
  };

  template <class Value>
  Value take(std::deque<Value>& answers, std::wstring_view question) {
    asked.emplace_back(question);
    if (answers.empty()) {
      ADD_FAILURE() << "nobody expected the question: " << to_utf8(question);
      return {};
    }
    const Value answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

}  // namespace korvel::test
