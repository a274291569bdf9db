// The joysticks of this machine.
#pragma once

#include <functional>
#include <memory>

#include "platform/Joystick.h"

struct _SDL_Joystick;

namespace zemo {

class EventLoop;
class LoopTimer;

// Looks at the joysticks every 100 ms; what is pressed and let go in between is heard all the same.
// Nothing is looked for before the first Open. One object a process. Thread: the logic's.
class SdlJoystick : public Joystick {
 public:
  explicit SdlJoystick(EventLoop& loop);  // not owned
  ~SdlJoystick() override;
  SdlJoystick(const SdlJoystick&) = delete;

  void OnButton(std::function<void(int button, bool down)> heard) override;
  bool Open(int port) override;
  void Close() override;

 private:
  void Poll();
  bool TakeDevice();

  EventLoop& loop_;
  std::function<void(int button, bool down)> heard_;
  std::unique_ptr<LoopTimer> timer_;  // null while closed
  _SDL_Joystick* device_ = nullptr;   // null while none answers
  int port_ = 0;
  bool begun_ = false;  // the library's joysticks are in use
};

}  // namespace zemo
