// Paths and contents of a campaign's files, and the editor's own files in the station's folder.
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

TEST(CampaignFilePath, IsCutBehindThePointOfTheFirstWavElseOfTheFirstMp3) {
  EXPECT_EQ(CampaignFilePath("D:\\pubs\\spot.wav", "GPB"), "D:\\pubs\\spot.GPB");
  EXPECT_EQ(CampaignFilePath("/pubs/spot.Mp3", "prg"), "/pubs/spot.prg");
  EXPECT_EQ(CampaignFilePath("/pubs/a.wav.copy.wav", "GPB"), "/pubs/a.GPB");
  EXPECT_EQ(CampaignFilePath("/pubs/a.mp3.wav", "GPB"), "/pubs/a.mp3.GPB");
  EXPECT_EQ(CampaignFilePath("/my.wavs/spot.mp3", "GPB"), "/my.GPB");
}

TEST(CampaignFilePath, IsTheEndingAloneWithoutEither) {
  EXPECT_EQ(CampaignFilePath("/pubs/spot.flac", "GPB"), "GPB");
  EXPECT_EQ(CampaignFilePath("", "prg"), "prg");
}

TEST(CampaignFile, OfABareNameStandsInTheStationsFolder) {
  CampaignStation s;
  WriteCampaignFile(s.station, "GPB", "X\r\n");
  EXPECT_EQ(s.File("GPB"), "X\r\n");
  EXPECT_TRUE(CampaignFileExists(s.station, "GPB"));
  EXPECT_EQ(ReadCampaignFile(s.station, "GPB"), "X\r\n");
  RemoveCampaignFile(s.station, "GPB");
  EXPECT_FALSE(CampaignFileExists(s.station, "GPB"));
  EXPECT_FALSE(CampaignFileExists(s.station, ""));
}

TEST(CampaignProgram, HoldsAFieldALine) {
  CampaignForm form = FormOf("01/11/2026", "30/11/2026", {"00", "", "30"}, "07", "20");
  form.ChAnnonceur = "Boulangerie";
  form.Categorie = "FOOD";
  form.ComboPriority = "20";
  form.GenreAssocie = "POP";
  EXPECT_EQ(CampaignProgram(form),
            "01/11/2026\r\n30/11/2026\r\n07\r\n20\r\n00\r\n\r\n30\r\n\r\n\r\n\r\n\r\n\r\n"
            "Boulangerie\r\nFOOD\r\n20\r\nTrue\r\nPOP\r\n");
  form.OptPub = {false, true};
  EXPECT_NE(CampaignProgram(form).find("20\r\nFalse\r\n"), std::string::npos);
}

TEST(Decoupe, IsTenQuotedStringsAndComesBack) {
  CampaignStation s;
  CampaignForm form = FormOf("", "", {"00", "", "30"}, "07", "20");
  LoadSaveDecoupe(s.station, "Save", form);
  EXPECT_EQ(s.File("Decoupe.Ini"), "\"07\",\"20\",\"00\",\"\",\"30\",\"\",\"\",\"\",\"\",\"\"\r\n");
  CampaignForm again = FormOf("", "", {"55", "56"}, "01", "02");
  LoadSaveDecoupe(s.station, "Load", again);
  EXPECT_EQ(again.HDepPub, "07");
  EXPECT_EQ(again.HFinPub, "20");
  EXPECT_EQ(again.DecoupagePub, form.DecoupagePub);
}

TEST(Decoupe, ThatIsMissingLeavesTheFields) {
  CampaignStation s;
  CampaignForm form = FormOf("", "", {"55"}, "01", "02");
  LoadSaveDecoupe(s.station, "Load", form);
  EXPECT_EQ(form.HDepPub, "01");
  EXPECT_EQ(form.DecoupagePub[0], "55");
}

TEST(Decoupe, ThatIsCutGivesWhatItHolds) {
  CampaignStation s;
  s.MakeFile("Decoupe.Ini", "\"09\"\r\n\"10\"\r\n\"05");
  CampaignForm form = FormOf("", "", {"55", "56"}, "01", "02");
  LoadSaveDecoupe(s.station, "Load", form);
  EXPECT_EQ(form.HDepPub, "09");
  EXPECT_EQ(form.HFinPub, "10");
  EXPECT_EQ(form.DecoupagePub[0], "05");
  EXPECT_EQ(form.DecoupagePub[1], "56");
}

TEST(MajGrillePub, HoldsTheDateOfTheDay) {
  CampaignStation s;
  WriteMajGrillePub(s.station);
  EXPECT_EQ(s.File("MajGrillePub.txt"), "21/11/2026\r\n");
}

}  // namespace
}  // namespace zemo::test
