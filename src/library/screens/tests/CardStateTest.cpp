// What the library window says of the card shown: that it is not stored, or that it was.
#include <QColor>
#include <QImage>

#include "library/screens/CardState.h"
#include "library/screens/WeekPicture.h"
#include "library/screens/tests/LibraryWindowFixture.h"
#include "ui/Theme.h"

namespace zemo::test {
namespace {

class CardStates : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    on.Set("Langue", "1");
    AddSongs();
  }
  bool Marked() {
    QWidget& state = *Find("LblEtat");
    return state.width() > 4 &&
           state.grab().toImage().pixelColor(4, state.height() / 2) == Theme::kNote;
  }
};

TEST_F(CardStates, ALetterTypedMarksTheCardAsNotStored) {
  Open();
  EXPECT_EQ(Text("LblEtat"), "");
  EXPECT_FALSE(Marked());
  Type("ChTitre", "Other");
  EXPECT_EQ(Text("LblEtat"), "Card 1 changed, not saved");
  QApplication::processEvents();
  EXPECT_TRUE(Marked());
  KeepPicture(*window, "library-changed");
  Type("ChTitre", "Believe");
  EXPECT_EQ(Text("LblEtat"), "");
  QApplication::processEvents();
  EXPECT_FALSE(Marked());
}

TEST_F(CardStates, EveryKindOfControlMarksIt) {
  Open();
  for (const char* control : {"Tranche_4", "WeekPicture"}) {
    Click(control);
    EXPECT_EQ(Text("LblEtat"), "Card 1 changed, not saved") << control;
    Click("BtnPlus");
    Click("BtnMoins");
    EXPECT_EQ(Text("LblEtat"), "") << control;
  }
  Menu("Nouveau");
  EXPECT_EQ(Text("LblEtat"), "");
  Type("ChAuteur", "NENA");
  EXPECT_EQ(Text("LblEtat"), "New card, not saved");
  AddJingle("Morning");
  Tab(2);
  EXPECT_EQ(Text("LblEtat"), "");
  Click("CheckSurimpression");
  EXPECT_EQ(Text("LblEtat"), "Card 1 changed, not saved");
}

TEST_F(CardStates, WhatWasStoredIsToldUntilAnotherCardIsShown) {
  Open();
  Type("ChTitre", "Other");
  Menu("Replacer");
  EXPECT_EQ(Text("LblEtat"), "Saved: card 1");
  QApplication::processEvents();
  EXPECT_FALSE(Marked());
  Type("ChTitre", "Another");
  EXPECT_EQ(Text("LblEtat"), "Card 1 changed, not saved");
  Click("BtnPlus");
  EXPECT_EQ(Text("LblEtat"), "");
}

}  // namespace
}  // namespace zemo::test
