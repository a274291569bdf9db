#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QTabWidget>

#include "ui/Theme.h"

namespace zemo {
namespace {

// Below its rows nothing is drawn on the ground of a list.
QColor GroundOf(const QAbstractItemView& list) {
  const QImage picture = list.viewport()->grab().toImage();
  return picture.pixelColor(picture.width() - 3, picture.height() - 3);
}

TEST(Theme, TheListsOfAFileDialogueAreAsDarkAsTheRestAndTheirTextCanBeRead) {
  QFileDialog dialog;
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setStyleSheet(Theme::StyleSheet(1, false));
  dialog.show();
  for (const char* name : {"listView", "treeView", "sidebar"}) {
    auto* list = dialog.findChild<QAbstractItemView*>(QString::fromLatin1(name));
    ASSERT_TRUE(list) << name;
    if (list->objectName() == QStringLiteral("treeView")) dialog.setViewMode(QFileDialog::Detail);
    EXPECT_EQ(GroundOf(*list), Theme::kPanel) << name;
    EXPECT_EQ(Theme::Readable(list->palette().color(QPalette::Text), Theme::kPanel), Theme::kText)
        << name;
  }
}

TEST(Theme, TheTabsOfAPrintDialogueAreAsDarkAsTheRest) {
  QDialog dialog;
  dialog.setStyleSheet(Theme::StyleSheet(1, false));
  auto* tabs = new QTabWidget(&dialog);
  auto* page = new QWidget(tabs);
  tabs->addTab(page, QStringLiteral("Copies"));
  auto* margin = new QDoubleSpinBox(page);
  tabs->resize(200, 100);
  dialog.show();
  const QImage ground = page->grab().toImage();
  EXPECT_EQ(ground.pixelColor(ground.width() - 3, ground.height() - 3), Theme::kGround);
  auto* text = margin->findChild<QLineEdit*>();
  ASSERT_TRUE(text);
  EXPECT_LT(text->grab().toImage().pixelColor(text->width() - 2, 1).lightness(), 40);
}

}  // namespace
}  // namespace zemo
