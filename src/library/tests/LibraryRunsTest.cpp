// What goes over the whole library: play dates, exchange files, sheet and print.
#include <functional>

#include "library/LibraryPrint.h"
#include "library/tests/LibraryFixture.h"
#include "platform/Spreadsheet.h"

namespace zemo {

namespace {

struct LibraryRuns : LibraryFixture {
  void AddCards(int count) {
    for (int card = 1; card <= count; ++card)
      on.AddCard({.lengthMs = 61000, .artist = "ARTIST " + std::to_string(card)});
    Open();
  }
};

struct KeptSheet : SpreadsheetWriter {
  std::string path;
  Sheet sheet;
  void Write(const std::string& given, const Sheet& written) override {
    path = given;
    sheet = written;
  }
};

}  // namespace

TEST_F(LibraryRuns, ResettingThePlayDatesOfSevenCardsLeavesTheFifth) {
  AddCards(7);
  Library::MnuInitDate_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT group_concat(CODE) FROM Discotheque WHERE LASTDIFF > 0"),
            "1,2,3,4,6,7");
  EXPECT_EQ(on.SqlText("SELECT DIFFUSION01 FROM Discotheque WHERE CODE = 7"), "21/11/2026 à 12:00");
  EXPECT_EQ(Message(0), "Traitement Fini");
  EXPECT_EQ(editor.music.ChDiffusion[0], "21/11/2026 à 12:00");
}

TEST_F(LibraryRuns, ResettingThePlayDatesOfAnEmptyLibraryDoesNothing) {
  AddCards(0);
  Library::MnuInitDate_Click(on.station, editor);
  EXPECT_EQ(Messages(), 0U);
}

TEST_F(LibraryRuns, EveryCardGetsItsExchangeFileAndAFaultIsToldWithItsPath) {
  AddCards(3);
  on.Sql("UPDATE Discotheque SET FILENAME = '/no/such/folder/a.wav' WHERE CODE = 2");
  Library::MnuTxt_Click(on.station, editor);
  EXPECT_TRUE(on.stationFolder.Exists("title1.Mus"));
  EXPECT_FALSE(on.stationFolder.Exists("title2.Mus"));
  EXPECT_TRUE(on.stationFolder.Exists("title3.Mus"));
  ASSERT_EQ(Messages(), 1U);
  EXPECT_TRUE(Message(0).starts_with("/no/such/folder/a.wav\r\n")) << Message(0);
  EXPECT_EQ(editor.music.lblNumero, "1");
}

TEST_F(LibraryRuns, TheListHasTheLastPlayInOneColumn) {
  AddCards(1);
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46348.5");
  Library::MnuListe_Click(on.station, editor);
  EXPECT_EQ(editor.PLDisco.Cell(0, DiscoCol::kLength), "01:01");
  EXPECT_EQ(editor.PLDisco.Cell(0, DiscoCol::kCode), "1");
  EXPECT_EQ(editor.PLDisco.Cell(0, DiscoCol::kLastPlayed), "2026/11/22 12:00:00");
}

TEST_F(LibraryRuns, TheSheetHasAHeadAndARowACardByArtist) {
  AddCards(0);
  on.AddCard({.lengthMs = 61000, .artist = "B", .exitMs = 1500});
  on.AddCard({.lengthMs = 61000, .artist = "A"});
  KeptSheet writer;
  Library::MnuExporter_Click(on.station, editor, "/out.xlt", writer);
  EXPECT_EQ(writer.path, "/out.xlt.xlsx");
  const auto cell = [&](int row, int column) {
    for (const SheetCell& one : writer.sheet.cells)
      if (one.row == row && one.column == column)
        return one.isNumber ? std::to_string(static_cast<int>(one.number)) : one.text;
    return std::string("(none)");
  };
  EXPECT_EQ(cell(0, 0), "Auteur");
  EXPECT_EQ(cell(0, 15), "CD");
  EXPECT_EQ(cell(1, 0), "A");
  EXPECT_EQ(cell(2, 0), "B");
  EXPECT_EQ(cell(2, 2), "01:01");
  EXPECT_EQ(cell(2, 7), "120");
  EXPECT_EQ(cell(2, 10), "1500");
  EXPECT_EQ(cell(3, 0), "(none)");
}

TEST_F(LibraryRuns, ASheetKeepsTheEndingThatItHas) {
  EXPECT_EQ(SheetPath("/a.XLSX"), "/a.XLSX");
  EXPECT_EQ(SheetPath("/a"), "/a.xlsx");
}

TEST_F(LibraryRuns, EveryPageBearsItsHeadingOnOneLineAndSixtyTitles) {
  AddCards(61);
  const PrintedPages printed = Library::MnuImp_Click(on.station, editor);
  EXPECT_EQ(printed.title, "Impression discothèque du Samedi 21 nov. 2026");
  ASSERT_EQ(printed.pages.size(), 2U);
  EXPECT_EQ(printed.pages[0].size(), 62U);
  EXPECT_EQ(printed.pages[1][0], printed.title + "  Page 2");
  EXPECT_EQ(printed.pages[1].size(), 3U);
  EXPECT_EQ(printed.pages[0][1], "Artiste" + std::string(22, ' ') + "Titre" + std::string(24, ' ') +
                                     "Genre" + std::string(12, ' ') + "Variété" +
                                     std::string(8, ' ') + "Durée");
}

TEST_F(LibraryRuns, TheListIsPrintedInItsOrderWhereItWasFilled) {
  AddCards(0);
  on.AddCard({.artist = "B"});
  on.AddCard({.artist = "A"});
  Library::MnuListe_Click(on.station, editor);
  std::swap(editor.PLDisco.order[0], editor.PLDisco.order[1]);
  const PrintedPages printed = Library::MnuImp_Click(on.station, editor);
  ASSERT_EQ(printed.pages.size(), 1U);
  EXPECT_TRUE(printed.pages[0][2].starts_with("B ")) << printed.pages[0][2];
}

TEST_F(LibraryRuns, AnEmptyLibraryPrintsNothing) {
  AddCards(0);
  EXPECT_TRUE(Library::MnuImp_Click(on.station, editor).pages.empty());
}

}  // namespace zemo
