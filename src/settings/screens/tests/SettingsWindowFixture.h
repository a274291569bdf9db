// A station with the window of its settings: QTest gives the keys and the mouse.
#pragma once

#include <QTest>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "settings/screens/SettingsDesk.h"
#include "settings/tests/SettingsStation.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {

class SettingsScreenTest : public SettingsStation {
 protected:
  void SetUp() override;
  // The window at this size, shown and active, as the menu opens it.
  void Open(int width = 1280, int height = 800);
  void Close();

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = Window().findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  SettingsWindow& Window() { return *desk->Window(); }
  void Tab(int number);          // from 0, by the mouse
  void Click(const char* name);  // of a control that is seen and on
  void Type(const char* box, const std::string& text, bool enter = false);
  void Choose(const char* combo, int entry);  // by the keys
  std::string Text(const char* name);         // of a label, a button or a box
  Texts Entries(const char* list);
  Texts Notes();  // the refusals that are seen

  SettingsSources sources;
  std::unique_ptr<SettingsDesk> desk;
};

}  // namespace zemo::test
