// The lamps of the inputs, the function keys, and the engine's own keys through the real keyboard.
#include <gtest/gtest.h>

#include <QDialog>

#include "engine/screens/tests/ScreenFixture.h"
#include "ui/ScreenDesktop.h"

namespace zemo::test {
namespace {

TEST_F(Screen, ContactsAndJoystickHaveTheirLamps) {
  Open();
  EXPECT_FALSE(Find("LedJoystique")->isVisible());
  on.station.engine.Contacts[1] = true;
  on.station.engine.JoystickInUse = true;
  on.station.engine.joystickLamp = JoystickLamp::kSatellite;
  Draw();
  EXPECT_TRUE(Find("LedSat0")->styleSheet().contains("#008000"));  // dark green, 0x008000
  EXPECT_TRUE(Find("LedSat1")->styleSheet().contains("#00ff00"));
  EXPECT_TRUE(Find("LedJoystique")->isVisible());
  EXPECT_EQ(Text("LedJoystique"), "Joy2");
}

TEST_F(Screen, F5AsksForMusicAndF6ForTheNextElement) {
  Open();
  List().setFocus();
  Key(Qt::Key_F5);
  EXPECT_EQ(on.Events("request").size(), 1U) << on.Describe();
  Key(Qt::Key_F6);
  EXPECT_TRUE(on.station.engine.NextRequested);
}

TEST_F(Screen, F1ShowsTheShortcuts) {
  Open();
  std::string title;
  on.messages.shown = [&](const std::string& shown, const std::string&, Buttons, Answer) {
    title = shown;
  };
  List().setFocus();
  Key(Qt::Key_F1);
  EXPECT_EQ(title, "Raccourcis clavier");
}

TEST_F(Screen, TheKeyboardHoldsSpaceAndPadDigitsForTheEngineUnlessADialogueStands) {
  Open();
  ScreenKeyboard keyboard;
  keyboard.Watch(window.get(), [] { return true; });
  List().setFocus();
  Key(Qt::Key_Space);
  EXPECT_TRUE(keyboard.Held(32));   // pressed since the last question
  EXPECT_FALSE(keyboard.Held(32));  // and let go
  Key(Qt::Key_3, Qt::KeypadModifier);
  EXPECT_TRUE(keyboard.Held(99));
  EXPECT_TRUE(keyboard.MainScreenActive());
  QDialog dialog(window.get());
  dialog.setModal(true);
  dialog.show();
  QCoreApplication::processEvents();
  EXPECT_FALSE(keyboard.MainScreenActive());
}

}  // namespace
}  // namespace zemo::test
