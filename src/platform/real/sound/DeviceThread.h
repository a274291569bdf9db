// Keeps the device open while the output is: opens it through the first sound system that has it,
// gives it its time to begin, and when it is lost in mid-air tries twice a second to have it back,
// so that nobody else ever waits for a device.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/real/sound/Notices.h"
#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/OutputRing.h"
#include "platform/real/sound/WakeUp.h"

namespace zemo {

// One device through each sound system that may have it, the first one to be tried first.
struct WishedDevice {
  std::vector<std::unique_ptr<OutputDevice>> systems;
  std::string absent;      // the line for when none of them has it
  std::string identity{};  // by which two wishes for the same device are known; empty: they are not
};

// What becomes of the sound while no device plays it: the time of the air goes on, by the clock;
// what is played for one who listens waits for him.
enum class Unheard { kGoesOn, kWaits };

class DeviceThread {
 public:
  // What the device is, and what moves it:
  //
  //   state      wanted     opened    none opens   begins     in trouble, or asleep    not wanted
  //   kClosed    kOpening   -         -            -          -                        -
  //   kOpening   -          kWaking   kLost        -          -                        -
  //   kWaking    -          -         -            kRunning   kOpening (the next one)  kClosed
  //   kRunning   -          -         -            -          kLost; kWaking (asleep)  kClosed
  //   kLost      -          kWaking   kLost        -          -                        kClosed
  //
  // Open and begun are two things: a device that sleeps takes what it can hold, and no more for
  // seconds. Only a running one is to be given the air.
  enum class State { kClosed, kOpening, kWaking, kRunning, kLost };

  // Not owned: the ring that the device plays, and the mixer's sleep, ended at every change of
  // state. `told`: the operator knows already that there is no device.
  DeviceThread(WishedDevice wished, OutputRing& ring, WakeUp& mixer, bool told);
  ~DeviceThread();

  // --- Logic's thread ---
  void Want(bool open);
  void Choose(WishedDevice wished);  // another device, from the next time that it is wanted
  // Mixer's thread: the device opened as the `opening`-th no longer plays; `reason` is static text.
  void Trouble(uint32_t opening, const char* reason);

  // --- Any thread ---
  State GetState() const { return state_.load(std::memory_order_acquire); }
  uint32_t Opening() const { return opening_.load(std::memory_order_acquire); }  // that began
  int Rate() const { return rate_.load(std::memory_order_acquire); }             // frames a second
  uint64_t Losses() const { return losses_.load(std::memory_order_relaxed); }    // while it played
  int DelayMs() const { return delayMs_.load(std::memory_order_acquire); }  // as Opened tells it
  // Not wanted, closed, and the closing done: the thread sleeps until it is wanted.
  bool Rests() const { return rests_.load(std::memory_order_acquire); }

  Notices& Told() { return notices_; }  // read by the logic's thread

 private:
  using Time = std::chrono::steady_clock::time_point;

  void Run();
  void Step(Time now);
  void Rest();
  void TakeChoice();
  bool ChoiceIsDue();
  void LetGo();
  bool OpenFrom(size_t first, size_t end);
  void WatchWaking(Time now);
  void Begin(Time now);
  void NextSystem();
  void WatchRunning(Time now);
  void FallAsleep(Time now);
  void Lose(const std::string& reason);
  void SearchAgain(Time now);
  void Leave();
  void SetState(State state);
  void TellLoss(const std::string& line);
  void TellName();

  WishedDevice wished_;
  OutputRing& ring_;
  WakeUp& mixer_;
  WakeUp wake_;
  Notices notices_;
  std::mutex chosenMutex_;
  WishedDevice chosen_;  // while chosenMutex_ is held: to take the place of wished_
  std::atomic<bool> wanted_{false};
  std::atomic<uint32_t> wants_{0};  // times that it was wanted
  std::atomic<bool> quit_{false};
  std::atomic<State> state_{State::kClosed};
  std::atomic<uint32_t> opening_{0};
  std::atomic<int> rate_{0};
  std::atomic<int> delayMs_{0};
  std::atomic<bool> rests_{false};
  std::atomic<uint64_t> losses_{0};
  std::atomic<uint32_t> troubled_{0};  // the opening that is in trouble
  std::atomic<const char*> reason_{""};

  // The thread's own.
  uint32_t wantsSeen_ = 0;
  size_t open_ = 0;              // of the systems: the one that is open, or was open last
  OutputDevice::Opened opened_;  // of it
  uint64_t askedBefore_ = 0;     // frames, when it was opened
  bool asleep_ = false;          // its system put it to sleep
  Time since_;                   // when it was opened, began or was last seen asleep
  Time lostAt_;                  // when it was lost while it played
  int unsteady_ = 0;             // times on end that it was lost as soon as it had begun
  bool toldLost_ = false;        // a loss is told once
  bool nameDue_ = false;         // what plays is still to be told
  std::string reasons_;          // why the last search was in vain
  std::thread thread_;           // last: it uses all the others
};

}  // namespace zemo
