// A station with a small library and the main screen over it, on the virtual clock: the test moves
// time and draws, QTest gives the keys and the mouse.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QTest>
#include <memory>
#include <string>

#include "engine/screens/OnAirListModel.h"
#include "engine/screens/OnAirListView.h"
#include "engine/screens/OnAirWindow.h"
#include "support/TestStation.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {

class Screen : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // The window at this size, shown and active; before it settings may be set.
  void Open(int width = 1280, int height = 800);
  void Loaded();              // the station, once
  void AddTitles(int count);  // cards "ARTIST n" - "TITLE n" of 3:00, appended to PL
  void Run(int64_t ms);       // of virtual time, then draws
  void Draw() { window->Refresh(); }

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the screen has no " << name;
    return control;
  }
  QAbstractButton* Button(const char* name) { return Find<QAbstractButton>(name); }
  std::string Text(const char* name);  // of a label or a button
  void Click(const char* name);
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);  // to the focus

  OnAirListView& List() { return *static_cast<OnAirListView*>(Find("PL")); }
  QPoint InRow(int row);              // of PL, from 1, in its viewport
  std::vector<std::string> Titles();  // first texts of PL's rows, in order

  TestStation on;
  ScreenSources sources;
  std::unique_ptr<OnAirWindow> window;
  int64_t nowMs = 0;
};

}  // namespace zemo::test
