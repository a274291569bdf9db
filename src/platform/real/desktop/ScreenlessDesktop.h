// The desktop of a machine that airs without a screen: nobody answers, nobody holds a key, and the
// clipboard is a text of this process.
#pragma once

#include <string>
#include <vector>

#include "platform/Desktop.h"

namespace zemo {

class ScreenlessClipboard : public Clipboard {
 public:
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override { text_ = text; }

 private:
  std::string text_;
};

// One line on standard error, "zemoradio: message: TITLE: TEXT" (the text alone under an empty
// title), and the safe answer.
class ScreenlessMessageBoxes : public MessageBoxes {
 public:
  Answer Show(const std::string& title, const std::string& text, Buttons buttons,
              Icon icon = Icon::kNone) override;
};

class ScreenlessKeyboard : public Keyboard {
 public:
  bool Held(int) const override { return false; }
  bool MainScreenActive() const override { return false; }
};

// Orders to the machine itself. Shutdown and SetDate throw std::runtime_error with one line when
// they are refused.
class RealSystem : public System {
 public:
  // `shutdown` is the command that shuts the machine down, with its arguments.
  explicit RealSystem(std::vector<std::string> shutdown = {"systemctl", "poweroff"});
  void Shutdown() override;
  void SetDate(const LocalDateTime& moment) override;
  ScreenSize Screen() const override { return {}; }
  bool Run(const std::string& program, const std::string& argument) override;
  bool RunMixer() override;

 private:
  std::vector<std::string> shutdown_;
};

}  // namespace zemo
