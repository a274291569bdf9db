// BtnStats: rotations and shares of what is listed.
#include "ReportFixture.h"
#include "reports/ReportTexts.h"

namespace zemo {
namespace {

struct ReportStatistics : ReportFixture {
  Texts Stats() {
    Report::BtnStats_Click(on.station, editor);
    Texts lines;
    for (size_t line = 0; line < editor.ListStat.Count(); ++line)
      lines.push_back(Line(editor.ListStat, line, StatCol::kCount));
    return lines;
  }
  // That many rows of a variety each.
  void AddOfVariety(int count, const std::string& variety) {
    for (int i = 0; i < count; ++i) Add({.variety = variety});
  }
};

TEST_F(ReportStatistics, CountTheRowsOfEachTitleWithWhatStandsInItsLastRow) {
  Add({.time = "10:00:00", .artist = "B", .title = "Zulu", .label = "one"});
  Add({.time = "10:01:00", .artist = "A", .title = "Alpha", .genre = "ROCK", .label = "two"});
  Add({.time = "10:02:00", .artist = "B", .title = "Zulu", .label = "three"});
  Open();
  EXPECT_EQ(Stats(), (Texts{"0001|A|Alpha|ROCK|NATIONAL|two", "0002|B|Zulu|POP|NATIONAL|three"}));
  EXPECT_EQ(Titles(), (Texts{"Alpha", "Zulu", "Zulu"}));
}

TEST_F(ReportStatistics, ATitleOfTwoArtistsIsOneGroup) {
  Add({.time = "10:00:00", .artist = "A", .title = "Yesterday"});
  Add({.time = "10:01:00", .artist = "B", .title = "Yesterday"});
  Open();
  EXPECT_EQ(Stats(), Texts{"0002|B|Yesterday|POP|NATIONAL|"});
}

TEST_F(ReportStatistics, SpellingsOfATitleInOtherCaseAreGroupsOfTheirOwn) {
  for (const char* title : {"song", "Song", "song", "Song", "song"}) Add({.title = title});
  Open();
  EXPECT_EQ(Stats(), (Texts{"0002|ARTIST|Song|POP|NATIONAL|", "0003|ARTIST|song|POP|NATIONAL|"}));
}

TEST_F(ReportStatistics, RowsWithoutATitleMakeNoLine) {
  Add({.artist = "Bakery", .title = "", .genre = "PUB", .variety = ""});
  Add({.title = "One"});
  Add({.artist = "Jingle", .title = "", .genre = "JINGLE", .variety = ""});
  Open();
  EXPECT_EQ(Stats(), Texts{"0001|ARTIST|One|POP|NATIONAL|"});
  EXPECT_EQ(editor.LblStat, "1  NATIONAL = 100 %  0  INTERNATIONAL = 0 %  Total 1");
}

TEST_F(ReportStatistics, WithRowsWithoutATitleAloneThereIsNoLine) {
  Add({.title = "", .variety = ""});
  Open();
  EXPECT_EQ(Stats(), Texts{});
  EXPECT_EQ(editor.LblStat, "0  NATIONAL = 0 %  0  INTERNATIONAL = 0 %  Total 0");
}

TEST_F(ReportStatistics, AThirdVarietyCountsWithTheSecond) {
  AddOfVariety(3, "NATIONAL");
  AddOfVariety(2, "INTERNATIONAL");
  AddOfVariety(1, "LOCAL");
  Open();
  Stats();
  EXPECT_EQ(editor.LblStat, "3  NATIONAL = 50 %  3  INTERNATIONAL = 50 %  Total 6");
}

// 1 of 8 is 12.5, 7 of 8 87.5.
TEST_F(ReportStatistics, AShareOfExactlyOneHalfRoundsToTheEvenNumber) {
  AddOfVariety(1, "NATIONAL");
  AddOfVariety(7, "INTERNATIONAL");
  Open();
  Stats();
  EXPECT_EQ(editor.LblStat, "1  NATIONAL = 12 %  7  INTERNATIONAL = 88 %  Total 8");
}

TEST_F(ReportStatistics, ThirdsRoundToTheNearest) {
  AddOfVariety(1, "NATIONAL");
  AddOfVariety(2, "INTERNATIONAL");
  Open();
  Stats();
  EXPECT_EQ(editor.LblStat, "1  NATIONAL = 33 %  2  INTERNATIONAL = 67 %  Total 3");
}

TEST_F(ReportStatistics, WithoutAnyVarietyBothNamesAreEmptyAndEveryRowCountsWithTheSecond) {
  on.Sql("DELETE FROM Variete");
  AddOfVariety(2, "NATIONAL");
  Open();
  Stats();
  EXPECT_EQ(editor.LblStat, "0   = 0 %  2   = 100 %  Total 2");
}

TEST_F(ReportStatistics, TheVarietiesAreThoseOfTheTableInItsOrderWithoutTheirBlanks) {
  on.Sql("DELETE FROM Variete");
  on.Sql("INSERT INTO Variete (VARIETE, POURCENT) VALUES (' WORLD ', 50)");
  AddOfVariety(1, "WORLD");
  AddOfVariety(1, "NATIONAL");
  Open();
  Stats();
  EXPECT_EQ(editor.LblStat, "1  WORLD = 50 %  1   = 50 %  Total 2");
}

TEST_F(ReportStatistics, AHeadSortsTheRotations) {
  for (const char* title : {"b", "b", "c", "a", "a", "a"})
    Add({.artist = std::string("artist of ") + title, .title = title});
  Open();
  Stats();
  Report::ListStat_ColumnClick(on.station, editor, StatCol::kPlays);
  EXPECT_EQ(Column(editor.ListStat, StatCol::kTitle), (Texts{"c", "b", "a"}));
  Report::ListStat_ColumnClick(on.station, editor, StatCol::kArtist);
  EXPECT_EQ(Column(editor.ListStat, StatCol::kTitle), (Texts{"a", "b", "c"}));
}

TEST_F(ReportStatistics, MoreThan9999PlaysAreWrittenInFull) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 "
      "FROM n WHERE i < 10001) SELECT CASE i WHEN 1 THEN 'b' ELSE 'a' END, 46347.5 FROM n");
  Open();
  Stats();
  Report::ListStat_ColumnClick(on.station, editor, StatCol::kPlays);
  EXPECT_EQ(Column(editor.ListStat, StatCol::kPlays), (Texts{"0001", "10000"}));
}

TEST_F(ReportStatistics, OtherRowsAndAnotherOrderForgetTheChosenLineAndTheShares) {
  for (const char* title : {"B", "A"}) Add({.title = title});
  Open();
  Report::BtnStats_Click(on.station, editor);
  ASSERT_TRUE(editor.shares);
  editor.ListRap.chosen = 0;
  editor.ListStat.chosen = 0;
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kArtist);
  EXPECT_FALSE(editor.ListRap.chosen);
  Report::ListStat_ColumnClick(on.station, editor, StatCol::kPlays);
  EXPECT_FALSE(editor.ListStat.chosen);
  editor.ListRap.chosen = 0;
  Report::VoirRapport(on.station, editor);
  EXPECT_FALSE(editor.ListRap.chosen);
  EXPECT_FALSE(editor.shares);
}

TEST_F(ReportStatistics, OtherRowsForgetTheStatistics) {
  Add({});
  Open();
  Stats();
  ASSERT_EQ(editor.ListStat.Count(), 1U);
  Report::FiltreGenre_Change(on.station, editor, "ROCK");
  EXPECT_EQ(editor.ListStat.Count(), 0U);
  EXPECT_EQ(editor.LblStat, "");
}

TEST_F(ReportStatistics, TheCountOfRowsIsShownInTheOperatorsLanguage) {
  AddOfVariety(4, "NATIONAL");
  Open();
  EXPECT_EQ(ShownCount(editor, 1), "4 rows");
  EXPECT_EQ(ShownCount(editor, 0), "4 Fiches");
}

}  // namespace
}  // namespace zemo
