// A joystick port whose four buttons serve as contact inputs.
#pragma once

#include <functional>

namespace zemo {

// Thread: the logic's.
class Joystick {
 public:
  virtual ~Joystick() = default;
  // `heard` is told of every button pressed and let go, numbered from 1, as an event of the loop:
  // between two ticks or inside a yield, never inside Open or Close.
  virtual void OnButton(std::function<void(int button, bool down)> heard) = 0;
  // Listens to joystick `port`, from 1, and to no other one any more. True when one answers; one
  // that is plugged in later is heard from then on. A joystick that goes lets go its buttons.
  virtual bool Open(int port) = 0;
  virtual void Close() = 0;
};

}  // namespace zemo
