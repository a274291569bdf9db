#include "engine/screens/tests/ScreenFixture.h"

#include <QApplication>

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
  return TextOn(Find(name));
}

void Screen::Click(const char* name) {
  ClickOn(Button(name));
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

}  // namespace zemo::test
