#include "host/console/terminal_host.h"

#include <array>
#include <csignal>
#include <deque>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>

#include "frame/command_frame.h"
#include "host/console/command_loop.h"
#include "host/console/interrupt.h"
#include "host/console/scripted_lines.h"

namespace korvel {
namespace {

using Ending = TerminalHost::Ending;

// A host that is given these answers; what it prints is kept from the test's own output.
struct Conversation {
  explicit Conversation(const std::vector<std::string>& answers, bool strict = false)
      : lines(answers, nullptr), host(Drawing::blank(), lines, {strict, false}) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
  }
  ~Conversation() {
    if (!ended) (void)printed();
  }

  std::string printed() {
    ended = true;
    complaints = testing::internal::GetCapturedStderr();
    return testing::internal::GetCapturedStdout();
  }

  EntityId add_point(Point3 at) {
    return *host.drawing().add_entity({PointShape{at}, 0}, EntityProperties{});
  }

  ScriptedLines lines;
  TerminalHost host;
  std::string complaints;
  bool ended = false;
};

// Notes how commands ended; goes after so many.
class Listener final : public EditorReactor {
 public:
  Listener(TerminalHost& host, int ends) : host_(host), ends_(ends) { host.add_reactor(*this); }
  void command_ended(std::wstring_view name) override { note(L"ended ", name); }
  void command_cancelled(std::wstring_view name) override { note(L"cancelled ", name); }
  void command_failed(std::wstring_view name) override { note(L"failed ", name); }
  std::vector<std::wstring> heard;

 private:
  void note(std::wstring_view end, std::wstring_view name) {
    heard.push_back(std::wstring(end) + std::wstring(name));
    if (--ends_ == 0) host_.remove_reactor(*this);
  }
  TerminalHost& host_;
  int ends_;
};

TEST(TerminalHost, RunsCommandsOnAnEntityAndTellsHowTheyEnd) {
  Conversation talk({"1,0", "2,0", "ESC", ""});
  const EntityId line =
      *talk.host.drawing().add_entity({LineShape{{0, 0, 0}, {9, 0, 0}}, 0}, EntityProperties{});
  talk.host.set_pick_first({line});
  Listener brief(talk.host, 1);
  Listener listener(talk.host, 99);
  talk.host.add_reactor(listener);
  EXPECT_TRUE(talk.host.run_command(L"_.Break", line));
  EXPECT_TRUE(talk.host.run_command(L"break", line));
  EXPECT_FALSE(talk.host.run_command(L"NOSUCH", line));
  EXPECT_FALSE(talk.host.run_command(L"BREAK", EntityId{}));
  const HostCommand faulty{L"FAULTY", L"", L"", [](ConsoleHost& host) {
                             host.lock();
                             throw std::runtime_error("of a fault");
                           }};
  EXPECT_FALSE(talk.host.run_host_command(faulty));
  EXPECT_EQ(talk.host.ask_line(L"not given: "), L"");
  EXPECT_EQ(brief.heard, std::vector<std::wstring>{L"ended BREAK"});
  EXPECT_EQ(listener.heard,
            (std::vector<std::wstring>{L"ended BREAK", L"cancelled BREAK", L"failed FAULTY"}));
  EXPECT_EQ(talk.printed(),
            "Select object: HANDLE 2A\n1 found\nSpecify first break point: 1,0\n"
            "Specify second break point or [First point]: 2,0\n"
            "Select object: HANDLE 2A\n1 found\nSpecify first break point: ESC\n"
            "FAULTY was not finished: of a fault.\nnot given: \n");
}

TEST(TerminalHost, AsksAgainUntilTheAnswerFits) {
  Conversation talk({"1.5", "2147483648", "+7", "1", "1,x", " 1,2 ", "maybe", "", "y"});
  EXPECT_EQ(talk.host.ask_integer(L"N: ").value, 7);
  EXPECT_EQ(talk.host.ask_point(L"P: ").value, (Point3{1, 2, 0}));
  EXPECT_TRUE(talk.host.ask_yes_no(L"Warning", L"Continue?\n", BoxIcon::Question));
  EXPECT_EQ(talk.printed(),
            "N: 1.5\nRequires an integer value.\nN: 2147483648\nRequires an integer value.\n"
            "N: +7\n"
            "P: 1\nInvalid point: x,y or x,y,z is required.\n"
            "P: 1,x\nInvalid point: x,y or x,y,z is required.\nP:  1,2 \n"
            "Warning: Continue? [Y/N]: maybe\nY or N is required.\n"
            "Warning: Continue? [Y/N]: \nY or N is required.\n"
            "Warning: Continue? [Y/N]: y\n");
}

TEST(TerminalHost, TellsEnterFromEscAndCutsLongStrings) {
  Conversation talk({"", "ESC", "", "ESC", std::string(200, 'x'), "esc"});
  EXPECT_EQ(talk.host.ask_integer(L"").kind, Answer<std::int32_t>::Kind::Enter);
  EXPECT_EQ(talk.host.ask_integer(L"").kind, Answer<std::int32_t>::Kind::Cancelled);
  EXPECT_EQ(talk.host.ask_string(L""), std::optional<std::wstring>(L""));
  EXPECT_EQ(talk.host.ask_string(L""), std::nullopt);
  EXPECT_EQ(talk.host.ask_string(L"")->size(), 132U);
  EXPECT_EQ(talk.host.ask_string(L""), std::optional<std::wstring>(L"esc"));
  EXPECT_EQ(talk.host.ending(), Ending::None);
}

TEST(TerminalHost, TheEndOfTheInputIsEscAndIsNamedOnce) {
  Conversation talk({});
  EXPECT_EQ(talk.host.ask_selection(), std::nullopt);
  EXPECT_EQ(talk.host.ask_string(L"Table: "), std::nullopt);
  EXPECT_EQ(talk.host.ending(), Ending::InputEndedInPrompt);
  EXPECT_EQ(talk.printed(), "Select objects: \n");
  EXPECT_EQ(talk.complaints, "korvel: the input ended at the prompt \"Select objects:\"\n");
}

TEST(TerminalHost, StrictEndsAtTheFirstRefusalWithEscForTheCommand) {
  Conversation talk({"x", "5"}, true);
  EXPECT_EQ(talk.host.ask_integer(L"N: ").kind, Answer<std::int32_t>::Kind::Cancelled);
  EXPECT_EQ(talk.host.ending(), Ending::Refused);
  EXPECT_EQ(talk.host.next_command(), std::nullopt);
  (void)talk.printed();
  EXPECT_EQ(talk.complaints, "korvel: stopped at -c, line 1: x\n");
}

TEST(TerminalHost, StrictStopsAtWhatACommandRefuses) {
  struct Case {
    std::string name;
    void (*refuse)(DrawingHost&);
    Ending ending;
    std::string printed;
    std::string complaints;
  };
  const auto no_stop = Ending::None;
  for (const Case& one : {
           Case{"an error", [](DrawingHost& host) { report<Message::TableNotFound>(host); },
                Ending::Refused, "Error: table not found.\n",
                "korvel: stopped at -c, line 1: go\n"},
           Case{"input of a dialog",
                [](DrawingHost& host) { host.note_refused_input(L"no table is chosen"); },
                Ending::Refused, "",
                "korvel: -c, line 1: no table is chosen\nkorvel: stopped at -c, line 1: go\n"},
           Case{"a warning", [](DrawingHost& host) { report<Message::LayerNotFound>(host, L"X"); },
                no_stop, "Warning: layer 'X' not found.\n", ""},
       }) {
    SCOPED_TRACE(one.name);
    Conversation talk({"go"}, true);
    ASSERT_TRUE(talk.host.next_command());
    one.refuse(talk.host);
    EXPECT_EQ(talk.host.ending(), one.ending);
    EXPECT_EQ(talk.printed(), "Command: go\n" + one.printed);
    EXPECT_EQ(talk.complaints, one.complaints);
  }
}

// Lines that a person types; the input ends again and again.
class TypedLines final : public LineSource {
 public:
  explicit TypedLines(std::deque<std::optional<std::wstring>> lines) : lines_(std::move(lines)) {}
  Read next(std::wstring_view prompt, std::wstring& line) override {
    prompts.emplace_back(prompt);
    const std::optional<std::wstring> typed = lines_.empty() ? std::nullopt : lines_.front();
    if (!lines_.empty()) lines_.pop_front();
    line = typed.value_or(L"");
    return typed ? Read::Line : Read::End;
  }
  [[nodiscard]] bool is_terminal() const override { return true; }
  std::vector<std::wstring> prompts;

 private:
  std::deque<std::optional<std::wstring>> lines_;
};

TEST(TerminalHost, AsksBeforeTheEndOfTheInputLosesChanges) {
  const std::wstring question = L"Discard all changes to drawing? [Yes/No] <No>: ";
  TypedLines lines({std::nullopt, L"", L"LINE", std::nullopt, L"Yes"});
  TerminalHost host(Drawing::blank(), lines, {});
  ASSERT_TRUE(host.drawing().add_entity({PointShape{}}, EntityProperties{}));
  EXPECT_EQ(host.next_command(), L"LINE") << "the first time it was not meant so";
  EXPECT_EQ(host.ask_line(L"Point: "), std::nullopt);
  EXPECT_EQ(host.next_command(), std::nullopt);
  EXPECT_EQ(host.ending(), Ending::QuitDiscarding);
  EXPECT_EQ(lines.prompts, (std::vector<std::wstring>{L"Command: ", question, L"Command: ",
                                                      L"Point: ", question}));

  TypedLines none({});
  for (const TerminalHost::Manner manner : {TerminalHost::Manner{}, {.saves_at_end = true}}) {
    TerminalHost other(Drawing::blank(), none, manner);
    ASSERT_TRUE(other.drawing().add_entity({PointShape{}}, EntityProperties{}));
    EXPECT_EQ(other.next_command(), std::nullopt) << "there is nobody to answer";
  }
  EXPECT_EQ(none.prompts, (std::vector<std::wstring>{L"Command: ", question, L"Command: "}));
}

TEST(TerminalHost, PicksEntities) {
  Conversation talk({"HANDLE FFFFFF", "foo", "0.2,0", "50,50", "l", "HANDLE ZZZ"});
  const EntityId first = talk.add_point({0, 0, 0});
  const EntityId last = talk.add_point({100, 0, 0});
  EXPECT_EQ(talk.host.ask_entity(L""), std::nullopt) << "no such handle";
  EXPECT_EQ(talk.host.ask_entity(L""), first) << "asked again after foo; 0.3 is within the box";
  EXPECT_EQ(talk.host.ask_entity(L""), std::nullopt);
  EXPECT_EQ(talk.host.ask_entity(L""), last);
  EXPECT_EQ(talk.host.ask_entity(L""), std::nullopt);
  EXPECT_TRUE(talk.printed().ends_with("HANDLE ZZZ\nThere is no entity with the handle ZZZ.\n"));
}

TEST(TerminalHost, AllLeavesOutFrozenAndLockedLayersButNotThoseThatAreOff) {
  Conversation talk({"ALL", ""});
  Drawing& drawing = talk.host.drawing();
  EntityList expected{talk.add_point({0, 0, 0})};
  for (const std::wstring name : {L"FROZEN", L"LOCKED", L"OFF"}) {
    Layer layer = {*drawing.add_layer(name), name};
    layer.frozen = name == L"FROZEN";
    layer.locked = name == L"LOCKED";
    layer.off = name == L"OFF";
    EntityProperties properties;
    properties.layer = name;
    const auto id = drawing.add_entity({PointShape{}, 0}, properties);
    ASSERT_TRUE(id && drawing.change_layer(layer));
    if (layer.off) expected.push_back(*id);
  }
  EXPECT_EQ(talk.host.ask_selection(), expected);
  EXPECT_EQ(talk.host.previous_selection(), expected);
}

TEST(TerminalHost, SaveChooserAddsTheExtensionAndAsksBeforeOverwriting) {
  const std::filesystem::path folder = testing::TempDir();
  const std::filesystem::path there = folder / "there.csv";
  std::ofstream(there) << "x";
  const std::string typed = '"' + (folder / "there").string() + '"';
  const FileQuestion question{L"CSV files (*.csv)|*.csv||", L"csv", true};
  Conversation talk({typed, "n", typed, "y", ""});
  EXPECT_EQ(talk.host.choose_file_to_save(question), there);
  EXPECT_EQ(talk.host.choose_file_to_save(question), std::nullopt);
  const std::string text = talk.printed();
  EXPECT_EQ(text.find("CSV files (*.csv)\nFile to save: "), 0U) << text;
  EXPECT_NE(text.find("Warning: File '" + there.string() + "' already exists. Overwrite? [Y/N]: n"),
            std::string::npos)
      << text;
  std::filesystem::remove(there);
}

TEST(TerminalHost, FoldersAndDevicesTakeNoExtension) {
  const FileQuestion question{L"CSV files (*.csv)|*.csv||", L"csv", true};
  std::vector<std::string> names = {"nowhere/", ".", ".."};
  if (std::filesystem::is_character_file("/dev/null")) names.emplace_back("/dev/null");
  for (const std::string& typed : names) {
    Conversation talk({typed, "y"});
    EXPECT_EQ(talk.host.choose_file_to_save(question), typed);
  }
}

// --- Running commands -------------------------------------------------------------------------

std::size_t pick_first_seen = 0;

// Commands that are run for a drawing without object data.
class FewCommands final : public LoadedPlugin {
 public:
  explicit FewCommands(TerminalHost& host) : host_(host) {}

  [[nodiscard]] const ConsoleCommandStack& commands() const override { return stack; }
  void run(const ConsoleCommandStack::Entry& command) override {
    StandaloneStore store(host_.drawing());
    Session session{store, host_, choices_, palettes_};
    command.handler(session);
  }

  ConsoleCommandStack stack;

 private:
  TerminalHost& host_;
  RememberedChoices choices_;
  Palettes palettes_;
};

void look_at_pick_first(Session& session) { pick_first_seen = session.host.pick_first().size(); }

void lock_and_throw(Session& session) {
  session.host.lock();
  (void)static_cast<TerminalHost&>(session.host)
      .drawing()
      .add_entity({PointShape{}, 0}, EntityProperties{});
  throw std::runtime_error("a fault");
}

TEST(CommandLoop, FindsCommandsAndSurvivesThem) {
  Conversation talk({" '_.korvel_throw", "nonsense", ""});
  FewCommands plugin(talk.host);
  ConsoleCommandStack& stack = plugin.stack;
  stack.add_command(L"G", L"KORVEL_THROW", L"LocalThrow", 0, lock_and_throw);
  stack.add_command(L"G", L"localthrow", L"Taken", 0, lock_and_throw);
  EXPECT_FALSE(stack.find(L"taken")) << "one of its names is taken";
  CommandLoop(talk.host, talk.lines, plugin).run();
  EXPECT_EQ(talk.printed(),
            "Command:  '_.korvel_throw\nKORVEL_THROW was not finished: a fault.\n"
            "Command: nonsense\nUnknown command \"nonsense\". Press F1 for help.\n"
            "Command: \n");
  EXPECT_EQ(talk.host.drawing().undo(), std::optional<std::wstring>(L"KORVEL_THROW"))
      << "the step that the command left open was closed";
  EXPECT_EQ(talk.host.worst_fault(), Fault::NotFinished);
  EXPECT_EQ(talk.host.ending(), Ending::InputEnded);
}

TEST(CommandLoop, OnlyCommandsThatUseThePickFirstSetSeeIt) {
  for (const auto& [flags, seen] : {std::pair(7, 1U), std::pair(0, 0U)}) {
    Conversation talk({"LOOK"});
    FewCommands plugin(talk.host);
    plugin.stack.add_command(L"G", L"LOOK", L"LOOK", flags, look_at_pick_first);
    talk.host.set_pick_first({talk.add_point({0, 0, 0})});
    pick_first_seen = 99;
    CommandLoop(talk.host, talk.lines, plugin).run();
    EXPECT_EQ(pick_first_seen, seen);
  }
}

// --- Commands of the host -----------------------------------------------------------------------

// Ctrl+C is pressed as soon as a blank line has been handed out: while the command works.
class InterruptedLines final : public LineSource {
 public:
  InterruptedLines(std::deque<std::wstring> lines, bool is_terminal)
      : lines_(std::move(lines)), is_terminal_(is_terminal) {
    interrupt::install(99);
  }
  Read next(std::wstring_view /*prompt*/, std::wstring& line) override {
    if (interrupt::take() > 0) return Read::Interrupted;
    if (lines_.empty()) return Read::End;
    line = std::move(lines_.front());
    lines_.pop_front();
    if (line.empty()) (void)std::raise(SIGINT);
    return Read::Line;
  }
  [[nodiscard]] bool is_terminal() const override { return is_terminal_; }

 private:
  std::deque<std::wstring> lines_;
  bool is_terminal_;
};

// At a terminal the next prompt does not see the key; a script ends.
TEST(HostCommands, CtrlCEndsTheCommandOrTheScript) {
  if (std::filesystem::path::preferred_separator == '\\') {
    GTEST_SKIP() << "the key is no signal here";
  }
  struct Case {
    const wchar_t* command;
    std::string_view printed;
    bool is_terminal;
  };
  for (const auto& [command, printed, is_terminal] :
       {Case{L"LIST", "2 found\n*Cancel*\n", true}, Case{L"LIST", "2 found\n*Cancel*\n", false},
        Case{L"ERASE", "2 found\n0 erased.\n*Cancel*\n", true}}) {
    InterruptedLines lines({command, L"ALL", L"", L"NEXT"}, is_terminal);
    TerminalHost host(Drawing::blank(), lines, {.saves_at_end = true});
    for (const double x : {0.0, 1.0}) {
      ASSERT_TRUE(host.drawing().add_entity({PointShape{{x, 0, 0}}}, EntityProperties{}));
    }
    testing::internal::CaptureStdout();
    FewCommands none(host);
    CommandLoop(host, lines, none).run();
    const std::string unknown = is_terminal ? "Unknown command \"NEXT\". Press F1 for help.\n" : "";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(printed) + unknown);
    EXPECT_EQ(host.drawing().entities(Space::Model).size(), 2U);
    EXPECT_EQ(host.ending(), is_terminal ? Ending::InputEnded : Ending::Interrupted);
  }
}

// Answers to the questions, and Ctrl+C where there is a "^C"; what was asked is kept.
class PressedLines final : public LineSource {
 public:
  explicit PressedLines(std::deque<std::wstring> lines) : lines_(std::move(lines)) {}
  Read next(std::wstring_view prompt, std::wstring& line) override {
    asked += prompt;
    if (lines_.empty()) return Read::End;
    line = std::move(lines_.front());
    lines_.pop_front();
    return line == L"^C" ? Read::Interrupted : Read::Line;
  }
  [[nodiscard]] bool is_terminal() const override { return true; }
  std::wstring asked;

 private:
  std::deque<std::wstring> lines_;
};

TEST(TerminalHost, TheSecondCtrlCAsksBeforeChangesAreDiscarded) {
  const std::wstring command(command_prompt);
  const std::wstring question = L"Discard all changes to drawing? [Yes/No] <No>: ";
  const struct {
    bool changed;
    std::deque<std::wstring> lines;
    std::wstring asked;
    Ending ending;
  } cases[] = {
      {false, {L"^C", L"^C"}, command + command, Ending::Interrupted},
      {true, {L"^C", L"^C", L"Y"}, command + command + question, Ending::Interrupted},
      {true, {L"^C", L"^C", L"N", L"GO"}, command + command + question + command, Ending::None},
      {true, {L"^C", L"^C", L"^C", L"GO"}, command + command + question + command, Ending::None},
      {true,
       {L"^C", L"^C", L"^C", L"^C", L"Y"},
       command + command + question + command + question,
       Ending::Interrupted},
  };
  for (const auto& test : cases) {
    PressedLines lines(test.lines);
    TerminalHost host(Drawing::blank(), lines, {});
    testing::internal::CaptureStdout();
    if (test.changed) {
      (void)host.drawing().add_entity({PointShape{}}, EntityProperties{});
    }
    EXPECT_EQ(host.next_command().has_value(), test.ending == Ending::None);
    (void)testing::internal::GetCapturedStdout();
    EXPECT_EQ(lines.asked, test.asked);
    EXPECT_EQ(host.ending(), test.ending);
  }
}

TEST(HostCommands, SaveLeavesAFileThatAnotherProgramChanged) {
  const std::filesystem::path path = std::filesystem::path(testing::TempDir()) / "changed.dxf";
  const auto saves = [&path](LineSource& lines, bool overwrite, Fault fault) {
    TerminalHost host(Drawing::blank(), lines, {.overwrite = overwrite});
    EXPECT_FALSE(host.drawing().save(path));
    host.file = path;
    std::ofstream(path) << "another's";
    testing::internal::CaptureStdout();
    EXPECT_TRUE(host.run_host_command(*find_host_command(L"SAVE")));
    (void)testing::internal::GetCapturedStdout();
    EXPECT_EQ(host.worst_fault(), fault);
    return std::filesystem::file_size(path) > 9;
  };
  ScriptedLines script({}, nullptr);
  EXPECT_FALSE(saves(script, false, Fault::NotWritten));
  EXPECT_TRUE(saves(script, true, Fault::None));
  TypedLines typed({L"", L"Y"});
  EXPECT_FALSE(saves(typed, false, Fault::NotWritten));
  EXPECT_TRUE(saves(typed, false, Fault::None));
  std::filesystem::remove(path);
  std::filesystem::remove(std::filesystem::path(path).replace_extension(".bak"));
}

TEST(HostCommands, ListTellsObjectDataThatCannotBeRead) {
  const std::unique_ptr<Drawing> drawing = Drawing::blank();
  const EntityId point = *drawing->add_entity({PointShape{}}, EntityProperties{});
  StandaloneStore store(*drawing);
  const ODTableDef table{L"ROADS", {{L"WIDTH", ODType::Real, 1.5}}};
  ASSERT_EQ(store.define_table(table), TableChange::Done);
  ASSERT_TRUE(attach_default(store, point, table.name));
  std::string bytes = drawing->to_bytes();
  bytes.replace(bytes.rfind("ROADS"), 5, "RIVER");  // in the record: there is no such table
  Conversation talk({"LIST", "LAST", ""});
  talk.host.replace_drawing(std::move(*Drawing::read(bytes, "damaged")));
  FewCommands none(talk.host);
  CommandLoop(talk.host, talk.lines, none).run();
  const std::string printed = talk.printed();
  EXPECT_TRUE(printed.ends_with("  Object data: cannot be read\n")) << printed;
}

}  // namespace
}  // namespace korvel
