// The rest of what the logic asks of the machine: clipboard, message boxes, keys, system orders.
#pragma once

#include <string>

#include "platform/Clock.h"

namespace zemo {

// The system clipboard, through which neighbouring programs talk to the engine. Thread: the
// logic's.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual std::string Text() const = 0;  // UTF-8; empty when it holds no text
  virtual void SetText(const std::string& text) = 0;
};

// The last two ask whose fields a record keeps that two people changed: yes the operator's own, no
// the other's, ok first a look at them, which only the first of both offers, and cancel nobody's.
enum class Buttons {
  kOk,
  kOkCancel,
  kYesNo,
  kYesCancel,
  kYesNoCancel,
  kMineTheirsLook,
  kMineTheirs
};
enum class Answer { kOk, kCancel, kYes, kNo };
// What a question gets that nobody answers.
constexpr Answer SafeAnswer(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOkCancel:
    case Buttons::kYesCancel:
    case Buttons::kYesNoCancel:
    case Buttons::kMineTheirsLook:
    case Buttons::kMineTheirs:
      return Answer::kCancel;
    case Buttons::kYesNo:
      return Answer::kNo;
    case Buttons::kOk:
      break;
  }
  return Answer::kOk;
}
enum class Icon { kNone, kInformation, kStop };

// Asks or tells the operator. Without anybody to answer, a question gets its safe answer (no,
// cancel) and never holds the air. What is only told stands until the operator has read it, and
// nobody waits for that: a machine that comes up alone goes on air below it. Thread: the logic's;
// may yield to the event loop.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual Answer Show(const std::string& title, const std::string& text, Buttons buttons,
                      Icon icon = Icon::kNone) = 0;
};

struct ScreenSize {
  int width = 0;  // pixels; 0 by 0 when there is no screen
  int height = 0;
};

// Keys held down, by virtual key number (32 space, 96 to 105 numeric pad). Thread: the logic's.
class Keyboard {
 public:
  virtual ~Keyboard() = default;
  virtual bool Held(int virtualKey) const = 0;
  virtual bool MainScreenActive() const = 0;  // the main on-air screen has the keyboard
};

// Thread: the logic's.
class System {
 public:
  virtual ~System() = default;
  virtual void Shutdown() = 0;  // an ordinary shut-down of the machine
  virtual void SetDate(
      const LocalDateTime& moment) = 0;  // writes the date; the time of day runs on
  virtual ScreenSize Screen() const = 0;
  // Begins another program and does not wait for it: a path or a name, and one argument to it or
  // none. False: it cannot be begun.
  virtual bool Run(const std::string& program, const std::string& argument) = 0;
  virtual bool RunMixer() = 0;  // the machine's own mixer; false: it has none
};

}  // namespace zemo
