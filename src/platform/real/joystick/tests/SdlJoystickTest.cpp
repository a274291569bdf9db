// The joystick through the library's own virtual devices: what they press comes in as events, as
// from a device that is plugged in.
#include <SDL.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/real/joystick/SdlJoystick.h"
#include "platform/sim/SimLoop.h"

namespace zemo {
namespace {

// Keeps the library's joysticks in use for the whole test, and those of the machine out of it.
class Devices {
 public:
  Devices() {
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint("SDL_JOYSTICK_DEVICE", "");
    SDL_SetHint(SDL_HINT_JOYSTICK_HIDAPI, "0");
    if (SDL_InitSubSystem(SDL_INIT_JOYSTICK) != 0) throw std::runtime_error(SDL_GetError());
    machines_ = SDL_NumJoysticks();
  }
  ~Devices() { SDL_QuitSubSystem(SDL_INIT_JOYSTICK); }
  Devices(const Devices&) = delete;

  int FirstPort() const { return machines_ + 1; }  // behind what the machine itself has
  int PlugIn(int buttons = 8) const {
    return SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, 2, buttons, 0);
  }

 private:
  int machines_ = 0;
};

class SdlJoystickTest : public testing::Test {
 protected:
  SdlJoystickTest() {
    joystick_.OnButton(
        [this](int button, bool down) { heard_ += std::to_string(button) + (down ? "+" : "-"); });
  }
  // One button of the device, as its driver reports it.
  static void Move(SDL_Joystick* device, int button, bool down) {
    SDL_JoystickSetVirtualButton(device, button, down ? SDL_PRESSED : SDL_RELEASED);
    SDL_JoystickUpdate();
  }
  // The next look of the joystick, and what it heard.
  std::string Heard() {
    atMs_ += 100;
    loop_.RunUntil(atMs_);
    return std::exchange(heard_, {});
  }

  Devices devices_;
  SimLoop loop_{LocalDateTime{2026, 11, 21, 12, 0, 0, 0}};
  SdlJoystick joystick_{loop_};
  std::string heard_;
  int64_t atMs_ = 0;
};

TEST_F(SdlJoystickTest, TheFirstFourButtonsAreHeardWithTheirNumbersFromOne) {
  const int index = devices_.PlugIn();
  ASSERT_GE(index, 0) << SDL_GetError();
  EXPECT_TRUE(joystick_.Open(index + 1));
  SDL_Joystick* device = SDL_JoystickOpen(index);
  for (int button = 0; button < 6; ++button) {
    Move(device, button, true);
    const std::string number = std::to_string(button + 1);
    EXPECT_EQ(Heard(), button < 4 ? number + "+" : "");
    Move(device, button, false);
    EXPECT_EQ(Heard(), button < 4 ? number + "-" : "");
  }
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(index);
}

TEST_F(SdlJoystickTest, WhatIsPressedAndLetGoBetweenTwoLooksIsHeardInItsOrder) {
  const int index = devices_.PlugIn();
  ASSERT_TRUE(joystick_.Open(index + 1));
  SDL_Joystick* device = SDL_JoystickOpen(index);
  Move(device, 3, true);
  Move(device, 1, true);
  Move(device, 3, false);
  EXPECT_EQ(Heard(), "4+2+4-");
  EXPECT_EQ(Heard(), "");
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(index);
}

TEST_F(SdlJoystickTest, AnotherJoystickIsNotHeard) {
  const int index = devices_.PlugIn();
  const int other = devices_.PlugIn();
  ASSERT_TRUE(joystick_.Open(index + 1));
  SDL_Joystick* device = SDL_JoystickOpen(other);
  Move(device, 0, true);
  EXPECT_EQ(Heard(), "");
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(other);
  SDL_JoystickDetachVirtual(index);
}

TEST_F(SdlJoystickTest, AJoystickThatGoesLetsGoItsButtonsAndIsHeardWhenItIsBack) {
  int index = devices_.PlugIn();
  ASSERT_TRUE(joystick_.Open(index + 1));
  SDL_Joystick* device = SDL_JoystickOpen(index);
  Move(device, 1, true);
  EXPECT_EQ(Heard(), "2+");
  SDL_JoystickDetachVirtual(index);
  SDL_JoystickClose(device);
  EXPECT_EQ(Heard(), "2-");
  index = devices_.PlugIn();
  EXPECT_EQ(Heard(), "");
  device = SDL_JoystickOpen(index);
  Move(device, 0, true);
  EXPECT_EQ(Heard(), "1+");
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(index);
}

TEST_F(SdlJoystickTest, APortWithoutAJoystickDoesNotAnswerUntilOneIsPluggedIn) {
  EXPECT_FALSE(joystick_.Open(devices_.FirstPort()));
  EXPECT_EQ(Heard(), "");
  const int index = devices_.PlugIn();
  EXPECT_EQ(Heard(), "");
  SDL_Joystick* device = SDL_JoystickOpen(index);
  Move(device, 2, true);
  EXPECT_EQ(Heard(), "3+");
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(index);
}

TEST_F(SdlJoystickTest, AClosedOneHearsNothing) {
  const int index = devices_.PlugIn();
  ASSERT_TRUE(joystick_.Open(index + 1));
  joystick_.Close();
  SDL_Joystick* device = SDL_JoystickOpen(index);
  Move(device, 0, true);
  EXPECT_EQ(Heard(), "");
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(index);
}

TEST_F(SdlJoystickTest, TheHandlerMayCloseIt) {
  const int index = devices_.PlugIn();
  ASSERT_TRUE(joystick_.Open(index + 1));
  int heard = 0;
  joystick_.OnButton([&](int, bool) {
    ++heard;
    joystick_.Close();
  });
  SDL_Joystick* device = SDL_JoystickOpen(index);
  Move(device, 0, true);
  Move(device, 1, true);
  Heard();
  EXPECT_EQ(heard, 1);
  SDL_JoystickClose(device);
  SDL_JoystickDetachVirtual(index);
}

}  // namespace
}  // namespace zemo
