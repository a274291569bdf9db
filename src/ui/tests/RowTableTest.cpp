#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QStandardItemModel>
#include <QTableView>
#include <QToolTip>

#include "ui/RowTable.h"

namespace zemo::test {
namespace {

class RowTable : public testing::Test {
 protected:
  void SetUp() override {
    table.setModel(&model);
    MakeRowTable(table);
    table.horizontalHeader()->setMinimumSectionSize(10);
    table.setFrameShape(QFrame::NoFrame);
    table.resize(400, 200);
    table.show();
    QCoreApplication::processEvents();
  }
  bool ShowsTipAt(int column) {
    const QPoint at = table.visualRect(model.index(0, column)).center();
    const QHelpEvent help(QEvent::ToolTip, at, table.viewport()->mapToGlobal(at));
    return ShowCutText(table, help);
  }
  QStandardItemModel model{1, 4};
  QTableView table;
};

TEST_F(RowTable, TheRoomThatIsLeftGoesByShares) {
  ASSERT_EQ(table.viewport()->width(), 400);
  // 400 less 60 and two of 70 leaves 200: a quarter of it and three quarters.
  const ColumnRoom columns[] = {{60, 0}, {70, 1}, {0, 5}, {70, 3}};
  ShareWidth(table, columns);
  EXPECT_EQ(table.columnWidth(0), 60);
  EXPECT_EQ(table.columnWidth(1), 120);
  EXPECT_TRUE(table.isColumnHidden(2));
  EXPECT_EQ(table.columnWidth(3), 220);
}

TEST_F(RowTable, WithTooLittleRoomEachColumnKeepsItsLeastWidth) {
  const ColumnRoom columns[] = {{200, 0}, {200, 1}, {200, 1}, {0, 0}};
  ShareWidth(table, columns);
  for (const int column : {0, 1, 2}) EXPECT_EQ(table.columnWidth(column), 200);
}

TEST_F(RowTable, OnlyATextThatIsCutTellsItself) {
  model.setItem(0, 0, new QStandardItem(QStringLiteral("A text that is much too long for it")));
  model.setItem(0, 1, new QStandardItem(QStringLiteral("fits")));
  const ColumnRoom columns[] = {{60, 0}, {200, 0}, {0, 0}, {0, 0}};
  ShareWidth(table, columns);
  EXPECT_TRUE(ShowsTipAt(0));
  EXPECT_EQ(QToolTip::text(), QStringLiteral("A text that is much too long for it"));
  EXPECT_FALSE(ShowsTipAt(1));
}

}  // namespace
}  // namespace zemo::test
