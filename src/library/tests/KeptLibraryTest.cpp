// The library's file over a restart: what it gives back, and what counts as none.
#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "InterruptedBase.h"
#include "library/KeptBytes.h"
#include "library/KeptLibrary.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr const char* kOwner = "/station/";

void ReadAll(KnownCards& cards, Database& base) {
  while (cards.ReadSlice(base)) {
  }
}

std::string FileOf(KnownLibrary library) {
  std::string file;
  KeptLibraryWriter writer(std::move(library), kOwner);
  while (const auto piece = writer.Next()) {
    const auto offset = static_cast<size_t>(piece->offset);
    file.resize(std::max(file.size(), offset + piece->bytes.size()));
    file.replace(offset, piece->bytes.size(), piece->bytes);
  }
  return file;
}

// All that a card says, a line each.
std::string Told(const CardSet& cards) {
  std::ostringstream told;
  const CardTexts& texts = *cards.texts;
  for (const auto& chunk : cards.chunks)
    for (const PackedCard& card : *chunk) {
      const CardTexts::Artist& artist = texts.ArtistAt(card.artist);
      const CardTexts::Genre& genre = texts.GenreAt(card.genre);
      const CardTexts::Days& days = texts.DaysAt(card.days);
      told << card.code << ' ' << card.lastdiff << ' ' << TitleOf(card) << '|' << FileOf(card)
           << '|' << card.lengthMs << ' ' << card.passes << ' ' << card.exitMs << ' '
           << card.introSec << ' ' << card.minutesGap << ' ' << card.daysGap << ' '
           << card.artistGap << ' ' << card.odd << card.oddCells << ' ' << artist.spelling << '|'
           << artist.listed << '|' << artist.capitals << '|' << genre.text << genre.isText
           << genre.isNull << texts.VarietyAt(card.variety) << days.first << '|' << days.last
           << days.anyDay;
      for (const std::string& mask : texts.HoursAt(card.hours)) told << mask << '|';
      DiffusionText room;
      for (const uint32_t broadcast : card.broadcasts)
        told << texts.Broadcast(broadcast, room) << '|';
      told << '\n';
    }
  return told.str();
}

class LibraryOverARestart : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    // Of 230 bytes each: several pages.
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) INSERT INTO "
        "Discotheque (TITRE, FILENAME, AUTEUR, GENRE, VARIETE, DUREE, NBPASSJOUR, ECARTMINUTES, "
        "ECARTJOURS, ECARTARTISTE, POINTSORTIE, INTRO, LASTDIFF, MMJJDebut, MMJJFin, TRANCHE01, "
        "DIFFUSION01, DIFFUSION02) SELECT 'TITLE ' || i, printf('%.200c', 'f'), CASE WHEN i % 9 "
        "THEN 'Artiste ' || (i % 7) ELSE ' ' END, CASE WHEN i % 11 THEN 'Pop' END, 'V' || (i % 3), "
        "1000 * i, i % 4, i, i % 5, i % 6, 100 * i, i % 13, 45000.5 + i, '0101', '0' || (1 + i % "
        "9) "
        "|| '30', printf('%.*c', i % 25, '1'), '21/11/2026 à 10:0' || (i % 10), 'about ' || i FROM "
        "n");
    base = std::make_unique<InterruptedBase>(on.station.base.Db());
  }
  // What an earlier run knew.
  KnownLibrary Earlier() {
    KnownCards cards;
    ReadAll(cards, *base);
    auto library = cards.ListedWithPages(*base);
    EXPECT_TRUE(library);
    return std::move(*library);
  }
  std::string ToldByTheBase() {
    KnownCards cards;
    ReadAll(cards, *base);
    return Told(*cards.Listed(*base));
  }
  // By a run that takes the file up.
  std::string ToldBehind(const std::string& file) {
    KnownCards cards;
    auto library = ReadKeptLibrary(file, kOwner);
    EXPECT_TRUE(library);
    if (!library) return {};
    cards.TakeUp(std::move(*library));
    base->rows = 0;
    ReadAll(cards, *base);
    return Told(*cards.Listed(*base));
  }

  TestStation on;
  std::unique_ptr<InterruptedBase> base;
};

TEST_F(LibraryOverARestart, NoRowIsReadOfABaseThatIsTheSame) {
  const std::string file = FileOf(Earlier());
  const std::string expected = ToldByTheBase();
  EXPECT_EQ(ToldBehind(file), expected);
  EXPECT_EQ(base->rows, 0);
}

TEST_F(LibraryOverARestart, OfAnotherBaseTheRowsOfOtherPagesAreRead) {
  const std::string file = FileOf(Earlier());
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER', AUTEUR = 'Somebody' WHERE CODE = 40");
  const std::string expected = ToldByTheBase();
  EXPECT_EQ(ToldBehind(file), expected);
  EXPECT_GT(base->rows, 0);
  EXPECT_LT(base->rows, 25);
  on.Sql("DELETE FROM Discotheque WHERE CODE < 70");
  on.Sql("INSERT INTO Discotheque (TITRE) VALUES ('NEW')");
  const std::string fewer = ToldByTheBase();
  EXPECT_EQ(ToldBehind(file), fewer);
}

// Their cells stand in no packed card: they are read from the base each time.
TEST_F(LibraryOverARestart, CardsOfOddRowsAreReadAgainWithTheirPage) {
  on.Sql("UPDATE Discotheque SET POINTSORTIE = 0.5 WHERE CODE IN (30, 100)");
  const std::string file = FileOf(Earlier());
  const std::string expected = ToldByTheBase();
  EXPECT_EQ(ToldBehind(file), expected);
  EXPECT_GT(base->rows, 0);
  EXPECT_LT(base->rows, 50);
}

TEST_F(LibraryOverARestart, WhatIsWrittenBeforeTheFirstLookIsNotMissed) {
  KnownCards cards;
  cards.TakeUp(*ReadKeptLibrary(FileOf(Earlier()), kOwner));
  base->behindPages = [this] { on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 1"); };
  ReadAll(cards, *base);
  EXPECT_EQ(TitleOf(cards.Now(*base)->chunks.at(0)->at(0)), "OTHER");
}

TEST_F(LibraryOverARestart, ItIsWhatWasReadLastUntilTheBaseAnswers) {
  KnownCards cards;
  EXPECT_FALSE(cards.LastRead());
  const std::string expected = ToldByTheBase();
  cards.TakeUp(*ReadKeptLibrary(FileOf(Earlier()), kOwner));
  ASSERT_TRUE(cards.LastRead());
  EXPECT_EQ(Told(*cards.LastRead()), expected);
}

TEST_F(LibraryOverARestart, ALibraryThatWasReadByThisRunStays) {
  const std::string file = FileOf(Earlier());
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 1");
  KnownCards cards;
  ReadAll(cards, *base);
  cards.TakeUp(*ReadKeptLibrary(file, kOwner));
  EXPECT_EQ(TitleOf(cards.LastRead()->chunks.at(0)->at(0)), "OTHER");
}

TEST_F(LibraryOverARestart, AnotherStationsFileIsNone) {
  EXPECT_FALSE(ReadKeptLibrary(FileOf(Earlier()), "/other/"));
}

TEST_F(LibraryOverARestart, AFileThatIsNotCompleteIsNone) {
  const std::string file = FileOf(Earlier());
  for (size_t size = 0; size < file.size(); ++size)
    ASSERT_FALSE(ReadKeptLibrary(std::string_view(file).substr(0, size), kOwner)) << size;
  KeptLibraryWriter writer(Earlier(), kOwner);
  std::string begun = file;  // written over the former one
  const auto first = writer.Next();
  begun.replace(0, first->bytes.size(), first->bytes);
  EXPECT_FALSE(ReadKeptLibrary(begun, kOwner));
}

// A loss of power in the midst of a writing leaves blocks of the former file between new ones.
TEST_F(LibraryOverARestart, BlocksOfAnotherFileMakeItNone) {
  const std::string former = FileOf(Earlier());
  on.Sql("UPDATE Discotheque SET LASTDIFF = LASTDIFF + 1");  // each block is as long as before
  const std::string latter = FileOf(Earlier());
  ASSERT_EQ(former.size(), latter.size());
  ASSERT_TRUE(ReadKeptLibrary(latter, kOwner));
  const size_t cards = KeptLibraryWriter(Earlier(), kOwner).Next()->bytes.size();
  ASSERT_NE(former.substr(cards), latter.substr(cards));
  EXPECT_FALSE(ReadKeptLibrary(latter.substr(0, cards) + former.substr(cards), kOwner));
  EXPECT_FALSE(ReadKeptLibrary(former.substr(0, cards) + latter.substr(cards), kOwner));
}

TEST_F(LibraryOverARestart, AByteThatIsAnotherOneMakesItNone) {
  const std::string file = FileOf(Earlier());
  // Behind the form and its end; every block is marked.
  for (size_t at = 0; at < file.size(); at += at < 64 ? 1 : 7) {
    std::string damaged = file;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x40);
    ASSERT_FALSE(ReadKeptLibrary(damaged, kOwner)) << at;
  }
}

TEST_F(LibraryOverARestart, CardsThatNameWhatIsNotThereMakeItNone) {
  const KnownLibrary library = Earlier();
  const auto with = [&library](auto change) {
    KnownLibrary other = library;
    auto chunk = std::make_shared<CardChunk>(*library.cards.chunks.at(0));
    change(chunk->at(1));
    other.cards.chunks.at(0) = chunk;
    return ReadKeptLibrary(FileOf(other), kOwner).has_value();
  };
  constexpr uint32_t kNone = 1'000'000;
  EXPECT_TRUE(with([](PackedCard&) {}));
  EXPECT_FALSE(with([](PackedCard& card) { card.artist = kNone; }));
  EXPECT_FALSE(with([](PackedCard& card) { card.genre = kNone; }));
  EXPECT_FALSE(with([](PackedCard& card) { card.variety = kNone; }));
  EXPECT_FALSE(with([](PackedCard& card) { card.hours = kNone; }));
  EXPECT_FALSE(with([](PackedCard& card) { card.days = kNone; }));
  EXPECT_FALSE(with([](PackedCard& card) { card.code = 1; }));  // that of the card before
  EXPECT_FALSE(with(
      [](PackedCard& card) { card.broadcasts[7] = PackedCard::kOtherText | uint32_t{kNone}; }));
}

// Whoever changes what a row is packed to, or how a card lies in memory, is told here: files of
// programs before read otherwise from then on, so the form in KeptLibrary.cpp needs another number.
TEST_F(LibraryOverARestart, ACardLiesInTheFileAsTheFormHasIt) {
  on.Sql("DELETE FROM Discotheque WHERE CODE <> 40");
  std::string card;
  AddNumber(card, 45040.5);      // LASTDIFF
  AddNumber(card, uint64_t{0});  // its texts come behind the cards
  for (const int32_t number :
       {40, 40000, 0, 4000, 1})  // CODE, DUREE, NBPASSJOUR, POINTSORTIE, INTRO
    AddNumber(card, number);
  AddNumber(card, std::array<uint32_t, 5>{});  // first artist, genre, variety, hours and days
  for (const int16_t number : {40, 0, 4}) AddNumber(card, number);  // the gaps
  for (const uint16_t bytes : {8, 200}) AddNumber(card, bytes);     // "TITLE 40", the file
  AddNumber(card, uint16_t{0});                                     // neither odd
  // 46,345 days behind 1 January 1900, 10:00, and 1; then a text of its own, and none.
  AddNumber(card, uint32_t{46345 * 1440 + 600 + 1});
  AddNumber(card, uint32_t{1} << 31);
  AddNumber(card, std::array<uint32_t, 6>{});
  const std::string file = FileOf(Earlier());
  EXPECT_EQ(file.substr(0, 16), "Zemo library 002");
  EXPECT_NE(file.find(card + std::string("\xD0\0\0\0TITLE 40fff", 15)), std::string::npos);
}

}  // namespace
}  // namespace zemo::test
