// The program as its users run it: a process, its exit status, what it says, and the folders that
// it works on.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace zemo {

inline std::string ReadText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class BlackBox : public testing::Test {
 protected:
  struct Result {
    int status = -1;  // 128 + N for an end by signal N
    std::string out;
    std::string err;
  };

  void SetUp() override {
    std::string path = (std::filesystem::temp_directory_path() / "zemo-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(path.data()), nullptr);
    root_ = path;
    for (const char* name : {"station", "machine", "tmp", "home"})
      std::filesystem::create_directory(root_ / name);
  }
  void TearDown() override { std::filesystem::remove_all(root_); }

  std::string Path(const std::string& name) const { return (root_ / name).string(); }

  void Put(const std::string& name, const std::string& text) const {
    std::ofstream(root_ / name, std::ios::binary) << text;
  }

  // A shell's words behind the program's name. Its temporary files, its home and its zone are ours.
  Result Run(const std::string& arguments) const { return Shell(Program() + " " + arguments); }

  // Any commands, which see the program as $zemoradio; the status is the last one's. Whoever runs
  // the tests, the sound has an ordinary priority.
  Result Shell(const std::string& commands) const {
    const std::string line =
        "cd " + root_.string() + "; ulimit -r 0; export TMPDIR=" + Path("tmp") +
        " HOME=" + Path("home") + " TZ=CET-1CEST,M3.5.0,M10.5.0/3" +
        "; unset XDG_DATA_HOME XDG_CONFIG_HOME DISPLAY; zemoradio=" + Program() + "; (" + commands +
        ") >" + Path("out") + " 2>" + Path("err");
    const int status = std::system(line.c_str());
    Result result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = ReadText(root_ / "out");
    result.err = ReadText(root_ / "err");
    return result;
  }

  // A silent sound file, 8 kHz mono 16-bit.
  void PutWav(const std::string& name, int seconds) const {
    constexpr uint32_t kRate = 8000;
    const uint32_t bytes = static_cast<uint32_t>(seconds) * kRate * 2;
    const auto little = [](uint32_t number, int size) {
      std::string text;
      for (int i = 0; i < size; ++i) text += static_cast<char>(number >> (8 * i));
      return text;
    };
    Put(name, "RIFF" + little(36 + bytes, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
                  little(1, 2) + little(kRate, 4) + little(kRate * 2, 4) + little(2, 2) +
                  little(16, 2) + "data" + little(bytes, 4) + std::string(bytes, '\0'));
  }

  // A station whose music cards 1, 2, ... have those lengths. In rotation, a request takes them at
  // any hour; otherwise only an operator's hand brings them on air.
  void MakeStation(const std::vector<int>& seconds, bool inRotation = false) const {
    std::string orders = "+0 set Jingles 0\n";
    for (size_t i = 0; i < seconds.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      PutWav("station/title" + number + ".wav", seconds[i]);
      orders +=
          "+0 sql INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, "
          "NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE) VALUES('" +
          Path("station/title" + number + ".wav") + "', " + std::to_string(seconds[i] * 1000) +
          ", 'Artist " + number + "', 'Title " + number + "', 'GOLD', 'NATIONAL', " +
          (inRotation ? "100" : "0") + ", 0, 0, 0)\n";
    }
    if (inRotation) orders += EveryHour();
    Put("make", orders);
    const Result made =
        Run("simulate --station station --in-place --no-start --for 0 --script make --trace made");
    ASSERT_EQ(made.status, 0) << made.err;
    ASSERT_EQ(ReadText(root_ / "made").find("\"error\""), std::string::npos);
  }

  // The orders that allow every card at every hour and ask for nothing but their genre.
  static std::string EveryHour() {
    std::string hours, shares, masks;
    for (int hour = 0; hour < 24; ++hour) {
      hours += std::string(hour < 10 ? ", TRANCHE0" : ", TRANCHE") + std::to_string(hour);
      shares += ", 100";
    }
    for (int day = 1; day <= 7; ++day)
      masks += (day > 1 ? ", TRANCHE0" : "TRANCHE0") + std::to_string(day) + " = '" +
               std::string(24, '1') + "'";
    return "+0 sql UPDATE Discotheque SET " + masks + "\n+0 set EcartArtiste 0\n" +
           "+0 sql WITH RECURSIVE d(j) AS (SELECT 1 UNION ALL SELECT j + 1 FROM d WHERE j < 7) " +
           "INSERT INTO Models(JOUR, GENRE" + hours + ") SELECT j, 'GOLD'" + shares + " FROM d\n";
  }

  // Name and content of every file below the folder.
  std::map<std::string, std::string> Files(const std::string& folder) const {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root_ / folder))
      if (entry.is_regular_file())
        files[std::filesystem::relative(entry.path(), root_ / folder).string()] =
            ReadText(entry.path());
    return files;
  }

  static std::string Program() { return ZEMORADIO_PROGRAM; }

  std::filesystem::path root_;
};

// One line on standard error that begins as an error of the program does.
inline void ExpectOneError(const std::string& err) {
  EXPECT_EQ(LinesOf(err).size(), 1u) << err;
  EXPECT_EQ(err.rfind("zemoradio: ", 0), 0u) << err;
}

}  // namespace zemo
