// Exclusion periods, instrumental hours and the reading limit.
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

using Exclusions = SettingsTest;
using Periods = std::vector<std::pair<std::string, std::string>>;

TEST_F(Exclusions, ArePairsOfTimesWithATabBetween) {
  lists.Exclusion = {{"06:00", "09:00"}, {"18:00", "20:30"}};
  LoadSaveExclusion(station, "Save");
  EXPECT_EQ(StationFile("Exclusion.Txt"), "06:00\t09:00\r\n18:00\t20:30\r\n");
  lists.Exclusion.clear();
  LoadSaveExclusion(station, "Load");
  EXPECT_EQ(lists.Exclusion, (Periods{{"06:00", "09:00"}, {"18:00", "20:30"}}));
}

TEST_F(Exclusions, KeepRowsWithoutAStartWhereTheyAre) {
  StationFileIs("Exclusion.Txt", "\t09:00\r\n\r\n \t \r\n06:00\r\n 07:00 \t 08:00 \tmore\r\n");
  LoadSaveExclusion(station, "Load");
  EXPECT_EQ(lists.Exclusion,
            (Periods{{"", "09:00"}, {"", ""}, {"", ""}, {"06:00", ""}, {"07:00", "08:00"}}));
  LoadSaveExclusion(station, "Save");
  EXPECT_EQ(StationFile("Exclusion.Txt"), "\t09:00\r\n\t\r\n\t\r\n06:00\t\r\n07:00\t08:00\r\n");
}

TEST_F(Exclusions, AreEightyRowsAtMost) {
  std::string bytes;
  for (int row = 0; row < 81; ++row) bytes += "06:00\t" + std::to_string(row) + "\r\n";
  StationFileIs("Exclusion.Txt", bytes);
  LoadSaveExclusion(station, "Load");
  ASSERT_EQ(lists.Exclusion.size(), 80u);
  EXPECT_EQ(lists.Exclusion.back().second, "79");
  lists.Exclusion.emplace_back("07:00", "08:00");
  LoadSaveExclusion(station, "Save");
  EXPECT_EQ(StationFile("Exclusion.Txt"), bytes.substr(0, bytes.size() - 10));  // "06:00\t80\r\n"
}

TEST_F(Exclusions, StayAsTheyAreWithoutAFileAndWhenItCannotBeRead) {
  lists.Exclusion = {{"06:00", "09:00"}};
  LoadSaveExclusion(station, "Load");
  EXPECT_EQ(lists.Exclusion.size(), 1u);
  EXPECT_TRUE(fake.errors.empty());
  fake.stationFolder.readsFail = true;
  LoadSaveExclusion(station, "Load");
  EXPECT_EQ(lists.Exclusion.size(), 1u);
  EXPECT_EQ(fake.errors, Texts{"LoadSaveExclusion/75/Exclusion.Txt: Input/output error"});
}

TEST_F(Exclusions, OfAnEmptyFileAreNone) {
  lists.Exclusion = {{"06:00", "09:00"}};
  StationFileIs("Exclusion.Txt", "");
  LoadSaveExclusion(station, "Load");
  EXPECT_TRUE(lists.Exclusion.empty());
}

using InstrumentalHours = SettingsTest;

TEST_F(InstrumentalHours, AreAllHoursWithoutAFile) {
  LoadSaveInstrumental(station, "Load");
  for (const bool instrumental : lists.Instru) EXPECT_TRUE(instrumental);
}

TEST_F(InstrumentalHours, AreWrittenAnHourALine) {
  lists.Instru = {};
  lists.Instru[1] = true;
  LoadSaveInstrumental(station, "Save");
  std::string expected = "#FALSE#\r\n#TRUE#\r\n";
  for (int hour = 2; hour < 24; ++hour) expected += "#FALSE#\r\n";
  EXPECT_EQ(StationFile("Instrumental.Txt"), expected);
  lists.Instru.fill(true);
  LoadSaveInstrumental(station, "Load");
  for (size_t hour = 0; hour < 24; ++hour) EXPECT_EQ(lists.Instru[hour], hour == 1) << hour;
}

TEST_F(InstrumentalHours, ThatAShortFileDoesNotNameStaySelected) {
  lists.Instru = {};
  StationFileIs("Instrumental.Txt", "#FALSE#\r\nrubbish\r\n#FALSE#");
  LoadSaveInstrumental(station, "Load");
  EXPECT_FALSE(lists.Instru[0]);
  EXPECT_TRUE(lists.Instru[1]);
  EXPECT_FALSE(lists.Instru[2]);
  for (size_t hour = 3; hour < 24; ++hour) EXPECT_TRUE(lists.Instru[hour]) << hour;
}

TEST_F(InstrumentalHours, BehindTheTwentyFourthArePassedOver) {
  std::string bytes;
  for (int hour = 0; hour < 30; ++hour) bytes += "#FALSE#,";
  StationFileIs("Instrumental.Txt", bytes);
  LoadSaveInstrumental(station, "Load");
  for (const bool instrumental : lists.Instru) EXPECT_FALSE(instrumental);
}

using ReadingLimit = SettingsTest;

// The 102 characters of the two ruled lines, in the file's own bytes.
const std::string kRule = "\"/*" + std::string(100, '-') + "*/\"\r\n";

TEST_F(ReadingLimit, WithoutAFileIsNoneAndTheFileIsMadeWithItsExplanation) {
  lists.LectureBase = 5;
  LoadReadSettingsOfBase(station);
  EXPECT_EQ(lists.LectureBase, 0);
  EXPECT_EQ(StationFile("LectureBase.Txt"),
            "0\r\n" + kRule +
                "\"/* Param\xE8tre pour calculer le nombre de fiches dans la discoth\xE8que "
                "musique\"\r\n"
                "\"/* \xE0 analyser dans un requ\xEAte ex: 0 = lecture total de la disoth\xE8que "
                "15 = 15x30 minutes = 450 titres\"\r\n" +
                kRule);
}

TEST_F(ReadingLimit, IsReadBackFromTheFileThatWasMade) {
  LoadReadSettingsOfBase(station);
  const std::string made = StationFile("LectureBase.Txt");
  StationFileIs("LectureBase.Txt", "15" + made.substr(1));
  LoadReadSettingsOfBase(station);
  EXPECT_EQ(lists.LectureBase, 15);
  EXPECT_EQ(StationFile("LectureBase.Txt"), "15" + made.substr(1));
  EXPECT_TRUE(fake.errors.empty());
}

TEST_F(ReadingLimit, MayStandInQuotes) {
  StationFileIs("LectureBase.Txt", " \"32767\" ");
  LoadReadSettingsOfBase(station);
  EXPECT_EQ(lists.LectureBase, 32767);
}

TEST_F(ReadingLimit, ThatIsNoNumberIsLoggedAndIsNone) {
  StationFileIs("LectureBase.Txt", "fifteen\r\n");
  LoadReadSettingsOfBase(station);
  StationFileIs("LectureBase.Txt", "");
  LoadReadSettingsOfBase(station);
  StationFileIs("LectureBase.Txt", "32768\r\n");
  LoadReadSettingsOfBase(station);
  EXPECT_EQ(lists.LectureBase, 0);
  EXPECT_EQ(fake.errors, (Texts{"LoadLectureBase/13/LectureBase.Txt: \"fifteen\" is no number",
                                "LoadLectureBase/13/LectureBase.Txt: \"\" is no number",
                                "LoadLectureBase/6/LectureBase.Txt: 32768 is out of range"}));
}

TEST_F(ReadingLimit, WhoseFileCannotBeMadeIsLoggedAndIsNone) {
  fake.stationFolder.writesFail = true;
  LoadReadSettingsOfBase(station);
  EXPECT_EQ(lists.LectureBase, 0);
  EXPECT_EQ(fake.errors, Texts{"LoadLectureBase/75/LectureBase.Txt: No space left on device"});
}

}  // namespace
}  // namespace zemo
