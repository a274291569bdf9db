// The hours of the week: picture, options and boxes are the same data.
#include <QCheckBox>
#include <QRadioButton>

#include "library/screens/WeekPicture.h"
#include "library/screens/tests/LibraryWindowFixture.h"

namespace zemo::test {
namespace {

const std::string kAllDay(24, '1');

class WeekOfACard : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    AddSongs();
    Open();
  }
  WeekPicture& Picture() { return *static_cast<WeekPicture*>(Find("WeekPicture")); }
  QPoint At(int day, int hour) { return Picture().Cell(day, hour).center(); }
  std::string Mask(int day) { return Editor().masks.Mask(day); }
};

TEST_F(WeekOfACard, APressTurnsAnHour) {
  QTest::mouseClick(&Picture(), Qt::LeftButton, Qt::NoModifier, At(3, 5));
  EXPECT_EQ(Mask(3), "111110111111111111111111");
  QTest::mouseClick(&Picture(), Qt::LeftButton, Qt::NoModifier, At(3, 5));
  EXPECT_EQ(Mask(3), kAllDay);
}

TEST_F(WeekOfACard, ADragMakesAllThatItPassesOverTheSame) {
  QTest::mouseClick(&Picture(), Qt::LeftButton, Qt::NoModifier, At(2, 4));
  QTest::mousePress(&Picture(), Qt::LeftButton, Qt::NoModifier, At(2, 2));
  QTest::mouseMove(&Picture(), At(2, 6));  // the mouse was faster than its events
  QTest::mouseMove(&Picture(), At(3, 6));
  QTest::mouseRelease(&Picture(), Qt::LeftButton, Qt::NoModifier, At(3, 6));
  EXPECT_EQ(Mask(2), "110000011111111111111111");
  EXPECT_EQ(Mask(3), "111111011111111111111111");
  QTest::mouseMove(&Picture(), At(5, 6));
  EXPECT_EQ(Mask(5), kAllDay);
}

TEST_F(WeekOfACard, BoxesShowTheDayThatIsChosen) {
  QTest::mouseClick(&Picture(), Qt::LeftButton, Qt::NoModifier, At(1, 0));
  EXPECT_FALSE(Find<QCheckBox>("Tranche_0")->isChecked());
  Click("JourSem_2");
  EXPECT_TRUE(Find<QRadioButton>("JourSem_2")->isChecked());
  EXPECT_TRUE(Find<QCheckBox>("Tranche_0")->isChecked());
  Click("Tranche_23");
  EXPECT_EQ(Mask(2), "111111111111111111111110");
  EXPECT_EQ(Mask(1), "011111111111111111111111");
}

TEST_F(WeekOfACard, KeysPaintToo) {
  Picture().setFocus();
  QTest::keyClick(&Picture(), Qt::Key_Down);
  QTest::keyClick(&Picture(), Qt::Key_Right);
  QTest::keyClick(&Picture(), Qt::Key_Space);
  EXPECT_EQ(Mask(2), "101111111111111111111111");
  QTest::keyClick(&Picture(), Qt::Key_Left);
  QTest::keyClick(&Picture(), Qt::Key_Up);
  QTest::keyClick(&Picture(), Qt::Key_Up);  // no further
  QTest::keyClick(&Picture(), Qt::Key_Space);
  EXPECT_EQ(Mask(1), "011111111111111111111111");
}

TEST_F(WeekOfACard, ADayIsCopiedToAnotherAndStored) {
  Click("Tranche_0");
  Click("BtnCopy");
  EXPECT_EQ(on.clipboard.Text(), "011111111111111111111111");
  Click("JourSem_7");
  Click("BtnColler");
  EXPECT_FALSE(Find<QCheckBox>("Tranche_0")->isChecked());
  Menu("Replacer");
  EXPECT_EQ(Stored("TRANCHE01", 1), "011111111111111111111111");
  EXPECT_EQ(Stored("TRANCHE07", 1), "011111111111111111111111");
  EXPECT_EQ(Stored("TRANCHE04", 1), kAllDay);
}

}  // namespace
}  // namespace zemo::test
