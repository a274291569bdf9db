// The simulated desktop: clipboard, message boxes with scripted answers, keys, system orders.
#pragma once

#include <deque>
#include <functional>
#include <set>
#include <string>

#include "platform/Desktop.h"
#include "platform/sim/SimLoop.h"

namespace zemo {

// Tells `changed` of every new text, whoever put it there.
class SimClipboard : public Clipboard {
 public:
  std::function<void(const std::string& text)> changed;

  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    text_ = text;
    if (changed) changed(text);
  }

 private:
  std::string text_;
};

// A question takes the next scripted answer that it can have, else its safe one.
class SimMessageBoxes : public MessageBoxes {
 public:
  std::function<void(const std::string& title, const std::string& text, Buttons, Answer)> shown;

  void AnswerNext(Answer answer) { answers_.push_back(answer); }
  Answer Show(const std::string& title, const std::string& text, Buttons buttons,
              Icon icon = Icon::kNone) override;
  Icon LastIcon() const { return lastIcon_; }  // of the box shown last

 private:
  std::deque<Answer> answers_;
  Icon lastIcon_ = Icon::kNone;
};

class SimKeyboard : public Keyboard {
 public:
  void Press(int virtualKey) { held_.insert(virtualKey); }
  void Release(int virtualKey) { held_.erase(virtualKey); }
  bool Held(int virtualKey) const override { return held_.count(virtualKey) != 0; }
  bool MainScreenActive() const override { return true; }

 private:
  std::set<int> held_;
};

class SimSystem : public System {
 public:
  explicit SimSystem(SimLoop& loop) : loop_(loop) {}
  std::function<void(const char* action, const std::string& value)> ordered;
  ScreenSize screen{1920, 1080};
  bool hasPrograms = true;  // that can be begun

  void Shutdown() override {
    if (ordered) ordered("shutdown", "");
  }
  void SetDate(const LocalDateTime& moment) override;
  ScreenSize Screen() const override { return screen; }
  bool Run(const std::string& program, const std::string& argument) override;
  bool RunMixer() override { return Run("mixer", ""); }

 private:
  SimLoop& loop_;
};

// The words of buttons and answers in a trace.
const char* ButtonsWord(Buttons buttons);  // "ok", "okcancel", "yesno"
const char* AnswerWord(Answer answer);     // "ok", "cancel", "yes", "no"

}  // namespace zemo
