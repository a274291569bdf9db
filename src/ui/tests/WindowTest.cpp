// The base of the windows, under a window that has a label and nothing else.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTest>
#include <vector>

#include "station/Station.h"
#include "support/TestStation.h"
#include "ui/Window.h"

namespace zemo::test {
namespace {

constexpr ScreenText kWindowControls[] = {
    {"LblTest", "text", {"Bonjour", "Hello", nullptr, nullptr}}};

class TestWindow : public Window {
 public:
  explicit TestWindow(Station& station, PlaceOfWindow place = PlaceOfWindow::kKept)
      : Window(station, "FrmTest", {kWindowControls, {}}, place), label(new QLabel(this)) {
    label->setObjectName(QStringLiteral("LblTest"));
    Texts().Apply(*this);
    Arrange();
  }
  QLabel* label;
  std::vector<double> units;
  bool mayLeave = true;
  int left = 0;

 protected:
  void ArrangeParts(double unit) override { units.push_back(unit); }
  bool MayLeave() override { return mayLeave; }
  void Left() override {
    ++left;
    Window::Left();
  }
};

class AWindow : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  TestStation on;
};

TEST_F(AWindow, SpeaksTheLanguageThatIsSetWhenItIsMade) {
  on.Set("Langue", "1");
  TestWindow english(on.station);
  on.Set("Langue", "0");
  TestWindow french(on.station);
  EXPECT_EQ(english.label->text(), QStringLiteral("Hello"));
  EXPECT_EQ(french.label->text(), QStringLiteral("Bonjour"));
}

TEST_F(AWindow, IsArrangedAnewWhenItsSizeGivesAnotherUnit) {
  TestWindow window(on.station, PlaceOfWindow::kGiven);
  window.resize(1280, 800);
  window.show();
  QCoreApplication::processEvents();
  ASSERT_EQ(window.units.back(), 1.0);
  const size_t arranged = window.units.size();
  window.resize(1300, 800);  // no higher: the same unit
  QCoreApplication::processEvents();
  EXPECT_EQ(window.units.size(), arranged);
  window.resize(1024, 640);
  QCoreApplication::processEvents();
  EXPECT_EQ(window.units.back(), 0.8);
}

TEST_F(AWindow, AnOrderWaitsWhileATickStandsBelow) {
  TestWindow window(on.station);
  bool done = false;
  {
    const MainTimerHold tick(on.station);
    window.WhenFree([&] { done = true; });
    QTest::qWait(50);
    EXPECT_FALSE(done);
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, 5000));
}

TEST_F(AWindow, AnOrderOfAWindowThatIsGoneIsForgotten) {
  bool done = false, other = false;
  TestWindow stays(on.station);
  {
    const MainTimerHold tick(on.station);
    TestWindow goes(on.station);
    goes.WhenFree([&] { done = true; });
    stays.WhenFree([&] { other = true; });
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return other; }, 5000));
  EXPECT_FALSE(done);
}

TEST_F(AWindow, StaysWhereItMayNotBeLeftAndGoesAtAFreeMomentWhereItMay) {
  TestWindow window(on.station);
  window.show();
  window.mayLeave = false;
  window.close();
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.left, 0);
  window.mayLeave = true;
  {
    const MainTimerHold tick(on.station);
    window.close();
    EXPECT_TRUE(window.isVisible());
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.left == 1; }, 5000));
  EXPECT_FALSE(window.isVisible());
}

TEST_F(AWindow, OpensWhereItWasLeft) {
  const QRect place(40, 50, 300, 200);
  {
    TestWindow window(on.station);
    window.show();
    window.setGeometry(place);
    window.close();
  }
  TestWindow again(on.station);
  again.show();
  EXPECT_EQ(again.geometry(), place);
}

TEST_F(AWindow, WhosePlaceIsGivenKeepsNone) {
  TestWindow window(on.station, PlaceOfWindow::kGiven);
  window.show();
  window.close();
  EXPECT_EQ(window.left, 1);
  EXPECT_FALSE(on.station.platform.localValues.Get("PlaceFrmTest"));
}

}  // namespace
}  // namespace zemo::test
