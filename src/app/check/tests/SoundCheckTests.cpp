// Records and their sound files.
#include <sys/stat.h>

#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

class SoundCheck : public CheckedStation {
 protected:
  // What the check says of title 1, whose file has just been changed, without the path.
  std::string WhyTitle1() const {
    const Lines lines = Found();
    if (lines.size() != 1) return std::to_string(lines.size()) + " findings";
    const std::string begin = "music: " + std::string(kTitle1) + ": " + Title1() + ": ";
    return lines[0].rfind(begin, 0) == 0 ? lines[0].substr(begin.size()) : lines[0];
  }
  std::string Bytes(const std::string& name) const { return folder_.Get("station/" + name); }
  void Replace(const std::string& bytes) const {
    std::ofstream(Title1(), std::ios::binary) << bytes;
  }
};

// Bytes of a number, the lowest first.
std::string Little(uint32_t number, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i, number >>= 8) bytes += static_cast<char>(number & 0xFF);
  return bytes;
}

// A WAV file of 16-bit stereo whose data chunk states `stated` bytes and holds `held`.
std::string Wav(uint32_t stated, uint32_t held, uint32_t bytesPerSecond = 176400) {
  return "RIFF" + Little(stated + 36, 4) + "WAVEfmt " + Little(16, 4) + Little(1, 2) +
         Little(2, 2) + Little(44100, 4) + Little(bytesPerSecond, 4) + Little(4, 2) +
         Little(16, 2) + "data" + Little(stated, 4) + std::string(held, '\1');
}

TEST_F(SoundCheck, AMissingFileIsNamedWithItsRecord) {
  fs::remove(Title1());
  EXPECT_EQ(WhyTitle1(), "the sound file is missing");
}

TEST_F(SoundCheck, APathThatHangsOnWhereTheProgramIsStartedIsNamed) {
  const std::string relative = fs::relative(Title1()).string();
  Sql("UPDATE Discotheque SET FILENAME = '" + relative + "' WHERE CODE = 1");
  const Lines lines = Found();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0], "music: " + std::string(kTitle1) + ": " + relative +
                          ": its path is not absolute: it is found only from the folder that the "
                          "program is started in (warning)");
}

TEST_F(SoundCheck, AFolderInPlaceOfTheFileIsNamed) {
  fs::remove(Title1());
  fs::create_directory(Title1());
  EXPECT_EQ(WhyTitle1(), "is a folder, not a sound file");
}

TEST_F(SoundCheck, AnEmptyFileIsNamed) {
  Replace("");
  EXPECT_EQ(WhyTitle1(), "the sound file is empty");
}

TEST_F(SoundCheck, WhatIsNoFileIsNotOpened) {
  fs::remove(Title1());
  ASSERT_EQ(mkfifo(Title1().c_str(), 0600), 0);
  EXPECT_EQ(WhyTitle1(), "is no file");
}

TEST_F(SoundCheck, AFileWithoutPermissionIsNamed) {
  fs::permissions(folder_ / "station", fs::perms(0777));
  fs::permissions(Base(), fs::perms(0666));
  fs::permissions(Title1(), fs::perms::none);
  const NoRights noRights;
  EXPECT_EQ(WhyTitle1(), "Permission denied");
}

TEST_F(SoundCheck, ATextNamedAsSoundIsNamed) {
  Replace(std::string(3000, 'a') + "\nno sound at all\n");
  EXPECT_EQ(WhyTitle1(), "no sound in a known format");
}

TEST_F(SoundCheck, AnMp3CutShortIsNamed) {
  const std::string bytes = Bytes("Musique/Trio du Phare - Aube claire.mp3");
  Replace(bytes.substr(0, bytes.size() / 2));
  Sql("UPDATE Discotheque SET POINTSORTIE = 0");
  const Lines lines = Found();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NE(lines[0].find(": is cut short: its header promises "), std::string::npos) << lines[0];
  EXPECT_NE(lines[1].find(": its card says 4600 ms, the sound file has "), std::string::npos)
      << lines[1];
}

TEST_F(SoundCheck, AWavThatPromisesMoreThanItHoldsIsNamed) {
  Replace(Wav(811440, 80000));  // 4600 ms stated
  const Lines lines = Found();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0],
            "music: " + std::string(kTitle1) + ": " + Title1() +
                ": its header promises 811440 bytes of sound, the file holds 80000 bytes");
}

TEST_F(SoundCheck, AWavThatStatesNoLengthIsAWarning) {
  std::string bytes = Wav(811440, 811440);
  bytes.replace(40, 4, Little(0, 4));
  Replace(bytes);
  EXPECT_EQ(WhyTitle1(),
            "its header states no length; the file holds 811440 bytes of sound (warning)");
}

TEST_F(SoundCheck, AWavThatContradictsItselfIsNamed) {
  Replace(Wav(811440, 811440, 88200));
  EXPECT_EQ(WhyTitle1(),
            "its header contradicts itself: 2 channels of 16 bits at 44100 Hz are not 88200 bytes "
            "a second");
}

TEST_F(SoundCheck, AWavThatIsAsItsHeaderSaysIsFine) {
  Replace(Wav(811440, 811440));  // 4600 ms, as the card
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(SoundCheck, ACardOfAnotherLengthThanItsFileIsAWarning) {
  Sql("UPDATE Discotheque SET DUREE = 4701 WHERE CODE = 1");
  EXPECT_EQ(Found(), Lines{"music: " + std::string(kTitle1) +
                           ": its card says 4701 ms, the sound file has 4600 (warning)"});
  Sql("UPDATE Discotheque SET DUREE = 4700 WHERE CODE = 1");
  EXPECT_EQ(Found(), Lines{}) << "a tenth of a second is let pass";
}

TEST_F(SoundCheck, AnExitPointThatLeavesNothingIsAWarning) {
  Sql("UPDATE Discotheque SET POINTSORTIE = 4600 WHERE CODE = 1");
  EXPECT_EQ(Found(), Lines{"music: " + std::string(kTitle1) +
                           ": its exit point of 4600 ms leaves nothing of its 4600 ms (warning)"});
}

TEST_F(SoundCheck, ARecordWithoutAFileIsNamed) {
  Sql("UPDATE Discotheque SET FILENAME = ' ' WHERE CODE = 1");
  EXPECT_EQ(Found(), Lines{"music: " + std::string(kTitle1) + ": names no sound file"});
}

TEST_F(SoundCheck, EveryKindOfRecordIsLookedAt) {
  Sql("UPDATE DiscothequeJingle SET FILENAME = '/no/j.wav' WHERE CODE = 1;"
      "UPDATE DiscothequeVirgule SET FILENAME = '/no/v.wav' WHERE CODE = 2;"
      "UPDATE GrillePub SET FILENAMEAUDIO = '/no/p.mp3' WHERE CODE = 3;"
      "INSERT INTO VT(FILENAME, START, LIBELLE, DUREE) VALUES ('/no/t.wav', 0, 'Lien', 0);"
      "UPDATE Toph SET FICHIER = '/no/h.wav' WHERE HEURE IN (7, 8);"
      "UPDATE Cnf SET JingleAvantPubs = '/no/a.wav'");
  EXPECT_EQ(Found(), (Lines{"jingle: 1 Zemo Demo - Signature: /no/j.wav: the sound file is missing",
                            "short: 2 Virgule descendante: /no/v.wav: the sound file is missing",
                            "campaign: 3 Librairie Onze: /no/p.mp3: the sound file is missing",
                            "voicetrack: 1 Lien: /no/t.wav: the sound file is missing",
                            "pip: hours 07, 08: /no/h.wav: the sound file is missing",
                            "settings: JingleAvantPubs: /no/a.wav: the sound file is missing"}));
}

TEST_F(SoundCheck, HoursWithoutAPipAreAWarning) {
  Sql("UPDATE Toph SET FICHIER = '' WHERE HEURE IN (3, 22)");
  EXPECT_EQ(Found(), Lines{"pip: hours 03, 22: no sound file (warning)"});
}

TEST_F(SoundCheck, AStationWithoutAnyPipIsNoFinding) {
  Sql("UPDATE Toph SET FICHIER = ''");
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(SoundCheck, ACampaignWithoutItsGridIsAWarning) {
  fs::remove(Path("Pubs/Librairie Onze.GPB"));
  EXPECT_EQ(Found(), Lines{"campaign: 3 Librairie Onze: has no grid file and is never on air: " +
                           Path("Pubs/Librairie Onze.GPB") + " (warning)"});
}

TEST_F(SoundCheck, AGridFileOfABareNameStandsInTheStationsFolder) {
  Sql("UPDATE GrillePub SET FILENAMEGRILLE = 'GPB' WHERE CODE = 3");
  EXPECT_EQ(Found(), Lines{"campaign: 3 Librairie Onze: has no grid file and is never on air: GPB "
                           "(warning)"});
  folder_.Put("station/GPB", "X\r\n");
  EXPECT_EQ(Found(), Lines{"campaign: 3 Librairie Onze: the grid file has 1 lines, the campaign's "
                           "grid 196 cells: GPB"});
  std::string lines;
  for (int cell = 0; cell < 196; ++cell) lines += "X\r\n";
  folder_.Put("station/GPB", lines);
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(SoundCheck, ACampaignOfEmptyFieldsIsNamed) {
  Sql("INSERT INTO GrillePub (FILENAMEAUDIO, ANNONCEUR, FILENAMEGRILLE) VALUES ('', '', '')");
  EXPECT_EQ(Found(), (Lines{"campaign: 7 : names no sound file",
                            "campaign: 7 : has no grid file and is never on air:  (warning)"}));
}

TEST_F(SoundCheck, PathsFromElsewhereGoThroughTheMachinesMap) {
  Sql("UPDATE Discotheque SET FILENAME = 'D:\\Radio\\musique\\TRIO DU PHARE - aube claire.MP3' "
      "WHERE CODE = 1");
  EXPECT_EQ(Found().size(), 1U) << "without the map it is missing";
  folder_.Put("machine/PathMap.Ini", "D:\\Radio = " + folder_ / "station\n");
  EXPECT_EQ(Found(), Lines{});
}

}  // namespace
}  // namespace zemo
