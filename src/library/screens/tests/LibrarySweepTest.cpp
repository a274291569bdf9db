// The windows of the library in four languages and three sizes: no text is cut, no control overlaps
// another, every control names itself. Pictures are kept for a person to look at.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>

#include "library/screens/MarkerPane.h"
#include "library/screens/tests/LibraryWindowFixture.h"
#include "store/SoundMeasuresTable.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

constexpr const char* kLists[] = {"PLDisco", "PLJingles", "PLAutre"};

class LibrarySweep : public LibraryScreenTest, public testing::WithParamInterface<int> {
 protected:
  void Prepare(int langue) {
    on.Set("Langue", std::to_string(langue));
    on.station.base.CheckCnf();
    for (int song = 1; song <= 60; ++song)
      on.AddCard(
          {.lengthMs = 185000 + song * 3000,
           .artist = song == 2 ? "THE ORCHESTRA OF A LONG NAME" : "ARTIST " + std::to_string(song),
           .title = "Title of the song " + std::to_string(song),
           .genre = song % 3 ? "POP" : "INSTRUMENTAL",
           .variety = song % 2 ? "NATIONAL" : "INTERNATIONAL",
           .exitMs = 4000,
           .introSec = 14});
    on.Sql(
        "UPDATE Discotheque SET DIFFUSION01 = '21/11/2026 à 20:08', DIFFUSION08 = '20/11/2026 à "
        "20:08', LASTDIFF = 46347.5, TRANCHE01 = '000000111111111111111100', MMJJDebut = '1224'");
    MeasureFirst();
    for (const char* label : {"Top of the morning", "News ahead", "The station in the evening"}) {
      AddJingle(label);
      AddShortElement(label);
    }
    on.Sql("UPDATE DiscothequeJingle SET CODEASSOCIE = 2, SURIMPRESSION = -1, LASTDIFF = 46347.5");
    on.Sql("UPDATE DiscothequeVirgule SET TOUCHE = 4");
    on.Sql("UPDATE Toph SET FICHIER = '/sounds/pips/pip-of-the-hour.wav'");
  }

  // The first title has every mark there is, and what was measured of it.
  void MeasureFirst() {
    on.MakeFile("title1.mar", "90000,105000\r\n");
    const std::string file = on.stationDir.Path() + "/title1.wav";
    SoundMeasures measures;
    measures.lengthMs = 188000;
    measures.soundBeginMs = 2000;
    measures.soundEndMs = 181000;
    measures.exitMs = 16000;
    StoreMeasures(on.station.base, file, on.station.platform.soundFiles.Stamp(file).value(),
                  measures);
    shapes.lengthFrames = MsToFrames(188000);
  }

  void CheckTable(const char* name, const std::string& where) {
    const QTableView& table = Table(name);
    if (!table.isVisible()) return;
    for (int column = 0; column < table.model()->columnCount(); ++column) {
      if (table.isColumnHidden(column)) continue;
      const QHeaderView& heads = *table.horizontalHeader();
      EXPECT_GE(table.columnWidth(column), heads.sectionSizeHint(column) - 6)
          << where << ": " << name << " head " << column;
      EXPECT_NE(table.model()->headerData(column, Qt::Horizontal).toString(), QString());
    }
  }
};

TEST_P(LibrarySweep, NothingIsCutAndNothingOverlapsOnAnyTab) {
  const int langue = GetParam();
  Prepare(langue);
  Open();
  for (const WindowSize& size : kWindowSizes) {
    window->resize(size.width, size.height);
    QApplication::processEvents();
    ASSERT_EQ(window->size(), QSize(size.width, size.height));
    for (int tab = 1; tab <= 4; ++tab) {
      Tab(tab);
      static_cast<MarkerPane*>(Find("CadreOnde"))->Look();
      const std::string where = std::string("library-") + kLanguageNames[langue] + "-" +
                                std::to_string(size.width) + "-" + std::to_string(tab);
      CheckWindow(*window, where);
      for (const char* list : kLists) CheckTable(list, where);
      CheckTable("GTopH", where);
      KeepPicture(*window, where);
    }
    Tab(1);
    if (size.width >= kWidthOfBoth) continue;
    Menu("MnuListe");
    CheckWindow(*window, "list");
    CheckTable("PLDisco", "list");
    KeepPicture(*window, std::string("library-") + kLanguageNames[langue] + "-list");
  }
}

TEST_P(LibrarySweep, EveryMenuHasItsWords) {
  Prepare(GetParam());
  Open();
  for (const char* name : {"Nouveau", "Ajouter", "Replacer", "MnuDelete", "MnuListe", "MnuImp",
                           "MnuExporter", "MnuTxt", "MnuInitDate", "MnuAide"})
    EXPECT_NE(Find<QAction>(name)->text(), QString()) << name;
  EXPECT_NE(window->windowTitle(), QString());
}

INSTANTIATE_TEST_SUITE_P(Languages, LibrarySweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
