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
  EXPECT_EQ(
      SheetLines(form),
      (std::vector<std::string>{" FICHE 7 - Zoo  1", "Campagne du 30/12/2026 au 01/01/2027",
                                "Heure de départ 07 Heure de fin 07", "Découpage de l'heure 00 30",
                                "Fichier audio /pubs/Zoo.wav", "Durée 00:15  Ordre de passage 20",
                                "Soit 1 messages sur 3 jours", "", "Mois  12 12 01",
                                "Jour  30 31 01", "      M  J  V", "07:00", "07:30    x"}));
}

TEST(CampaignSheet, GoesIntoATextFileBesideTheSoundFile) {
  CampaignStation s;
  CampaignForm form = FormOf("JOURNALIER", "JOURNALIER");
  form.FichierAudio = s.MakeSound("Zoo.wav", 1000);
  const auto lines = Campaigns::BtnImprimer_Click(s.station, form);
  EXPECT_EQ(s.File("Zoo.Xlt").substr(0, 10), " FICHE  - ");
  EXPECT_NE(s.File("Zoo.Xlt").find("\r\nDur\xE9"
                                   "e "),
            std::string::npos);
  EXPECT_EQ(lines[1], "Campagne du JOURNALIER au JOURNALIER");
  form.FichierAudio = "/nowhere/Zoo.wav";
  EXPECT_EQ(Campaigns::BtnImprimer_Click(s.station, form).size(), lines.size());
  EXPECT_EQ((*s.First("error"))["where"], "BtnImprimer");
}

}  // namespace
}  // namespace zemo::test
