// The affidavit as a table, on paper and as a sheet, and its window without Qt. The station's clock
// shows 22 November 2026, 12:00.
#include <gtest/gtest.h>

#include <set>

#include "platform/Folder.h"
#include "platform/Spreadsheet.h"
#include "support/Campaigns.h"
#include "support/TestStation.h"
#include "traffic/AffidavitScreen.h"
#include "traffic/AffidavitTexts.h"
#include "traffic/GridDamageTexts.h"

namespace zemo::test {
namespace {

using Texts = std::vector<std::string>;

// Crosses of 21 November at 10:00, aired five seconds late, and at 11:00, which were lost; a spot
// without a cross at 15:00.
class AffidavitTable : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    AddCampaign(on, {.advertiser = "Bakery",
                     .from = "21/11/2026",
                     .to = "21/11/2026",
                     .crosses = {"10:00", "11:00"}});
    file = on.SqlText("SELECT FILENAMEAUDIO FROM GrillePub");
    for (const char* row :
         {"'PUB', 'Bakery', 46347 + 36005 / 86400.0", "'POP', 'Artist', 46347 + 39600 / 86400.0",
          "'PUB', 'Bakery', 46347 + 54000 / 86400.0"})
      on.Sql(std::string("INSERT INTO Rapport (GENRE, AUTEUR, DATENUM) VALUES (") + row + ")");
  }
  Affidavit Make() {
    const LocalDateTime day = ParseMoment("2026-11-21 00:00:00");
    return MakeAffidavit(on.station, "Bakery", day, day);
  }
  static Texts Cells(const AffidavitRow& row) { return {row.cells.begin(), row.cells.end()}; }
  Texts Messages() const {
    Texts texts;
    for (const auto& message : on.Events("message")) texts.push_back(message["text"]);
    return texts;
  }

  TestStation on{"2026-11-22 12:00:00"};
  AffidavitEditor editor;
  std::string file;  // of the bakery's spot
};

TEST_F(AffidavitTable, EachCrossIsARowInTheOperatorsWords) {
  const std::vector<AffidavitRow> rows = AffidavitRows(Make(), 0);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(Cells(rows[0]), (Texts{"21/11/2026 10:00:00", "21/11/2026 10:00:05", "+00:05",
                                   "diffusé", "", "pub", "1", file}));
  EXPECT_EQ(rows[1].state, CrossState::kMissed);
  EXPECT_EQ(Cells(rows[1]),
            (Texts{"21/11/2026 11:00:00", "", "", "manqué",
                   "minute perdue : la station était à l'antenne", "pub", "1", file}));
  EXPECT_EQ(rows[2].state, CrossState::kExtra);
  EXPECT_EQ(Cells(rows[2]), (Texts{"", "21/11/2026 15:00:00", "", "en plus", "", "", "", ""}));
  EXPECT_EQ(AffidavitRows(Make(), 1)[1].cells[DiffCol::kWhy],
            "minute lost: the station was on air");
}

TEST_F(AffidavitTable, TheTotalsTellWhatThereIs) {
  EXPECT_EQ(TotalsInWords(TotalsOf(Make()), 1),
            "2 crosses, 1 aired, 1 missed, 1 aired without a cross");
  EXPECT_EQ(
      TotalsInWords({.crosses = 3, .aired = 1, .toCome = 2, .damaged = 1}, 0),
      "3 passage(s) prévu(s), 1 diffusé(s), 0 manqué(s), 2 à venir, 1 grille(s) endommagée(s)");
}

TEST_F(AffidavitTable, ThePagesAreHeadedAndTheTotalsStandBelowTheLastRow) {
  const PrintedPages printed = AffidavitPages({"Bakery", "21/11/2026", "21/11/2026"}, Make(), 1);
  EXPECT_EQ(printed.title, "Affidavit of broadcast - Bakery from 21/11/2026 to 21/11/2026");
  ASSERT_EQ(printed.pages.size(), 1U);
  const Texts& page = printed.pages[0];
  ASSERT_EQ(page.size(), 8U);
  EXPECT_EQ(page[0], printed.title + "  Page 1");
  EXPECT_EQ(page[2].substr(0, 45), "Due                 Aired               Late ");
  EXPECT_EQ(page[3].substr(0, 53), "21/11/2026 10:00:00 21/11/2026 10:00:05 +00:05  aired");
  EXPECT_EQ(page[7], "2 crosses, 1 aired, 1 missed, 1 aired without a cross");
}

TEST_F(AffidavitTable, TheSheetHasTheSecondsAndTheCampaignAsNumbers) {
  const Sheet sheet = AffidavitSheet({"Bakery", "21/11/2026", "21/11/2026"}, Make(), 1);
  EXPECT_EQ(sheet.cells[0].text,
            "Affidavit of broadcast - Bakery from 21/11/2026 to 21/11/2026: 2 crosses, 1 aired, 1 "
            "missed, 1 aired without a cross");
  EXPECT_EQ(sheet.cells[1].text, "Due");
  const auto number = [&](int row, int column) {
    for (const SheetCell& cell : sheet.cells)
      if (cell.row == row && cell.column == column && cell.isNumber) return cell.number;
    return -1.0;
  };
  EXPECT_EQ(number(3, DiffCol::kLate), 5);
  EXPECT_EQ(number(3, DiffCol::kCampaign), 1);
}

TEST_F(AffidavitTable, EachReasonHasItsWordsInEachLanguage) {
  for (const char* reason :
       {"a break at 00:00 never fires", "report purged: it has nothing left of that time",
        "file missing: /a", "the break is full", "minute lost: the station was on air",
        "no clock shows 25:00",
        "engine stopped: the report has nothing from 21/11/2026 10:00 up to 21/11/2026 12:00"}) {
    EXPECT_EQ(ShownReason(reason, 1), reason);
    std::set<std::string> words;
    for (int langue = 0; langue < 4; ++langue) words.insert(ShownReason(reason, langue));
    EXPECT_EQ(words.size(), 4U) << reason;
  }
  EXPECT_EQ(ShownReason("engine stopped: the report has nothing up to 21/11/2026 12:00", 0),
            "station à l'arrêt : le rapport ne contient rien jusqu'au 21/11/2026 12:00");
  EXPECT_EQ(ShownReason("engine stopped: the report has nothing from 21/11/2026 10:00", 0),
            "station à l'arrêt : le rapport ne contient rien depuis le 21/11/2026 10:00");
}

TEST(GridDamage, HasItsWordsInEachLanguageWithItsFiguresAndItsFile) {
  const std::string lines = "the grid file has 2 lines, the campaign's grid 24 cells: /a: b.GPB";
  EXPECT_EQ(ShownDamage(lines, 0),
            "le fichier de grille a 2 lignes, la grille de la campagne 24 cases : /a: b.GPB");
  for (const std::string& damage :
       {lines, std::string("line 7 of the grid file is neither X nor empty: /a.GPB"),
        std::string("the grid file is larger than any grid: /a.GPB"),
        std::string("there is no hour 123 (0 to 23)"),
        std::string("there is no minute 123456789 (0 to 59)")}) {
    EXPECT_EQ(ShownDamage(damage, 1), damage);
    std::set<std::string> words;
    for (int langue = 0; langue < 4; ++langue) words.insert(ShownDamage(damage, langue));
    EXPECT_EQ(words.size(), 4U) << damage;
  }
  EXPECT_EQ(ShownDamage("another one", 3), "another one");
}

TEST(AffidavitWords, EachNameStandsOnceWithAWordInEachLanguage) {
  std::set<std::string> names;
  for (const Word& word : AffidavitCaptions()) {
    EXPECT_TRUE(names.insert(word.name).second) << word.name;
    for (const char* text : word.texts) {
      ASSERT_NE(text, nullptr) << word.name;
      EXPECT_STRNE(text, "") << word.name;
    }
  }
}

TEST_F(AffidavitTable, TheWindowOpensOnTheAdvertisersAndTheMonth) {
  AddCampaign(on, {.advertiser = "Étal"});
  AddCampaign(on, {.advertiser = "Zoo"});
  AddCampaign(on, {.advertiser = "BAKERY"});
  Attestation::Form_Load(on.station, editor);
  EXPECT_EQ(editor.advertisers, (Texts{"Bakery", "Étal", "Zoo"}));
  EXPECT_EQ(editor.LblDate, "01/11/2026");
  EXPECT_EQ(editor.LblDateFin, "22/11/2026");
}

TEST_F(AffidavitTable, WhatWasMadeGoesWithAnotherDay) {
  Attestation::Form_Load(on.station, editor);
  editor.Annonceur = " bakery ";
  Attestation::BtnEtablir_Click(on.station, editor);
  EXPECT_EQ(editor.ListDiff.size(), 3U);
  EXPECT_EQ(editor.LblTotaux,
            "bakery - 2 passage(s) prévu(s), 1 diffusé(s), 1 manqué(s), 1 en plus");
  Attestation::CmdCalend_Click(editor, ParseMoment("2026-11-22 00:00:00"));
  EXPECT_EQ(editor.LblDate, "22/11/2026");
  EXPECT_TRUE(editor.ListDiff.empty());
  EXPECT_EQ(editor.LblTotaux, "");
  EXPECT_TRUE(Attestation::BtnImprimer_Click(on.station, editor).pages.empty());
  EXPECT_EQ(Messages(), Texts{"Vous n'avez rien dans la liste"});
}

TEST_F(AffidavitTable, WhatWasMadeGoesWithAnotherLastDayAndWithNobodysName) {
  Attestation::Form_Load(on.station, editor);
  editor.Annonceur = "Bakery";
  Attestation::BtnEtablir_Click(on.station, editor);
  ASSERT_EQ(editor.ListDiff.size(), 3U);
  Attestation::BtnDateFin_Click(editor, ParseMoment("2026-11-21 00:00:00"));
  EXPECT_TRUE(editor.ListDiff.empty());
  Attestation::BtnEtablir_Click(on.station, editor);
  ASSERT_EQ(editor.ListDiff.size(), 3U);
  editor.Annonceur = " ";
  Attestation::BtnEtablir_Click(on.station, editor);
  EXPECT_TRUE(editor.ListDiff.empty());
}

// Of whom and of which days it is, whatever the fields say by then.
TEST_F(AffidavitTable, APrintIsHeadedByWhatItWasMadeOf) {
  Attestation::Form_Load(on.station, editor);
  editor.Annonceur = "Bakery";
  Attestation::BtnEtablir_Click(on.station, editor);
  editor.Annonceur = "Zoo";
  const PrintedPages printed = Attestation::BtnImprimer_Click(on.station, editor);
  EXPECT_NE(printed.title.find("Bakery"), std::string::npos) << printed.title;
  EXPECT_NE(printed.title.find("01/11/2026"), std::string::npos) << printed.title;
}

TEST_F(AffidavitTable, ASpotOnTheSecondIsNotEarly) {
  EXPECT_EQ(LateText(0), "+00:00");
  EXPECT_EQ(LateText(-1), "-00:01");
}

TEST_F(AffidavitTable, ASpreadsheetThatCannotBeWrittenIsTold) {
  struct : SpreadsheetWriter {
    void Write(const std::string& toPath, const Sheet&) override {
      throw FileError(toPath + ": No space left on device");
    }
  } full;
  Attestation::Form_Load(on.station, editor);
  editor.Annonceur = "Bakery";
  Attestation::BtnEtablir_Click(on.station, editor);
  Attestation::BtnTableur_Click(on.station, editor, "/a.xlsx", full);
  EXPECT_EQ(Messages(),
            Texts{"Le fichier n'a pas pu être écrit\r\n/a.xlsx: No space left on device"});
}

// A report of more rows than a slice, with holes in its numbers.
TEST_F(AffidavitTable, ALongReportIsReadWhileOtherEventsAreServed) {
  on.Sql(
      "INSERT INTO Rapport (CODE, GENRE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 5) SELECT i * 1000000, 'POP', 46000 + i FROM n");
  Attestation::Form_Load(on.station, editor);
  editor.Annonceur = "Bakery";
  int served = 0;
  on.loop.Post([&] { ++served; });
  Attestation::BtnEtablir_Click(on.station, editor);
  EXPECT_EQ(served, 1);
  EXPECT_EQ(editor.ListDiff.size(), 3U);
}

}  // namespace
}  // namespace zemo::test
