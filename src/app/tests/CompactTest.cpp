// `zemoradio compact`, and the changes of a base as a run and a simulation tell them.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

class Compact : public BlackBox {
 protected:
  static constexpr const char* kCompact = "compact --station station --machine machine";

  std::string Base() const { return Path("station/Triskin.MDB"); }
  // A base with room to win: half of its cards are gone.
  void MakeLooseStation() {
    MakeStation({2});
    Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000) "
        "INSERT INTO Rapport(TITRE) SELECT 'title' FROM n; DELETE FROM Rapport WHERE CODE > 10");
    fs::remove(Path("station/Triskin.BAK"));  // its first start was one of this month
  }
  void Sql(const std::string& sql, const std::string& file = "station/Triskin.MDB") const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(Path(file).c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(database);
  }
  std::string Ask(const std::string& sql) const {
    const Result asked = Shell("sqlite3 station/Triskin.MDB \"" + sql + "\"");
    return asked.out.empty() ? asked.err : LinesOf(asked.out)[0];
  }
  // The events of that name, each without its moment.
  std::vector<nlohmann::json> Events(const std::string& name) const {
    std::vector<nlohmann::json> found;
    for (const std::string& line : LinesOf(ReadText(root_ / "trace"))) {
      nlohmann::json event = nlohmann::json::parse(line);
      event.erase("at");
      if (event["event"] == name) found.push_back(event);
    }
    return found;
  }
  void ExpectUntouched(const Result& refused, const std::string& before) const {
    EXPECT_EQ(refused.status, 1);
    ExpectOneError(refused.err);
    EXPECT_NE(refused.err.find("is open in another program"), std::string::npos) << refused.err;
    EXPECT_TRUE(ReadText(Base()) == before);
    EXPECT_FALSE(fs::exists(Path("station/Triskin.BAK")));
  }
};

TEST_F(Compact, GivesASmallerBaseWithAllItsRowsAndKeepsTheFormerOne) {
  MakeLooseStation();
  const std::string before = ReadText(Base());
  const Result done = Run(kCompact);
  EXPECT_EQ(done.status, 0) << done.err;
  EXPECT_EQ(done.err, "");
  EXPECT_LT(fs::file_size(Base()), before.size());
  EXPECT_EQ(done.out, fs::canonical(Base()).string() + ": " + std::to_string(before.size()) +
                          " bytes, now " + std::to_string(fs::file_size(Base())) + "\n");
  EXPECT_TRUE(ReadText(Path("station/Triskin.BAK")) == before);
  EXPECT_EQ(Ask("PRAGMA integrity_check"), "ok");
  EXPECT_EQ(Ask("SELECT COUNT(*) FROM Rapport"), "10");
  EXPECT_EQ(ReadText(Path("machine/Settings.Ini")).rfind("LastCompactage=", 0), 0U);
  for (const char* left : {"TriskinN.MDB", "TriskinN.MDB-journal", "Triskin.MDB-journal"})
    EXPECT_FALSE(fs::exists(Path("station/" + std::string(left)))) << left;
}

TEST_F(Compact, IsRefusedWhileTheStationIsOnAirWhichGoesOn) {
  MakeLooseStation();
  const Result both = Shell(
      "$zemoradio run --station station --machine machine --output null >lines & "
      "i=0; until [ -s station/ZemoOnOff.Dat ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; "
      "rm -f station/Triskin.BAK; "
      "$zemoradio compact --station station --machine machine 2>refused; echo $? >status; "
      "kill -TERM $!; wait $!");
  EXPECT_EQ(both.status, 0) << both.err;
  EXPECT_EQ(ReadText(Path("status")), "1\n");
  ExpectOneError(ReadText(Path("refused")));
  EXPECT_NE(ReadText(Path("refused")).find("is open in another program"), std::string::npos);
  EXPECT_FALSE(fs::exists(Path("station/Triskin.BAK")));
}

TEST_F(Compact, IsRefusedWhileAToolOnlyHasTheBaseOpen) {
  MakeLooseStation();
  const std::string before = ReadText(Base());
  ExpectUntouched(Shell("mkfifo words; sqlite3 station/Triskin.MDB <words >said & exec 3>words; "
                        "echo 'SELECT 1;' >&3; i=0; "
                        "until [ -s said ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; "
                        "$zemoradio " +
                        std::string(kCompact) + "; s=$?; exec 3>&-; wait; exit $s"),
                  before);
}

TEST_F(Compact, OfNoStationIsOneError) {
  for (const char* words : {"compact --station nowhere", "compact --station machine"}) {
    const Result none = Run(words);
    EXPECT_EQ(none.status, 1);
    ExpectOneError(none.err);
  }
}

TEST_F(Compact, ADamagedBaseStaysAsItIs) {
  MakeLooseStation();
  std::string bytes = ReadText(Base());
  bytes.replace(8192, 20000, 20000, '\x55');
  Put("station/Triskin.MDB", bytes);
  const Result result = Run(kCompact);
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
  EXPECT_TRUE(ReadText(Base()) == bytes);
  EXPECT_EQ(ReadText(Path("machine/Settings.Ini")), "");
}

// --- simulations ---

TEST_F(Compact, ASimulationTellsWhatBecomesOfAnOldBaseAndLeavesTheStationAsItWas) {
  MakeLooseStation();
  Sql("ALTER TABLE Cnf DROP COLUMN OutExtrait");
  const auto before = Files("station");
  const Result result =
      Run("simulate --station station --for 1 --no-start --from '2026-11-21 12:00:00' "
          "--trace trace");
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Events("base"), (std::vector<nlohmann::json>{
                                {{"event", "base"}, {"state", "opened"}},
                                {{"event", "base"}, {"state", "rebuilt"}, {"table", "Cnf"}},
                                {{"event", "base"}, {"state", "compacted"}}}));
  EXPECT_EQ(Events("message"),
            (std::vector<nlohmann::json>{
                {{"event", "message"},
                 {"title", ""},
                 {"text", "Mise à jour de la table des paramètres effectuée avec succès"},
                 {"buttons", "ok"},
                 {"answer", "ok"}}}));
  EXPECT_TRUE(Files("station") == before);
}

TEST_F(Compact, ASimulationHandsOverABaseThatItsScriptDrops) {
  MakeStation({200, 200});
  fs::copy_file(Base(), Path("production"));
  Sql("UPDATE Cnf SET FadeOut = 777", "production");
  std::string line;
  for (int field = 1; field <= 20; ++field) line += std::string(field == 1 ? "" : "\t") + "x";
  Put("campaigns", line + "\r\n");
  Put("script", "+0 insert music 1\n+0 insert music 2\n+60 drop " + Path("production") +
                    " New.mdb\n+0 drop " + Path("campaigns") + " ExportPubs.Txt\n");
  const Result result =
      Run("simulate --station station --machine machine --in-place --for 300 "
          "--from '2026-11-21 12:00:00' --script script --trace trace");
  ASSERT_EQ(result.status, 0) << result.err;
  ASSERT_EQ(Events("base").size(), 3U);
  EXPECT_EQ(Events("base")[2]["state"], "swapped");
  EXPECT_EQ(Events("import").size(), 1U);
  EXPECT_EQ(Events("error").size(), 0U);
  EXPECT_EQ(Ask("SELECT FadeOut FROM Cnf"), "777");
  EXPECT_EQ(Ask("SELECT COUNT(*) FROM GrillePub"), "1");
  EXPECT_FALSE(fs::exists(Path("station/New.mdb")));
  EXPECT_FALSE(fs::exists(Path("station/Triskin.LDB")));  // a simulation is by itself
}

// --- a machine that comes up alone ---

TEST_F(Compact, AnUpgradeHoldsNoMachineThatGoesOnAirByItself) {
  MakeStation({2}, true);
  Sql("ALTER TABLE Toph DROP COLUMN JourSemaine");
  Put("machine/ZemoPlay.Ini", "#TRUE#\r\n");
  const Result result = Run("run --station station --machine machine --output null --for 1");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err,
            "zemoradio: message: Mise à jour de la table des top horaires effectuée avec succès\n");
  EXPECT_NE(result.out.find("Artist 1"), std::string::npos) << result.out;
  EXPECT_EQ(Ask("SELECT COUNT(*) FROM Toph WHERE JourSemaine = 'XXXXXXX'"), "24");
  EXPECT_TRUE(fs::exists(Path("station/Triskin.BAK")));  // and its first start of the month
}

}  // namespace
}  // namespace zemo
