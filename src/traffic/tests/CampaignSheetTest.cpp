// The record sheet and its text file.
#include "traffic/CampaignSheet.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

TEST(CampaignSheet, HoldsTheRecordAndTheGridInEqualWidths) {
  CampaignForm form = FormOf("30/12/2026", "01/01/2027", {"00", "", "30"});
  BuildCampaignGrid(form, 0, [] {});
  form.LblCode = "7";
  form.ChAnnonceur = "Zoo";
  form.FichierAudio = "/pubs/Zoo.wav";
  form.LblTemp = "00:15";
  form.ComboPriority = "20";
  form.LblTotalMsg = "1";
  form.GPub.SetCell(4, 2, "X");
  const PrintedPages printed = SheetPages(form);
  EXPECT_EQ(printed.title, "FICHE 7 - Zoo");
  ASSERT_EQ(printed.pages.size(), 1U);
  EXPECT_EQ(
      printed.pages[0],
      (std::vector<std::string>{" FICHE 7 - Zoo  1", "Campagne du 30/12/2026 au 01/01/2027",
                                "Heure de départ 07 Heure de fin 07", "Découpage de l'heure 00 30",
                                "Fichier audio /pubs/Zoo.wav", "Durée 00:15  Ordre de passage 20",
                                "Soit 1 messages sur 3 jours", "", "Mois  12 12 01",
                                "Jour  30 31 01", "      M  J  V", "07:00", "07:30    x"}));
}

// 100 days of 24 moments: 7 lines and 4 + 24 for the first eight weeks, which leaves room for 27.
TEST(CampaignSheet, AWideGridStandsEightWeeksAfterEightWeeksWithTheDaysOnEachPage) {
  CampaignForm form = FormOf("01/01/2026", "10/04/2026", {"00"}, "00", "23");
  BuildCampaignGrid(form, 0, [] {});
  const auto pages = SheetPages(form).pages;
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[0].size(), 62U);
  EXPECT_EQ(pages[0][7], "");
  EXPECT_EQ(pages[0][8].substr(0, 12), "Mois  01 01 ");
  EXPECT_EQ(pages[0][8].size(), 6 + 55 * 3 + 2U);
  EXPECT_EQ(pages[0][11], "00:00");
  EXPECT_EQ(pages[0][34], "23:00");
  EXPECT_EQ(pages[0][36].substr(0, 11), "Mois  02 02");  // from the 26th on, 44 days
  EXPECT_EQ(pages[0][37].substr(0, 11), "Jour  26 27");
  EXPECT_EQ(pages[0][37].size(), 6 + 43 * 3 + 2U);
  EXPECT_EQ(pages[0][61], "22:00");
  EXPECT_EQ(pages[1][0], " FICHE  -   2");
  EXPECT_EQ(pages[1][2].substr(0, 11), "Mois  02 02");
  EXPECT_EQ(pages[1][5], "23:00");
  EXPECT_EQ(pages[1].size(), 6U);
}

TEST(CampaignSheet, GoesIntoATextFileBesideTheSoundFile) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  form.FichierAudio = s.MakeSound("Zoo.wav", 1000);
  const auto lines = Campaigns::BtnImprimer_Click(s.station, form).pages.at(0);
  EXPECT_EQ(s.File("Zoo.Xlt").substr(0, 10), " FICHE  - ");
  EXPECT_NE(s.File("Zoo.Xlt").find("\r\nDur\xE9"
                                   "e "),
            std::string::npos);
  EXPECT_EQ(lines[1], "Campagne du JOURNALIER au JOURNALIER");
  form.FichierAudio = "/nowhere/Zoo.wav";
  EXPECT_EQ(Campaigns::BtnImprimer_Click(s.station, form).pages.at(0).size(), lines.size());
  EXPECT_EQ((*s.First("error"))["where"], "BtnImprimer");
}

}  // namespace
}  // namespace zemo::test
