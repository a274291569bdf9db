// The life of the device, from what is wanted of it and from what the mixer's thread sees of it.
#include "platform/real/sound/DeviceThread.h"

#include <exception>
#include <utility>

namespace zemo {
namespace {

constexpr int kRetryMs = 1000;
// A restart of the output closes and opens within an instant: the device may as well stay open.
constexpr int kLingerMs = 50;

}  // namespace

DeviceThread::DeviceThread(std::unique_ptr<OutputDevice> device, OutputRing& ring, WakeUp& mixer)
    : device_(std::move(device)), ring_(ring), mixer_(mixer), thread_([this] { Run(); }) {}

DeviceThread::~DeviceThread() {
  quit_.store(true, std::memory_order_release);
  wake_.Signal();
  thread_.join();
}

void DeviceThread::Want(bool open) {
  wanted_.store(open, std::memory_order_release);
  wake_.Signal();
}

void DeviceThread::Trouble(uint32_t opening, const char* reason) {
  reason_.store(reason, std::memory_order_relaxed);
  troubled_.store(opening, std::memory_order_release);
  wake_.Signal();
}

void DeviceThread::Run() {
  while (!quit_.load(std::memory_order_acquire)) {
    const bool wanted = wanted_.load(std::memory_order_acquire);
    const State state = GetState();
    if (!wanted && state != State::kClosed) {
      Leave();
    } else if (wanted && state == State::kClosed) {
      SetState(State::kOpening);
      TryOpen();
    } else if (state == State::kRunning && troubled_.load(std::memory_order_acquire) == Opening()) {
      // Both before the closing, which may take long; the line first, so that it is there for
      // whoever sees the state.
      notices_.Put(std::string("sound device lost (") + reason_.load(std::memory_order_relaxed) +
                       "): the air goes on unheard, the device is tried again every second",
                   true);
      toldLost_ = true;
      SetState(State::kLost);
      device_->Close();
    } else if (state == State::kLost) {
      wake_.Wait(kRetryMs);
      if (wanted_.load(std::memory_order_acquire) && !quit_.load(std::memory_order_acquire))
        TryOpen();
    } else {
      wake_.Wait(-1);
    }
  }
  device_->Close();
}

void DeviceThread::TryOpen() {
  try {
    const OutputDevice::Opened opened = device_->Open(ring_);
    rate_.store(opened.rate, std::memory_order_release);
    opening_.fetch_add(1, std::memory_order_acq_rel);
    notices_.Put("sound device: " + opened.name, toldLost_);
    toldLost_ = false;
    SetState(State::kRunning);
  } catch (const std::exception& error) {  // RtAudio and the thread it makes throw their own
    if (!toldLost_) {
      notices_.Put(std::string(error.what()) +
                       ": the air goes on unheard, the device is tried again every second",
                   true);
    }
    toldLost_ = true;
    SetState(State::kLost);
  }
}

void DeviceThread::Leave() {
  wake_.Wait(kLingerMs);
  if (wanted_.load(std::memory_order_acquire)) return;
  SetState(State::kClosed);
  device_->Close();
  toldLost_ = false;
}

void DeviceThread::SetState(State state) {
  state_.store(state, std::memory_order_release);
  mixer_.Signal();
}

}  // namespace zemo
