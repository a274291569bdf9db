#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QFileDialog>
#include <QImage>

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

}  // namespace
}  // namespace zemo
