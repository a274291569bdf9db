// The tab of the hour pips.
#include <QCheckBox>
#include <QLabel>

#include "library/screens/tests/LibraryWindowFixture.h"

namespace zemo::test {
namespace {

class HourPipTab : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    sources.chooseFiles = [this](QWidget*, const std::string&, const Names&,
                                 const LibrarySources::TakeFiles& take) {
      ++asked;
      take({"/pip.wav"});
    };
    Open();
    Tab(4);
  }
  std::string Pip(const std::string& column, int hour) {
    return on.SqlText("SELECT " + column + " FROM Toph WHERE HEURE = " + std::to_string(hour));
  }
  int asked = 0;
};

TEST_F(HourPipTab, HasARowAnHour) {
  EXPECT_EQ(Column("GTopH", 0).size(), 24U);
  EXPECT_EQ(Column("GTopH", 0)[7], "07:00 ");
  EXPECT_FALSE(Seen("PLDisco"));
  EXPECT_FALSE(Seen("BtnPlus"));
  EXPECT_FALSE(On("Ajouter"));
  EXPECT_TRUE(On("MnuDelete"));
}

TEST_F(HourPipTab, ADoubleClickOnAFileOpensTheSelectorAndTheChoiceIsSavedWhenTheTabIsLeft) {
  ClickCell("GTopH", 8, 1, true);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(Column("GTopH", 1)[8], "/pip.wav");
  Tab(1);
  EXPECT_EQ(Pip("FICHIER", 8), "/pip.wav");
}

TEST_F(HourPipTab, AClickOnTheOverlayMarkTurnsIt) {
  ClickCell("GTopH", 3, 2);
  EXPECT_EQ(Column("GTopH", 2)[3], "X");
  ClickCell("GTopH", 3, 2);
  EXPECT_EQ(Column("GTopH", 2)[3], "");
}

TEST_F(HourPipTab, TheHourWhoseDaysAreShownIsSelected) {
  EXPECT_EQ(Selected("GTopH", 0), (Names{"00:00 "}));
}

TEST_F(HourPipTab, EachColumnTellsWhatAClickOnItDoes) {
  const QAbstractItemModel& rows = *Table("GTopH").model();
  const auto tip = [&](int hour, int column) {
    return rows.index(hour, column).data(Qt::ToolTipRole).toString().toStdString();
  };
  const std::string file = "Double-clic ou Entrée : choisir le fichier ; Suppr : le vider";
  EXPECT_EQ(tip(8, 1), file);
  EXPECT_EQ(tip(8, 2), "Clic ou Espace : en surimpression sur la musique, ou à sa place");
  EXPECT_EQ(tip(8, 3),
            "Jours où le top passe, du lundi au dimanche ; les cases ci-dessous les changent");
  ClickCell("GTopH", 8, 1, true);
  EXPECT_EQ(tip(8, 1), "/pip.wav\n" + file);
}

TEST_F(HourPipTab, KeysDoWhatTheMouseDoes) {
  ClickCell("GTopH", 3, 0);
  QTableView& table = Table("GTopH");
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_EQ(Column("GTopH", 2)[4], "X");
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_EQ(Column("GTopH", 1)[4], "/pip.wav");
}

TEST_F(HourPipTab, TheDaysOfTheSelectedHourAreSevenBoxes) {
  ClickCell("GTopH", 6, 0);
  EXPECT_TRUE(Find<QCheckBox>("JourTop_7")->isChecked());
  Click("JourTop_7");
  EXPECT_EQ(Column("GTopH", 3)[6], "LMMJVS-");
  ClickCell("GTopH", 5, 0);
  EXPECT_TRUE(Find<QCheckBox>("JourTop_7")->isChecked());
  window->close();
  EXPECT_EQ(Pip("JourSemaine", 6), "XXXXXX ");
  EXPECT_EQ(Pip("JourSemaine", 5), "XXXXXXX");
}

TEST_F(HourPipTab, DeleteEmptiesTheFileOfTheHour) {
  ClickCell("GTopH", 8, 1, true);
  Menu("MnuDelete");
  EXPECT_EQ(Column("GTopH", 1)[8], "");
  EXPECT_EQ(Pip("FICHIER", 8), "");
}

}  // namespace
}  // namespace zemo::test
