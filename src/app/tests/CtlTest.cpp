// `zemoradio ctl` from outside: a station on air in real time, asked and given orders by other
// processes. What the page on the socket shows is tried as it is printed.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>

#include "BlackBox.h"

namespace zemo {
namespace {

class Ctl : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation({900, 900, 900});
  }

  // Shell: a station on air with nothing to play, whose socket is there; `run` is its process.
  static std::string OnAirBefore(const std::string& commands) {
    return "$zemoradio run --station station --machine machine --output null >lines 2>faults & "
           "run=$!; ctl() { $zemoradio ctl --machine machine \"$@\"; }; " +
           Until("[ -S machine/Control.Sock ]") + commands +
           "; s=$?; while kill -TERM $run 2>/dev/null; do sleep 0.1; done; wait $run; exit $s";
  }
  static std::string Until(const std::string& condition) {
    return "i=0; until " + condition + " || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; ";
  }
  Result OnAir(const std::string& commands) const { return Shell(OnAirBefore(commands)); }
  static nlohmann::json StatusOf(const std::string& line) {
    const nlohmann::json answer = nlohmann::json::parse(line, nullptr, false);
    return answer.is_object() ? answer.value("status", nlohmann::json()) : nlohmann::json();
  }
};

TEST_F(Ctl, GivesEveryOrderOfAnOperator) {
  const char* const orders[] = {"mode live",
                                "insert music 1",
                                "insert music 2 1",
                                "insert music 3",
                                "insert extract 1",
                                "move 1 3",
                                "delete 3",
                                "rightclick 3",
                                "next",
                                "stop",
                                "start",
                                "check CheckNoJingle on",
                                "local XRapport 7",
                                "set FadeOut 1234",
                                "save 'A list' '' '' 0",
                                "load 1",
                                "compose",
                                "overlay music 3",
                                "dump",
                                "mode auto",
                                "request",
                                "new"};
  std::string commands;
  for (const char* order : orders)
    commands += "ctl " + std::string(order) + " || { echo " + order + " >>refused; }; ";
  // The answers tell that they were carried out, the status what they did.
  const Result result = OnAir(
      "ctl mode live; ctl insert music 2; ctl insert music 1 1; ctl --json status "
      ">before; " +
      commands + "ctl --json status");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(ReadText(root_ / "refused"), "");
  EXPECT_EQ(StatusOf(ReadText(root_ / "before"))["mode"], "live");
  EXPECT_EQ(StatusOf(LinesOf(result.out).back())["mode"], "auto");
  EXPECT_NE(ReadText(root_ / "machine/Settings.Ini").find("XRapport=7"), std::string::npos);
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT FadeOut FROM Cnf'").out, "1234\n");
}

// The second title is on air, the first one stands in the list; then an order a line.
TEST_F(Ctl, TheOrdersDoToTheListWhatTheyAreCalled) {
  const std::pair<const char*, std::vector<int>> steps[] = {
      {"insert music 1", {1, 1}},
      {"insert music 2 1", {2, 1, 1}},
      {"insert music 3", {2, 1, 1, 3}},
      {"insert extract 1", {-6, 2, 1, 1, 3}},
      {"move 1 3", {2, 1, -6, 1, 3}},
      {"delete 3", {2, 1, 1, 3}},
      {"rightclick 3", {2, 1, 3}},
      {"save 'A list' '' '' 0", {2, 1, 3}},
      {"new", {}},
      {"load 1", {2, 1, 3}},
  };
  std::string commands = "ctl mode live; ctl insert music 2; " + Until("ctl | grep -q '^now'") +
                         "ctl insert music 1; ";
  for (const auto& [order, list] : steps)
    commands += "ctl " + std::string(order) + " && ctl --json status >>pictures; ";
  const Result result = OnAir(commands + "true");
  EXPECT_EQ(result.status, 0) << result.err;
  const std::vector<std::string> pictures = LinesOf(ReadText(root_ / "pictures"));
  ASSERT_EQ(pictures.size(), std::size(steps)) << result.err;
  for (size_t at = 0; at < pictures.size(); ++at) {
    std::vector<int> codes;
    const nlohmann::json status = StatusOf(pictures[at]);
    for (const nlohmann::json& row : status.at("list")) codes.push_back(row["code"]);
    EXPECT_EQ(codes, steps[at].second) << steps[at].first;
  }
}

TEST_F(Ctl, TheOrdersReachTheAirAndTheLights) {
  const Result result = OnAir(
      "ctl mode live; ctl insert music 1; ctl insert music 2; ctl watch >events & watch=$!; " +
      Until("{ ctl dump; grep -q '\"state\"' events; }") + "ctl overlay music 3; ctl next; " +
      Until("grep -q 'Title 2' events") +
      "ctl check CheckNoJingle on; ctl --json status >lit; ctl stop; ctl --json status >stopped; "
      "ctl start; ctl --json status >started; kill $watch; wait $watch; true");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(ReadText(root_ / "events").find("title3.wav"), std::string::npos);
  EXPECT_EQ(StatusOf(ReadText(root_ / "lit"))["lights"]["no_jingle"], true);
  EXPECT_EQ(StatusOf(ReadText(root_ / "stopped"))["on_air"], false);
  EXPECT_EQ(StatusOf(ReadText(root_ / "started"))["on_air"], true);
}

TEST_F(Ctl, ShowsWhatPlaysAndWhatComesNext) {
  const Result result = OnAir("ctl mode live; ctl insert music 1; ctl insert music 2; " +
                              Until("ctl | grep -q '^now'") + "ctl; ctl --json status");
  EXPECT_EQ(result.status, 0) << result.err;
  const std::vector<std::string> lines = LinesOf(result.out);
  ASSERT_GE(lines.size(), 5u);
  EXPECT_EQ(lines[0], "on air, but no device takes the sound, live mode");
  EXPECT_EQ(lines[2].substr(0, 29), "now       Artist 1  Title 1  ");
  EXPECT_NE(lines[3].find("Artist 2  Title 2"), std::string::npos) << result.out;
  // The list closes what is told in words: its head, and its one row of 15 minutes.
  EXPECT_EQ(lines[lines.size() - 3].substr(0, 18), "list      1 rows, ");
  const std::string& row = lines[lines.size() - 2];
  EXPECT_EQ(row.substr(0, 10), "   1      ");
  EXPECT_TRUE(row.ends_with("  15:00  Artist 2  Title 2")) << row;
  const nlohmann::json status = StatusOf(lines.back());
  EXPECT_EQ(status["element"]["code"], 1);
  EXPECT_EQ(status["list_rows"], 1);
}

TEST_F(Ctl, WatchesTheEventsAsTheyHappen) {
  const Result result = OnAir(
      "ctl mode live; ctl insert music 1; ctl watch >events & watch=$!; ctl insert music 2; " +
      Until("{ ctl check CheckNoJingle on && ctl check CheckNoJingle off; grep -q flag events; }") +
      "ctl next; " + Until("grep -q 'Title 2' events") +
      "kill $watch; wait $watch; ctl --json metrics >metrics");
  EXPECT_EQ(result.status, 0) << result.err;
  bool started = false;
  for (const std::string& line : LinesOf(ReadText(root_ / "events"))) {
    const nlohmann::json event = nlohmann::json::parse(line, nullptr, false);
    ASSERT_TRUE(event.is_object()) << line;
    EXPECT_TRUE(event.contains("at"));
    started |= event["event"] == "start" && event["title"] == "Artist 2  Title 2";
  }
  EXPECT_TRUE(started) << ReadText(root_ / "events");
}

TEST_F(Ctl, WatchesTheStatusAsItChanges) {
  const Result result =
      OnAir("ctl mode live; ctl watch status >pictures & watch=$!; " +
            Until("grep -q '\"mode\":\"live\"' pictures") + "ctl mode auto; " +
            Until("grep -q '\"mode\":\"auto\"' pictures") + "kill $watch; wait $watch; true");
  EXPECT_EQ(result.status, 0) << result.err;
  std::vector<std::string> modes;
  for (const std::string& line : LinesOf(ReadText(root_ / "pictures"))) {
    const std::string mode = StatusOf(line).value("mode", "none");
    if (modes.empty() || modes.back() != mode) modes.push_back(mode);
  }
  EXPECT_EQ(modes, (std::vector<std::string>{"live", "auto"}));
}

// In the program's place one that sends the client away behind an event.
TEST_F(Ctl, WhoWatchesAndIsSentAwayIsToldWhy) {
  Put("says",
      "{\"zemo\":1}\n{\"id\":1,\"ok\":true}\n{\"at\":\"now\",\"event\":\"engine\"}\n"
      "{\"id\":null,\"error\":\"too many requests\"}\n");
  const Result result = Shell("socat -t 10 UNIX-LISTEN:machine/Control.Sock - <says >asked & " +
                              Until("[ -S machine/Control.Sock ]") +
                              "$zemoradio ctl --machine machine watch; s=$?; wait; exit $s");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "{\"at\":\"now\",\"event\":\"engine\"}\n");
  EXPECT_EQ(result.err, "zemoradio: too many requests\n");
  EXPECT_EQ(ReadText(root_ / "asked"), "{\"do\":\"watch\",\"id\":1}\n");
}

TEST_F(Ctl, AsksNoProgramOfAnotherVersion) {
  Put("says", "{\"zemo\":2}\n");
  const Result result = Shell("socat -t 10 UNIX-LISTEN:machine/Control.Sock - <says >asked & " +
                              Until("[ -S machine/Control.Sock ]") +
                              "$zemoradio ctl --machine machine next; s=$?; wait; exit $s");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "zemoradio: the program on air speaks another version of the control socket\n");
  EXPECT_EQ(ReadText(root_ / "asked"), "");
}

// A file of figures that is cut short has to be no success.
TEST_F(Ctl, FailsWhereItsWordsFindNoRoom) {
  const Result result = OnAir("ctl metrics >/dev/full");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("No space left on device"), std::string::npos) << result.err;
}

TEST_F(Ctl, TellsWhatWentWrongByItsStatusAndOneLine) {
  const Result none = Run("ctl --machine machine next");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "zemoradio: nothing is on air with the machine folder machine\n");
  const Result unknown = Run("ctl --machine machine nxet");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.err, "zemoradio: ctl: unknown order 'nxet'\n");
  EXPECT_EQ(Run("ctl --machine machine sql 'DELETE FROM Cnf'").status, 2);
  EXPECT_EQ(Run("ctl --machine machine preview 2026-12-24").status, 2);
  EXPECT_EQ(Run("ctl --machine machine status now").status, 2);
  EXPECT_EQ(Run("ctl --machine machine watch events").err,
            "zemoradio: ctl watch takes nothing behind it\n");
  EXPECT_EQ(Run("ctl --machine none").err,
            "zemoradio: cannot open the machine folder none: No such file or directory\n");
  const Result refused = OnAir("ctl load 77");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "zemoradio: there is no stored list 77\n");
}

TEST_F(Ctl, TheSocketGoesWithItsProgramAndIsMadeAnewBehindOneThatWasKilled) {
  EXPECT_EQ(OnAir("true").status, 0);
  EXPECT_FALSE(std::filesystem::exists(root_ / "machine/Control.Sock"));
  const Result killed =
      Shell("$zemoradio run --station station --machine machine --output null >lines & run=$!; " +
            Until("[ -S machine/Control.Sock ]") + "kill -KILL $run; wait $run; ls machine");
  EXPECT_NE(killed.out.find("Control.Sock"), std::string::npos);
  EXPECT_EQ(Run("ctl --machine machine").status, 1);
  // The old one is still there while the new program starts.
  EXPECT_EQ(OnAir(Until("ctl >/dev/null 2>&1") + "ctl next").status, 0);
}

TEST_F(Ctl, WhereNoSocketCanBeMadeTheAirGoesOnAndTheLogSaysWhy) {
  Put("machine/Control.Sock", "no socket");
  const Result result = Run("run --station station --machine machine --output null --for 0");
  EXPECT_EQ(result.status, 0);
  ExpectOneError(result.err);
  EXPECT_NE(result.err.find("machine/Control.Sock is no socket"), std::string::npos);
  EXPECT_NE(ReadText(root_ / "station/Messages.Txt").find("is no socket"), std::string::npos);
  EXPECT_EQ(ReadText(root_ / "machine/Control.Sock"), "no socket");
}

TEST_F(Ctl, TheProgramWithItsScreenHasTheSocketToo) {
  const Result result = Shell(
      "chmod 700 $TMPDIR; export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$TMPDIR; "
      "$zemoradio --station station --machine machine --output null 2>faults & run=$!; " +
      Until("[ -S machine/Control.Sock ]") +
      "$zemoradio ctl --machine machine start && $zemoradio ctl --machine machine; s=$?; "
      "while kill -TERM $run 2>/dev/null; do sleep 0.1; done; wait $run; exit $s");
  EXPECT_EQ(result.status, 0) << result.err << ReadText(root_ / "faults");
  EXPECT_EQ(result.out.substr(0, 6), "on air") << result.out;
}

// What the page shows behind "<" is sent, and what it shows behind ">" has to come, member by
// member; three points stand for any value, or for members and items that are left out.
class ControlPage : public Ctl {
 protected:
  struct Exchange {
    std::string sent;  // empty: it comes by itself
    std::vector<std::string> shown;
  };
  static std::vector<Exchange> Session(const std::string& page) {
    std::vector<Exchange> session{{}};
    bool inside = false;
    for (const std::string& line : LinesOf(page)) {
      if (line == "```session") inside = true;
      if (line == "```") inside = false;
      if (inside && line.starts_with("< ")) session.push_back({line.substr(2), {}});
      if (inside && line.starts_with("> ")) session.back().shown.push_back(line.substr(2));
    }
    return session;
  }
  // The page's form of a line as a pattern of texts.
  static bool Fits(const std::string& shown, const std::string& line) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    std::string pattern = std::regex_replace(shown, special, R"(\$&)");
    pattern = std::regex_replace(pattern, std::regex(R"(\\\.\\\.\\\.)"), ".*");
    return std::regex_match(line, std::regex(pattern));
  }
};

TEST_F(ControlPage, ShowsASessionThatTakesPlace) {
  const std::vector<Exchange> session = Session(ReadText(ZEMO_CONTROL_PAGE));
  ASSERT_GE(session.size(), 7u);
  std::string says;
  for (const Exchange& exchange : session)
    if (!exchange.sent.empty()) says += exchange.sent + "\n";
  Put("says", says);
  // One line after the other, each behind the answer to the one before; then what still comes.
  const Result result =
      OnAir("{ n=1; while IFS= read -r line; do " +
            Until("[ \"$(grep -c '^{\\(\"zemo\"\\|\"id\"\\)' heard 2>/dev/null)\" -ge $n ]") +
            "printf '%s\\n' \"$line\"; n=$((n+1)); done <says; " +
            Until("grep -q '\"event\":\"engine\"' heard") +
            "} | socat -t 1 - UNIX-CONNECT:machine/Control.Sock >heard");
  EXPECT_EQ(result.status, 0) << result.err;
  const std::string heard = ReadText(root_ / "heard");
  const std::vector<std::string> lines = LinesOf(heard);
  for (const Exchange& exchange : session)
    for (const std::string& shown : exchange.shown)
      EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                              [&](const std::string& line) { return Fits(shown, line); }))
          << shown << "\n"
          << heard;
}

// Every member of a status stands in the page's table, and nothing else does.
TEST_F(ControlPage, TellsEveryMemberOfAStatus) {
  const Result result = OnAir("ctl mode live; ctl insert music 1; ctl insert music 2; " +
                              Until("ctl | grep -q '^now'") + "ctl --json status");
  const nlohmann::json status = StatusOf(LinesOf(result.out).at(0));
  const std::string page = ReadText(ZEMO_CONTROL_PAGE);
  std::set<std::string> members;
  for (const auto& [name, value] : status.items()) {
    members.insert(name);
    const nlohmann::json& inner = value.is_array() && !value.empty() ? value[0] : value;
    if (!inner.is_object()) continue;
    for (const auto& [below, unused] : inner.items()) members.insert(name + "." + below);
  }
  ASSERT_GE(members.size(), 40u);
  for (const std::string& member : members)
    EXPECT_NE(page.find("| `" + member + "` |"), std::string::npos) << member;
}

class MonitoringPage : public Ctl {};

// Names in the rules and on the page are those of the program, and each of its own stands there.
TEST_F(MonitoringPage, AndItsRulesNameTheMetricsThatThereAre) {
  const Result result = OnAir("ctl metrics");
  ASSERT_EQ(result.status, 0) << result.err;
  Put("metrics", result.out);
  const Result checked =
      Shell("python3 " ZEMO_RULES_CHECK " metrics " ZEMO_RULES " " ZEMO_MONITORING_PAGE);
  EXPECT_EQ(checked.status, 0) << checked.out << checked.err;
}

}  // namespace
}  // namespace zemo
