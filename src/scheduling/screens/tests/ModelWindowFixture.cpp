#include "scheduling/screens/tests/ModelWindowFixture.h"

#include <QApplication>
#include <QPushButton>

namespace zemo::test {

void ModelWindowTest::SetUp() {
  s.MakeFile("Genre.Txt", "POP\r\nROCK\r\nJAZZ\r\n");
  TitleCard card;
  s.Add(card);
  s.Add(card);
  card.genre = "ROCK";
  card.lengthMs = 300000;
  s.Add(card);
  s.Variety("NATIONAL", 60);
  s.Variety("INTERNATIONAL", 40);
  desk = std::make_unique<ModelDesk>(s.station, ModelSources{&sheets, &forecast});
}

void ModelWindowTest::Open(int width, int height) {
  desk->Open();
  BringForward(Window(), width, height);
}

void ModelWindowTest::Click(const char* name) {
  ClickOn(Find(name));
  QApplication::processEvents();
}

void ModelWindowTest::ClickCell(const char* grid, int row, int column) {
  auto* view = Find<ModelGridView>(grid);
  const QModelIndex index = view->IndexOf({row, column});
  ASSERT_TRUE(view->isVisible() && index.isValid()) << grid;
  view->scrollTo(index);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                    view->visualRect(index).center());
  QApplication::processEvents();
}

void ModelWindowTest::Key(QWidget* control, Qt::Key key) {
  QTest::keyClick(control, key);
  QApplication::processEvents();
}

void ModelWindowTest::Choose(const char* name, const std::string& entry) {
  auto* menu = Find<QMenu>(name);
  ASSERT_TRUE(menu->isVisible()) << name << " is not open";
  const QList<QAction*> actions = menu->actions();
  for (int place = 0; place < actions.size(); ++place) {
    Key(menu, Qt::Key_Down);
    if (actions[place]->text().toStdString() == entry) return Key(menu, Qt::Key_Return);
  }
  FAIL() << name << " has no " << entry;
}

std::string ModelWindowTest::Cell(const char* grid, int row, int column) {
  return Find<ModelGridView>(grid)->IndexOf({row, column}).data().toString().toStdString();
}

std::string ModelWindowTest::Head(const char* grid, int column, int role) {
  const QAbstractItemModel& model = *Find<ModelGridView>(grid)->model();
  return model.headerData(column, Qt::Horizontal, role).toString().toStdString();
}

Texts ModelWindowTest::Row(const char* table, int row) {
  Texts cells;
  auto* shown = Find<QTableWidget>(table);
  for (int column = 0; column < shown->columnCount(); ++column)
    if (const QTableWidgetItem* item = shown->item(row, column))
      cells.push_back(item->text().toStdString());
  return cells;
}

std::string ModelWindowTest::Text(const char* name) {
  return TextOn(Find(name));
}

}  // namespace zemo::test
