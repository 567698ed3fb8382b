// Runs the console on scripts and compares what a person would see with what was seen before.
//
//   transcript_runner [--accept | --other-system] [--unreported] KORVEL SAMPLES FOLDER
//                     [OTHER_GOLDENS]
//
// A case is a script NAME.scr beside NAME.golden. The script's first comment lines may say more:
//   ; args: --strict samples/world.dxf    arguments of the console, as for a shell
//   ; show: out.csv                       a file whose contents the golden holds as well
//   ; needs: /dev/full                    something that other systems lack: left out there
//   ; unsaved                             the case ends without -o
// The golden holds standard output, then (if there is any) standard error, the files to show
// (UTF-16 as UTF-8), and the exit status. Each case runs in an empty folder of its own in which
// `samples` is the folder given; the drawing is saved elsewhere unless it says otherwise. With
// --accept the goldens are written.
// With --other-system the program was built for another system than the goldens: line ends of its
// files, and numbers that are zero but for rounding, may differ.
// With --unreported the program's commands run in a host that does nothing with reports of files
// that could not be used: what the console makes of them may be missing.
// A golden in the folder OTHER_GOLDENS, if there is one, stands for that of the same name: what the
// program under test is meant to do otherwise. Such a program has no notes of a script's line
// ("korvel: NAME.scr, line 7: ...") on standard error.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <regex>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Setup {
  bool accept = false;
  bool other_system = false;
  bool unreported = false;
  fs::path korvel;
  fs::path samples;
  fs::path folder;
  fs::path other_goldens;
};

struct Header {
  std::string args;
  std::vector<std::string> files_to_show;
  bool needs_this_system = false;
  bool unsaved = false;
};

// An empty folder that goes when this does.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "korvel-transcript-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder: " + name);
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

std::optional<std::string> contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void write(const fs::path& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

std::string quoted(const fs::path& path) {
  std::string text = "'";
  for (const char c : path.string())
    text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

Header read_header(const fs::path& script) {
  constexpr std::string_view args = "; args: ";
  constexpr std::string_view show = "; show: ";
  Header header;
  std::ifstream file(script);
  for (std::string line; std::getline(file, line) && line.starts_with(';');) {
    if (line.starts_with("; needs: ")) header.needs_this_system = true;
    if (line == "; unsaved") header.unsaved = true;
    if (line.starts_with(args)) header.args = line.substr(args.size());
    if (line.starts_with(show)) header.files_to_show.push_back(line.substr(show.size()));
  }
  return header;
}

void append_utf8(char32_t c, std::string& out) {
  const auto tail = [&](int shift) { out += static_cast<char>(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    tail(0);
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    tail(6), tail(0);
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    tail(12), tail(6), tail(0);
  }
}

// A file marked as little-endian UTF-16 in a form that can be read, line ends as they are.
std::string readable(const std::string& bytes) {
  if (!bytes.starts_with("\xFF\xFE")) return bytes;
  std::string text = "(UTF-16)\n";
  char32_t high = 0;
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const auto unit = static_cast<char32_t>(static_cast<unsigned char>(bytes[i]) |
                                            static_cast<unsigned char>(bytes[i + 1]) << 8);
    if (unit >= 0xD800 && unit < 0xDC00) {
      high = unit;
    } else if (unit >= 0xDC00 && unit < 0xE000) {
      append_utf8(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00), text);
    } else {
      append_utf8(unit, text);
    }
  }
  return text;
}

// A part of a golden under its own heading; the last line is ended if it is not.
std::string part(const std::string& heading, std::string text) {
  if (!text.empty() && !text.ends_with('\n')) text += "\n(no line end)\n";
  return "--- " + heading + '\n' + text;
}

std::string run_case(const Setup& setup, const fs::path& script) {
  const Header header = read_header(script);
  const TemporaryFolder folder;
  const TemporaryFolder outputs;
  fs::create_directory_symlink(setup.samples, folder.path() / "samples");
  fs::create_symlink(script, folder.path() / script.filename());
  const fs::path out = outputs.path() / "out";
  const fs::path err = outputs.path() / "err";
  const bool as_it_says = header.unsaved || header.args.find("-o ") != std::string::npos;
  const std::string save = as_it_says ? "" : " -o " + quoted(outputs.path() / "saved.dxf");
  const std::string command = "cd " + quoted(folder.path()) + " && " + quoted(setup.korvel) + ' ' +
                              header.args + " -s " + quoted(script.filename()) + save +
                              " </dev/null >" + quoted(out) + " 2>" + quoted(err);
  const int status = std::system(command.c_str());

  std::string seen = contents(out).value_or("");
  if (!seen.empty() && !seen.ends_with('\n')) seen += "\n(no line end)\n";
  const std::string errors = contents(err).value_or("");
  if (!errors.empty()) seen += part("stderr", errors);
  for (const std::string& name : header.files_to_show) {
    seen +=
        part(name, readable(contents(folder.path() / name).value_or("(there is no such file)\n")));
  }
  if (seen.empty()) seen = "(said nothing)\n";
  return seen +
         (WIFEXITED(status) ? "exit " + std::to_string(WEXITSTATUS(status))
                            : "killed by signal " + std::to_string(WTERMSIG(status))) +
         '\n';
}

// What is the same on every system.
std::string common_form(const std::string& text) {
  static const std::regex line_end("\r\n");
  static const std::regex nearly_zero(R"(-?\d(\.\d+)?e-(1[3-9]|[2-9]\d))");
  return std::regex_replace(std::regex_replace(text, line_end, "\n"), nearly_zero, "0");
}

// Without what the console makes of reports of files.
std::string without_reports(const std::string& text) {
  static const std::regex line("korvel: [^\n]*: cannot be (read|written): [^\n]*\n");
  static const std::regex heading("--- stderr\n(?=--- |exit )");
  static const std::regex status("exit [34]\n$");
  const std::string lines_left = std::regex_replace(text, line, "");
  return std::regex_replace(std::regex_replace(lines_left, heading, ""), status, "exit 0\n");
}

bool fail(const fs::path& path, const std::string& why) {
  std::cout << "FAILED " << path.filename().string() << ": " << why << '\n';
  return false;
}

void print_difference(const fs::path& golden, const std::string& seen) {
  const TemporaryFolder folder;
  write(folder.path() / "seen", seen);
  const std::string command = "diff -u --label expected --label seen " + quoted(golden) + ' ' +
                              quoted(folder.path() / "seen");
  std::cout << std::flush;
  if (WEXITSTATUS(std::system(command.c_str())) != 1) std::cout << seen;  // no diff at hand
}

fs::path golden_of(const Setup& setup, const fs::path& script) {
  const fs::path golden = fs::path(script).replace_extension(".golden");
  const fs::path other = setup.other_goldens / golden.filename();
  return !setup.other_goldens.empty() && fs::exists(other) ? other : golden;
}

std::string without_notes(const std::string& golden) {
  static const std::regex note(R"(korvel: \S*\.scr, line \d+: [^\n]*\n)");
  static const std::regex empty_part("--- stderr\n(--- |exit )");
  return std::regex_replace(std::regex_replace(golden, note, ""), empty_part, "$1");
}

bool check(const Setup& setup, const fs::path& script) {
  if (setup.other_system && read_header(script).needs_this_system) return true;
  const fs::path golden = golden_of(setup, script);
  const std::string seen = run_case(setup, script);
  if (seen.starts_with("(said nothing)")) return fail(script, "it says nothing, so checks nothing");
  if (setup.accept) {
    write(golden, seen);
    return true;
  }
  std::optional<std::string> expected = contents(golden);
  if (!expected) return fail(script, "there is no golden beside it");
  if (!setup.other_goldens.empty()) expected = without_notes(*expected);
  if (*expected == seen) return true;
  if (setup.other_system && common_form(*expected) == common_form(seen)) return true;
  if (setup.unreported && without_reports(*expected) == without_reports(seen)) return true;
  print_difference(golden, seen);
  return fail(script, "differs from its golden");
}

std::vector<fs::path> files_with_extension(const fs::path& folder, std::string_view extension) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == extension) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

int run(const Setup& setup) {
  const std::vector<fs::path> scripts = files_with_extension(setup.folder, ".scr");
  if (scripts.empty()) return fail(setup.folder, "it holds no script"), EXIT_FAILURE;
  bool passed = true;
  for (const fs::path& script : scripts)
    passed = check(setup, script) && passed;
  for (const fs::path& golden : files_with_extension(setup.folder, ".golden")) {
    const bool has_script = fs::exists(fs::path(golden).replace_extension(".scr"));
    if (!has_script) passed = fail(golden, "there is no script beside it");
  }
  std::cout << scripts.size() << (scripts.size() == 1 ? " script\n" : " scripts\n");
  return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  Setup setup;
  setup.accept = std::erase(arguments, "--accept") > 0;
  setup.other_system = std::erase(arguments, "--other-system") > 0;
  setup.unreported = std::erase(arguments, "--unreported") > 0;
  if (arguments.size() != 3 && arguments.size() != 4) {
    std::cerr << "usage: transcript_runner [--accept | --other-system] [--unreported] KORVEL "
                 "SAMPLES FOLDER [OTHER_GOLDENS]\n";
    return 2;
  }
  try {
    setup.korvel = fs::canonical(arguments[0]);
    setup.samples = fs::canonical(arguments[1]);
    setup.folder = fs::canonical(arguments[2]);
    if (arguments.size() == 4) setup.other_goldens = fs::weakly_canonical(arguments[3]);
    return run(setup);
  } catch (const std::exception& error) {
    std::cerr << "transcript_runner: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
