// `zemoradio new`: a station without music, and what it needs to play some.
#include "BlackBox.h"

namespace zemo {
namespace {

class NewStation : public BlackBox {
 protected:
  // A title as README has it entered by hand.
  void AddTitle(const std::string& name, int seconds) const {
    PutWav("music/" + name + ".wav", seconds);
    std::string hours, masks;
    for (int day = 1; day <= 7; ++day) {
      hours += ", TRANCHE0" + std::to_string(day);
      masks += ", '" + std::string(24, '1') + "'";
    }
    Put("title",
        "INSERT INTO Discotheque (FILENAME, DUREE, INTRO, AUTEUR, TITRE, GENRE, VARIETE, "
        "NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, POINTSORTIE" +
            hours + ") VALUES ('" + Path("music/" + name + ".wav") + "', " +
            std::to_string(seconds * 1000) + ", 0, 'Artist', '" + name +
            "', 'PLAYLIST', 'NATIONAL', 100, 2, 0, 0, 500" + masks + ");");
    const Result added = Shell("sqlite3 radio/Triskin.MDB <title");
    ASSERT_EQ(added.err, "");
  }

  std::string Ask(const std::string& query) const {
    return Shell("sqlite3 radio/Triskin.MDB \"" + query + "\"").out;
  }
};

TEST_F(NewStation, SharesEveryHourOfTheWeekOutAmongItsGenres) {
  ASSERT_EQ(Run("new radio").status, 0);
  for (int hour = 0; hour < 24; ++hour) {
    const std::string column =
        std::string(hour < 10 ? "TRANCHE0" : "TRANCHE") + std::to_string(hour);
    EXPECT_EQ(Ask("SELECT JOUR, SUM(" + column + ") FROM Models GROUP BY JOUR"),
              "1|100\n2|100\n3|100\n4|100\n5|100\n6|100\n7|100\n")
        << column;
  }
  EXPECT_EQ(ReadText(root_ / "radio/Genre.Txt"),
            "INSTRUMENTAL\r\nSTARTER\r\nPLAYLIST\r\nGOLD N-1\r\nGOLD N-2\r\nGOLD N-3\r\nGOLD "
            "N-4\r\n");
  EXPECT_EQ(Ask("SELECT DISTINCT GENRE FROM Models ORDER BY CODE"),
            "INSTRUMENTAL\nSTARTER\nPLAYLIST\nGOLD N-1\nGOLD N-2\nGOLD N-3\nGOLD N-4\n");
}

TEST_F(NewStation, SpeaksTheLanguageOfTheMachine) {
  const struct {
    const char* locale;
    const char* langue;
  } cases[] = {{"LANG=en_GB.UTF-8", "1\n"},     {"LANG=pt_BR.UTF-8", "2\n"},
               {"LANG=es_AR.UTF-8", "3\n"},     {"LANG=fr_FR.UTF-8", "0\n"},
               {"LANG=de_DE.UTF-8", "0\n"},     {"LANG=C.UTF-8", "0\n"},
               {"LANG=fr_FR LC_ALL=en", "1\n"}, {"LANG=fr_FR LC_MESSAGES=es@euro", "3\n"}};
  for (const auto& one : cases) {
    Shell("rm -rf radio; unset LANG LC_ALL LC_MESSAGES; " + std::string(one.locale) +
          " $zemoradio new radio");
    EXPECT_EQ(Ask("SELECT Langue FROM Cnf"), one.langue) << one.locale;
  }
}

TEST_F(NewStation, HoldsNoCardNoCampaignAndNoPip) {
  ASSERT_EQ(Run("new radio").status, 0);
  for (const char* table : {"Discotheque", "DiscothequeJingle", "DiscothequeVirgule", "GrillePub",
                            "Playlist", "Pls", "VT", "Rapport"})
    EXPECT_EQ(Ask(std::string("SELECT COUNT(*) FROM ") + table), "0\n") << table;
  EXPECT_EQ(Ask("SELECT COUNT(*) FROM Toph WHERE FICHIER <> ''"), "0\n");
}

TEST_F(NewStation, LacksNothingButMusic) {
  ASSERT_EQ(Run("new radio").status, 0);
  const Result checked = Run("check radio");
  const auto lines = LinesOf(checked.out);
  ASSERT_EQ(lines.size(), 8u) << checked.out;  // the seven genres and the count
  for (size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(lines[i].rfind("check: model: ", 0), 0u) << lines[i];
    EXPECT_NE(lines[i].find("no title"), std::string::npos) << lines[i];
  }
  EXPECT_EQ(lines[7], "check: 0 errors, 7 warnings");
}

TEST_F(NewStation, PlaysTheMusicThatItIsGivenAndNothingElse) {
  ASSERT_EQ(Run("new radio").status, 0);
  std::filesystem::create_directory(root_ / "music");
  for (const char* name : {"one", "two", "three"}) AddTitle(name, 61);
  const Result checked = Run("check radio");
  EXPECT_NE(checked.out.find("check: 0 errors, "), std::string::npos) << checked.out;
  // Over the top of an hour and the marks at which the demo has its breaks.
  const Result run =
      Run("simulate --station radio --from '2026-11-23 09:52:00' --for 10m --trace trace");
  ASSERT_EQ(run.status, 0) << run.err;
  const std::string trace = ReadText(root_ / "trace");
  int titles = 0;
  for (const std::string& line : LinesOf(trace)) {
    EXPECT_EQ(line.find("\"event\":\"error\""), std::string::npos) << line;
    EXPECT_EQ(line.find("\"reason\":\"pip\""), std::string::npos) << line;
    if (line.find("\"event\":\"start\"") == std::string::npos) continue;
    ++titles;
    EXPECT_NE(line.find(Path("music/")), std::string::npos) << line;
  }
  EXPECT_EQ(titles, 10) << trace;  // begins 60.5 s apart
}

TEST_F(NewStation, TellsWhereMusicGoesAndWhatToTypeThen) {
  const Result made = Run("new radio");
  EXPECT_EQ(made.err, "");
  EXPECT_NE(made.out.find("zemoradio import --station '" + Path("radio") + "' FOLDER"),
            std::string::npos)
      << made.out;
  EXPECT_NE(made.out.find("zemoradio check '" + Path("radio") + "'"), std::string::npos);
  EXPECT_NE(made.out.find("zemoradio --station '" + Path("radio") + "'"), std::string::npos);
}

TEST_F(NewStation, IsMadeInAnEmptyFolderAndBelowAMissingOne) {
  EXPECT_EQ(Run("new station/").status, 0);
  EXPECT_TRUE(std::filesystem::exists(root_ / "station/Triskin.MDB"));
  EXPECT_EQ(Run("new far/away").status, 0);
  EXPECT_TRUE(std::filesystem::exists(root_ / "far/away/Triskin.MDB"));
  EXPECT_EQ(Files("station").size(), 12u);  // the base, four lists and seven days: no part is left
}

TEST_F(NewStation, IsRefusedInOneLineWhereAnythingStands) {
  Put("station/.note", "mine");
  const Result refused = Run("new station");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err, "zemoradio: " + Path("station") + " is not empty; nothing was changed\n");
  EXPECT_EQ(Files("station").size(), 1u);
  Put("file", "mine");
  EXPECT_EQ(Run("new file").err,
            "zemoradio: " + Path("file") + " is no folder; nothing was changed\n");
  EXPECT_EQ(ReadText(root_ / "file"), "mine");
  const Result below = Run("new file/radio");
  EXPECT_EQ(below.status, 1);
  ExpectOneError(below.err);
}

// A limit on the size of a file stands for a disk that is full: the base does not fit.
TEST_F(NewStation, ThatCannotBeMadeWholeLeavesNothing) {
  for (const char* folder : {"station", "radio"}) {
    const Result failed =
        Shell(std::string("trap '' XFSZ; ulimit -f 16; $zemoradio new ") + folder);
    EXPECT_EQ(failed.status, 1);
    ExpectOneError(failed.err);
  }
  EXPECT_TRUE(Files("station").empty());
  EXPECT_FALSE(std::filesystem::exists(root_ / "radio"));
}

}  // namespace
}  // namespace zemo
