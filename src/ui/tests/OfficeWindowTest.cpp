// The base of the office's windows, under one whose routines are the test's.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <stdexcept>

#include "station/Station.h"
#include "support/TestStation.h"
#include "ui/OfficeWindow.h"

namespace zemo::test {
namespace {

class DeskWindow : public OfficeWindow {
 public:
  explicit DeskWindow(Station& station)
      : OfficeWindow(station, "FrmTest", "TestRoutine", {}), button(new QPushButton(this)) {
    setCentralWidget(button);
    show();
  }
  bool IsOpen() const override { return open; }
  using OfficeWindow::Barred;
  using OfficeWindow::Run;
  using OfficeWindow::ShowSelf;
  using OfficeWindow::Work;
  QPushButton* button;
  bool open = true;
  int shown = 0, left = 0, taken = 0;
  bool takes = true;  // over what others stored

 protected:
  void ArrangeParts(double) override {}
  void ShowAll() override { ++shown; }
  bool TakeOver() override {
    ++taken;
    return takes;
  }
  void Left() override {
    ++left;
    open = false;
    Window::Left();
  }
};

class AnOfficeWindow : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  TestStation on;
};

// The desktop draws its frame around a window once it stands there: it is learnt from another one.
TEST_F(AnOfficeWindow, OpensWithItsFrameWithinTheScreen) {
  QMainWindow main;
  main.show();
  const QRect screen = main.screen()->availableGeometry();
  ASSERT_GT(main.frameGeometry().height(), main.height()) << "this desktop draws no frames";
  DeskWindow window(on.station);
  window.hide();
  window.resize(screen.size() + QSize(300, 200));
  window.ShowSelf();
  EXPECT_EQ(window.frameGeometry().size(), screen.size());
}

TEST_F(AnOfficeWindow, IsBarredWhileARoutineWorksAndShowsItsEnd) {
  DeskWindow window(on.station);
  bool other = false;
  window.Work([&] {
    EXPECT_FALSE(window.button->isEnabled());
    window.Run([&] { other = true; });
    window.Work([&] { other = true; });
    EXPECT_EQ(window.shown, 0);
  });
  EXPECT_TRUE(window.button->isEnabled());
  EXPECT_FALSE(other);
  EXPECT_EQ(window.shown, 1);
}

TEST_F(AnOfficeWindow, ClosedWhileARoutineWorksClosesAtItsEnd) {
  DeskWindow window(on.station);
  window.Work([&] {
    window.close();
    EXPECT_FALSE(window.LeaveNow());
    EXPECT_EQ(window.left, 0);
  });
  EXPECT_EQ(window.left, 1);
  EXPECT_TRUE(window.LeaveNow());
  EXPECT_EQ(window.left, 1);
}

TEST_F(AnOfficeWindow, ClosedAheadOfARoutineInWhoseYieldItMayGoClosesAtItsEnd) {
  DeskWindow window(on.station);
  {
    const MainTimerHold tick(on.station);
    window.close();  // waits for a free moment
  }
  window.Work([&] {
    QTest::qWait(60);  // the moment comes
    EXPECT_EQ(window.left, 0);
    EXPECT_TRUE(window.isVisible());
  });
  EXPECT_EQ(window.left, 1);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(AnOfficeWindow, IsClosedByItsKey) {
  DeskWindow window(on.station);
  QApplication::setActiveWindow(&window);
  QTest::keyClick(window.button, Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.left == 1; }));
  EXPECT_FALSE(window.isVisible());
}

// A window that never can take over is asked at each look, and so counts the looks of all.
struct CountedLooks {
  explicit CountedLooks(TestStation& on) : window(on.station) {
    window.takes = false;
    on.Sql("UPDATE Cnf SET FadeOut = 700");
  }
  void Pass(int looks) {
    const int end = window.taken + looks;
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.taken >= end; }));
  }
  DeskWindow window;
};

TEST_F(AnOfficeWindow, TakesOverWhatOthersStoredOnceAndAgainWhereItCouldNot) {
  CountedLooks looks(on);
  DeskWindow window(on.station);
  on.station.base.Db().Execute("UPDATE Cnf SET FadeOut = 701");  // its own program
  looks.Pass(3);
  EXPECT_EQ(window.taken, 0);
  window.takes = false;
  on.Sql("UPDATE Cnf SET FadeOut = 702");
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.taken == 2; }));
  window.takes = true;
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.taken == 3; }));
  looks.Pass(3);
  EXPECT_EQ(window.taken, 3);
}

TEST_F(AnOfficeWindow, TakesNothingOverBelowARoutineOrWhileItIsHidden) {
  CountedLooks looks(on);
  DeskWindow window(on.station);
  window.Work([&] {
    on.Sql("UPDATE Cnf SET FadeOut = 701");
    looks.Pass(3);
    EXPECT_EQ(window.taken, 0);
    window.hide();
  });
  looks.Pass(3);
  EXPECT_EQ(window.taken, 0);
  window.show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.taken == 1; }));
}

TEST_F(AnOfficeWindow, LogsAFaultUnderItsRoutinesNameAndGoesOn) {
  DeskWindow window(on.station);
  window.Work([] { throw std::runtime_error("of the routine"); });
  EXPECT_FALSE(window.Barred());
  EXPECT_TRUE(window.button->isEnabled());
  EXPECT_EQ(on.Events("error").back()["where"], "TestRoutine");
}

}  // namespace
}  // namespace zemo::test
