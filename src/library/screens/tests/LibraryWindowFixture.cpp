#include "library/screens/tests/LibraryWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTabBar>

namespace zemo::test {

std::shared_ptr<const WavePeaks> SongShapes::PeaksOf(const std::string&) {
  if (whole_) return whole_;
  auto peaks = std::make_shared<WavePeaks>(kWavePeaks);
  for (size_t i = 0; i < kWavePeaks; ++i)
    (*peaks)[i] = static_cast<uint8_t>((i < kWavePeaks / 2 ? 90 : 190) + i * 7919 % 45);
  return whole_ = peaks;
}

std::shared_ptr<const WavePart> SongShapes::PartOf(const std::string&, int64_t fromFrame,
                                                   int64_t toFrame, size_t most) {
  wished = {fromFrame, toFrame, most};
  if (!parts) return nullptr;
  if (!part_ || part_->fromFrame != fromFrame || part_->toFrame != toFrame)
    part_ = std::make_shared<WavePart>(
        WavePart{lengthFrames, fromFrame, toFrame, WavePeaks(most, uint8_t{120})});
  return part_;
}

void LibraryScreenTest::SetUp() {
  on.Load();
  sources.spreadsheets = &sheets;
  sources.waveforms = &shapes;
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
}

void LibraryScreenTest::Open(int width, int height) {
  window = std::make_unique<LibraryWindow>(on.station, sources);
  window->resize(width, height);
  window->Open();
  BringForward(*window, width, height);
}

int32_t LibraryScreenTest::AddSong(const std::string& artist, const std::string& title) {
  return on.AddCard({.lengthMs = 185000, .artist = artist, .title = title});
}

void LibraryScreenTest::AddSongs() {
  AddSong("CHER", "Believe");
  AddSong("ABBA", "Waterloo");
  AddSong("Édith", "Milord");
}

void LibraryScreenTest::AddJingle(const std::string& label) {
  on.Sql("INSERT INTO DiscothequeJingle (LIBELLE, FILENAME) VALUES ('" + label + "', '/" + label +
         ".wav')");
}

void LibraryScreenTest::AddShortElement(const std::string& label) {
  on.Sql("INSERT INTO DiscothequeVirgule (LIBELLE, FILENAME) VALUES ('" + label + "', '/" + label +
         ".wav')");
}

void LibraryScreenTest::Click(const char* name) {
  ClickOn(Find(name));
  QApplication::processEvents();
}

void LibraryScreenTest::Menu(const char* name) {
  auto* entry = Find<QAction>(name);
  ASSERT_TRUE(entry->isEnabled()) << name;
  entry->trigger();
  QApplication::processEvents();
}

void LibraryScreenTest::Tab(int number) {
  auto* tabs = Find<QTabBar>("TabStrip1");
  QTest::mouseClick(tabs, Qt::LeftButton, Qt::NoModifier, tabs->tabRect(number - 1).center());
  QApplication::processEvents();
}

void LibraryScreenTest::Type(const char* name, const std::string& text) {
  auto* box = qobject_cast<QLineEdit*>(Find(name));
  if (auto* list = qobject_cast<QComboBox*>(Find(name))) box = list->lineEdit();
  ASSERT_TRUE(box && box->isVisible() && box->isEnabled()) << name;
  box->setFocus();
  box->selectAll();
  if (text.empty()) QTest::keyClick(box, Qt::Key_Backspace);
  for (const QChar letter : QString::fromStdString(text))  // keyClicks knows no accents
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_unknown, QString(letter), Qt::NoModifier);
}

std::string LibraryScreenTest::Text(const char* name) {
  return TextOn(Find(name));
}

Names LibraryScreenTest::Column(const char* table, int column) {
  Names texts;
  const QAbstractItemModel& model = *Table(table).model();
  for (int row = 0; row < model.rowCount(); ++row)
    texts.push_back(model.index(row, column).data().toString().toStdString());
  return texts;
}

Names LibraryScreenTest::Selected(const char* table, int column) {
  Names texts;
  for (const QModelIndex& row : Table(table).selectionModel()->selectedRows(column))
    texts.push_back(row.data().toString().toStdString());
  return texts;
}

void LibraryScreenTest::ClickRow(const char* table, int row, Qt::KeyboardModifiers modifiers) {
  QTableView& view = Table(table);
  ASSERT_TRUE(view.isVisible());
  const QRect cell = view.visualRect(view.model()->index(row, 0));
  QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, cell.center());
  QApplication::processEvents();
}

void LibraryScreenTest::ClickCell(const char* table, int row, int column, bool twice) {
  QTableView& view = Table(table);
  const QPoint place = view.visualRect(view.model()->index(row, column)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  if (twice) QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  QApplication::processEvents();
}

void LibraryScreenTest::ClickHead(const char* table, int column) {
  QHeaderView& heads = *Table(table).horizontalHeader();
  const QPoint place(heads.sectionViewportPosition(column) + 10, heads.height() / 2);
  QTest::mouseClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  QApplication::processEvents();
}

std::string LibraryScreenTest::Stored(const std::string& column, int32_t code) {
  return on.SqlText("SELECT " + column + " FROM Discotheque WHERE CODE = " + std::to_string(code));
}

}  // namespace zemo::test
