// The program and its neighbours, from outside: contacts and buttons of a script; and on air the
// real line, the real clipboard and the small files.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/tests/BlackBox.h"
#include "support/Child.h"
#include "support/VirtualScreen.h"

namespace zemo {
namespace {

using test::Child;
using test::WaitFor;

class Triggers : public BlackBox {
 protected:
  void Sql(const std::string& statement) const {
    ASSERT_EQ(Shell("sqlite3 station/Triskin.MDB \"" + statement + "\"").status, 0);
  }
  std::string SqlText(const std::string& query) const {
    return Shell("sqlite3 -cmd '.timeout 5000' station/Triskin.MDB \"" + query + "\"").out;
  }
  // "hh:mm:ss.mmm text" of each event `clipboard` in the trace.
  static std::vector<std::string> Words(const std::string& trace) {
    std::vector<std::string> words;
    for (const std::string& line : LinesOf(trace)) {
      if (line.find("\"event\":\"clipboard\"") == std::string::npos) continue;
      const size_t text = line.find("\"text\":\"") + 8;
      words.push_back(line.substr(18, 12) + " " + line.substr(text, line.find('"', text) - text));
    }
    return words;
  }
  Result Simulate(const std::string& script) const {
    Put("script", script);
    return Run("simulate --station station --from '2026-11-21 12:00:00' --for 60 --script script");
  }
  bool OnOffBecomes(char state) const {
    const auto is = [&] {
      return ReadText(root_ / "station/ZemoOnOff.Dat") == std::string(1, state);
    };
    return WaitFor(is, [] { usleep(5000); });
  }
};

using WordList = std::vector<std::string>;

TEST_F(Triggers, AContactOfAScriptTakesTheAirForTheSatellite) {
  MakeStation({300}, true);
  Sql("UPDATE Cnf SET PortCom = 1, EntreSat = 2");
  const Result result = Simulate("12:00:20 contact 1 on\n12:00:40 contact 1 off\n+5 dump\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Words(result.out), (WordList{"12:00:20.100 Info Sat On", "12:00:40.100 Fin Info Sat"}));
  EXPECT_NE(result.out.find("\"LedSat\":[32768,32768,32768,32768]"), std::string::npos);
  EXPECT_EQ(result.out.find("\"event\":\"error\""), std::string::npos);
}

TEST_F(Triggers, AButtonOfAScriptDoesToo) {
  MakeStation({300}, true);
  Sql("UPDATE Cnf SET JoystiquePort = 2");
  const Result result = Simulate("12:00:20 joystick 2 down\n12:00:40 joystick 2 up\n");
  EXPECT_EQ(Words(result.out), (WordList{"12:00:20.000 Info Sat On", "12:00:40.000 Fin Info Sat"}));
}

TEST_F(Triggers, WiresThatNoPortListensToAreNoEvent) {
  MakeStation({300}, true);
  const Result quiet = Simulate("");
  const Result pulled = Simulate("+20 contact 1 on\n+1 joystick 2 down\n+1 joystick 2 up\n");
  EXPECT_EQ(quiet.status, 0);
  EXPECT_EQ(pulled.out, quiet.out);
}

TEST_F(Triggers, TheWordOfAScriptHandsTheAirBackAfterTopage) {
  MakeStation({5, 5, 5}, true);
  Put("station/Topage.5", "\"12:00\"\r\n");
  const Result result = Simulate("12:00:30 clipboard Zemo Play Now\n");
  const WordList words = Words(result.out);
  ASSERT_EQ(words.size(), 3u) << result.out;
  EXPECT_EQ(words[0], "12:00:00.100 12:00:00");
  EXPECT_EQ(words[1].substr(13), "Topage");
  EXPECT_EQ(words[2], "12:00:30.000 Zemo Play Now");
  EXPECT_NE(result.out.find("12:00:30.000\",\"event\":\"engine\",\"running\":true"),
            std::string::npos)
      << result.out;
}

// --- on air, in real time ---

TEST_F(Triggers, OnAirTheAutomatonTakesAndTheDesktopHearsOfIt) {
  MakeStation({600, 600}, true);
  Sql("UPDATE Cnf SET PortCom = 1, EntreSat = 2");
  Put("machine/Settings.Ini", "PortCom1=" + Path("ours") + "\nPortComSetting=9600,N,8,1\n");
  const Child socat(
      {"socat", "PTY,raw,echo=0,link=" + Path("ours"), "PTY,raw,echo=0,link=" + Path("theirs")});
  ASSERT_TRUE(WaitFor(
      [&] {
        return std::filesystem::exists(Path("ours")) && std::filesystem::exists(Path("theirs"));
      },
      [] { usleep(1000); }));
  Child automaton({ZEMO_AUTOMATON_PROGRAM, Path("theirs")});
  ASSERT_EQ(automaton.Line(), "ready");
  const test::VirtualScreen screen;
  const Child air({Program(), "run", "--station", Path("station"), "--machine", Path("machine"),
                   "--output", "null"});
  ASSERT_EQ(automaton.Line(), "E");  // it polls
  ASSERT_TRUE(OnOffBecomes('1'));
  const auto clipboardBecomes = [](const std::string& text) {
    return WaitFor([&] { return test::OthersClipboard() == text; }, [] { usleep(5000); });
  };
  automaton.Tell("contacts 2\n");
  EXPECT_TRUE(clipboardBecomes("Info Sat On"));
  EXPECT_TRUE(
      WaitFor([&] { return SqlText("SELECT AUTEUR FROM Rapport WHERE GENRE = 'INFO SAT'") != ""; },
              [] { usleep(5000); }));
  EXPECT_TRUE(OnOffBecomes('0'));
  automaton.Tell("contacts 0\n");
  EXPECT_TRUE(clipboardBecomes("Fin Info Sat"));
  EXPECT_TRUE(OnOffBecomes('1'));
}

TEST_F(Triggers, OnAirANeighbourHandsTheAirBackByTheClipboard) {
  MakeStation({2, 2}, true);
  std::string everyMinute;
  for (int minute = 0; minute < 24 * 60; ++minute) {
    char line[16];
    std::snprintf(line, sizeof line, "\"%02d:%02d\"\r\n", minute / 60, minute % 60);
    everyMinute += line;
  }
  for (int day = 0; day < 7; ++day) Put("station/Topage." + std::to_string(day), everyMinute);
  const test::VirtualScreen screen;
  const Child air({Program(), "run", "--station", Path("station"), "--machine", Path("machine"),
                   "--output", "null"});
  const auto topage = [&] {
    return ReadText(root_ / "station/CheckTopage.Dat") == "Topage          ";
  };
  ASSERT_TRUE(WaitFor(topage, [] { usleep(5000); }));
  EXPECT_TRUE(WaitFor([] { return test::OthersClipboard() == "Topage"; }, [] { usleep(5000); }));
  EXPECT_EQ(ReadText(root_ / "station/ZemoOnOff.Dat"), "0");
  const auto neighbour = test::OtherHolds("Zemo Play Now");
  EXPECT_TRUE(OnOffBecomes('1'));
}

TEST_F(Triggers, APortThatIsNotThereIsOneLineAndTheAirGoesOn) {
  MakeStation({2}, true);
  Sql("UPDATE Cnf SET PortCom = 1");
  Put("machine/Settings.Ini", "PortCom1=/dev/no-such-line\n");
  const Result result = Run("run --station station --machine machine --output null --for 1");
  EXPECT_EQ(result.status, 0);
  const std::string log = ReadText(root_ / "station/Messages.Txt");
  EXPECT_EQ(LinesOf(log).size(), 1u) << log;
  EXPECT_NE(log.find("/dev/no-such-line: "), std::string::npos) << log;
  EXPECT_NE(result.out.find("Artist 1  Title 1"), std::string::npos) << result.out;
}

}  // namespace
}  // namespace zemo
