// What leaves the report screen: files, paper, sheets, the on-air list.
#include <algorithm>
#include <map>
#include <memory>

#include "ReportFixture.h"
#include "platform/Folder.h"
#include "platform/Spreadsheet.h"
#include "station/OperatorWords.h"

namespace zemo {
namespace {

struct ReportOutput : ReportFixture {
  // What stands under a name once it is whole.
  struct FileInMemory : FileInParts {
    FileInMemory(std::string& file, int& appended) : file_(file), appended_(appended) {}
    void Append(std::string_view bytes) override { ++appended_, text_ += bytes; }
    void Finish() override { file_ = text_; }
    std::string& file_;
    int& appended_;
    std::string text_;
  };
  std::map<std::string, std::string> files;
  int appended = 0;
  struct : SpreadsheetWriter {
    void Write(const std::string& toPath, const Sheet& written) override {
      path = toPath, sheet = written;
    }
    std::string path;
    Sheet sheet;
  } sheets;
  Report::ExportFiles write{[this](const std::string& path) {
                              return std::make_unique<FileInMemory>(files[path], appended);
                            },
                            nullptr};
};

TEST_F(ReportOutput, TheReportIsNineCellsBetweenTabsALineWithNoneBehindTheLast) {
  Add({.time = "10:00:00",
       .artist = "A",
       .title = "One",
       .composer = "C",
       .label = "L",
       .reference = "R"});
  Add({.time = "10:04:00", .artist = "B", .title = "Two"});
  Open();
  Report::BtnExport_Click(on.station, editor, "/out.xlt", write);
  EXPECT_EQ(files["/out.xlt"],
            "21/11/2026\t10:00:00 - 00:04:00\tA\tOne\tPOP\tNATIONAL\tC\tL\tR\r\n"
            "21/11/2026\t10:04:00\tB\tTwo\tPOP\tNATIONAL\t\t\t\r\n");
}

TEST_F(ReportOutput, TheRotationsAreTheirSixCellsALine) {
  Add({.artist = "A", .title = "One", .label = "L"});
  Open();
  Report::BtnStats_Click(on.station, editor);
  Report::ExportStat(on.station, editor, "rotations", write);
  EXPECT_EQ(files["rotations"], "0001\tA\tOne\tPOP\tNATIONAL\tL\r\n");
}

TEST_F(ReportOutput, AFileIsInTheEncodingOfSideFilesAndACellStaysOnItsLine) {
  Add({.artist = "Éva\tB", .title = "a\r\nb"});
  Open();
  Report::BtnExport_Click(on.station, editor, "f", write);
  EXPECT_EQ(files["f"], "21/11/2026\t00:00:00\t\xC9va B\ta b\tPOP\tNATIONAL\t\t\t\r\n");
}

TEST_F(ReportOutput, OfAnEmptyListThereIsNothingButTheMessage) {
  Open();
  on.AppendCard(on.AddCard({}));
  Report::BtnExport_Click(on.station, editor, "f", write);
  Report::ExportStat(on.station, editor, "f", write);
  EXPECT_TRUE(Report::BtnImprimer_Click(on.station, editor).pages.empty());
  EXPECT_TRUE(Report::ImprimeStat(on.station, editor).pages.empty());
  Report::BtnIntoPlaylist_Click(on.station, editor);
  EXPECT_EQ(Messages(), Texts(5, "Alerte: Vous n'avez rien dans la liste"));
  EXPECT_TRUE(files.empty());
  EXPECT_EQ(on.station.PL.Count(), 1);
}

// In parts of 1000 lines behind the mark, with other events between them.
TEST_F(ReportOutput, OfManyRowsTheFileIsWrittenInPartsWhileOtherEventsAreServed) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 FROM n WHERE i < 2500) SELECT CASE i WHEN 2500 THEN 'Łódź' ELSE 'é' END, 46347 + i / "
      "10000.0 FROM n");
  Open();
  int served = 0;
  on.loop.Post([&] { ++served; });
  Report::BtnExport_Click(on.station, editor, "f", write);
  EXPECT_EQ(served, 1);
  EXPECT_EQ(appended, 4);
  const std::string& text = files["f"];
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2500);
  EXPECT_EQ(text.substr(0, 3), "\xEF\xBB\xBF");
  EXPECT_NE(text.find("\té\t"), std::string::npos);
  EXPECT_EQ(text.substr(text.size() - 15), "\tŁódź\t\t\t\t\t\r\n");
}

TEST_F(ReportOutput, APathThatEndsInXlsxIsASpreadsheet) {
  Add({.artist = "A", .title = "One"});
  Open();
  Report::BtnStats_Click(on.station, editor);
  write.spreadsheets = &sheets;
  Report::BtnExport_Click(on.station, editor, "/rows.xlsx", write);
  EXPECT_EQ(sheets.path, "/rows.xlsx");
  EXPECT_EQ(sheets.sheet.cells.size(), 18U);
  Report::ExportStat(on.station, editor, "/rotations.XLSX", write);
  EXPECT_EQ(sheets.path, "/rotations.XLSX");
  EXPECT_EQ(sheets.sheet.cells.size(), 12U);
  EXPECT_TRUE(files.empty());
}

TEST_F(ReportOutput, AFileThatCannotBeWrittenIsToldAndLogged) {
  Add({});
  Open();
  write.open = [](const std::string& path) -> std::unique_ptr<FileInParts> {
    throw FileError(path + ": No space left on device");
  };
  Report::BtnExport_Click(on.station, editor, "/out.xlt", write);
  EXPECT_EQ(Messages(), Texts{"Alerte: Le fichier n'a pas pu être écrit\r\n/out.xlt: No space left "
                              "on device"});
  const std::string told = on.Events("message")[0]["text"];
  EXPECT_EQ(InOperatorsWords(told, 1),
            "The file could not be written\r\n/out.xlt: No space left on device");
  EXPECT_EQ(InOperatorsWords(told, 2),
            "O ficheiro não pôde ser gravado\r\n/out.xlt: No space left on device");
  EXPECT_EQ(InOperatorsWords(told, 3),
            "El fichero no se pudo escribir\r\n/out.xlt: No space left on device");
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "BtnExport");
}

// A sheet has 1048576 rows, and the first one is its head.
TEST_F(ReportOutput, MoreRowsThanASpreadsheetHoldsAreToldInTheOperatorsLanguageAndNotWritten) {
  on.Sql(
      "INSERT INTO Rapport (TITRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + "
      "1 FROM n WHERE i < 1048576) SELECT 'One', 46347.5 FROM n");
  Open();
  ASSERT_EQ(editor.ListRap.Count(), 1048576U);
  write.spreadsheets = &sheets;
  Report::BtnExport_Click(on.station, editor, "/rows.xlsx", write);
  EXPECT_EQ(sheets.path, "");
  EXPECT_EQ(Messages(), Texts{"Alerte: Un tableur ne prend pas plus de 1048575 lignes"});
  const std::string told = on.Events("message")[0]["text"];
  EXPECT_EQ(InOperatorsWords(told, 1), "A spreadsheet takes no more than 1048575 rows");
  EXPECT_EQ(InOperatorsWords(told, 2), "Uma folha de cálculo não leva mais de 1048575 linhas");
  EXPECT_EQ(InOperatorsWords(told, 3), "Una hoja de cálculo no admite más de 1048575 filas");
}

TEST_F(ReportOutput, ThePrintOfTheReportHasHeadedPagesOfSixtyRowsAndTheCountLast) {
  for (int i = 0; i < 61; ++i) Add({.title = "Title " + std::to_string(i)});
  Open();
  const PrintedPages printed = Report::BtnImprimer_Click(on.station, editor);
  EXPECT_EQ(printed.title, "Rapport Zemo Radio Pro du 21/11/2026 au 21/11/2026");
  ASSERT_EQ(printed.pages.size(), 2U);
  ASSERT_EQ(printed.pages[0].size(), 61U);
  EXPECT_EQ(printed.pages[0][0], "Rapport Zemo Radio Pro du 21/11/2026 au 21/11/2026  Page1");
  EXPECT_EQ(printed.pages[0][1],
            "21/11/2026 00:00:00 - 00:00:00 ARTIST                   Title 0                  POP");
  EXPECT_EQ(
      printed.pages[1],
      (Texts{"Rapport Zemo Radio Pro du 21/11/2026 au 21/11/2026  Page2",
             "21/11/2026 00:00:00            ARTIST                   Title 60                 "
             "POP",
             "61 fiches imprimées"}));
}

TEST_F(ReportOutput, ThePrintOfTheRotationsHasItsCountsWithoutLeadingZeros) {
  Add({.title = "One"});
  Add({.title = "One"});
  Open();
  Report::BtnDateFin_Click(on.station, editor, Day(22));
  Report::BtnStats_Click(on.station, editor);
  const PrintedPages printed = Report::ImprimeStat(on.station, editor);
  ASSERT_EQ(printed.pages.size(), 1U);
  EXPECT_EQ(
      printed.pages[0],
      (Texts{"ROTATIONS Zemo Radio Pro du 21/11/2026 au 22/11/2026  Page1",
             "2    ARTIST                         One                            POP           "
             "NATIONAL"}));
}

TEST_F(ReportOutput, ASheetHasItsHeadsInTheStationsLanguageAndTheCountsAsNumbers) {
  Add({.artist = "A", .title = "One"});
  Open();
  Report::BtnStats_Click(on.station, editor);
  on.Set("Langue", "1");
  const Sheet report = Report::ReportSheet(on.station, editor);
  ASSERT_EQ(report.cells.size(), 18U);
  EXPECT_EQ(report.cells[2].text, "Artist");
  EXPECT_EQ(report.cells[11].text, "A");
  const Sheet rotations = Report::RotationSheet(on.station, editor);
  ASSERT_EQ(rotations.cells.size(), 12U);
  EXPECT_EQ(rotations.cells[0].text, "Rotations");
  EXPECT_TRUE(rotations.cells[6].isNumber);
  EXPECT_EQ(rotations.cells[6].number, 1);
  EXPECT_FALSE(rotations.cells[7].isNumber);
}

TEST_F(ReportOutput, TheTitlesThatHaveACardTakeThePlaceOfTheList) {
  const int32_t one = on.AddCard(
      {.lengthMs = 200000, .artist = "O'Brien", .title = "One", .exitMs = 1500, .introSec = 7});
  on.AddCard({.artist = "O'Brien", .title = "Other"});
  const int32_t two = on.AddCard({.artist = "Éva", .title = "100% moi"});
  on.AppendCard(two);
  Add({.time = "10:00:00", .artist = "o'brien", .title = "ONE"});
  Add({.time = "10:01:00", .artist = "Bakery", .title = "", .genre = "PUB"});
  Add({.time = "10:02:00", .artist = "éva", .title = "100% moi"});
  Add({.time = "10:03:00", .artist = "o'brien", .title = "ONE"});
  Open();
  auto& panel = on.station.storedList;
  panel.ComboPLS.text = "Saturday";
  panel.LblCodePL = 4;
  panel.LblDate = "21/11/2026";
  panel.ChHeure = "10:00";
  panel.OptPls = 2;
  Report::BtnIntoPlaylist_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Codes(), (std::vector<int32_t>{one, two, one}));
  const OnAirRow& row = on.station.PL.Row(1);
  EXPECT_EQ(row.title, "O'Brien");
  EXPECT_EQ(row.secondLine, "One");
  EXPECT_EQ(row.lengthMs, 200000);
  EXPECT_EQ(row.exitMs, 1500);
  EXPECT_EQ(row.introSec, 7);
  EXPECT_TRUE(row.plannedMs.has_value());
  EXPECT_EQ(panel.ComboPLS.text, "Copy Rapport");
  EXPECT_EQ(panel.LblCodePL, 0);
  EXPECT_EQ(panel.LblDate, "JJ/MM/ANNE");
  EXPECT_EQ(panel.ChHeure, "hh:mn");
  EXPECT_EQ(panel.OptPls, 0);
}

// No index of the library finds the first four; the last is a pattern, which the first card fits.
TEST_F(ReportOutput, TitlesBeyondTheIndexesFindTheirFirstCardWithoutRegardToCaseAsWell) {
  const int32_t first = on.AddCard({.artist = "ÉVA", .title = "Été"});
  on.AddCard({.artist = "Éva", .title = "Été"});
  const int32_t percent = on.AddCard({.artist = "100%", .title = "À_moi"});
  on.AddCard({.artist = "100x", .title = "Àxmoi"});
  for (const char* title : {"été", "ÉTÉ", "Hiver é"}) Add({.artist = "éva", .title = title});
  Add({.artist = "100%", .title = "à_moi"});
  Add({.artist = "É*", .title = "?té"});
  Open();
  Report::BtnIntoPlaylist_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Codes(), (std::vector<int32_t>{first, first, percent, first}));
}

// So that no tick in a yield meets an empty list.
TEST_F(ReportOutput, TheListStaysUntilAllCardsAreFound) {
  on.AppendCard(on.AddCard({}));
  for (int i = 0; i < 60; ++i) Add({.title = "Title " + std::to_string(i)});
  const int32_t last = on.AddCard({.title = "Title 59"});
  Open();
  int served = 0;
  on.loop.Post([&] {
    ++served;
    EXPECT_EQ(on.station.PL.Count(), 1);
  });
  Report::BtnIntoPlaylist_Click(on.station, editor);
  EXPECT_EQ(served, 1);
  EXPECT_EQ(on.station.PL.Codes(), std::vector<int32_t>{last});
}

TEST_F(ReportOutput, TheOrderThatMadeTheListCanBeTakenBack) {
  const int32_t card = on.AddCard({.artist = "A", .title = "One"});
  const int32_t before = on.AddCard({.artist = "B", .title = "Two"});
  on.AppendCard(before);
  Add({.artist = "A", .title = "One"});
  Open();
  Report::BtnIntoPlaylist_Click(on.station, editor);
  ASSERT_EQ(on.station.PL.Codes(), std::vector<int32_t>{card});
  UndoListOrder(on.station);
  EXPECT_EQ(on.station.PL.Codes(), std::vector<int32_t>{before});
}

TEST_F(ReportOutput, ABaseThatFailsLeavesTheListAsItWas) {
  on.AppendCard(on.AddCard({}));
  Add({});
  Open();
  on.Sql("ALTER TABLE Discotheque RENAME TO Elsewhere");
  Report::BtnIntoPlaylist_Click(on.station, editor);
  EXPECT_EQ(on.station.PL.Count(), 1);
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "BtnIntoPlaylist");
}

}  // namespace
}  // namespace zemo
