// README.md as its reader follows it: every command of its blocks is run as it is printed, on a
// demo station that was just made, and on a new one where the block makes that itself. What airs
// ends at once; what takes hours, or builds and tests the program, is left out.
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

// The blocks of shell commands, each as its lines.
std::vector<Lines> ShellBlocks(const std::string& text) {
  std::vector<Lines> blocks;
  bool inside = false;
  for (const std::string& line : LinesOf(text)) {
    if (line == "```sh") blocks.emplace_back();
    if (inside && line != "```") blocks.back().push_back(line);
    inside = line == "```sh" || (inside && line != "```");
  }
  return blocks;
}

// What takes long, or needs a server: moves are tried on one of the tests' own (MoveTest).
bool IsLeftOut(const std::string& line) {
  constexpr std::array kLeftOut{"./test.sh",
                                "build/release/KillBench",
                                "build/release/FaultHour",
                                "tests/hostile/hostile.py",
                                "setup/install.sh",
                                "packaging/build.sh",
                                "build/release/zemoradio move"};
  return std::any_of(kLeftOut.begin(), kLeftOut.end(),
                     [&](const char* begin) { return line.starts_with(begin); });
}

bool GoesOnAir(const std::string& line) {
  constexpr std::array kOnAir{"./run.sh", "build/release/zemoradio run",
                              "build/release/zemoradio --"};
  return std::any_of(kOnAir.begin(), kOnAir.end(),
                     [&](const char* begin) { return line.starts_with(begin); });
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
  if (line.starts_with("build/release/zemoradio check ")) return line + " || [ $? = 1 ]";
  return line;
}

// What the machine of the test lacks, and the air goes on without.
bool IsOfTheMachine(const std::string& line) {
  return line.starts_with("zemoradio: no sound device on this machine") ||
         line.starts_with("zemoradio: there is no display");
}

class ReadmeCommands : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    namespace fs = std::filesystem;
    fs::create_directories(root_ / "build/release");
    fs::create_symlink(Program(), root_ / "build/release/zemoradio");
    Put("run.sh", "#!/bin/sh\nexec build/release/zemoradio run \"$@\"\n");  // builds nothing
    fs::permissions(root_ / "run.sh", fs::perms::owner_all);
    for (const char* folder : {"home/spots", "home/news", "new-home/music"})
      fs::create_directories(root_ / folder);
    MakeDemoStation(Path("home/radio"), {14, 0.3}, [](const std::string&) {});
    PutWav("home/spots/bakery.wav", 5);
    PutWav("new-home/music/song.wav", 5);
    for (const auto& entry : fs::recursive_directory_iterator(root_ / "home/radio"))
      if (entry.path().extension() == ".mp3" && !fs::exists(root_ / "home/news/sea.mp3"))
        fs::copy_file(entry.path(), root_ / "home/news/sea.mp3");
  }

  // As one shell runs it, up to the first command that fails.
  Result RunBlock(const Lines& block) const {
    std::string commands = "set -e\nunset WAYLAND_DISPLAY QT_QPA_PLATFORM\n";
    for (const std::string& line : block)
      if (!IsLeftOut(line)) commands += AsRun(line) + "\n";
    Put("block", commands);
    const bool makesItsStation = Holds(commands, "zemoradio new ");
    return Shell((makesItsStation ? "HOME=" + Path("new-home") + " " : "") + "sh block");
  }
};

TEST_F(ReadmeCommands, WorkAsTheyArePrinted) {
  const std::vector<Lines> blocks = ShellBlocks(ReadText(ZEMO_README));
  ASSERT_GE(blocks.size(), 12u);
  for (const Lines& block : blocks) {
    const Result result = RunBlock(block);
    const std::string shown = ReadText(root_ / "block");
    EXPECT_EQ(result.status, 0) << shown << result.out << result.err;
    for (const std::string& line : LinesOf(result.err))
      EXPECT_TRUE(!line.starts_with("zemoradio: ") || IsOfTheMachine(line)) << shown << line;
  }
}

}  // namespace
}  // namespace zemo
