// The panel of stored lists: nothing but a choice in the opened list replaces the list on air.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QWheelEvent>

#include "engine/StoredPlaylists.h"
#include "engine/screens/tests/ScreenFixture.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class StoredLists : public Screen {
 protected:
  // A list EVENING of ARTIST 1 and ARTIST 2 is stored; PL then holds a third title.
  void OpenWithAChangedList() {
    Open();
    AddTitles(2);
    on.station.storedList.ComboPLS.text = "EVENING";
    OnAir::BtnSauve_Click(on.station);
    AddTitles(1);
    Click("Toolbar1_2");
    Draw();
  }
  QComboBox& Box() { return *Find<QComboBox>("ComboPLS"); }
};

TEST_F(StoredLists, TheKeyboardGoingThroughTheBoxLeavesTheListAlone) {
  OpenWithAChangedList();
  ASSERT_EQ(Box().currentText(), "EVENING");
  Box().setFocus();
  Find("BtnNew")->setFocus();
  Draw();
  EXPECT_EQ(Titles().size(), 3U);
  Box().setFocus();
  Key(Qt::Key_Return);
  Find("BtnNew")->setFocus();
  Draw();
  EXPECT_EQ(Titles().size(), 3U);
}

TEST_F(StoredLists, ListsThatOthersStoreAreOnOfferAndALabelThatIsTypedStays) {
  OpenWithAChangedList();
  Box().lineEdit()->setFocus();
  Box().lineEdit()->selectAll();
  QTest::keyClicks(Box().lineEdit(), "MINE");
  on.Sql("INSERT INTO Playlist (LIBELLE) VALUES ('NIGHT')");
  EXPECT_TRUE(QTest::qWaitFor([&] { return Box().findText("NIGHT") >= 0; }));
  EXPECT_EQ(Box().currentText(), "MINE");
  EXPECT_EQ(Titles().size(), 3U);
}

TEST_F(StoredLists, TheWheelOverTheBoxChoosesNothing) {
  OpenWithAChangedList();
  const QPointF at = QRectF(Box().rect()).center();
  QWheelEvent wheel(at, Box().mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&Box(), &wheel);
  Draw();
  EXPECT_EQ(Titles().size(), 3U);
}

TEST_F(StoredLists, AChoiceWithTheMouseLoadsTheList) {
  OpenWithAChangedList();
  const int interval = QApplication::doubleClickInterval();
  QApplication::setDoubleClickInterval(0);  // for so long Qt passes over a release at first
  Box().showPopup();
  QWidget* rows = Box().view()->viewport();
  const QPoint first = Box().view()->visualRect(Box().model()->index(0, 0)).center();
  QTest::mouseMove(rows, first);
  QCoreApplication::processEvents();
  QTest::mouseClick(rows, Qt::LeftButton, {}, first);
  QApplication::setDoubleClickInterval(interval);
  Draw();
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 2"}));
}

TEST_F(StoredLists, DeleteIsTheTextsWhileNoListIsChosen) {
  OpenWithAChangedList();
  auto& line = *Box().lineEdit();
  Box().setFocus();
  line.setText("ABC");
  line.setCursorPosition(1);
  Key(Qt::Key_Delete);
  EXPECT_EQ(line.text(), "AC");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "1");
}

TEST_F(StoredLists, ATimeIsTypedOverTheNeutralText) {
  OpenWithAChangedList();
  auto* hour = Find<QLineEdit>("ChHeure");
  ASSERT_EQ(hour->text(), "hh:mn");
  QTest::mouseClick(hour, Qt::LeftButton, {}, {4, hour->height() / 2});
  QCoreApplication::processEvents();
  QTest::keyClicks(hour, "18:30");
  EXPECT_EQ(on.station.storedList.ChHeure, "18:30");
}

TEST_F(StoredLists, EveryDayIsReachedByKey) {
  OpenWithAChangedList();
  Find("LblDate")->setFocus();
  Key(Qt::Key_J);
  EXPECT_EQ(on.station.storedList.LblDate, "JOURNALIER");
}

TEST_F(StoredLists, AMissingTableIsTheLogsAndEndsNothing) {
  OpenWithAChangedList();
  on.Sql("DROP TABLE Playlist");
  Click("Toolbar1_1");
  Click("Toolbar1_2");
  const auto errors = on.Events("error");
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors.back()["where"], "LoadPlaylist");
  EXPECT_EQ(Titles().size(), 3U);
}

}  // namespace
}  // namespace zemo::test
