// Whether the card shown holds something that is not stored, and what an order stored.
#include "library/SelectedCards.h"
#include "library/tests/LibraryFixture.h"

namespace zemo {

namespace {

struct CardChanges : LibraryFixture {
  void SetUp() override {
    LibraryFixture::SetUp();
    on.AddCard({.lengthMs = 61000, .artist = "A", .title = "1"});
    on.AddCard({.lengthMs = 61000, .artist = "B", .title = "2"});
    for (const char* table : {"DiscothequeJingle", "DiscothequeVirgule"})
      on.Sql(std::string("INSERT INTO ") + table + " (LIBELLE, FILENAME) VALUES ('J', '/j.wav')");
    Open();
  }
  bool Changed() { return Library::IsChanged(editor); }
  void Tab(LibraryTab tab) { Library::TabStrip1_Click(on.station, editor, tab); }
  std::string Stored() {
    return std::to_string(editor.stored.cards) + " " + std::to_string(editor.stored.code);
  }
};

}  // namespace

TEST_F(CardChanges, ABoxThatReadsOtherwiseIsOneUntilItReadsAsStored) {
  EXPECT_FALSE(Changed());
  editor.music.ChTitre = "12";
  EXPECT_TRUE(Changed());
  editor.music.ChTitre = "1";
  EXPECT_FALSE(Changed());
  editor.music.PointSortie += 100;
  EXPECT_TRUE(Changed());
}

TEST_F(CardChanges, AnHourIsOneAndTheChoiceOfAnotherDayIsNone) {
  Library::JourSem_Click(editor, 3);
  EXPECT_FALSE(Changed());
  editor.masks.Tranche[5] = false;
  EXPECT_TRUE(Changed());
  Library::JourSem_Click(editor, 1);
  EXPECT_TRUE(Changed());
}

TEST_F(CardChanges, AMarkOfTheExtractIsOne) {
  Library::LookAtSound(on.station, editor);
  EXPECT_FALSE(Changed());
  editor.sound.markers.marks.extractBeginMs = 1000;
  editor.sound.markers.marks.extractEndMs = 9000;
  EXPECT_TRUE(Changed());
  Library::Replacer_Click(on.station, editor);
  EXPECT_FALSE(Changed());
}

TEST_F(CardChanges, JinglesAndShortElementsHaveTheirOwn) {
  editor.music.ChTitre = "lost with the tab";
  Tab(LibraryTab::kJingles);
  EXPECT_FALSE(Changed());
  editor.jingle.EndofTitre = true;
  EXPECT_TRUE(Changed());
  Tab(LibraryTab::kShortElements);
  EXPECT_FALSE(Changed());
  editor.other.Tch = 4;
  EXPECT_TRUE(Changed());
  Tab(LibraryTab::kHourPips);
  editor.GTopH[1].overlay = true;  // stored by itself
  EXPECT_FALSE(Changed());
  Tab(LibraryTab::kMusic);
  EXPECT_FALSE(Changed());
}

TEST_F(CardChanges, ANewCardIsOneFromTheFirstBoxThatIsFilled) {
  Library::Nouveau_Click(on.station, editor);
  EXPECT_FALSE(Changed());
  editor.music.ChAuteur = "NENA";
  EXPECT_TRUE(Changed());
}

TEST_F(CardChanges, ReplacingAndAddingTellWhatTheyStoredUntilAnotherCardIsShown) {
  editor.music.ChTitre = "12";
  Library::Replacer_Click(on.station, editor);
  EXPECT_FALSE(Changed());
  EXPECT_EQ(Stored(), "1 1");
  Library::BtnPlus_Click(on.station, editor);
  EXPECT_EQ(Stored(), "0 0");
  editor.music.ChFileName = "/new.wav";
  Library::Ajouter_Click(on.station, editor);
  EXPECT_FALSE(Changed());
  EXPECT_EQ(Stored(), "1 3");
  Library::Nouveau_Click(on.station, editor);
  EXPECT_EQ(Stored(), "0 0");
}

TEST_F(CardChanges, ALotTellsHowManyItAdded) {
  Library::TakeFiles(on.station, editor,
                     {on.MakeSound("a.wav", 3000), on.stationDir.Path() + "/title1.wav",
                      on.MakeSound("b.wav", 3000)});
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Stored(), "2 4");
}

TEST_F(CardChanges, WhatWasGivenIsStoredAndWhatElseWasTypedIsNot) {
  editor.music.ChGenre = "POP";
  SharedFields genre{};
  genre[static_cast<size_t>(SharedField::kGenre)] = true;
  Library::GiveFields(on.station, editor, {1, 2}, genre);
  EXPECT_FALSE(Changed());
  EXPECT_EQ(Stored(), "2 2");
  editor.music.ChGenre = "ROCK";
  editor.music.ChTitre = "not given";
  Library::GiveFields(on.station, editor, {1, 2}, genre);
  EXPECT_TRUE(Changed());
}

TEST_F(CardChanges, APlayMeanwhileIsNoneOfTheOperators) {
  editor.music.ChDiffusion[0] = "24/12/2026 à 20:08";
  SharedFields genre{};
  genre[static_cast<size_t>(SharedField::kGenre)] = true;
  Library::GiveFields(on.station, editor, {1}, genre);
  EXPECT_TRUE(Changed());
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT DIFFUSION01 FROM Discotheque WHERE CODE = 1"), "24/12/2026 à 20:08");
}

}  // namespace zemo
