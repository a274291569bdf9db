// What the file dialogue says of files, in the form of the operator's country.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QTest>
#include <QTreeView>
#include <QWidget>
#include <string>

#include "support/TestStation.h"
#include "ui/FileDialogue.h"
#include "ui/QtWords.h"

namespace zemo::test {
namespace {

class FilesOnScreen : public testing::Test {
 protected:
  void SetUp() override {
    QFile file(QString::fromStdString(folder.Path() + "/spot.wav"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(2048, 'x'));
    file.flush();
    ASSERT_TRUE(file.setFileTime(QDateTime(QDate(2026, 11, 21), QTime(14, 5)),
                                 QFileDevice::FileModificationTime));
  }
  void TearDown() override { SpeakQtWords(0); }
  // Of the one file: name 0, size 1, kind 2, moment 3.
  std::string Column(int langue, int column) {
    SpeakQtWords(langue);
    QWidget over;
    QFileDialog* dialogue = MakeFileDialogue(over, "FrmFiles", QStringLiteral("Files"));
    dialogue->setViewMode(QFileDialog::Detail);
    dialogue->setDirectory(QString::fromStdString(folder.Path()));
    dialogue->open();
    const auto* list = dialogue->findChild<QTreeView*>(QStringLiteral("treeView"));
    const auto file = [&] { return list->model()->index(0, column, list->rootIndex()); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return file().isValid(); }, 10000));
    return file()
        .data()
        .toString()
        .replace(QChar(0xa0), u' ')
        .replace(QChar(0x202f), u' ')
        .toStdString();
  }
  TempFolder folder;
};

TEST_F(FilesOnScreen, SizesAreInTheOperatorsUnits) {
  EXPECT_EQ(Column(0, 1), "2,00 Kio");
  EXPECT_EQ(Column(1, 1), "2.00 KiB");
}

TEST_F(FilesOnScreen, MomentsAreInTheOperatorsForm) {
  EXPECT_EQ(Column(0, 3), "21/11/2026 14:05");
  EXPECT_EQ(Column(3, 3), "21/11/26 14:05");
}

TEST_F(FilesOnScreen, NamesStandAsTheyAre) {
  EXPECT_EQ(Column(2, 0), "spot.wav");
}

}  // namespace
}  // namespace zemo::test
