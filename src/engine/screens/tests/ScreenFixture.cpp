#include "engine/screens/tests/ScreenFixture.h"

#include <QApplication>
#include <QLabel>
#include <QPixmap>

namespace zemo::test {

void Screen::SetUp() {
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
}

void Screen::TearDown() {
  window.reset();
}

void Screen::Loaded() {
  if (!on.station.engine.MainTimer) on.Load();
}

void Screen::Open(int width, int height) {
  Loaded();
  window = std::make_unique<OnAirWindow>(on.station, sources);
  window->resize(width, height);
  window->show();
  QApplication::setActiveWindow(window.get());
  QApplication::processEvents();
  window->Observe();
  window->Refresh();
}

void Screen::AddTitles(int count) {
  Loaded();
  for (int i = 1; i <= count; ++i)
    on.AppendCard(on.AddCard({.lengthMs = 180000,
                              .artist = "ARTIST " + std::to_string(i),
                              .title = "TITLE " + std::to_string(i)}));
}

void Screen::Run(int64_t ms) {
  nowMs += ms;
  on.RunUntil(nowMs);
  if (window) window->Refresh();
}

std::string Screen::Text(const char* name) {
  QWidget* control = Find(name);
  if (auto* label = qobject_cast<QLabel*>(control)) return label->text().toStdString();
  if (auto* button = qobject_cast<QAbstractButton*>(control)) return button->text().toStdString();
  ADD_FAILURE() << name << " has no text";
  return {};
}

void Screen::Click(const char* name) {
  QAbstractButton* button = Button(name);
  ASSERT_TRUE(button->isVisible()) << name;
  ASSERT_TRUE(button->isEnabled()) << name;
  QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
  window->Refresh();
}

void Screen::Key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QWidget* focus = QApplication::focusWidget();
  QTest::keyClick(focus ? focus : window.get(), key, modifiers);
  window->Refresh();
}

QPoint Screen::InRow(int row) {
  OnAirListView& list = List();
  return {30, list.rowViewportPosition(row - 1) + list.rowHeight(row - 1) / 2};
}

std::vector<std::string> Screen::Titles() {
  std::vector<std::string> titles;
  for (const OnAirRow& row : on.station.PL) titles.push_back(row.title);
  return titles;
}

void KeepPicture(QWidget& widget, const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(widget.grab().save(path)) << path.toStdString();
}

}  // namespace zemo::test
