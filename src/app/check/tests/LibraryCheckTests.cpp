// The library against the models and the rules. Three titles share every hour of the week in equal
// parts, so that each genre is to have 1200 s of it: 1 PLAYLIST, 4.6 s; 2 STARTER, 4.2 s; 3 GOLD
// N-1, 4.8 s.
#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

constexpr LocalDateTime kToday{.year = 2026, .month = 11, .day = 21};

class LibraryCheck : public CheckedStation {
 protected:
  // On that day, only what is found of that kind.
  Lines Found(const std::string& kind, const LocalDateTime& now = kToday) const {
    CheckOptions options = Options();
    options.now = now;
    Lines lines;
    for (const std::string& line : CheckedStation::Found(options))
      if (line.rfind(kind + ": ", 0) == 0) lines.push_back(line);
    return lines;
  }
  Lines Shares() const { return Found("library"); }
  Lines Titles() const { return Found("music"); }

  static std::string EveryMask(const std::string& mask) {
    std::string fields;
    for (int day = 1; day <= 7; ++day)
      fields += (day > 1 ? ", TRANCHE0" : "TRANCHE0") + std::to_string(day) + " = '" + mask + "'";
    return fields;
  }
};

TEST_F(LibraryCheck, AnUnlimitedLibraryFillsItsModels) {
  EXPECT_EQ(Shares(), Lines{});
  EXPECT_EQ(Titles(), Lines{});
  EXPECT_EQ(Found("model"), Lines{});
}

TEST_F(LibraryCheck, AGenreThatNoTitleHasIsNamed) {
  Sql("UPDATE Models SET GENRE = 'JAZZ' WHERE GENRE = 'STARTER' AND JOUR = 2");
  EXPECT_EQ(Found("model"),
            Lines{"model: JAZZ: the models ask for this genre, the library has no title of it "
                  "(warning)"});
  Sql("UPDATE Models SET GENRE = 'Starter' WHERE GENRE = 'JAZZ'");
  EXPECT_EQ(Found("model"),
            Lines{"model: Starter: the models ask for this genre, the library has no title of it; "
                  "its cards write it STARTER (warning)"});
}

TEST_F(LibraryCheck, AGenreWithoutAShareNeedsNoTitle) {
  Sql("INSERT INTO Models(JOUR, GENRE) VALUES (2, 'JAZZ')");
  EXPECT_EQ(Found("model"), Lines{});
}

// Two passes an hour of 4.2 s.
TEST_F(LibraryCheck, AGenreWhoseTitlesRestTooLongIsToldOnceWithItsHours) {
  Sql("UPDATE Discotheque SET ECARTMINUTES = 30 WHERE CODE = 2");
  EXPECT_EQ(Shares(),
            Lines{"library: STARTER: cannot fill its share (every day every hour): Monday "
                  "00 asks for 1200 s, 1 allowed title of 1 artist can give 8 s at their "
                  "gaps (warning)"});
}

TEST_F(LibraryCheck, OnlyTheHoursThatLackAreToldWithTheWorstOfThem) {
  Sql("UPDATE Discotheque SET TRANCHE02 = '111110111111111111100111', TRANCHE07 = "
      "'111110111111111111100111' WHERE CODE = 2; UPDATE Models SET TRANCHE20 = 60 WHERE GENRE = "
      "'STARTER' AND JOUR = 7");
  // 60 of 120 per cent of the hour.
  EXPECT_EQ(Shares(), Lines{"library: STARTER: cannot fill its share (Tuesday, Sunday 05, 19, 20): "
                            "Sunday 20 asks for 1800 s, 0 allowed titles of 0 artists can give 0 s "
                            "at their gaps (warning)"});
}

TEST_F(LibraryCheck, ATitleWithAGapOfDaysOrAShiftComesOnceAnHour) {
  Sql("UPDATE Discotheque SET ECARTJOURS = 1 WHERE CODE = 1");
  ASSERT_EQ(Shares().size(), 1U);
  EXPECT_NE(Shares()[0].find("PLAYLIST: cannot"), std::string::npos) << Shares()[0];
  EXPECT_NE(Shares()[0].find("can give 5 s"), std::string::npos) << Shares()[0];
  Sql("UPDATE Discotheque SET ECARTJOURS = 0; UPDATE Cnf SET DecalDiff = 1");
  EXPECT_EQ(Shares().size(), 3U);
}

// 1 of 601 per cent of the hour are 5.99 s, of the day 143.8 s; two passes an hour give 9.2 s,
// eight a day 36.8 s.
TEST_F(LibraryCheck, PassesThatAreTooFewForTheDayAreTold) {
  std::string few, many;
  for (int hour = 0; hour < 24; ++hour) {
    const std::string field = (hour > 0 ? ", TRANCHE" : "TRANCHE") +
                              std::string(hour < 10 ? "0" : "") + std::to_string(hour) + " = ";
    few += field + "1";
    many += field + "300";
  }
  Sql("UPDATE Models SET " + many + "; UPDATE Models SET " + few + " WHERE GENRE = 'PLAYLIST'");
  Sql("UPDATE Discotheque SET ECARTMINUTES = 30, NBPASSJOUR = 8 WHERE CODE = 1");
  EXPECT_EQ(
      Shares(),
      Lines{"library: PLAYLIST: cannot fill its share of the day (Monday, Tuesday, Wednesday, "
            "Thursday, Friday, Saturday, Sunday): Monday asks for 2 min, 1 title can give 1 "
            "min at their passes and gaps (warning)"});
  // A card remembers eight broadcasts, so that a ninth is never counted: 48 passes of 4.6 s.
  Sql("UPDATE Discotheque SET NBPASSJOUR = 9 WHERE CODE = 1");
  EXPECT_EQ(Shares(), Lines{});
}

// 794 titles an hour of 4.53 s: an artist comes 1 + 793 / 3 = 265 times.
TEST_F(LibraryCheck, TheGapBetweenTitlesOfAnArtistIsCounted) {
  Sql("UPDATE Cnf SET EcartArtiste = 2");
  EXPECT_EQ(Shares(),
            Lines{"library: STARTER: cannot fill its share (every day every hour): Monday "
                  "00 asks for 1200 s, 1 allowed title of 1 artist can give 1113 s at "
                  "their gaps (warning)"});
}

TEST_F(LibraryCheck, NoMoreArtistsThanTheStationKeepsApartIsTold) {
  Sql("UPDATE Cnf SET EcartArtiste = 3");
  const Lines lines = Shares();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(),
            "library: every day every hour: too few artists: 3 may play, EcartArtiste keeps 3 "
            "titles between two of one (warning)");
  Sql("UPDATE Discotheque SET ECARTARTISTE = 1");  // the station's own gap then concerns nobody
  for (const std::string& line : Shares())
    EXPECT_EQ(line.find("too few artists"), std::string::npos) << line;
}

TEST_F(LibraryCheck, TitlesWhoseWindowIsShutTodayAddNothingToday) {
  Sql("UPDATE Discotheque SET MMJJDebut = '1201', MMJJFin = '1231' WHERE CODE = 3");
  EXPECT_EQ(Shares().size(), 1U);
  EXPECT_EQ(Found("library", {.year = 2026, .month = 12, .day = 1}), Lines{});
}

TEST_F(LibraryCheck, MoreGenresOrVarietiesThanARequestHoldsAreErrors) {
  for (int i = 4; i <= 20; ++i)
    Sql("INSERT INTO Models(JOUR, GENRE) VALUES (1, 'G" + std::to_string(i) + "')");
  for (int i = 3; i <= 20; ++i)
    Sql("INSERT INTO Variete(VARIETE, POURCENT) VALUES ('V" + std::to_string(i) + "', 1)");
  EXPECT_EQ(Found("model"), Lines{});
  EXPECT_EQ(Found("variety"), Lines{});
  Sql("INSERT INTO Models(JOUR, GENRE) VALUES (1, 'G21')");
  Sql("INSERT INTO Variete(VARIETE, POURCENT) VALUES ('V21', 1)");
  EXPECT_EQ(Found("model"), Lines{"model: Monday: has 21 genres: a request ends at a title of none "
                                  "of the first 20"});
  EXPECT_EQ(Found("variety"), Lines{"variety: Variete: has 21 rows: a request ends at a title of "
                                    "none of the first 20"});
}

// --- titles that never play ---

TEST_F(LibraryCheck, ATitleOutOfRotationNeverPlays) {
  Sql("UPDATE Discotheque SET NBPASSJOUR = 0 WHERE CODE = 1");
  EXPECT_EQ(Titles(), Lines{"music: " + std::string(kTitle1) +
                            ": can never play: it is out of rotation (NBPASSJOUR 0) (warning)"});
}

TEST_F(LibraryCheck, AWindowOverNewYearOrOfNoDayNeverOpens) {
  for (const char* days : {"1201' , MMJJFin = '0131", "1232', MMJJFin = '1239"}) {
    Sql("UPDATE Discotheque SET MMJJDebut = '" + std::string(days) + "' WHERE CODE = 1");
    ASSERT_EQ(Titles().size(), 1U) << days;
    EXPECT_NE(Titles()[0].find("can never play: no day of the year lies in its "),
              std::string::npos);
  }
  Sql("UPDATE Discotheque SET MMJJDebut = '0229', MMJJFin = '0229' WHERE CODE = 1");
  EXPECT_EQ(Titles(), Lines{}) << "one day in four years";
  Sql("UPDATE Discotheque SET MMJJDebut = '1201', MMJJFin = '' WHERE CODE = 1");
  EXPECT_EQ(Titles(), Lines{}) << "half a window is none";
}

TEST_F(LibraryCheck, ATitleThatIsAllowedAtNoHourNeverPlays) {
  Sql("UPDATE Discotheque SET " + EveryMask(std::string(24, '0')) + " WHERE CODE = 1");
  EXPECT_EQ(Titles(), Lines{"music: " + std::string(kTitle1) +
                            ": can never play: no hour of the week is allowed (TRANCHE01 to "
                            "TRANCHE07) (warning)"});
  Sql("UPDATE Discotheque SET TRANCHE07 = '000000000000000000000001' WHERE CODE = 1");
  EXPECT_EQ(Titles(), Lines{});
}

TEST_F(LibraryCheck, ATitleWhoseGenreNoModelWantsAtItsHoursNeverPlays) {
  Sql("UPDATE Discotheque SET " + EveryMask("000001000000000000000000") +
      " WHERE CODE = 1; UPDATE "
      "Models SET TRANCHE05 = 0 WHERE GENRE = 'PLAYLIST'");
  EXPECT_EQ(Titles(), Lines{"music: " + std::string(kTitle1) +
                            ": can never play: its hours are none of those of its genre PLAYLIST "
                            "in the models (warning)"});
  Sql("UPDATE Models SET TRANCHE05 = 1 WHERE GENRE = 'PLAYLIST' AND JOUR = 4");
  EXPECT_EQ(Titles(), Lines{});
}

TEST_F(LibraryCheck, ATitleOfAGenreThatNoModelHasNeverPlays) {
  Sql("UPDATE Discotheque SET GENRE = 'SLOW' WHERE CODE = 1");
  EXPECT_EQ(Titles(), Lines{"music: " + std::string(kTitle1) +
                            ": can never play: no model gives a share to its genre \"SLOW\" "
                            "(warning)"});
  Sql("UPDATE Discotheque SET GENRE = 'Playlist' WHERE CODE = 1");
  ASSERT_EQ(Titles().size(), 1U);
  EXPECT_NE(Titles()[0].find("\"Playlist\", which the models write PLAYLIST"), std::string::npos);
}

TEST_F(LibraryCheck, EveryReasonOfATitleStandsInItsLine) {
  Sql("UPDATE Discotheque SET NBPASSJOUR = 0, VARIETE = 'LOCAL', DIFFUSION01 = 'yesterday', " +
      EveryMask("") + " WHERE CODE = 1");
  ASSERT_EQ(Titles().size(), 1U);
  for (const char* reason : {"out of rotation", "its last broadcast ends every request",
                             "no hour of the week", "its variety \"LOCAL\" is none"})
    EXPECT_NE(Titles()[0].find(reason), std::string::npos) << reason << ": " << Titles()[0];
}

TEST_F(LibraryCheck, AlongASkeletonAPositionCountsAndNoVariety) {
  Sql("UPDATE Cnf SET Squelette = -1; UPDATE Discotheque SET VARIETE = 'LOCAL'; INSERT INTO "
      "ModelSquelette(JOUR, TRANCHE12) VALUES (1, 'PLAYLIST'), (1, 'STARTER'), (1, 'PLAYLIST')");
  EXPECT_EQ(Titles(), Lines{"music: 3 Les Quais de Brume - Passerelle: can never play: no model "
                            "gives a share to its genre \"GOLD N-1\" (warning)"});
  EXPECT_EQ(Shares(), Lines{});
  // Two of three positions are 2400 s of the hour.
  Sql("UPDATE Discotheque SET ECARTMINUTES = 60 WHERE CODE = 1");
  EXPECT_EQ(Shares(), Lines{"library: PLAYLIST: cannot fill its share (Monday 12): Monday 12 asks "
                            "for 2400 s, 1 allowed title of 1 artist can give 5 s at their gaps "
                            "(warning)"});
}

TEST_F(LibraryCheck, AShiftOfMoreThanACardRemembersIsTold) {
  Sql("UPDATE Cnf SET DecalDiff = 9");
  EXPECT_EQ(Found("settings").size(), 1U);
  Sql("UPDATE Cnf SET DecalDiff = 8");
  EXPECT_EQ(Found("settings"), Lines{});
}

}  // namespace
}  // namespace zemo
