// A thread's sleep that another thread can end: an event counter of the kernel.
#pragma once

namespace zemo {

class WakeUp {
 public:
  WakeUp();
  ~WakeUp();
  WakeUp(const WakeUp&) = delete;
  WakeUp& operator=(const WakeUp&) = delete;

  // Any thread but a device's callback. Ends the running wait, or the next one at once.
  void Signal();
  // One thread. Until the next signal, at most `ms`; negative: without a bound.
  void Wait(int ms);

 private:
  int event_;
};

}  // namespace zemo
