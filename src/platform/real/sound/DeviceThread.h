// Keeps the device open while the output is: opens it, closes it, and when it is lost in mid-air
// tries every second to have it back, so that nobody else ever waits for a device.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

#include "platform/real/sound/Notices.h"
#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/OutputRing.h"
#include "platform/real/sound/WakeUp.h"

namespace zemo {

class DeviceThread {
 public:
  // What the device is, and what moves it:
  //
  //   state      wanted     opened     failed to open   in trouble   not wanted
  //   kClosed    kOpening   -          -                -            -
  //   kOpening   -          kRunning   kLost            -            -
  //   kRunning   -          -          -                kLost        kClosed
  //   kLost      -          kRunning   - (1 s later)    -            kClosed
  enum class State { kClosed, kOpening, kRunning, kLost };

  // Not owned: the ring that the device plays, and the mixer's sleep, ended at every change of
  // state.
  DeviceThread(std::unique_ptr<OutputDevice> device, OutputRing& ring, WakeUp& mixer);
  ~DeviceThread();

  void Want(bool open);  // logic's thread
  // Mixer's thread: the device opened as the `opening`-th no longer plays; `reason` is static text.
  void Trouble(uint32_t opening, const char* reason);

  // --- Any thread ---
  State GetState() const { return state_.load(std::memory_order_acquire); }
  uint32_t Opening() const { return opening_.load(std::memory_order_acquire); }  // counts openings
  int Rate() const { return rate_.load(std::memory_order_acquire); }             // frames a second

  Notices& Told() { return notices_; }  // read by the logic's thread

 private:
  void Run();
  void TryOpen();
  void Leave();
  void SetState(State state);

  std::unique_ptr<OutputDevice> device_;
  OutputRing& ring_;
  WakeUp& mixer_;
  WakeUp wake_;
  Notices notices_;
  std::atomic<bool> wanted_{false};
  std::atomic<bool> quit_{false};
  std::atomic<State> state_{State::kClosed};
  std::atomic<uint32_t> opening_{0};
  std::atomic<int> rate_{0};
  std::atomic<uint32_t> troubled_{0};  // the opening that is in trouble
  std::atomic<const char*> reason_{""};
  bool toldLost_ = false;  // the thread's own: a loss is told once
  std::thread thread_;     // last: it uses all the others
};

}  // namespace zemo
