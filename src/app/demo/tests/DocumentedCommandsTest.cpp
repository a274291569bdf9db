// README.md and the handbook as their readers follow them: every command of their blocks is run as
// it is printed, on a demo station that was just made, and on a new one where the block makes that
// itself. What airs ends at once; what speaks to a program on air has one. What takes hours, needs
// a server or root, or builds and tests the program, is left out: the options of ours in it are
// looked for in the help. The handbook's commands are the same in both languages (ctest -R
// Handbook).
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "app/demo/Demo.h"
#include "app/tests/BlackBox.h"

namespace zemo {
namespace {

using Lines = std::vector<std::string>;

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// The blocks of shell commands, each as its lines; one that stands in a list without its indent.
std::vector<Lines> ShellBlocks(const std::string& text) {
  std::vector<Lines> blocks;
  bool inside = false;
  size_t indent = 0;
  for (const std::string& line : LinesOf(text)) {
    const size_t begin = line.find_first_not_of(' ');
    const std::string mark = begin == std::string::npos ? "" : line.substr(begin);
    if (inside && mark == "```") {
      inside = false;
    } else if (inside) {
      blocks.back().push_back(line.substr(std::min(indent, line.size())));
    } else if (mark == "```sh") {
      blocks.emplace_back();
      inside = true;
      indent = begin;
    }
  }
  return blocks;
}

template <size_t count>
bool BeginsWithOneOf(const std::string& line, const std::array<const char*, count>& begins) {
  return std::any_of(begins.begin(), begins.end(),
                     [&](const char* begin) { return line.starts_with(begin); });
}

constexpr const char* kAsTheService = "runuser -u zemoradio -- zemoradio ";

// A line of the program's, however it is called, behind its name; empty for another one.
std::string Arguments(const std::string& line) {
  for (const std::string name : {"build/release/zemoradio ", "zemoradio ", kAsTheService})
    if (line.starts_with(name)) return line.substr(name.size());
  return {};
}

// Moves are tried on a server of the tests' own (MoveTest), packages by their own test, and
// `zemoradio-demo` makes a station of a whole hour.
bool IsLeftOut(const std::string& line) {
  return Arguments(line).starts_with("move") ||
         BeginsWithOneOf(
             line,
             std::array{"./test.sh", "build/release/KillBench", "build/release/FaultHour",
                        "tests/hostile/hostile.py", "setup/install.sh", "packaging/build.sh",
                        "apt-get ", "systemctl ", "journalctl ", "zemoradio-demo", kAsTheService});
}

bool GoesOnAir(const std::string& line) {
  return line.starts_with("./run.sh") || BeginsWithOneOf(Arguments(line), std::array{"run", "--"});
}

// Without its comment, and for no time.
std::string Shortly(std::string line) {
  line = line.substr(0, line.find("  #"));
  const size_t length = line.find(" --for ");
  return line.substr(0, length) + " --for 0";
}

// The check has its status for what it finds; a new station lacks titles.
std::string AsRun(const std::string& line) {
  if (GoesOnAir(line)) return Shortly(line);
  if (Arguments(line).starts_with("check ")) return line + " || [ $? = 1 ]";
  return line;
}

// What the machine of the test lacks, and the air goes on without.
bool IsOfTheMachine(const std::string& line) {
  return line.starts_with("zemoradio: no sound device on this machine") ||
         line.starts_with("zemoradio: there is no display");
}

std::vector<std::filesystem::path> Documents() {
  std::vector<std::filesystem::path> pages;
  for (const auto& entry : std::filesystem::directory_iterator(ZEMO_HANDBOOK))
    if (!ShellBlocks(ReadText(entry.path())).empty()) pages.push_back(entry.path());
  std::sort(pages.begin(), pages.end());
  pages.insert(pages.begin(), ZEMO_README);
  return pages;
}

class DocumentedCommands : public BlackBox,
                           public testing::WithParamInterface<std::filesystem::path> {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    namespace fs = std::filesystem;
    for (const char* folder : {"build/release", "bin"}) {
      fs::create_directories(root_ / folder);
      fs::create_symlink(Program(), root_ / folder / "zemoradio");
    }
    Put("run.sh", "#!/bin/sh\nexec build/release/zemoradio run \"$@\"\n");  // builds nothing
    fs::permissions(root_ / "run.sh", fs::perms::owner_all);
    for (const char* folder : {"home/spots", "home/news", "home/music", "new-home/music"})
      fs::create_directories(root_ / folder);
    MakeDemoStation(Path("home/radio"), {14, 0.3}, [](const std::string&) {});
    Put("home/radio/Messages.Txt", "");  // a station that has aired has its log
    PutWav("home/spots/bakery.wav", 5);
    PutWav("home/music/song.wav", 5);
    PutWav("new-home/music/song.wav", 5);
    for (const auto& entry : fs::recursive_directory_iterator(root_ / "home/radio"))
      if (entry.path().extension() == ".mp3" && !fs::exists(root_ / "home/news/sea.mp3"))
        fs::copy_file(entry.path(), root_ / "home/news/sea.mp3");
  }

  // A program on air with the station and the machine's folder of whoever gives the commands, once
  // it listens; it ends with their shell.
  static std::string OnAir() {
    return "zemoradio run --station ~/radio --output null >air 2>&1 &\nair=$!\n"
           "trap 'kill -INT $air; kill -INT $air; wait $air || true' EXIT\ntries=0\n"
           "until zemoradio ctl >/dev/null 2>&1; do\n  tries=$((tries + 1)); [ $tries -lt 200 ]\n"
           "  sleep 0.1\ndone\n";
  }

  // As one shell runs it, up to the first command that fails.
  Result RunBlock(const Lines& block) const {
    std::string commands;
    for (const std::string& line : block)
      if (!IsLeftOut(line)) commands += AsRun(line) + "\n";
    const bool makesItsStation = Holds(commands, "zemoradio new ");
    Put("block", "set -e\nunset WAYLAND_DISPLAY QT_QPA_PLATFORM\nPATH=" + Path("bin") + ":$PATH\n" +
                     (Holds(commands, "zemoradio ctl") ? OnAir() : "") + commands);
    return Shell((makesItsStation ? "HOME=" + Path("new-home") + " " : "") + "sh block");
  }

  // Of what is left out: each option of ours stands in the help of its command.
  void LookUpOptions(const std::string& line) const {
    std::istringstream words(Arguments(line));
    std::string command, word, help;
    if (!(words >> command)) return;
    help = Run(command + " --help").out;
    while (words >> word)
      if (word.starts_with("--")) {
        EXPECT_TRUE(Holds(help, word)) << line << ": " << help;
      }
  }
};

TEST_P(DocumentedCommands, WorkAsTheyArePrinted) {
  const std::vector<Lines> blocks = ShellBlocks(ReadText(GetParam()));
  for (const Lines& block : blocks) {
    for (const std::string& line : block)
      if (IsLeftOut(line)) LookUpOptions(line);
    const Result result = RunBlock(block);
    const std::string shown = ReadText(root_ / "block");
    EXPECT_EQ(result.status, 0) << shown << result.out << result.err;
    for (const std::string& line : LinesOf(result.err))
      EXPECT_TRUE(!line.starts_with("zemoradio: ") || IsOfTheMachine(line)) << shown << line;
  }
}

INSTANTIATE_TEST_SUITE_P(All, DocumentedCommands, testing::ValuesIn(Documents()),
                         [](const auto& document) {
                           std::string name = document.param.stem().string();
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(Documents, HaveTheirCommandsInBlocks) {
  EXPECT_GE(ShellBlocks(ReadText(ZEMO_README)).size(), 5u);
  EXPECT_GE(Documents().size(), 6u);  // README.md, and the pages for people
}

}  // namespace
}  // namespace zemo
