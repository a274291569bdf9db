// Campaigns taken in from "ExportPubs.Txt".
#include <filesystem>

#include "engine/BaseMaintenance.h"
#include "traffic/CampaignImport.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

std::string FieldOf(const std::string& line, int field) {
  std::string result = "before";
  ImportedField(line, field, result);
  return result;
}

// The twenty fields of a line; those named take the place of the first ones told.
std::string Line(const std::map<int, std::string>& fields = {}) {
  std::vector<std::string> all = {"01/11/2026",
                                  "30/11/2026",
                                  "07",
                                  "20",
                                  "00",
                                  "15",
                                  "30",
                                  "45",
                                  "",
                                  "",
                                  "",
                                  "",
                                  "/pubs/new.wav",
                                  "15000",
                                  "Zoo",
                                  "FUN",
                                  "/pubs/new.GPB",
                                  "20",
                                  "Anne",
                                  "True"};
  for (const auto& [number, text] : fields) all[static_cast<size_t>(number - 1)] = text;
  std::string line;
  for (const std::string& field : all) line += (line.empty() ? "" : "\t") + field;
  return line;
}

std::string Campaigns(CampaignStation& s) {
  return s.SqlText(
      "SELECT group_concat(ANNONCEUR, ' ') FROM (SELECT * FROM GrillePub ORDER BY CODE)");
}

TEST(ImportedField, GivesTheFieldsOfALine) {
  EXPECT_EQ(FieldOf("one\ttwo\tthree", 1), "one");
  EXPECT_EQ(FieldOf("one\ttwo\tthree", 2), "two");
  EXPECT_EQ(FieldOf("one\ttwo\tthree", 3), "three");
  EXPECT_EQ(FieldOf("one\t\tthree", 2), "");
}

TEST(ImportedField, GivesTheLastFieldPastTheLast) {
  EXPECT_EQ(FieldOf("one\ttwo", 20), "two");
  EXPECT_EQ(FieldOf("one\ttwo\t", 20), "");
  EXPECT_EQ(FieldOf("", 1), "");
  EXPECT_EQ(FieldOf("", 20), "");
}

TEST(CampaignImport, FillsARowFromALine) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", Line() + "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(
      s.SqlText("SELECT CAMPAGNEDEPART || '|' || CAMPAGNEFIN || '|' || HDEPART || '|' || HFIN "
                "|| '|' || DECOUPEH1 || DECOUPEH2 || DECOUPEH3 || DECOUPEH4 || DECOUPEH5 || "
                "DECOUPEH6 || DECOUPEH7 || DECOUPEH8 || '|' || FILENAMEAUDIO || '|' || DUREE "
                "|| '|' || ANNONCEUR || '|' || CATEGORIE || '|' || FILENAMEGRILLE || '|' || "
                "PRIORITY || '|' || CONTACT || '|' || PUB || '|' || GENREASSOCIE "
                "FROM GrillePub"),
      "01/11/2026|30/11/2026|07|20|00153045|/pubs/new.wav|15000|Zoo|FUN|/pubs/new.GPB|20|"
      "Anne|-1|");
  EXPECT_EQ(s.File("ExportPubs.Txt"), "(no file)");
  ASSERT_EQ(s.Events("import").size(), 1u);
  EXPECT_EQ(s.Events("import")[0]["lines"] + s.Events("import")[0]["added"], "11");
}

TEST(CampaignImport, KnowsTrueAndVraiToTheLetter) {
  const std::pair<const char*, const char*> words[] = {
      {"True", "-1"}, {"Vrai", "-1"}, {"true", "0"},  {"VRAI", "0"},
      {"True ", "0"}, {"-1", "0"},    {"False", "0"}, {"", "0"}};
  CampaignStation s;
  for (const auto& [word, stored] : words) {
    s.Sql("DELETE FROM GrillePub");
    s.MakeFile("ExportPubs.Txt", Line({{20, word}}) + "\r\n");
    ImportExportedCampaigns(s.station);
    EXPECT_EQ(s.SqlText("SELECT PUB FROM GrillePub"), stored) << word;
  }
}

TEST(CampaignImport, PassesOverALineWhoseSoundFileTheTableKnows) {
  CampaignStation s;
  s.AddCampaign({{"FILENAMEAUDIO", "' /pubs/new.wav '"}, {"ANNONCEUR", "'Known'"}});
  s.MakeFile("ExportPubs.Txt", Line({{15, "Again"}, {1, "02/11/2026"}}) + "\r\n" +
                                   Line({{13, "/pubs/other.wav"}, {15, "Other"}}) + "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(Campaigns(s), "Known Other");
  EXPECT_EQ(s.Events("import")[0]["lines"] + s.Events("import")[0]["added"], "21");
}

TEST(CampaignImport, RefusesALineWithAnHourOrAMarkThatNoClockShows) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", Line({{4, "24"}, {15, "Hour"}}) + "\r\n" +
                                   Line({{12, "60"}, {15, "Mark"}}) + "\r\n" +
                                   Line({{4, "23"}, {12, "59"}, {15, "Good"}}) + "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(Campaigns(s), "Good");
  EXPECT_EQ(s.Events("import").at(0)["lines"] + s.Events("import")[0]["added"], "31");
  const auto errors = s.Events("error");
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors[0]["where"], "SurveilleNewBase");
  EXPECT_EQ(errors[0]["text"], "there is no hour 24 (0 to 23) - ExportPubs.Txt line 1, Hour");
  EXPECT_EQ(errors[1]["text"], "there is no minute 60 (0 to 59) - ExportPubs.Txt line 2, Mark");
}

// The table's name is trimmed, the line's is not, and case counts.
TEST(CampaignImport, ComparesTheFieldAsItStands) {
  CampaignStation s;
  s.AddCampaign({{"FILENAMEAUDIO", "'/pubs/new.wav'"}, {"ANNONCEUR", "'Known'"}});
  s.MakeFile("ExportPubs.Txt", Line({{13, "/pubs/new.wav "}, {15, "Blank"}}) + "\r\n" +
                                   Line({{13, "/PUBS/NEW.WAV"}, {15, "Capitals"}}) + "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(Campaigns(s), "Known Blank Capitals");
}

TEST(CampaignImport, AddsTwoLinesOfOneSoundFileBoth) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", Line() + "\r\n" + Line({{15, "Twin"}}) + "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(Campaigns(s), "Zoo Twin");
}

TEST(CampaignImport, FillsTheRestOfAShortLineWithItsLastField) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", "a\tb\tc\td\t5\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(s.SqlText("SELECT CAMPAGNEDEPART || HFIN || DECOUPEH1 || DECOUPEH8 || FILENAMEAUDIO || "
                      "DUREE || ANNONCEUR || PRIORITY || CONTACT || PUB FROM GrillePub"),
            "ad55555550");
}

TEST(CampaignImport, MakesABlankLineACampaignOfEmptyFields) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", Line() + "\r\n\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "2");
  EXPECT_EQ(s.SqlText("SELECT CAMPAGNEDEPART || FILENAMEAUDIO || ANNONCEUR || DUREE || PRIORITY "
                      "FROM GrillePub WHERE CODE = 2"),
            "00");
  // The next blank line finds a campaign with an empty name.
  s.MakeFile("ExportPubs.Txt", "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "2");
}

TEST(CampaignImport, RefusesAndNamesALineTooLongAndTakesTheOthers) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", Line({{13, "/1.wav"}, {15, "First"}}) + "\r\n" +
                                   Line({{13, "/2.wav"}, {3, "007"}, {15, "Second"}}) + "\r\n" +
                                   Line({{13, "/3.wav"}, {18, "40000"}, {15, "Third"}}) + "\r\n" +
                                   Line({{13, "/4.wav"}, {15, "Fourth"}}) + "\r\n");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(Campaigns(s), "First Fourth");
  EXPECT_EQ(s.Events("import")[0]["lines"] + s.Events("import")[0]["added"], "42");
  const auto errors = s.Events("error");
  ASSERT_EQ(errors.size(), 2u);
  EXPECT_EQ(errors[0]["where"], "SurveilleNewBase");
  EXPECT_NE(errors[0]["text"].find("ExportPubs.Txt line 2, Second"), std::string::npos);
  EXPECT_NE(s.station.notices.lastError.find("line 3, Third"), std::string::npos);
  EXPECT_EQ(s.File("ExportPubs.Txt"), "(no file)");
}

TEST(CampaignImport, EmptiesTheDateStampAlone) {
  CampaignStation s;
  s.station.GPubJour.SetCell(0, 53, "21/11/26");
  s.station.GPubJour.SetCell(1, 0, "12:15");
  s.MakeFile("ExportPubs.Txt", "");
  ImportExportedCampaigns(s.station);
  EXPECT_EQ(s.station.GPubJour.Cell(0, 53), "");
  EXPECT_EQ(s.station.GPubJour.Cell(1, 0), "12:15");
  EXPECT_EQ(s.File("ExportPubs.Txt"), "(no file)");
  EXPECT_EQ(s.Events("import")[0]["lines"] + s.Events("import")[0]["added"], "00");
}

TEST(CampaignImport, WithoutAFileDoesNothing) {
  CampaignStation s;
  s.station.GPubJour.SetCell(0, 53, "21/11/26");
  TakeDroppedBase(s.station);
  EXPECT_EQ(s.station.GPubJour.Cell(0, 53), "21/11/26");
  EXPECT_TRUE(s.Events("import").empty());
}

TEST(CampaignImport, TakesAFileThatMayNotBeWritten) {
  CampaignStation s;
  const std::string path = s.MakeFile("ExportPubs.Txt", Line() + "\r\n");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  TakeDroppedBase(s.station);
  EXPECT_EQ(Campaigns(s), "Zoo");
  EXPECT_EQ(s.File("ExportPubs.Txt"), "(no file)");
}

TEST(CampaignImport, ThatCannotBeReadIsLoggedAndTriedAgain) {
  CampaignStation s;
  s.MakeFile("ExportPubs.Txt", Line() + "\r\n");
  s.stationFolder.fault.number = s.stationFolder.fault.count + 1;
  TakeDroppedBase(s.station);
  EXPECT_EQ((*s.First("error"))["where"], "SurveilleNewBase");
  EXPECT_EQ(Campaigns(s), "");
  TakeDroppedBase(s.station);
  EXPECT_EQ(Campaigns(s), "Zoo");
}

// On air the file is looked for as each music title starts.
TEST(CampaignImport, HappensAsATitleStarts) {
  CampaignStation s;
  s.AppendCard(s.AddCard({.lengthMs = 60000}));
  s.MakeFile("ExportPubs.Txt", Line() + "\r\n");
  s.Start();
  s.RunUntil(5000);
  EXPECT_EQ(s.Events("import").size(), 1u) << s.Describe();
  EXPECT_EQ(Campaigns(s), "Zoo");
}

}  // namespace
}  // namespace zemo::test
