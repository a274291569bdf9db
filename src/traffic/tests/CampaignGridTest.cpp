// The grid of a campaign: its rows, its columns, and the crosses of its file.
#include <filesystem>

#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

CampaignForm Built(CampaignForm form, int64_t langue = 0) {
  BuildCampaignGrid(form, langue, [] {});
  return form;
}

// --- rows ---

TEST(CampaignGridRows, RepeatTheMarksForEveryHour) {
  const auto form = Built(FormOf("JOURNALIER", "JOURNALIER", {"00", "15", "30", "45"}, "07", "08"));
  EXPECT_EQ(MomentsText(form.GPub), "07:00 07:15 07:30 07:45 08:00 08:15 08:30 08:45");
}

TEST(CampaignGridRows, PassOverEmptyAndBlankMarks) {
  const auto form =
      Built(FormOf("JOURNALIER", "JOURNALIER", {"", "5", "  ", "", "", "", "", "50"}));
  EXPECT_EQ(MomentsText(form.GPub), "07:05 07:50");
}

TEST(CampaignGridRows, KeepTheMarksInTheirOrderAndTwiceWhereTheyStandTwice) {
  const auto form = Built(FormOf("JOURNALIER", "JOURNALIER", {"45", "15", "15", "0"}));
  EXPECT_EQ(MomentsText(form.GPub), "07:45 07:15 07:15 07:00");
}

TEST(CampaignGridRows, OfARangeThatEndsBeforeItsStartAreTheFirstHourAlone) {
  const auto form = Built(FormOf("JOURNALIER", "JOURNALIER", {"00", "30"}, "20", "07"));
  EXPECT_EQ(MomentsText(form.GPub), "20:00 20:30");
}

TEST(CampaignGridRows, OfADayAreTwentyFourTimesEight) {
  const auto form = Built(FormOf("JOURNALIER", "JOURNALIER",
                                 {"00", "05", "10", "15", "20", "25", "30", "35"}, "0", "23"));
  EXPECT_EQ(form.GPub.RowCount(), 3 + 24 * 8);
  EXPECT_EQ(form.GPub.Cell(3, 0), "00:00");
  EXPECT_EQ(form.GPub.Cell(194, 0), "23:35");
}

TEST(CampaignGridRows, WithoutMarksAreTheHeadingAlone) {
  EXPECT_EQ(Built(FormOf("JOURNALIER", "JOURNALIER", {})).GPub.RowCount(), 3);
}

TEST(CampaignGridRows, OfFieldsThatAreNoNumbersDoNotEndTheProgram) {
  const auto form = Built(FormOf("JOURNALIER", "JOURNALIER", {"ab", "-5", "5x"}, "", "zz"));
  EXPECT_EQ(MomentsText(form.GPub), "00:ab 00:-5 00:5x");
}

// --- columns ---

TEST(CampaignGridColumns, AreTheDaysFromStartToEndWithMonthDayAndLetter) {
  // 30 December 2026 is a Wednesday.
  const auto form = Built(FormOf("30/12/2026", "02/01/2027"));
  EXPECT_EQ(RowText(form.GPub, 0, 0), "Mois 12 12 01 01");
  EXPECT_EQ(RowText(form.GPub, 1, 0), "Jour 30 31 01 02");
  EXPECT_EQ(RowText(form.GPub, 2, 0), " M J V S");
  EXPECT_EQ(RowText(form.GPub, 3, 0), "07:00    ");
  EXPECT_EQ(form.LblTotalJours, "4 jours");
}

TEST(CampaignGridColumns, OfOneDayAreOne) {
  const auto form = Built(FormOf("21/11/2026", "21/11/2026"));
  EXPECT_EQ(RowText(form.GPub, 1), "21");
  EXPECT_EQ(RowText(form.GPub, 2), "S");
  EXPECT_EQ(form.LblTotalJours, "1 jours");
}

TEST(CampaignGridColumns, KnowTheLeapDay) {
  const auto leap = Built(FormOf("28/02/2028", "01/03/2028"));  // a Monday
  EXPECT_EQ(RowText(leap.GPub, 1), "28 29 01");
  EXPECT_EQ(RowText(leap.GPub, 2), "L M M");
  const auto common = Built(FormOf("28/02/2027", "01/03/2027"));  // a Sunday
  EXPECT_EQ(RowText(common.GPub, 1), "28 01");
  EXPECT_EQ(RowText(common.GPub, 2), "D L");
}

TEST(CampaignGridColumns, HaveALeapDayEveryFourthYearWithoutACenturyRule) {
  const auto later = Built(FormOf("28/02/2100", "01/03/2100"));
  EXPECT_EQ(RowText(later.GPub, 1), "28 29 01");
  // By the month base of February 1900: Int(30.6 * 15) + Int(365.25 * -1) = 459 - 366 = 93, which
  // is 2 modulo 7; (2 + 27) mod 7 + 1 makes the 28th a Tuesday.
  const auto earlier = Built(FormOf("28/02/1900", "01/03/1900"));
  EXPECT_EQ(RowText(earlier.GPub, 1), "28 29 01");
  EXPECT_EQ(RowText(earlier.GPub, 2), "M M J");
}

TEST(CampaignGridColumns, OfAYearAre365) {
  const auto form = Built(FormOf("01/01/2026", "31/12/2026"));
  EXPECT_EQ(GridColumns(form.GPub), 366);
  EXPECT_EQ(form.LblTotalJours, "365 jours");
  EXPECT_EQ(form.GPub.Cell(0, 365) + form.GPub.Cell(1, 365), "1231");
}

TEST(CampaignGridColumns, Are366WhereTheEndIsNotMet) {
  // Before the start, a year and a day later, several years later, and no date at all.
  for (const char* end : {"31/12/2025", "01/01/2027", "31/12/2030", "JOURNALIER", ""}) {
    const auto form = Built(FormOf("01/01/2026", end));
    EXPECT_EQ(GridColumns(form.GPub), 367) << end;
    EXPECT_EQ(form.LblTotalJours, "366 jours") << end;
    EXPECT_EQ(form.GPub.Cell(0, 366) + form.GPub.Cell(1, 366), "0101") << end;
  }
}

TEST(CampaignGridColumns, OfAnUnknownDayOfTheMonthBeginWithTheNextMonth) {
  EXPECT_EQ(RowText(Built(FormOf("31/02/2026", "02/03/2026")).GPub, 1), "01 02");
}

TEST(CampaignGridColumns, AreNoneWhereTheStartIsNoDate) {
  for (const char* start : {"", "- - / - - / - -", "00/00/0000", "12/13/2026", "32/01/2026"}) {
    const auto form = Built(FormOf(start, "31/12/2026"));
    EXPECT_EQ(GridColumns(form.GPub), 1) << start;
    EXPECT_EQ(form.LblTotalJours, "0 jours") << start;
  }
}

TEST(CampaignGridColumns, SpeakTheLanguageOfTheStation) {
  const char* const months[] = {"Mois", "Month", "Mês", "Mes"};
  const char* const days[] = {"Jour", "Day", "Dia", "Día"};
  const char* const totals[] = {"1 jours", "1 days", "1 dias", "1 días"};
  const char* const weeks[] = {"7 jours", "7 days", "7 dias", "7 días"};
  CampaignStation s;
  for (int langue = 0; langue < 4; ++langue) {
    s.Set("Langue", std::to_string(langue));
    s.station.base.CheckCnf();
    CampaignForm form = FormOf("21/11/2026", "21/11/2026");
    BuildDatedGrid(s.station, form);
    EXPECT_EQ(form.GPub.Cell(0, 0), months[langue]);
    EXPECT_EQ(form.GPub.Cell(1, 0), days[langue]);
    EXPECT_EQ(form.LblTotalJours, totals[langue]);
    BuildWeeklyGrid(s.station, form);
    EXPECT_EQ(form.LblTotalJours, weeks[langue]);
  }
  EXPECT_EQ(Built(FormOf("21/11/2026", "21/11/2026"), 9).LblTotalJours, "1");
}

TEST(CampaignGridColumns, OfAWeeklyCampaignAreSevenLetters) {
  const auto form = Built(FormOf("JOURNALIER", "JOURNALIER"));
  EXPECT_EQ(RowText(form.GPub, 0, 0), "       ");
  EXPECT_EQ(RowText(form.GPub, 1, 0), "       ");
  EXPECT_EQ(RowText(form.GPub, 2, 0), " L M M J V S D");
  EXPECT_EQ(form.LblTotalJours, "7 jours");
}

TEST(CampaignGridColumns, YieldOnceAMoment) {
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"00", "30"}, "07", "08");
  int yields = 0;
  BuildCampaignGrid(form, 0, [&] { ++yields; });
  EXPECT_EQ(yields, 4);
}

// --- the weekday rule, against days known from calendars ---

TEST(CampaignGridColumns, KnowTheWeekdayOfAnyDay) {
  const std::pair<const char*, const char*> days[] = {
      {"01/01/2007", "L"}, {"20/07/1969", "D"}, {"29/02/2000", "M"}, {"31/12/1999", "V"},
      {"01/03/1900", "J"}, {"28/02/2100", "D"}, {"21/11/2026", "S"}};
  for (const auto& [day, letter] : days)
    EXPECT_EQ(RowText(Built(FormOf(day, day)).GPub, 2), letter) << day;
}

// --- turned dates ---

TEST(TurnedDate, TakesTheCharactersWhereverTheyStand) {
  EXPECT_EQ(TurnedDate("21/11/2026"), "20261121");
  EXPECT_EQ(TurnedDate("JOURNALIER"), "LIERRNJO");
  EXPECT_EQ(TurnedDate(""), "");
  EXPECT_EQ(TurnedDate("21/1"), "121");
}

// --- the grid file ---

TEST(CampaignGridFile, HoldsALineACellRowByRow) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {"00", "30"});
  BuildDatedGrid(s.station, form);
  form.GPub.SetCell(3, 1, "X");
  form.GPub.SetCell(4, 7, "X");
  form.GPub.SetCell(0, 3, "12");  // the count of a column is never saved
  EXPECT_TRUE(LoadSaveCampaignGrid(s.station, form, "Save", s.InFolder("spot.GPB")));
  EXPECT_EQ(s.File("spot.GPB"),
            "X\r\n" + std::string("\r\n\r\n\r\n\r\n\r\n\r\n") + "\r\n\r\n\r\n\r\n\r\n\r\nX\r\n");
  EXPECT_EQ(form.LblTotalMsg, "2");
}

TEST(CampaignGridFile, ComesBackAsItWasSaved) {
  CampaignStation s;
  CampaignForm form = FormOf("30/12/2026", "02/01/2027", {"45", "15"}, "22", "23");
  BuildDatedGrid(s.station, form);
  for (const auto& [row, column] : {std::pair(3, 1), {3, 4}, {5, 2}, {6, 4}})
    form.GPub.SetCell(row, column, "X");
  ASSERT_TRUE(LoadSaveCampaignGrid(s.station, form, "save", s.InFolder("spot.GPB")));
  CampaignForm again = FormOf("30/12/2026", "02/01/2027", {"45", "15"}, "22", "23");
  BuildDatedGrid(s.station, again);
  EXPECT_TRUE(LoadSaveCampaignGrid(s.station, again, "LOAD", s.InFolder("spot.GPB")));
  EXPECT_EQ(RowText(again.GPub, 3), "X   X");
  EXPECT_EQ(RowText(again.GPub, 4), "   ");
  EXPECT_EQ(RowText(again.GPub, 5), " X  ");
  EXPECT_EQ(RowText(again.GPub, 6), "   X");
  EXPECT_EQ(again.LblTotalMsg, "4");
}

// Loads `bytes` as the file of a weekly campaign of one hour and these marks.
CampaignForm Loaded(CampaignStation& s, const std::string& bytes,
                    const std::vector<std::string>& marks = {"00"}) {
  s.MakeFile("spot.GPB", bytes);
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", marks);
  BuildDatedGrid(s.station, form);
  EXPECT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB")));
  return form;
}

TEST(CampaignGridFile, ThatIsMissingLeavesTheGridEmpty) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  BuildDatedGrid(s.station, form);
  for (const char* path : {"", "GPB", "/nowhere/spot.GPB"}) {
    EXPECT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", path)) << path;
    EXPECT_EQ(form.LblTotalMsg, "0") << path;
  }
  EXPECT_TRUE(s.Events("error").empty());
}

TEST(CampaignGridFile, ThatIsReadTakesTheCrossesAwayThatStoodThere) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  BuildDatedGrid(s.station, form);
  form.GPub.SetCell(3, 1, "X");
  form.GPub.SetCell(3, 2, "X");
  s.MakeFile("spot.GPB", "X\r\n\r\n\r\n\r\n\r\n\r\nX\r\n");
  ASSERT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB")));
  EXPECT_EQ(RowText(form.GPub, 3), "X      X");
  EXPECT_EQ(form.LblTotalMsg, "2");
}

TEST(CampaignGridFile, ThatIsCutLeavesTheRestEmpty) {
  CampaignStation s;
  EXPECT_EQ(RowText(Loaded(s, "X\r\n\r\nX").GPub, 3), "X  X    ");
}

TEST(CampaignGridFile, ThatIsTooLongIsReadAsFarAsTheGridGoes) {
  CampaignStation s;
  std::string bytes;
  for (int line = 0; line < 30; ++line) bytes += "X\r\n";
  EXPECT_EQ(Loaded(s, bytes).LblTotalMsg, "7");
}

TEST(CampaignGridFile, CountsOnlyACapitalX) {
  CampaignStation s;
  EXPECT_EQ(RowText(Loaded(s, "x\r\nXX\r\n1\r\n X \r\n\"X\"\r\nX\n\r\n").GPub, 3), "   X  X ");
}

// Two marks a day saved, one read: the second row of the file is nobody's, the first one's pairs
// stand in other cells than they were set in.
TEST(CampaignGridFile, OfAnotherShapePairsItsLinesWithOtherCells) {
  CampaignStation s;
  CampaignForm dated = FormOf("21/11/2026", "23/11/2026", {"00", "30"});
  BuildDatedGrid(s.station, dated);
  dated.GPub.SetCell(4, 1, "X");  // the fourth line
  ASSERT_TRUE(LoadSaveCampaignGrid(s.station, dated, "Save", s.InFolder("spot.GPB")));
  CampaignForm longer = FormOf("21/11/2026", "25/11/2026", {"00", "30"});
  BuildDatedGrid(s.station, longer);
  ASSERT_TRUE(LoadSaveCampaignGrid(s.station, longer, "Load", s.InFolder("spot.GPB")));
  EXPECT_EQ(RowText(longer.GPub, 3), "   X ");
  EXPECT_EQ(RowText(longer.GPub, 4), "    ");
}

TEST(CampaignGridFile, OfRandomBytesNeverHarms) {
  CampaignStation s;
  uint32_t state = 7;
  for (int round = 0; round < 200; ++round) {
    std::string bytes;
    const uint32_t length = (state >> 8) % 400;
    for (uint32_t i = 0; i < length; ++i) {
      state = state * 1664525 + 1013904223;
      const char kind[] = {'X', '\r', '\n', '\0', static_cast<char>(state >> 24)};
      bytes += kind[(state >> 16) % 5];
    }
    state = state * 1664525 + 1013904223;
    const CampaignForm form = Loaded(s, bytes, {"00", "30"});
    EXPECT_EQ(GridColumns(form.GPub), 8);
    EXPECT_EQ(form.GPub.RowCount(), 5);
    EXPECT_EQ(form.LblTotalMsg, std::to_string(CountCrosses(form)));
    EXPECT_LE(CountCrosses(form), 14);
  }
}

// --- damage: a weekly campaign with one mark has seven cells ---

std::string DamageOfBytes(const std::string& bytes) {
  CampaignStation s;
  const CampaignForm form = Loaded(s, bytes);
  const size_t path = form.damage.find(": " + s.InFolder("spot.GPB"));
  EXPECT_EQ(path == std::string::npos, form.damage.empty()) << form.damage;
  return form.damage.substr(0, path);
}

TEST(CampaignGridFile, ThatFitsItsGridIsWhole) {
  EXPECT_EQ(DamageOfBytes("X\r\n\r\n\r\n\r\n\r\n\r\nX\r\n"), "");
  EXPECT_EQ(DamageOfBytes("X\n X \n\n\n\n\nX"), "");  // other line ends, blanks, no last end
}

TEST(CampaignGridFile, ThatIsCutEmptyTooLongOrOfOtherTextIsDamage) {
  const std::string cells = " lines, the campaign's grid 7 cells";
  EXPECT_EQ(DamageOfBytes(""), "the grid file has 0" + cells);
  EXPECT_EQ(DamageOfBytes("X\r\n\r\nX\r\n"), "the grid file has 3" + cells);
  EXPECT_EQ(DamageOfBytes("X\r\n\r\n\r\n\r\n\r\n\r\n"), "the grid file has 6" + cells);
  EXPECT_EQ(DamageOfBytes("X\r\n\r\n\r\n\r\n\r\n\r\n\r\nX\r\n"), "the grid file has 8" + cells);
  EXPECT_EQ(DamageOfBytes("X\r\n\r\nnoise\r\n\r\nx\r\n\r\n\r\n"),
            "line 3 of the grid file is neither X nor empty");
}

TEST(CampaignGridFile, ThatIsMissingIsNoDamage) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  form.damage = "of the campaign before";
  BuildDatedGrid(s.station, form);
  EXPECT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("none.GPB")));
  EXPECT_EQ(form.damage, "");
}

TEST(CampaignGridFile, ThatIsLargerThanAnyGridIsNotRead) {
  CampaignStation s;
  s.MakeFile("spot.GPB", "X\r\n");
  std::filesystem::resize_file(s.InFolder("spot.GPB"), 256 << 20);  // a hole, no room on the disk
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  BuildDatedGrid(s.station, form);
  EXPECT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB")));
  EXPECT_EQ(form.damage, "the grid file is larger than any grid: " + s.InFolder("spot.GPB"));
  EXPECT_EQ(form.LblTotalMsg, "0");
}

// The largest that the fields of two characters make: 100 hours, eight marks, 366 days.
TEST(CampaignGridFile, OfTheLargestGridIsRead) {
  CampaignStation s;
  CampaignForm form = FormOf("01/01/2026", "31/12/2030",
                             {"00", "05", "10", "15", "20", "25", "30", "35"}, "00", "99");
  BuildDatedGrid(s.station, form);
  for (int row = 3; row < 803; ++row)
    for (int column = 1; column < 367; ++column) form.GPub.SetCell(row, column, "X");
  ASSERT_TRUE(
      LoadSaveCampaignGrid(s.station, form, "Save", s.InFolder("spot.GPB"), RowYields::kNone));
  EXPECT_TRUE(
      LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB"), RowYields::kNone));
  EXPECT_EQ(form.damage, "");
  EXPECT_EQ(form.LblTotalMsg, "292800");  // 800 * 366
}

TEST(CampaignGridFile, OfHoursWithoutABoundIsNotRead) {
  CampaignStation s;
  s.MakeFile("spot.GPB", "X\r\n");
  for (const auto& [hour, mark] :
       {std::pair(std::string("2147483647"), std::string("00")), {"07", std::string(100, '0')}}) {
    CampaignForm form = FormOf("JOURNALIER", "JOURNALIER", {mark}, "07", hour);
    BuildDatedGrid(s.station, form);
    EXPECT_EQ(form.GPub.RowCount(), 3);
    EXPECT_TRUE(LoadSaveCampaignGrid(s.station, form, "Load", s.InFolder("spot.GPB")));
    EXPECT_EQ(form.damage, hour == "07" ? "there is no minute 00000000000000000000 (0 to 59)"
                                        : "there is no hour 2147483647 (0 to 23)");
  }
}

TEST(CampaignGridFile, ThatCannotBeWrittenIsLoggedUnderTheRoutinesName) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  BuildDatedGrid(s.station, form);
  EXPECT_FALSE(LoadSaveCampaignGrid(s.station, form, "Save", "/nowhere/at/all/spot.GPB"));
  ASSERT_NE(s.First("error"), nullptr);
  EXPECT_EQ((*s.First("error"))["where"], "LSGrillePub");
}

// --- the loader ---

TEST(LoadCampaign, TakesTheRecordBuildsItsGridAndReadsItsStoredFile) {
  CampaignStation s;
  s.MakeFile("stored.GPB", "X\r\nX\r\n");
  s.AddCampaign({{"FILENAMEAUDIO", "'/elsewhere/spot.wav'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("stored.GPB") + "'"},
                 {"CONTACT", "'  Anne  '"},
                 {"ANNONCEUR", "' Baker '"},
                 {"PUB", "0"},
                 {"GENREASSOCIE", "'POP'"},
                 {"PRIORITY", "20"}});
  CampaignForm form;
  LoadCampaign(s.station, *s.station.base.Table("GrillePub"), form);
  EXPECT_EQ(form.LblCode, "1");
  EXPECT_EQ(form.FichierAudio, "/elsewhere/spot.wav");
  EXPECT_EQ(form.Longeur, "15000");
  EXPECT_EQ(form.LblTemp, "00:15");
  EXPECT_EQ(form.ChContact, "Anne");
  EXPECT_EQ(form.ChAnnonceur, " Baker ");
  EXPECT_EQ(form.OptPub, (std::array<bool, 2>{false, true}));
  EXPECT_EQ(form.GenreAssocie, "POP");
  EXPECT_EQ(form.ComboPriority, "20");
  EXPECT_EQ(MomentsText(form.GPub), "07:00 07:30 08:00 08:30");
  EXPECT_EQ(RowText(form.GPub, 3), "X X     ");
  EXPECT_EQ(form.LblTotalMsg, "2");
}

TEST(LoadCampaign, OfARowOfNullsGivesEmptyFields) {
  CampaignStation s;
  s.Sql("INSERT INTO GrillePub DEFAULT VALUES");
  CampaignForm form;
  LoadCampaign(s.station, *s.station.base.Table("GrillePub"), form);
  EXPECT_EQ(form.LblDepartPub, "");
  EXPECT_EQ(form.Longeur, "0");
  EXPECT_EQ(form.LblTotalMsg, "0");
}

TEST(WriteCampaign, StoresEveryFieldOfTheScreen) {
  CampaignStation s;
  CampaignForm form = FormOf("01/11/2026", "30/11/2026",
                             {"01", "02", "03", "04", "05", "06", "07", "08"}, "06", "22");
  form.FichierAudio = "/spots/a.wav";
  form.Longeur = "15000";
  form.ChAnnonceur = "Bakery";
  form.Categorie = "FOOD";
  form.FILENAMEGRILLE = "/spots/a.GPB";
  form.ComboPriority = "20";
  form.ChContact = "Anne";
  form.OptPub = {true, false};
  form.GenreAssocie = "POP";
  const auto table = s.station.base.Table("GrillePub");
  table->AddNew();
  WriteCampaign(form, *table);
  table->Update();
  const std::pair<const char*, const char*> stored[] = {{"CAMPAGNEDEPART", "01/11/2026"},
                                                        {"CAMPAGNEFIN", "30/11/2026"},
                                                        {"HDEPART", "06"},
                                                        {"HFIN", "22"},
                                                        {"DECOUPEH1", "01"},
                                                        {"DECOUPEH8", "08"},
                                                        {"FILENAMEAUDIO", "/spots/a.wav"},
                                                        {"DUREE", "15000"},
                                                        {"ANNONCEUR", "Bakery"},
                                                        {"CATEGORIE", "FOOD"},
                                                        {"FILENAMEGRILLE", "/spots/a.GPB"},
                                                        {"PRIORITY", "20"},
                                                        {"CONTACT", "Anne"},
                                                        {"PUB", "-1"},
                                                        {"GENREASSOCIE", "POP"}};
  for (const auto& [field, value] : stored)
    EXPECT_EQ(s.SqlText("SELECT " + std::string(field) + " FROM GrillePub"), value) << field;
}

}  // namespace
}  // namespace zemo::test
