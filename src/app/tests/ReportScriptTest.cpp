// The report screen as a script drives it, from outside. 21 November 2026 is day 46347.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

// The cards are "Artist 1" with "Title 1" and so on; the report has 1, 2 and 1 on the 21st between
// a spot, and 3 the day before.
class ReportScript : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({10, 20, 30});
    AddRow("20/11/2026", "22:00:00", "Artist 3", "Title 3", "GOLD", "INTERNATIONAL", 46346,
           22 * 60);
    AddRow("21/11/2026", "08:00:00", "Artist 1", "Title 1", "GOLD", "NATIONAL", 46347, 8 * 60);
    AddRow("21/11/2026", "08:03:00", "Bakery", "", "PUB", "", 46347, 8 * 60 + 3);
    AddRow("21/11/2026", "08:04:00", "Artist 2", "Title 2", "GOLD", "INTERNATIONAL", 46347,
           8 * 60 + 4);
    AddRow("21/11/2026", "09:04:00", "Artist 1", "Title 1", "GOLD", "NATIONAL", 46347, 9 * 60 + 4);
  }
  void AddRow(const std::string& date, const std::string& time, const std::string& artist,
              const std::string& title, const std::string& genre, const std::string& variety,
              int day, int minutes) const {
    Sql("INSERT INTO Rapport(LADATE, HEURE, AUTEUR, TITRE, GENRE, VARIETE, DATENUM) VALUES('" +
        date + "', '" + time + "', '" + artist + "', '" + title + "', '" + genre + "', '" +
        variety + "', " + std::to_string(day) + " + " + std::to_string(minutes) + " / 1440.0)");
  }
  static std::vector<std::string> ColumnOf(const Json& rows, size_t column) {
    std::vector<std::string> cells;
    for (const Json& row : rows) cells.push_back(row[column]);
    return cells;
  }
};
using Texts = std::vector<std::string>;

TEST_F(ReportScript, ShowsTodaysRowsWithLabelsCaptionsAndLists) {
  Drive({"open report", "show report"});
  EXPECT_TRUE(Events("error").empty());
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 1U);
  EXPECT_EQ(screens[0]["name"], "report");
  EXPECT_EQ(screens[0]["title"], "Rapport et statistiques");
  const Json& controls = screens[0]["controls"];
  EXPECT_EQ(controls["LblDate"], "21/11/2026");
  EXPECT_EQ(controls["LblDateFin"], "");
  EXPECT_EQ(controls["LblCompteur"], "4 Fiches");
  EXPECT_EQ(controls["LblStat"], "");
  EXPECT_EQ(controls["FiltreArtiste"], "");
  EXPECT_EQ(controls["BtnStats"], "Statistiques");
  EXPECT_EQ(controls["ListRap"].size(), 10U);
  EXPECT_EQ(controls["ListStat"].size(), 6U);
  const Json& rows = screens[0]["lists"]["ListRap"];
  EXPECT_EQ(ColumnOf(rows, 1), (Texts{"08:00:00 - 00:03:00", "08:03:00 - 00:01:00",
                                      "08:04:00 - 01:00:00", "09:04:00"}));
  EXPECT_EQ(rows[0].size(), 10U);
  EXPECT_EQ(screens[0]["lists"]["ListStat"], Json::array());
  EXPECT_EQ(screens[0]["off"], Json::array());
}

TEST_F(ReportScript, CaptionsAreInTheStationsLanguageAndLabelsInTheRoutinesWords) {
  Drive({"set Langue 1", "open report", "press BtnStats", "show report"});
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 1U);
  EXPECT_EQ(screens[0]["title"], "Report and statistics");
  const Json& controls = screens[0]["controls"];
  EXPECT_EQ(controls["BtnStats"], "Statistics");
  EXPECT_EQ(controls["ListStat"],
            Json({"Rotations", "Artist", "Title", "Genre", "Variety", "Label"}));
  EXPECT_EQ(controls["LblCompteur"], "4 Fiches");
}

TEST_F(ReportScript, CalendarDaysAndFiltersMakeTheSpan) {
  Drive({"open report", "day 2026-11-20", "press CmdCalend", "show report", "day 2026-11-21",
         "press BtnDateFin", "put FiltreGenre gold", "put FiltreVariete inter", "show report",
         "press BtnDateFin right", "put FiltreGenre \"\"", "put FiltreVariete \"\"",
         "show report"});
  EXPECT_TRUE(Events("error").empty());
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 3U);
  EXPECT_EQ(screens[0]["controls"]["LblDate"], "20/11/2026");
  EXPECT_EQ(ColumnOf(screens[0]["lists"]["ListRap"], 3), Texts{"Title 3"});
  EXPECT_EQ(screens[1]["controls"]["LblDateFin"], "21/11/2026");
  EXPECT_EQ(screens[1]["controls"]["FiltreVariete"], "inter");
  EXPECT_EQ(ColumnOf(screens[1]["lists"]["ListRap"], 3), (Texts{"Title 3", "Title 2"}));
  EXPECT_EQ(ColumnOf(screens[2]["lists"]["ListRap"], 3), Texts{"Title 3"});
}

TEST_F(ReportScript, ACalendarThatIsClosedChangesNothing) {
  Drive({"open report", "press CmdCalend", "press BtnDateFin", "show report"});
  EXPECT_EQ(Events("screen")[0]["controls"]["LblDate"], "21/11/2026");
  EXPECT_EQ(Events("screen")[0]["controls"]["LblDateFin"], "");
}

TEST_F(ReportScript, StatisticsFillTheirListAndHeadsSortBoth) {
  Drive({"open report", "press BtnStats", "show report", "press ListStat.0", "press ListRap.9",
         "show report"});
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 2U);
  EXPECT_EQ(screens[0]["controls"]["LblStat"],
            "2  NATIONAL = 67 %  1  INTERNATIONAL = 33 %  Total 3");
  EXPECT_EQ(screens[0]["lists"]["ListStat"],
            Json({{"0002", "Artist 1", "Title 1", "GOLD", "NATIONAL", ""},
                  {"0001", "Artist 2", "Title 2", "GOLD", "INTERNATIONAL", ""}}));
  EXPECT_EQ(ColumnOf(screens[0]["lists"]["ListRap"], 3),
            (Texts{"", "Title 1", "Title 1", "Title 2"}));
  EXPECT_EQ(ColumnOf(screens[1]["lists"]["ListStat"], 0), (Texts{"0001", "0002"}));
  EXPECT_EQ(ColumnOf(screens[1]["lists"]["ListRap"], 3),
            (Texts{"Title 1", "", "Title 2", "Title 1"}));
}

TEST_F(ReportScript, ListsGoToTheFilesThatTheDialogueGives) {
  Drive({"open report", "press BtnStats", "press ListRap.9", "path " + Path("rows.xlt"),
         "press BtnExport", "path " + Path("rotations"), "press ExportStat"});
  EXPECT_TRUE(Events("error").empty());
  const auto rows = LinesOf(ReadText(root_ / "rows.xlt"));
  ASSERT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows[0], "21/11/2026\t08:00:00 - 00:03:00\tArtist 1\tTitle 1\tGOLD\tNATIONAL\t\t\t\r");
  EXPECT_EQ(ReadText(root_ / "rotations"),
            "0002\tArtist 1\tTitle 1\tGOLD\tNATIONAL\t\r\n"
            "0001\tArtist 2\tTitle 2\tGOLD\tINTERNATIONAL\t\r\n");
}

TEST_F(ReportScript, ACancelledDialogueEndsTheExportAndAFileThatCannotBeWrittenIsTold) {
  Drive({"open report", "press BtnExport", "path " + Path("nowhere/rows.xlt"), "press BtnExport"});
  ASSERT_EQ(Events("error").size(), 1U);
  EXPECT_EQ(Events("error")[0]["where"], "BtnExport");
  ASSERT_EQ(Events("message").size(), 1U);
  EXPECT_FALSE(std::filesystem::exists(root_ / "rows.xlt"));
}

TEST_F(ReportScript, PrintsItsPages) {
  Drive({"open report", "press BtnImprimer", "press BtnStats", "press ImprimeStat"});
  const auto prints = Events("print");
  ASSERT_EQ(prints.size(), 2U);
  EXPECT_EQ(prints[0]["title"], "Rapport Zemo Radio Pro du 21/11/2026 au 21/11/2026");
  ASSERT_EQ(prints[0]["pages"].size(), 1U);
  ASSERT_EQ(prints[0]["pages"][0].size(), 6U);
  EXPECT_EQ(prints[0]["pages"][0][0], "Rapport Zemo Radio Pro du 21/11/2026 au 21/11/2026  Page1");
  EXPECT_EQ(prints[0]["pages"][0][5], "4 fiches imprimées");
  EXPECT_EQ(prints[1]["title"], "ROTATIONS Zemo Radio Pro du 21/11/2026 au 21/11/2026");
  EXPECT_EQ(prints[1]["pages"][0].size(), 3U);
}

TEST_F(ReportScript, OutputOfAnEmptyListIsAMessageAndTakesNoDialoguesAnswer) {
  Drive({"open report", "put FiltreArtiste nobody", "path " + Path("kept"), "press BtnExport",
         "press ExportStat", "press BtnImprimer", "press ImprimeStat", "press BtnIntoPlaylist",
         "show report", "put FiltreArtiste \"\"", "press BtnExport"});
  const auto messages = Events("message");
  ASSERT_EQ(messages.size(), 5U);
  for (const Json& message : messages) {
    EXPECT_EQ(message["title"], "Alerte");
    EXPECT_EQ(message["text"], "Vous n'avez rien dans la liste");
  }
  EXPECT_TRUE(Events("print").empty());
  EXPECT_EQ(Events("screen")[0]["controls"]["LblCompteur"], "0 Fiches");
  EXPECT_EQ(LinesOf(ReadText(root_ / "kept")).size(), 4U);
}

TEST_F(ReportScript, TheReportBecomesTheListOfItsTitles) {
  Drive({"open report", "insert music 3", "press BtnIntoPlaylist", "dump"});
  EXPECT_TRUE(Events("error").empty());
  const Json pl = Events("state")[0]["pl"];
  EXPECT_EQ(ColumnOf(pl, 6), (Texts{"1", "2", "1"}));
  EXPECT_EQ(ColumnOf(pl, 0), (Texts{"Artist 1", "Artist 2", "Artist 1"}));
}

TEST_F(ReportScript, RowsAreChosenByTheirNumberAndOthersAreAnError) {
  Drive({"open report", "choose ListRap 4", "choose ListRap 5", "choose ListStat 1",
         "press ListRap.10", "close report", "press BtnStats", "show report"});
  EXPECT_EQ(Events("error").size(), 5U);
}

TEST_F(ReportScript, ABarredEntryDoesNothing) {
  Put("machine/ZemoPasseWord.Ini", "#TRUE#,\"x\"\r\n");
  Drive({"open report", "show report"});
  EXPECT_TRUE(Events("screen").empty());
}

}  // namespace
}  // namespace zemo
