// The window of the campaigns by the keyboard alone: what has the focus gets the keys.
#include <QAbstractButton>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>

#include "traffic/screens/tests/CampaignWindowFixture.h"
#include "ui/CalendarWindow.h"

namespace zemo::test {
namespace {

class CampaignKeys : public CampaignScreenTest {
 protected:
  static QWidget& Focus() {
    QWidget* focus = QApplication::focusWidget();
    if (!focus) ADD_FAILURE() << "nothing has the focus";
    return focus ? *focus : *QApplication::activeWindow();
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QTest::keyClick(&Focus(), key, keys);
    QApplication::processEvents();
    EXPECT_TRUE(QTest::qWaitFor(NoButtonIsDown, 5000));
    QApplication::processEvents();
  }
  // One that a shortcut pressed is let go a tenth of a second later.
  static bool NoButtonIsDown() {
    for (const QWidget* widget : QApplication::allWidgets())
      if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        if (button->isDown()) return false;
    return true;
  }
  static void Write(const QString& text) { QTest::keyClicks(&Focus(), text); }
  // By Tab, all around the window at most.
  void TabTo(const char* name) {
    const auto reached = [&] {
      for (const QWidget* at = &Focus(); at; at = at->parentWidget())
        if (at->objectName() == QLatin1String(name)) return true;
      return false;
    };
    for (int tabs = 0; tabs < 60 && !reached(); ++tabs) Press(Qt::Key_Tab);
    EXPECT_TRUE(reached()) << "Tab does not come to " << name;
  }
  void PickInCalendar(const std::vector<Qt::Key>& way) {
    auto* calendar = window->findChild<CalendarWindow*>();
    ASSERT_TRUE(calendar);
    QApplication::setActiveWindow(calendar);
    for (const Qt::Key key : way) Press(key);
    Press(Qt::Key_Return);
    QApplication::setActiveWindow(window.get());
    QApplication::processEvents();
  }
};

TEST_F(CampaignKeys, ShortcutsPageThroughTheRecords) {
  AddCampaigns();
  on.AddCampaign({{"ANNONCEUR", "'Cinema'"}, {"PRIORITY", "15"}});
  Open();
  Press(Qt::Key_Home, Qt::AltModifier);
  EXPECT_EQ(Text("LblInfoPub"), "1 /3");
  Press(Qt::Key_PageDown, Qt::AltModifier);
  EXPECT_EQ(Text("ChAnnonceur"), "Cinema");
  Press(Qt::Key_End, Qt::AltModifier);
  EXPECT_EQ(Text("LblInfoPub"), "3 /3");
  Press(Qt::Key_PageUp, Qt::AltModifier);
  EXPECT_EQ(Text("ChAnnonceur"), "Cinema");
}

// Ctrl+S adds or replaces, whichever is on.
TEST_F(CampaignKeys, ACampaignIsEnteredFromNewToSaved) {
  const std::string sound = on.MakeSound("Bakery.wav", 15000);
  on.MakeFile("Genre.Txt", "POP\r\nROCK\r\n");
  sources.chooseFiles = [&](QWidget*, const std::string&, const std::vector<std::string>&,
                            const OfficeWindow::TakeFiles& take) { take({sound}); };
  Open();
  Press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_TRUE(On("BtnAjouter"));
  EXPECT_EQ(&Focus(), Find("HDepPub"));
  TabTo("CmdLoadFile");
  Press(Qt::Key_Space);
  EXPECT_EQ(Text("ChAnnonceur"), "Bakery");
  TabTo("LblDepartPub");
  Press(Qt::Key_Space);
  PickInCalendar({Qt::Key_Right});  // the 22nd
  TabTo("HDepPub");
  Press(Qt::Key_A, Qt::ControlModifier);
  Write("12");
  TabTo("HFinPub");
  Press(Qt::Key_A, Qt::ControlModifier);
  Write("12");
  TabTo("DecoupagePub_0");
  Write("05");
  TabTo("DecoupagePub_1");
  Write("35");
  TabTo("LblFinPub");
  Press(Qt::Key_Space);
  PickInCalendar({Qt::Key_Right, Qt::Key_Right, Qt::Key_Right});  // the 24th
  EXPECT_EQ(Text("LblTotalJours"), "3 jours");
  TabTo("ComboPriority");
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  TabTo("GenreAssocie");
  Press(Qt::Key_Down);
  TabTo("ChContact");
  Write("Anne");
  TabTo("OptPub_0");
  Press(Qt::Key_Right);
  TabTo("GPub");
  Press(Qt::Key_Space);
  Press(Qt::Key_Right, Qt::ShiftModifier);
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(on.SqlText("SELECT CAMPAGNEDEPART || CAMPAGNEFIN || HDEPART || HFIN || DECOUPEH1 || "
                       "DECOUPEH2 || ANNONCEUR || CONTACT || PRIORITY || PUB || GENREASSOCIE "
                       "FROM GrillePub"),
            "22/11/202624/11/202612120535BakeryAnne200POP");
  EXPECT_EQ(on.File("Bakery.GPB"), "X\r\nX\r\n\r\n\r\n\r\n\r\n");
  TabTo("ChContact");
  Press(Qt::Key_End);
  Write("tte");
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(on.SqlText("SELECT CONTACT FROM GrillePub"), "Annette");
  TabTo("BtnDelete");
  on.messages.AnswerNext(Answer::kOk);
  Press(Qt::Key_Space);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
}

TEST_F(CampaignKeys, ACrossPatternGoesFromOneCampaignToAnother) {
  AddCampaigns();
  Open();
  TabTo("GPub");
  Press(Qt::Key_Space);
  Press(Qt::Key_C, Qt::ControlModifier);
  Press(Qt::Key_PageUp, Qt::AltModifier);
  EXPECT_EQ(&Focus(), &Grid());
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Row(3), "X      ");
  Press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(Row(4), "X      ");
  TabTo("ChContact");
  Press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  Press(Qt::Key_F5);
  EXPECT_EQ(Text("LblTotalMsg"), "0");
  Press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Row(4), "X      ");
}

// Within a field they are the field's own.
TEST_F(CampaignKeys, CopyAndPasteInAFieldTakeItsText) {
  AddCampaigns();
  Open();
  TabTo("ChAnnonceur");
  Press(Qt::Key_A, Qt::ControlModifier);
  Press(Qt::Key_C, Qt::ControlModifier);
  TabTo("ChContact");
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Text("ChContact"), "Zoo");
  EXPECT_EQ(window->Editor().GPubReference.RowCount(), 0);
}

TEST_F(CampaignKeys, TheOverviewIsOpenedSortedAndLeft) {
  AddCampaigns();
  Open();
  Press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(&Focus(), &Overview());
  Press(Qt::Key_1, Qt::ControlModifier);
  Press(Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(OverviewColumn(0), (std::vector<std::string>{"Zoo", "Bakery"}));
  Press(Qt::Key_6, Qt::ControlModifier);
  EXPECT_EQ(OverviewColumn(5), (std::vector<std::string>{"1", "2"}));
  Press(Qt::Key_S, Qt::ControlModifier);  // both are off
  EXPECT_TRUE(Overview().isVisible());
  Press(Qt::Key_Return);
  EXPECT_FALSE(Overview().isVisible());
  EXPECT_EQ(Text("ChAnnonceur"), "Bakery");
  EXPECT_EQ(&Focus(), &Grid());
}

TEST_F(CampaignKeys, PrintAndProcedureAreKeysToo) {
  AddCampaigns();
  int asked = 0;
  sources.questions.choosePrinter = [&](QWidget*, QPrinter&) {
    ++asked;
    return false;
  };
  Open();
  Press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(asked, 1);
  Press(Qt::Key_F1);
  EXPECT_EQ(on.Events("message").back()["title"], "Mémo procédure");
}

TEST_F(CampaignKeys, TheCalendarOpensOnTodayWhateverDaysTheCampaignHas) {
  AddCampaigns();
  on.Sql("UPDATE GrillePub SET CAMPAGNEDEPART = '02/11/2026', CAMPAGNEFIN = '25/11/2026'");
  Open();
  for (const char* label : {"LblDepartPub", "LblFinPub"}) {
    TabTo(label);
    Press(Qt::Key_Space);
    EXPECT_EQ(DayOfCalendarIn(*window), QDate(2026, 11, 21)) << label;
    QApplication::setActiveWindow(window.get());
    QApplication::processEvents();
  }
}

}  // namespace
}  // namespace zemo::test
