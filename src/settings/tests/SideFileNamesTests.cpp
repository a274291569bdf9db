#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

using SideFiles = SettingsTest;

TEST_F(SideFiles, BearTheNamesThatOtherProgramsKnow) {
  const SideFileNames& files = station.files;
  EXPECT_EQ(files.Tranche, "Tranche.Txt");
  EXPECT_EQ(files.Genre, "Genre.Txt");
  EXPECT_EQ(files.Decoupe, "Decoupe.Ini");
  EXPECT_EQ(files.Categori, "Categori.Ini");
  EXPECT_EQ(files.Messages, "Messages.Txt");
  EXPECT_EQ(files.Labels, "Labels.Txt");
  EXPECT_EQ(files.Internet, "Internet.Txt");
  EXPECT_EQ(files.Exclusion, "Exclusion.Txt");
  EXPECT_EQ(files.DonneesAssociees, "Donnees_Associees.Txt");
  EXPECT_EQ(files.ArtisteTitre, "Artiste-Titre.Txt");
  EXPECT_EQ(files.ExportPubs, "ExportPubs.Txt");
  EXPECT_EQ(files.LectureBase, "LectureBase.Txt");
  EXPECT_EQ(files.Instrumental, "Instrumental.Txt");
  EXPECT_EQ(files.ZemoOnOff, "ZemoOnOff.Dat");
  EXPECT_EQ(files.CheckTopage, "CheckTopage.Dat");
  EXPECT_EQ(files.CD, "CD.Txt");
  EXPECT_EQ(files.ZemoAudio, "ZemoAudio.Ini");
  EXPECT_EQ(files.ZemoPlay, "ZemoPlay.Ini");
  EXPECT_EQ(files.ZemoPasseWord, "ZemoPasseWord.Ini");
  EXPECT_EQ(files.Days.front(), "Lundi.Txt");
  EXPECT_EQ(files.Days.back(), "Dimanche.Txt");
  EXPECT_EQ(files.SkeletonDays[0], "Sq-Lundi.Txt");
  EXPECT_EQ(files.SkeletonDays[2], "Sq-Mercredi.Txt");
  EXPECT_EQ(files.SkeletonDays[6], "Sq-Dimanche.Txt");
}

TEST(SideFilePath, CutsBehindThePointOfTheSoundFilesEnding) {
  EXPECT_EQ(SideFilePath("D:\\Music\\Song.wav", "mar"), "D:\\Music\\Song.mar");
  EXPECT_EQ(SideFilePath("/music/Song.Mp3", "JPG"), "/music/Song.JPG");
  EXPECT_EQ(SideFilePath("/music/été.WAV", "Tx2"), "/music/été.Tx2");
}

TEST(SideFilePath, TakesTheWaveEndingBeforeTheOther) {
  EXPECT_EQ(SideFilePath("a.mp3.wav", "Mus"), "a.mp3.Mus");
  EXPECT_EQ(SideFilePath("a.wav.mp3", "Mus"), "a.Mus");
}

TEST(SideFilePath, PutsTheEndingBehindANameThatHasNeither) {
  EXPECT_EQ(SideFilePath("/music/Song.flac", "Mus"), "/music/Song.flacMus");
  EXPECT_EQ(SideFilePath("", "Mus"), "Mus");
}

TEST(SideFilePath, DoesNotCutAtAFolderOfThatEnding) {
  EXPECT_EQ(SideFilePath("/old.wav/Song.mp3", "Mus"), "/old.wav/Song.Mus");
  EXPECT_EQ(SideFilePath("D:\\old.wav\\Song.flac", "Mus"), "D:\\old.wav\\Song.flacMus");
}

}  // namespace
}  // namespace zemo
