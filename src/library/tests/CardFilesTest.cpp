// The exchange files of cards as texts.
#include <gtest/gtest.h>

#include "library/JingleCard.h"
#include "library/MusicCard.h"

namespace zemo {

namespace {

const std::string kDay(24, '1');
const std::string kNight = "000000" + std::string(18, '1');

std::string SevenMasks(const std::string& mask) {
  std::string record = "\"" + mask + "\"";
  for (int day = 2; day <= 7; ++day) record += ",\"" + mask + "\"";
  return record;
}

MusicCard CardOfSong() {
  MusicCard card;
  card.ChFileName = "/music/song.wav";
  card.ChAuteur = "THE \"QUOTED\"";
  card.ChTitre = "A, B";
  card.ChGenre = "POP";
  card.ChVariete = "NATIONAL";
  card.ChAnne = "1987";
  card.ChIntro = "12";
  card.ChNbPassJour = "3";
  card.ChEcartMinutes = "90";
  card.ChEcartJours = "1";
  card.ChEcartArtiste = "4";
  card.PointSortie = 2500;
  card.ChLabel = "LABEL";
  card.ChAuteurCompositeur = " A. COMPOSER ";
  card.ChRefAlbum = "REF 1";
  card.ChCD = "CD 7";
  card.ChCommentaire = "first line\nsecond";
  card.LblMMJJDebut = "1201";
  card.LblMMJJFin = "1231";
  return card;
}

}  // namespace

TEST(MusFile, HasFiveRecordsInTheirOrder) {
  EXPECT_EQ(MusText(CardOfSong(), HourMasks()),
            "\"THE \"\"QUOTED\"\"\",\"A, B\",\"POP\",\"NATIONAL\",\"1987\",12,3,90,1,4\r\n"
            "2500,\"LABEL\",\"A. COMPOSER\",\"REF 1\",\"CD 7\"\r\n" +
                SevenMasks(kDay) +
                "\r\n"
                "\"first line second\"\r\n"
                "\"1201\",\"1231\"\r\n");
}

TEST(MusFile, IsReadBackAsItWasWritten) {
  HourMasks masks;
  masks.Take(4, kNight);
  MusicCard card;
  HourMasks read;
  ASSERT_TRUE(TakeMus(MusText(CardOfSong(), masks), card, read));
  EXPECT_EQ(card.ChAuteur, "THE \"QUOTED\"");
  EXPECT_EQ(card.ChTitre, "A, B");
  EXPECT_EQ(card.ChAnne, "1987");
  EXPECT_EQ(card.ChIntro, "12");
  EXPECT_EQ(card.ChEcartArtiste, "4");
  EXPECT_EQ(card.PointSortie, 2500);
  EXPECT_EQ(card.ChAuteurCompositeur, "A. COMPOSER");
  EXPECT_EQ(card.ChRefAlbum, "REF 1");
  EXPECT_EQ(card.ChCD, "CD 7");
  EXPECT_EQ(read.Mask(4), kNight);
  EXPECT_EQ(read.Mask(5), kDay);
  EXPECT_EQ(card.LblMMJJFin, "1231");
}

TEST(MusFile, WithoutItsFifthRecordLeavesBothWindowFieldsEmpty) {
  const std::string whole = MusText(CardOfSong(), HourMasks());
  MusicCard card;
  card.LblMMJJDebut = "0101";
  HourMasks masks;
  ASSERT_TRUE(TakeMus(whole.substr(0, whole.rfind("\"1201\"")), card, masks));
  EXPECT_EQ(card.LblMMJJDebut, "");
  EXPECT_EQ(card.LblMMJJFin, "");
  EXPECT_EQ(card.ChCommentaire, "first line second");
}

TEST(MusFile, ThatBreaksOffIsNoCardAndChangesNothing) {
  MusicCard card;
  HourMasks masks;
  EXPECT_FALSE(TakeMus("\"A\",\"B\"\r\n", card, masks));
  EXPECT_EQ(card.ChAuteur, "");
}

TEST(OlderTxtFile, GivesEveryFieldThatItHas) {
  MusicCard card;
  HourMasks masks;
  ASSERT_TRUE(
      TakeOlderTxt("\"ARTIST\",\"TITLE\",\"ROCK\",\"NATIONAL\",\"1999\",8,2,\"skipped\",150\r\n"
                   "3,5,1800,\"A LABEL\"\r\n\"A COMPOSER\",\"REF\"\r\n" +
                       SevenMasks(kNight) + "\r\n",
                   card, masks));
  EXPECT_EQ(card.ChAuteur, "ARTIST");
  EXPECT_EQ(card.ChGenre, "ROCK");
  EXPECT_EQ(card.ChIntro, "8");
  EXPECT_EQ(card.ChNbPassJour, "2");
  EXPECT_EQ(card.ChEcartMinutes, "150");
  EXPECT_EQ(card.ChEcartJours, "3");
  EXPECT_EQ(card.ChEcartArtiste, "5");
  EXPECT_EQ(card.PointSortie, 1800);
  EXPECT_EQ(card.ChLabel, "A LABEL");
  EXPECT_EQ(card.ChAuteurCompositeur, "A COMPOSER");
  EXPECT_EQ(card.ChRefAlbum, "REF");
  EXPECT_EQ(masks.Mask(1), kNight);
}

TEST(OlderTxtFile, WhatItLacksStaysAsABareFileHasIt) {
  MusicCard card;
  HourMasks masks;
  SetBareMusicCard(card, masks, 1600);
  ASSERT_TRUE(TakeOlderTxt("\"A\",\"T\",\"ROCK\",\"X\",\"1999\",0,1,\"\",60\r\n", card, masks));
  EXPECT_EQ(card.ChEcartJours, "0");
  EXPECT_EQ(card.ChEcartMinutes, "60");
  EXPECT_EQ(card.PointSortie, 1600);
  EXPECT_EQ(masks.Mask(7), kDay);
}

TEST(OlderTxtFile, TakesItsVarietyFromTheGenreAlone) {
  HourMasks masks;
  for (const char* genre : {"FRANçAISE", "Française", "FRANÇAISE"}) {
    MusicCard card;
    TakeOlderTxt(std::string("\"A\",\"T\",\"") + genre + "\",\"INTERNATIONAL\",\"\",0,1,0,60", card,
                 masks);
    EXPECT_EQ(card.ChVariete, "NATIONAL") << genre;
  }
  MusicCard card;
  TakeOlderTxt("\"A\",\"T\",\"FRANCAISE\",\"NATIONAL\",\"\",0,1,0,60", card, masks);
  EXPECT_EQ(card.ChVariete, "INTERNATIONAL");
}

TEST(OlderTxtFile, OfSomethingElseIsNoCard) {
  MusicCard card;
  HourMasks masks;
  EXPECT_FALSE(TakeOlderTxt("These are the words of a song,\r\nand no card", card, masks));
  EXPECT_EQ(card.ChAuteur, "");
}

TEST(ArtistFromPath, IsTheNameWithoutFolderAndFourCharacters) {
  EXPECT_EQ(ArtistFromPath("D:\\Music\\Élan vital.wav"), "Élan vital");
  EXPECT_EQ(ArtistFromPath("/music/song.flac"), "song.");
  EXPECT_EQ(ArtistFromPath("a"), "");
}

TEST(ArtistFromPath, IsATextWhateverBytesTheNameHas) {
  EXPECT_EQ(ArtistFromPath("/music/\xe9t\xe9.wav"), "été");
  EXPECT_EQ(ArtistFromPath("/music/été.wav"), "été");
  EXPECT_EQ(ArtistFromPath("/music/a\nb\x1b[m.wav"), "a b [m");
}

TEST(BareMusicCard, HasTheStationsDefaults) {
  MusicCard card;
  card.ChFileName = "/music/An artist.mp3";
  card.ChTitre = card.ChAnne = card.ChIntro = card.ChCD = "of another card";
  card.LblMMJJDebut = "0101";
  HourMasks masks;
  masks.Take(1, kNight);
  SetBareMusicCard(card, masks, 1600);
  EXPECT_EQ(card.ChAuteur, "An artist");
  EXPECT_EQ(card.ChTitre + card.ChAnne + card.ChIntro + card.ChCD + card.LblMMJJDebut, "");
  EXPECT_EQ(card.ChGenre, "NOGENRE");
  EXPECT_EQ(card.ChVariete, "NATIONAL");
  EXPECT_EQ(card.ChNbPassJour, "1");
  EXPECT_EQ(card.ChEcartMinutes, "120");
  EXPECT_EQ(card.ChEcartJours, "0");
  EXPECT_EQ(card.ChEcartArtiste, "0");
  EXPECT_EQ(card.PointSortie, 1600);
  EXPECT_EQ(masks.Mask(1), kDay);
}

TEST(JinFile, HasFourRecordsWithItsMarksAsDigits) {
  JingleCard card;
  card.ChLibJingle = "MORNING";
  card.GenreAssocie = "POP";
  card.SliderPSJ = 400;
  card.CheckSurimpression = true;
  card.ChAuteurJingle = "X";
  EXPECT_EQ(JinText(card, HourMasks()),
            "\"MORNING\",\"POP\",400,1\r\n" + SevenMasks(kDay) + "\r\n\"X\"\r\n0\r\n");
}

TEST(JinFile, IsReadBackAndTakesTheWordsForItsMarksToo) {
  JingleCard card;
  HourMasks masks;
  ASSERT_TRUE(
      TakeJin("\"MORNING\",\"POP\",400,#TRUE#\r\n" + SevenMasks(kNight) + "\r\n\"X\"\r\n1\r\n",
              card, masks));
  EXPECT_EQ(card.ChLibJingle, "MORNING");
  EXPECT_EQ(card.GenreAssocie, "POP");
  EXPECT_EQ(card.SliderPSJ, 400);
  EXPECT_TRUE(card.CheckSurimpression);
  EXPECT_TRUE(card.JingleExtraitYN);
  EXPECT_EQ(card.ChAuteurJingle, "X");
  EXPECT_EQ(masks.Mask(6), kNight);
}

TEST(JinFile, ThatBreaksOffIsNoCard) {
  JingleCard card;
  HourMasks masks;
  EXPECT_FALSE(TakeJin("\"MORNING\",\"POP\"", card, masks));
  EXPECT_EQ(card.ChLibJingle, "");
}

TEST(Tx2File, IsOnePlainLine) {
  ShortElementCard card;
  card.ChLibVirgule = "SWEEP, \"one\"\nand two";
  EXPECT_EQ(Tx2Text(card), "SWEEP, \"one\" and two\r\n");
  TakeTx2("LABEL\r\nmore\r\n", card);
  EXPECT_EQ(card.ChLibVirgule, "LABEL");
}

}  // namespace zemo
