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

namespace zemo::test {
namespace {

struct Size {
  int width, height;
};
constexpr Size kSizes[] = {{1024, 768}, {1280, 800}, {1920, 1080}};
constexpr const char* kLanguageNames[] = {"fr", "en", "pt", "es"};
constexpr const char* kLists[] = {"PLDisco", "PLJingles", "PLAutre"};

std::string NameOf(const QWidget& widget) {
  return widget.objectName().isEmpty() ? widget.metaObject()->className()
                                       : widget.objectName().toStdString();
}

bool IsControl(const QWidget& widget) {
  return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
         qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
         qobject_cast<const QSlider*>(&widget) || qobject_cast<const QTabBar*>(&widget);
}

int TextWidth(const QWidget& widget, QString text) {
  return widget.fontMetrics().size(0, text.remove(u'&')).width();
}

// What of a control's text does not fit into it; empty for none.
std::string CutText(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    const QSize room = label->contentsRect().size();
    if (TextWidth(*label, label->text()) > room.width()) return label->text().toStdString();
    return label->fontMetrics().height() > room.height() + 4 ? "too low" : "";
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    if (button->text().isEmpty()) return {};
    return button->minimumSizeHint().width() > button->width() ? button->text().toStdString() : "";
  }
  if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
    return tabs->sizeHint().width() > tabs->width() ? "tabs" : "";
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    const QRect room = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, combo);
    return TextWidth(*combo, combo->currentText()) > room.width()
               ? combo->currentText().toStdString()
               : "";
  }
  // Boxes of a moment of play or of a number show it whole; long texts scroll.
  const auto* box = qobject_cast<const QLineEdit*>(&widget);
  const QString name = widget.objectName();
  QStyleOptionFrame option;
  option.initFrom(&widget);
  if (box && (name.startsWith(QStringLiteral("ChDiffusion")) || name == QStringLiteral("Longeur")))
    return TextWidth(*box, box->text()) + 4 >
                   box->style()->subElementRect(QStyle::SE_LineEditContents, &option, box).width()
               ? box->text().toStdString()
               : "";
  return {};
}

QRect OnScreen(const QWidget& widget, const QWidget& window) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

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

  static bool Names(const QWidget& widget) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
      if (!button->text().isEmpty()) return true;
    if (qobject_cast<const QLabel*>(&widget) || qobject_cast<const QTabBar*>(&widget)) return true;
    const bool part = widget.objectName().isEmpty() || widget.objectName().startsWith("qt_");
    return part || !widget.accessibleName().isEmpty();
  }

  void CheckAll(QWidget& whole, const std::string& where) {
    QList<QWidget*> controls;
    for (QWidget* widget : whole.findChildren<QWidget*>())
      if (widget->isVisible() && IsControl(*widget)) controls << widget;
    for (QWidget* widget : controls) {
      const std::string cut = CutText(*widget);
      EXPECT_TRUE(cut.empty()) << where << ": " << NameOf(*widget) << ": " << cut;
      EXPECT_TRUE(whole.rect().contains(OnScreen(*widget, whole)))
          << where << ": " << NameOf(*widget) << " leaves the window";
      EXPECT_TRUE(Names(*widget)) << where << ": " << NameOf(*widget) << " has no name";
      const auto* label = qobject_cast<QLabel*>(widget);
      if (label && label->objectName().isEmpty()) {
        EXPECT_NE(label->text(), QString()) << where << ": a label without words";
      }
    }
    for (int i = 0; i < controls.size(); ++i)
      for (int j = i + 1; j < controls.size(); ++j) {
        if (controls[i]->isAncestorOf(controls[j]) || controls[j]->isAncestorOf(controls[i]))
          continue;
        EXPECT_FALSE(OnScreen(*controls[i], whole).intersects(OnScreen(*controls[j], whole)))
            << where << ": " << NameOf(*controls[i]) << " overlaps " << NameOf(*controls[j]);
      }
  }
};

TEST_P(LibrarySweep, NothingIsCutAndNothingOverlapsOnAnyTab) {
  const int langue = GetParam();
  Prepare(langue);
  Open();
  for (const Size& size : kSizes) {
    window->resize(size.width, size.height);
    QApplication::processEvents();
    ASSERT_EQ(window->size(), QSize(size.width, size.height));
    for (int tab = 1; tab <= 4; ++tab) {
      Tab(tab);
      static_cast<MarkerPane*>(Find("CadreOnde"))->Look();
      const std::string where = std::string("library-") + kLanguageNames[langue] + "-" +
                                std::to_string(size.width) + "-" + std::to_string(tab);
      CheckAll(*window, where);
      for (const char* list : kLists) CheckTable(list, where);
      CheckTable("GTopH", where);
      KeepPicture(*window, where);
    }
    Tab(1);
    if (size.width >= kWidthOfBoth) continue;
    Menu("MnuListe");
    CheckAll(*window, "list");
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
