// What Qt's own dialogues and menus say, and when they say it in another language.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QDialogButtonBox>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <memory>
#include <string>
#include <vector>

#include "support/TestStation.h"
#include "ui/CalendarWindow.h"
#include "ui/QtWords.h"
#include "ui/ScreenDesktop.h"
#include "ui/Window.h"

namespace zemo::test {
namespace {

using Texts = std::vector<std::string>;

Texts MenuOfABox() {
  QLineEdit box;
  const std::unique_ptr<QMenu> menu(box.createStandardContextMenu());
  Texts texts;
  for (const QAction* entry : menu->actions())
    if (!entry->isSeparator())
      texts.push_back(entry->text().remove(u'&').section(u'\t', 0, 0).toStdString());
  return texts;
}

class QtsOwn : public testing::Test {
 protected:
  void TearDown() override { SpeakQtWords(0); }
};

TEST_F(QtsOwn, AnEditMenuSpeaksEachOfTheLanguages) {
  SpeakQtWords(0);
  EXPECT_EQ(MenuOfABox(), (Texts{"Annuler", "Rétablir", "Couper", "Copier", "Coller", "Supprimer",
                                 "Tout sélectionner"}));
  SpeakQtWords(1);
  EXPECT_EQ(MenuOfABox(), (Texts{"Undo", "Redo", "Cut", "Copy", "Paste", "Delete", "Select All"}));
  SpeakQtWords(2);
  EXPECT_EQ(MenuOfABox(), (Texts{"Anular", "Refazer", "Cortar", "Copiar", "Colar", "Eliminar",
                                 "Selecionar tudo"}));
  SpeakQtWords(3);
  EXPECT_EQ(MenuOfABox(), (Texts{"Deshacer", "Rehacer", "Cortar", "Copiar", "Pegar", "Eliminar",
                                 "Seleccionar todo"}));
}

TEST_F(QtsOwn, AnUnknownLanguageIsFrench) {
  SpeakQtWords(9);
  EXPECT_EQ(MenuOfABox().front(), "Annuler");
}

TEST_F(QtsOwn, ABoxThatStandsOpenFollowsAtOnce) {
  SpeakQtWords(1);
  QMessageBox box;
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Abort);
  box.show();
  EXPECT_EQ(box.button(QMessageBox::Abort)->text(), QStringLiteral("Abort"));
  SpeakQtWords(2);
  QApplication::processEvents();
  EXPECT_EQ(box.button(QMessageBox::Yes)->text(), QStringLiteral("&Sim"));
  EXPECT_EQ(box.button(QMessageBox::Abort)->text(), QStringLiteral("Abortar"));
}

TEST_F(QtsOwn, QtsTranslationsStandWhereWeHaveNoRow) {
  QtWords words(QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  words.Speak(3);
  EXPECT_EQ(words.translate("QFileDialog", "Sidebar", nullptr, -1),
            QStringLiteral("Barra lateral"));
}

TEST_F(QtsOwn, WithoutQtsTranslationsOurRowsStandAndTheRestIsQtsEnglish) {
  const TempFolder empty;
  QtWords words(QString::fromStdString(empty.Path()));
  words.Speak(3);
  EXPECT_EQ(words.translate("QFileDialog", "&Save", nullptr, -1), QStringLiteral("&Guardar"));
  EXPECT_EQ(words.translate("QFileDialog", "Sidebar", nullptr, -1), QString());
}

TEST_F(QtsOwn, AKeyIsNotATextOfTheSameName) {
  SpeakQtWords(3);
  EXPECT_EQ(QKeySequence(Qt::SHIFT | Qt::Key_Delete).toString(QKeySequence::NativeText),
            QStringLiteral("Mayús+Supr"));
  EXPECT_EQ(QCoreApplication::translate("QLineEdit", "Delete"), QStringLiteral("Eliminar"));
  SpeakQtWords(2);
  EXPECT_EQ(QCoreApplication::translate("QScrollBar", "Top"), QString::fromUtf8("Início"));
}

TEST_F(QtsOwn, NumbersAndDatesHaveTheFormOfTheCountry) {
  SpeakQtWords(0);
  EXPECT_EQ(QLocale().decimalPoint(), QStringLiteral(","));
  SpeakQtWords(1);
  EXPECT_EQ(QLocale().decimalPoint(), QStringLiteral("."));
  EXPECT_EQ(LocaleOf(2).territory(), QLocale::Portugal);
}

TEST_F(QtsOwn, TheCalendarNamesItsMonthAsPortugalDoes) {
  const CalendarWindow calendar(2, {.year = 2026, .month = 11, .day = 21}, nullptr);
  const QLocale locale = calendar.findChild<QCalendarWidget*>()->locale();
  EXPECT_EQ(locale.territory(), QLocale::Portugal);
  EXPECT_EQ(locale.standaloneMonthName(11), QStringLiteral("novembro"));
}

TEST_F(QtsOwn, AWindowThatOpensTakesThemAlong) {
  TestStation on;
  on.Load();
  on.Set("Langue", "3");
  struct Bare : Window {
    explicit Bare(Station& station) : Window(station, "FrmBare", {}) {}
    void ArrangeParts(double) override {}
  };
  const Bare window(on.station);
  EXPECT_EQ(MenuOfABox().front(), "Deshacer");
}

// A desktop may have its own pictures on them.
TEST_F(QtsOwn, AMessageHasNoPictureOnItsButtons) {
  qApp->setStyleSheet(QStringLiteral("QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 1 }"));
  ScreenMessageBoxes boxes;
  boxes.Show("Alerte", "text", Buttons::kOk);
  int buttons = 0;
  for (const QWidget* shown : QApplication::topLevelWidgets())
    for (const QPushButton* button : shown->findChildren<QPushButton*>()) {
      if (!qobject_cast<const QMessageBox*>(shown)) continue;
      ++buttons;
      EXPECT_TRUE(button->icon().isNull());
    }
  EXPECT_EQ(buttons, 1);
  qApp->setStyleSheet(QString());
}

}  // namespace
}  // namespace zemo::test
