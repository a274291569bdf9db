// What others store while the library's window is open.
#include <QLineEdit>
#include <QScrollBar>

#include "library/screens/tests/LibraryWindowFixture.h"

namespace zemo::test {
namespace {

constexpr int kSoonMs = 5000;  // at most; a look comes twice a second

class OthersCards : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    on.Set("Langue", "1");
    AddSongs();
  }
};

TEST_F(OthersCards, ShowWithoutTakingWhatIsBeingTyped) {
  Open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Table("PLDisco").model()->rowCount() == 3; }, kSoonMs));
  ClickRow("PLDisco", 1);
  ASSERT_EQ(Text("ChTitre"), "Believe");
  auto* box = Find<QLineEdit>("ChTitre");
  box->setFocus();
  box->setCursorPosition(3);
  QTest::keyClicks(box, "xx");
  AddSong("NENA", "99");
  on.Sql("UPDATE Discotheque SET GENRE = 'ROCK', TITRE = 'THEIRS' WHERE CODE = 1");
  ASSERT_TRUE(QTest::qWaitFor([&] { return Table("PLDisco").model()->rowCount() == 4; }, kSoonMs));
  EXPECT_EQ(Text("ChTitre"), "Belxxieve");
  EXPECT_EQ(box->cursorPosition(), 5);
  EXPECT_TRUE(box->hasFocus());
  EXPECT_EQ(Text("ChGenre"), "ROCK");
  EXPECT_EQ(Selected("PLDisco", 0), Names{"CHER"});
  EXPECT_EQ(Column("PLDisco", 1), (Names{"Waterloo", "THEIRS", "Milord", "99"}));
}

TEST_F(OthersCards, LeaveTheSearchAndTheOrderOfTheList) {
  Open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Table("PLDisco").model()->rowCount() == 3; }, kSoonMs));
  ClickHead("PLDisco", 1);
  ClickHead("PLDisco", 1);  // by title, downwards
  Type("RechDisco", "a");
  AddSong("ZAZ", "Zaza");
  AddSong("UB", "Other");
  ASSERT_TRUE(QTest::qWaitFor([&] { return Table("PLDisco").model()->rowCount() == 2; }, kSoonMs));
  EXPECT_EQ(Column("PLDisco", 1), (Names{"Zaza", "Waterloo"}));
}

TEST_F(OthersCards, ADeletedOneUnderTheHandIsToldInALineAndStaysToBeAdded) {
  Open();
  Type("ChTitre", "Mine");
  on.Sql("DELETE FROM Discotheque WHERE CODE = 1");
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return Text("LblEtat") == "Card 1 deleted elsewhere"; }, kSoonMs))
      << Text("LblEtat");
  EXPECT_EQ(Find("LblEtat")->toolTip(), "Add makes a new card of it");
  QApplication::processEvents();
  EXPECT_EQ(Text("ChTitre"), "Mine");
  EXPECT_FALSE(On("Replacer"));
  KeepPicture(*window, "library-gone");
  Menu("Ajouter");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE TITRE = 'Mine'"), "1");
}

TEST_F(OthersCards, JinglesShowToo) {
  AddJingle("Morning");
  Open();
  Tab(2);
  AddJingle("Evening");
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return Table("PLJingles").model()->rowCount() == 2; }, kSoonMs));
  EXPECT_EQ(Text("ChLibJingle"), "Morning");
}

}  // namespace
}  // namespace zemo::test
