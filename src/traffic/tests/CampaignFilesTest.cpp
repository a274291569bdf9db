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
  const CampaignFile file("GPB");
  file.Write(s.station, "X\r\n");
  EXPECT_EQ(s.File("GPB"), "X\r\n");
  EXPECT_TRUE(file.Exists(s.station));
  EXPECT_EQ(file.Read(s.station), "X\r\n");
  file.Remove(s.station);
  EXPECT_FALSE(file.Exists(s.station));
}

TEST(CampaignFile, OfAPathStandsWithTheSoundFiles) {
  CampaignStation s;
  const CampaignFile file(s.InFolder("spot.GPB"));
  file.Write(s.station, "X\r\n");
  EXPECT_EQ(s.File("spot.GPB"), "X\r\n");
  EXPECT_EQ(file.SizeBytes(s.station), 3);
}

TEST(CampaignFile, OfNoNameIsNone) {
  CampaignStation s;
  const CampaignFile none("");
  EXPECT_FALSE(none.Exists(s.station));
  EXPECT_EQ(none.Read(s.station), std::nullopt);
  EXPECT_EQ(none.SizeBytes(s.station), -1);
  EXPECT_EQ(none.Path(s.station), "");
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
  form.ChAnnonceur = "Boulan\r\ngerie";
  EXPECT_EQ(CampaignProgram(form).find("\ngerie"), std::string::npos);
  form.OptPub = {false, true};
  EXPECT_NE(CampaignProgram(form).find("20\r\nFalse\r\n"), std::string::npos);
}

TEST(Decoupe, IsTenQuotedStringsAndComesBack) {
  CampaignStation s;
  CampaignForm form = FormOf("", "", {"00", "", "30"}, "07", "20");
  LoadSaveMarks(s.station, "Save", form);
  EXPECT_EQ(s.File("Decoupe.Ini"), "\"07\",\"20\",\"00\",\"\",\"30\",\"\",\"\",\"\",\"\",\"\"\r\n");
  CampaignForm again = FormOf("", "", {"55", "56"}, "01", "02");
  LoadSaveMarks(s.station, "Load", again);
  EXPECT_EQ(again.HDepPub, "07");
  EXPECT_EQ(again.HFinPub, "20");
  EXPECT_EQ(again.DecoupagePub, form.DecoupagePub);
}

TEST(Decoupe, ThatIsMissingLeavesTheFields) {
  CampaignStation s;
  CampaignForm form = FormOf("", "", {"55"}, "01", "02");
  LoadSaveMarks(s.station, "Load", form);
  EXPECT_EQ(form.HDepPub, "01");
  EXPECT_EQ(form.DecoupagePub[0], "55");
}

TEST(Decoupe, ThatIsCutGivesWhatItHolds) {
  CampaignStation s;
  s.MakeFile("Decoupe.Ini", "\"09\"\r\n\"10\"\r\n\"05");
  CampaignForm form = FormOf("", "", {"55", "56"}, "01", "02");
  LoadSaveMarks(s.station, "Load", form);
  EXPECT_EQ(form.HDepPub, "09");
  EXPECT_EQ(form.HFinPub, "10");
  EXPECT_EQ(form.DecoupagePub[0], "05");
  EXPECT_EQ(form.DecoupagePub[1], "56");
}

TEST(Decoupe, OfAnHourOrAMarkThatNoClockShowsIsAFaultAndLeavesTheFields) {
  const std::pair<const char*, const char*> wrong[] = {
      {"\"07\",\"24\",\"00\"", "there is no hour 24 (0 to 23)"},
      {"\"99\",\"08\",\"00\"", "there is no hour 99 (0 to 23)"},
      {"\"07\",\"2147483647\",\"00\"", "there is no hour 2147483647 (0 to 23)"},
      {"\"07\",\"08\",\"00\",\"60\"", "there is no minute 60 (0 to 59)"},
      {"\"07\",\"08\",\"-5\"", "there is no minute -5 (0 to 59)"}};
  for (const auto& [bytes, fault] : wrong) {
    CampaignStation s;
    s.MakeFile("Decoupe.Ini", bytes);
    CampaignForm form = FormOf("", "", {"55"}, "01", "02");
    LoadSaveMarks(s.station, "Load", form);
    EXPECT_EQ(form.HDepPub + form.HFinPub + form.DecoupagePub[0], "010255") << bytes;
    ASSERT_EQ(s.Events("error").size(), 1U) << bytes;
    EXPECT_EQ(s.Events("error")[0]["where"], "LoadSaveDecoupe");
    EXPECT_EQ(s.Events("error")[0]["text"], std::string("Decoupe.Ini: ") + fault);
  }
}

TEST(Decoupe, TakesTheLastHourAndTheLastMinute) {
  CampaignStation s;
  s.MakeFile("Decoupe.Ini", "\"00\",\"23\",\"0\",\"59\",\"  \"");
  CampaignForm form;
  LoadSaveMarks(s.station, "Load", form);
  EXPECT_EQ(form.HFinPub + form.DecoupagePub[1], "2359");
  EXPECT_EQ(s.First("error"), nullptr);
}

TEST(Decoupe, IsNotWrittenWithAnHourThatNoClockShows) {
  CampaignStation s;
  s.MakeFile("Decoupe.Ini", "\"07\",\"08\",\"00\"");
  CampaignForm form = FormOf("", "", {"55"}, "01", "24");
  LoadSaveMarks(s.station, "Save", form);
  EXPECT_EQ(s.File("Decoupe.Ini"), "\"07\",\"08\",\"00\"");
  EXPECT_EQ(s.Events("error").size(), 1U);
}

TEST(MajGrillePub, HoldsTheDateOfTheDay) {
  CampaignStation s;
  WriteGridSignal(s.station);
  EXPECT_EQ(s.File("MajGrillePub.txt"), "21/11/2026\r\n");
}

}  // namespace
}  // namespace zemo::test
