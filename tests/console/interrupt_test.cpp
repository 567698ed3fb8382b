// Every command, interrupted at each of the moments at which it asks whether it is.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <regex>
#include <set>
#include <unistd.h>

#include "frame/file_bytes.h"
#include "frame/plugin.h"
#include "host/console/form.h"
#include "host/standalone/drawing_dump.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

namespace fs = std::filesystem;

// Which entities the person selects.
enum class Selected { Circles, Doors, All };

struct Case {
  std::wstring_view command;
  std::vector<std::wstring_view> form;  // lines typed into the dialog
  Selected selected = Selected::Circles;
  std::string_view file = {};      // what the file to open holds
  std::wstring_view partial = {};  // what is printed when a part was done; else the usual count
};

const Case cases[] = {
    {L"KORVEL_HAS_OD", {}},
    {L"KORVEL_HAS_NO_OD", {}, Selected::All},
    {L"KORVEL_HAS_MULTIPLE_OD", {}},
    {L"KORVEL_HAS_DUPLICATE_OD", {}},
    {L"KORVEL_HAS_SPECIFIC_OD", {L"Tables = ROADS", L"OK"}},
    {L"KORVEL_HAS_NO_SPECIFIC_OD", {L"Tables = DOORS", L"OK"}},
    {L"KORVEL_HAS_SPECIFIC_VALUES", {L"Criteria += N, 7", L"OK"}},
    {L"KORVEL_STAT", {}},
    {L"KORVEL_PSEL", {}},
    {L"KORVEL_ADEATTACHDATA", {L"Tables = SPARE1", L"Attach"}},
    {L"KORVEL_ADEATTACHDATA", {L"Tables = ROADS", L"Detach"}},
    {L"KORVEL_RM", {L"Tables = ROADS", L"OK"}},
    {L"KORVEL_RM_ALL", {}},
    {L"KORVEL_REMOVE_DUPLICATE_OD", {}},
    {L"KORVEL_RMUNUSED", {L"Unused = *", L"OK"}},
    {L"KORVEL_COPY_OD", {}},
    {L"KORVEL_COPY_VALUE", {}},
    {L"KORVEL_COPY_OD_VALUE", {}},
    {L"KORVEL_COPY_ALL", {}},
    {L"KORVEL_COPY_ALL_VALUE", {}},
    {.command = L"KORVEL_LOAD_DEFINITION",
     .form = {},
     .partial = L"Error. Operation unsuccessful.\n"},
    {L"KORVEL_SETXYZ", {L"Tables = ROADS", L"X = N", L"OK"}},
    {L"KORVEL_SETID", {L"Tables = ROADS", L"Field = N", L"OK"}},
    {L"KORVEL_SETPROP", {L"Tables = ROADS", L"Length = N", L"OK"}},
    {L"KORVEL_SETTEXT", {L"Tables = ROADS", L"Field = NAME", L"OK"}},
    {L"KORVEL_REPLACE",
     {L"Search = *", L"Replacement = 5", L"Tables = ROADS", L"Fields = N", L"OK"}},
    {L"KORVEL_ADDVAL", {L"Table = ROADS", L"From = N", L"To = N", L"OK"}},
    {L"KORVEL_ADDVAL_OD2OD",
     {L"From table = ROADS", L"From column = N", L"To table = PIPES", L"To column = N", L"OK"}},
    {L"KORVEL_2POLY", {}},
    {L"KORVEL_23DPOLY", {}},
    {L"KORVEL_EXPL", {L"Tables = ROADS", L"OK"}},
    {L"KORVEL_TRANSLATE", {L"Values = FILE", L"Name --> Alias"}, Selected::All, "77\t78\n"},
    {L"KORVEL_LOAD_ATTRS", {}, Selected::Doors, "Door\tNUM\tROADS\tN\n"},
    {L"KORVEL_STORE_ATTRS", {}, Selected::Doors, "Door\tNUM\tDOORS\tN\n"},
    {L"KORVEL_ATTR_TEMPLATE", {}, Selected::Doors},
};

// They walk over nothing; the table editor is tested by itself.
const std::set<std::wstring_view> without_walk = {L"KORVEL_CTL", L"KORVEL_ABOUT", L"KORVEL_BREAK",
                                                  L"KORVEL_TABLE"};

// The user presses Esc after so many questions, and stays at it.
class ImpatientHost final : public ForwardingHost {
 public:
  ImpatientHost(ScriptedHost& target, int patience)
      : ForwardingHost(target), target_(target), patience_(patience) {}
  [[nodiscard]] bool interrupted() override {
    if (asked_++ == patience_) questions_ = target_.asked.size();
    return asked_ > patience_;
  }
  [[nodiscard]] int asked() const { return asked_; }
  // What the user was asked before Esc.
  [[nodiscard]] std::size_t questions() const { return questions_; }

 private:
  ScriptedHost& target_;
  int patience_;
  int asked_ = 0;
  std::size_t questions_ = 0;
};

constexpr int endless = 1 << 20;

// Three concentric circles with a text in them and records of ROADS and, twice, of PIPES; a point
// with a record of ROADS, the reference; three references with an attribute and a record of DOORS.
class Trial {
 public:
  explicit Trial(const Case& tried)
      : host_(make_drawing({{L"0"}}, specs())),
        folder_(fs::path(testing::TempDir()) / ("korvel_interrupt_" + std::to_string(getpid()))) {
    fs::create_directories(folder_);
    for (const wchar_t* const table : {L"ROADS", L"PIPES", L"DOORS", L"SPARE1", L"SPARE2"}) {
      (void)store_.define_table({table,
                                 {{L"N", ODType::Integer, std::int32_t{0}},
                                  {L"NAME", ODType::Character, std::wstring()}}});
    }
    const EntityList ids = host_.model_space();
    circles_.assign(ids.begin(), ids.begin() + 3);
    doors_.assign(ids.begin() + 4, ids.end());
    for (std::size_t i = 0; i < circles_.size(); ++i) {
      const ArcShape circle{
          {1, 2, 3}, {0, 0, 1}, {1, 0, 0}, 5.0 + static_cast<double>(i), 2 * std::numbers::pi};
      EXPECT_TRUE(host_.set_geometry(circles_[i], {circle}));
      for (const wchar_t* const table : {L"ROADS", L"PIPES", L"PIPES"})
        EXPECT_TRUE(store_.attach(circles_[i], {table, {77, std::wstring(L"name")}}));
    }
    EXPECT_TRUE(store_.attach(ids[3], {L"ROADS", {9, std::wstring(L"new")}}));
    EXPECT_TRUE(host_.set_properties(ids[3], {.color = 3}));
    for (const EntityId door : doors_)
      EXPECT_TRUE(store_.attach(door, {L"DOORS", {8, std::wstring()}}));
    const TextShape label{{1, 2, 0}, {0, 0, 1}, L"label", 1};
    (void)host_.drawing().add_entity({label}, EntityProperties{});
    before_ = state();
    script(tried, ids[3]);
  }
  ~Trial() {
    host_.selections.clear();
    host_.strings.clear();
    host_.integers.clear();
    host_.points.clear();
    host_.picks.clear();
    host_.dialogs.clear();
    host_.boxes.clear();
    host_.files.clear();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  void run(const Case& tried, DrawingHost& host) {
    const auto* const command = std::ranges::find(command_table, tried.command, &Command::name);
    ASSERT_NE(command, command_table.end());
    Session session{store_, host, choices_, palettes_};
    EXPECT_FALSE(run_or_explain(tried.command, [&] { run_handler(command->handler, session); }));
    EXPECT_EQ(host_.locks, 0);
    EXPECT_FALSE(host_.progress_runs);
  }

  // What the user is left with.
  struct Outcome {
    std::wstring printed;
    EntityList selected;
    std::size_t windows;
    bool file;
    friend bool operator==(const Outcome&, const Outcome&) = default;
  };
  [[nodiscard]] Outcome outcome() const {
    return {host_.printed, host_.pick_first(), host_.text_windows.size(), fs::exists(written_)};
  }
  // Entities and tables that are not what they were.
  [[nodiscard]] std::size_t changes() const {
    std::vector<std::wstring> changed;
    const std::vector<std::wstring> after = state();
    std::ranges::set_symmetric_difference(before_, after, std::back_inserter(changed));
    const auto entities = std::ranges::count_if(
        changed, [](const std::wstring& line) { return !line.starts_with(L"TABLE "); });
    return static_cast<std::size_t>(entities / 2) + changed.size() -
           static_cast<std::size_t>(entities);
  }
  [[nodiscard]] std::size_t questions() const { return host_.asked.size(); }
  void take_back() {
    if (changes() > 0) {
      EXPECT_TRUE(host_.drawing().undo());
    }
    EXPECT_EQ(state(), before_);
  }
  [[nodiscard]] ScriptedHost& host() { return host_; }

 private:
  static std::vector<EntitySpec> specs() {
    std::vector<EntitySpec> specs(4, {L"0"});
    specs.resize(7, {L"0", false, L"Door", {{L"NUM", L"5"}}});
    return specs;
  }
  [[nodiscard]] std::vector<std::wstring> state() const {
    std::vector<std::wstring> lines;
    dump(host_.drawing(), [&lines](std::wstring_view line) { lines.emplace_back(line); });
    std::ranges::sort(lines);
    return lines;
  }
  // More answers than any command asks for.
  void script(const Case& tried, EntityId reference) {
    host_.selections = {tried.selected == Selected::Doors ? doors_
                        : tried.selected == Selected::All ? EntityList{}
                                                          : circles_};
    host_.strings = {L""};
    host_.integers = {{Answer<std::int32_t>::Kind::Given, 5}};
    host_.points = {{Answer<Point3>::Kind::Given, {1, 2, 0}}};
    host_.picks = {reference};
    host_.boxes = {true};
    written_ = folder_ / "written.txt";
    fs::path opened = folder_ / "opened.txt";
    if (!tried.file.empty()) {
      std::ofstream(opened, std::ios::binary) << tried.file;
    } else if (tried.command == L"KORVEL_LOAD_DEFINITION") {
      opened = folder_ / "opened.dxf";
      const std::unique_ptr<Drawing> other = Drawing::blank();
      StandaloneStore tables(*other);
      for (const wchar_t* const name : {L"NEW1", L"NEW2", L"NEW3"})
        (void)tables.define_table({name, {{L"N", ODType::Integer, std::int32_t{0}}}});
      std::ofstream(opened, std::ios::binary) << other->to_bytes();
    }
    host_.files = {fs::exists(opened) ? opened : written_};
    if (tried.form.empty()) return;
    host_.dialogs.push_back([&tried, opened](Dialog& dialog) {
      for (std::wstring line : std::vector<std::wstring>(tried.form.begin(), tried.form.end())) {
        if (const std::size_t at = line.find(L"FILE"); at != std::wstring::npos) {
          line.replace(at, 4, path_text(opened));
        }
        const FormReply reply = apply_line(dialog, line);
        EXPECT_NE(reply.kind, FormReply::Kind::Refused) << to_utf8(line + L": " + reply.text);
        if (reply.kind == FormReply::Kind::Accepted) return true;
      }
      return false;
    });
  }

  ScriptedHost host_;
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  fs::path folder_;
  fs::path written_;
  EntityList circles_;
  EntityList doors_;
  std::vector<std::wstring> before_;
};

// The count that the command prints at its end.
std::optional<std::size_t> count_in(const std::wstring& printed) {
  static const std::wregex count(L"(?:Completed[^:]*:|Updated|Loaded) ([0-9]+)");
  std::wsmatch found;
  if (!std::regex_search(printed, found, count)) return std::nullopt;
  return std::stoul(found[1]);
}

// By the question at which Esc is pressed, counted from 1; first as if nothing had been asked.
std::vector<Trial::Outcome> outcomes_after_esc(const Case& tried, std::size_t questions) {
  std::vector<Trial::Outcome> outcomes = {Trial(tried).outcome()};
  for (std::size_t question = 1; question <= questions; ++question) {
    Trial trial(tried);
    Failures failures;
    failures.esc_at_question = static_cast<int>(question);
    FailingHost host(trial.host(), failures);
    trial.run(tried, host);
    outcomes.push_back(trial.outcome());
  }
  return outcomes;
}

class Interrupts : public testing::TestWithParam<Case> {};

TEST_P(Interrupts, EndLikeEscOrBetweenTwoEntities) {
  const Case& tried = GetParam();
  int asked = 0;
  std::size_t questions = 0;
  std::size_t all_changes = 0;
  std::wstring printed;
  {
    Trial whole(tried);
    ImpatientHost host(whole.host(), endless);
    whole.run(tried, host);
    asked = host.asked();
    questions = whole.questions();
    all_changes = whole.changes();
    printed = whole.outcome().printed;
    whole.take_back();
  }
  ASSERT_GT(asked, 0) << "it never asks";
  const std::vector<Trial::Outcome> after_esc = outcomes_after_esc(tried, questions);
  for (int patience = 0; patience < asked; ++patience) {
    SCOPED_TRACE(patience);
    Trial trial(tried);
    ImpatientHost host(trial.host(), patience);
    trial.run(tried, host);
    const Trial::Outcome outcome = trial.outcome();
    const std::size_t changes = trial.changes();
    EXPECT_EQ(trial.questions(), host.questions()) << "it asked again";
    // As at the last question, or at the one that was to come.
    const std::size_t next = std::min(host.questions() + 1, questions);
    const bool is_like_esc =
        outcome == after_esc[host.questions()] || outcome == after_esc[next] ||
        // What it said of the files that it read stays said.
        (outcome == Trial::Outcome{outcome.printed, {}, 0, false} && !outcome.printed.empty() &&
         printed.starts_with(outcome.printed) && !count_in(outcome.printed));
    if (changes > 0 && !tried.partial.empty()) {
      EXPECT_EQ(outcome.printed, tried.partial);
    } else if (changes > 0 || !is_like_esc) {
      EXPECT_EQ(count_in(outcome.printed), changes) << to_utf8(outcome.printed);
    }
    EXPECT_FALSE(outcome.file);
    EXPECT_TRUE(changes < all_changes || all_changes == 0) << "it went on";
    trial.take_back();
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, Interrupts, testing::ValuesIn(cases), [](const auto& test) {
  return to_utf8(test.param.command.substr(7)) + std::to_string(test.index);
});

TEST(Interrupts, AreTriedOnEveryCommandThatWalks) {
  for (const Command& command : command_table) {
    EXPECT_NE(std::ranges::find(cases, command.name, &Case::command) != std::end(cases),
              without_walk.contains(command.name))
        << to_utf8(command.name);
  }
}

}  // namespace
}  // namespace korvel::test
