// `zemoradio import`, from outside.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class ImportCommand : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    ASSERT_EQ(Run("new fresh").status, 0);
    std::filesystem::create_directories(root_ / "music/inner");
    PutWav("music/b.wav", 3);
    PutWav("music/inner/a.WAV", 4);
    Put("music/words.txt", "no sound");
  }
  Result Import(const std::string& arguments) const {
    return Run("import --station fresh --machine machine " + arguments);
  }
  std::string Sql(const std::string& query) const {
    return Shell("sqlite3 fresh/Triskin.MDB \"" + query + "\"").out;
  }
};

TEST_F(ImportCommand, AddsTheSoundFilesOfAFolderByTheirAbsolutePathsAndPassesOverTheRest) {
  const Result result = Import("music");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "added  " + Path("music/b.wav") + "  card 1\nadded  " +
                            Path("music/inner/a.WAV") +
                            "  card 2\n2 added, 0 known already, 0 refused\n"
                            "2 without a genre of the station's, which no model asks for (see "
                            "ImportGenres.Txt): none 2\n"
                            "2 with less than a second of sound: b.wav (card 1), a.WAV (card 2)\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(Sql("SELECT AUTEUR, GENRE, VARIETE, DUREE, NBPASSJOUR FROM Discotheque"),
            "b|NOGENRE|NATIONAL|3000|1\na|NOGENRE|NATIONAL|4000|1\n");
}

TEST_F(ImportCommand, AFileThatHasACardIsKnownWhichIsNoFailure) {
  Import("music");
  const Result result = Import("music/b.wav");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "known already  " + Path("music/b.wav") +
                            "  card 1\n0 added, 1 known already, 0 refused\n");
}

TEST_F(ImportCommand, WhatIsNoSoundOrNotThereIsRefusedWithItsReason) {
  Put("music/broken.mp3", "no sound");
  const Result result = Import("--json music /no/such.wav");
  EXPECT_EQ(result.status, 1);
  const Json files = Json::parse(result.out);
  ASSERT_EQ(files.size(), 4U);
  EXPECT_EQ(files[0]["result"], "added");
  EXPECT_EQ(files[0]["code"], 1);
  EXPECT_EQ(files[1]["file"], Path("music/broken.mp3"));
  EXPECT_EQ(files[1]["result"], "refused");
  EXPECT_NE(files[1]["reason"], "");
  EXPECT_EQ(files[3]["reason"], "there is no such file");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Discotheque"), "2\n");
  EXPECT_NE(result.err.find("import: 2 with less than a second of sound: "), std::string::npos);
}

TEST_F(ImportCommand, ADryRunSaysTheSameAndDoesNothing) {
  const Result result = Import("--dry-run music");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Discotheque"), "0\n");
  EXPECT_FALSE(std::filesystem::exists(root_ / "music/b.Mus"));
  EXPECT_EQ(Import("music").out + "a dry run: nothing was written\n", result.out);
}

TEST_F(ImportCommand, TheSameSoundUnderAnotherPathIsAddedAndTheOtherCardNamed) {
  Import("music");
  std::filesystem::copy_file(root_ / "music/b.wav", root_ / "music/copy.wav");
  const Result result = Import("music/copy.wav");
  EXPECT_EQ(result.out, "added  " + Path("music/copy.wav") +
                            "  card 3: the same sound as card 1\n1 added, 0 known already, 0 "
                            "refused\n1 without a genre of the station's, which no model asks for "
                            "(see ImportGenres.Txt): none 1\n1 with less than a second of sound: "
                            "copy.wav (card 3)\n");
}

TEST_F(ImportCommand, KindsGoToTheirOwnTables) {
  EXPECT_EQ(Import("--kind jingle music/b.wav").status, 0);
  EXPECT_EQ(Import("--kind other music/b.wav").status, 0);
  EXPECT_EQ(Sql("SELECT LIBELLE FROM DiscothequeJingle UNION ALL SELECT LIBELLE FROM "
                "DiscothequeVirgule"),
            "b\nb\n");
  EXPECT_EQ(Import("--kind film music/b.wav").status, 2);
}

TEST_F(ImportCommand, ATextThatIsTooLongIsCutBehindAWordAndTold) {
  const std::string name = "A very long name of a title that no field of a card can hold";
  PutWav("music/" + name + ".wav", 1);
  const Result result = Import("\"music/" + name + ".wav\"");
  EXPECT_NE(result.out.find(": artist cut to its field\n"), std::string::npos) << result.out;
  EXPECT_EQ(Sql("SELECT AUTEUR FROM Discotheque"), "A very long name of a title that no\n");
}

TEST_F(ImportCommand, AnExchangeFileKeepsTheExitPointThatAHandSet) {
  std::string masks;
  for (int day = 1; day <= 7; ++day)
    masks += (day == 1 ? "\"" : ",\"") + std::string(24, '1') + "\"";
  Put("music/b.Mus",
      "\"ARTIST\",\"TITLE\",\"PLAYLIST\",\"NATIONAL\",\"\",0,1,60,0,0\r\n777,\"\",\"\","
      "\"\",\"\"\r\n" +
          masks + "\r\n\"\"\r\n");
  Import("music/b.wav");
  EXPECT_EQ(Sql("SELECT AUTEUR, GENRE, POINTSORTIE FROM Discotheque"), "ARTIST|PLAYLIST|777\n");
}

TEST_F(ImportCommand, TheExitPointsThatAnInterruptedRunLeftAreFoundByTheNextOne) {
  Import("music");
  EXPECT_FALSE(std::filesystem::exists(root_ / "fresh/ExitsToFind.Txt"));
  Shell(
      "sqlite3 fresh/Triskin.MDB 'UPDATE Discotheque SET POINTSORTIE = 1600; DELETE FROM Mesures "
      "WHERE DUREE = 3000'");
  Put("fresh/ExitsToFind.Txt",
      "1\t1600\t" + Path("music/b.wav") + "\n2\t1600\t" + Path("music/inner/a.WAV") + "\n");
  Import("music");
  // Silence ends where the file does.
  EXPECT_EQ(Sql("SELECT POINTSORTIE FROM Discotheque"), "0\n0\n");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Mesures"), "2\n");
  EXPECT_FALSE(std::filesystem::exists(root_ / "fresh/ExitsToFind.Txt"));
}

TEST_F(ImportCommand, TheExitPointsOfNewTitlesAreFoundByEar) {
  Import("music");
  EXPECT_EQ(Sql("SELECT POINTSORTIE FROM Discotheque"), "0\n0\n");  // silence to the end
  EXPECT_EQ(Sql("SELECT DUREE FROM Mesures ORDER BY DUREE"), "3000\n4000\n");
}

TEST_F(ImportCommand, ADryRunLeavesTheExitPointsThatAreStillToBeFound) {
  Import("music");
  Sql("UPDATE Discotheque SET POINTSORTIE = 1600");
  Put("fresh/ExitsToFind.Txt", "1\t1600\t" + Path("music/b.wav") + "\n");
  Import("--dry-run music");
  EXPECT_EQ(Sql("SELECT POINTSORTIE FROM Discotheque"), "1600\n1600\n");
  EXPECT_TRUE(std::filesystem::exists(root_ / "fresh/ExitsToFind.Txt"));
}

// Another program has the base for itself, which can be read meanwhile.
TEST_F(ImportCommand, ExitPointsThatALockedBaseDoesNotTakeAreKeptForTheNextRun) {
  Import("music");
  Sql("UPDATE Discotheque SET POINTSORTIE = 1600; DELETE FROM Mesures");
  const std::string kept = "1\t1600\t" + Path("music/b.wav") + "\n";
  Put("fresh/ExitsToFind.Txt", kept);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(Path("fresh/Triskin.MDB").c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  const Result locked = Import("music");
  sqlite3_close(other);
  EXPECT_EQ(locked.status, 1);
  EXPECT_EQ(LinesOf(locked.err).size(), 1U) << locked.err;
  EXPECT_EQ(ReadText(root_ / "fresh/ExitsToFind.Txt"), kept);
  EXPECT_EQ(Import("music").status, 0);
  EXPECT_EQ(Sql("SELECT POINTSORTIE FROM Discotheque WHERE CODE = 1"), "0\n");
}

TEST_F(ImportCommand, MeasuresThatNoCardHoldsDoNotEndTheSearchForExitPoints) {
  Import("music");
  Sql("UPDATE Discotheque SET POINTSORTIE = 1600; UPDATE Mesures SET POINTSORTIE = 99999");
  Put("fresh/ExitsToFind.Txt",
      "1\t1600\t" + Path("music/b.wav") + "\n2\t1600\t" + Path("music/inner/a.WAV") + "\n");
  const Result result = Import("music");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Sql("SELECT POINTSORTIE FROM Discotheque"), "0\n0\n");
  EXPECT_FALSE(std::filesystem::exists(root_ / "fresh/ExitsToFind.Txt"));
}

TEST_F(ImportCommand, ANameOfAnyBytesIsOneLineAndATextOnTheCard) {
  std::filesystem::create_directory(root_ / "odd");
  PutWav("odd/new\nline \x1b[31m.wav", 1);
  PutWav("odd/\xe9t\xe9.wav", 2);
  const Result result = Import("odd");
  // A line a file; the counts, what has no genre, and what is short have one each.
  EXPECT_EQ(LinesOf(result.out).size(), 5U) << result.out;
  EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
  EXPECT_EQ(Sql("SELECT AUTEUR FROM Discotheque ORDER BY CODE"), "new line  [31m\nété\n");
  const Result again = Import("odd");
  EXPECT_EQ(again.out.find("added  "), std::string::npos) << again.out;
}

TEST_F(ImportCommand, WithoutAPathItIsWrongUsage) {
  EXPECT_EQ(Import("").status, 2);
}

}  // namespace
}  // namespace zemo
