// The thread that mixes: takes the logic's orders, keeps the output ring full from the mixer core,
// and drains it by the clock where no device does. The logic gives orders through a lock-free ring
// and reads back atomics. It sleeps while the ring is deep enough; an order wakes it, and is taken
// up where the ring ends by then, so that how long it slept is not heard. What the logic reads back
// between two of its turns goes on by the clock.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "platform/real/sound/ClockDrain.h"
#include "platform/real/sound/DecodedStream.h"
#include "platform/real/sound/DeviceThread.h"
#include "platform/real/sound/MixerOrder.h"
#include "platform/real/sound/OutputRing.h"
#include "platform/real/sound/RateConverter.h"
#include "platform/real/sound/SinkThread.h"
#include "platform/real/sound/SpscRing.h"
#include "platform/real/sound/WakeUp.h"
#include "platform/sound/MixerCore.h"

namespace zemo {

class MixerThread {
 public:
  // What became of a slot's start: the frames of its file read so far, and its end.
  struct Status {
    enum class End : uint8_t { kNone, kFile, kFade };
    uint32_t generation = 0;  // of the start that the rest is about, within kGenerations
    End end = End::kNone;
    int64_t frame = 0;
  };
  static constexpr uint32_t kGenerations = 1u << 19;

  // Without a device the clock drains, into the sink if there is one.
  // `told`: that there is no device now is known already.
  MixerThread(WishedDevice device, std::unique_ptr<AirSink> sink, bool told = false,
              Unheard unheard = Unheard::kGoesOn);
  ~MixerThread();

  // --- Logic's thread ---
  bool Send(const MixerOrder& order);  // false: no room now
  bool TakePriority(int priority);     // of real time, above 0; false: the system refuses
  void SetVolume(int slot, int volume);
  Status StatusOf(int slot) const;
  // Frames of the air, at kSampleRate, that were drained; 0 unless that is the run begun last.
  int64_t PlayedFrames(uint16_t run) const;
  OutputRing& Ring() { return ring_; }
  const OutputRing& Ring() const { return ring_; }
  DeviceThread* Device() { return device_.get(); }  // null without a device
  const DeviceThread* Device() const { return device_.get(); }
  SinkThread* Sink() { return sink_.get(); }  // null without a sink
  std::atomic<uint64_t>& LateFrames() { return lateFrames_; }
  // Since the last call; full scale 1.0. While they are asked for several times a second the mixing
  // goes on in steps that short.
  std::array<float, kChannels> TakePeaks();
  // The mixing ends, and the sink gets all of it, with silence up to `sinkFrames`, and is closed.
  void End(int64_t sinkFrames = 0);

 private:
  using Time = SteadyTime;
  enum class Drain { kNone, kClock, kDevice };

  void Run();
  bool TakeOrders();
  void Execute(const MixerOrder& order);
  void StartStream(const MixerOrder& order);
  void ReleaseStream(int slot);
  void RunOutput(const MixerOrder& order);
  void HaltOutput();
  int Turn();
  bool DevicePlays() const;
  void ChooseDrain(Time now);
  void DrainByClock(Time now);
  void WatchDevice(Time now);
  void UseRate(int rate);
  void DrainByDevice(Time now);
  void DrainFrames(int64_t frames);
  bool Fill();
  void RenderChunk(int frames);
  void NotePeaks(const float* stereo, int frames);
  int64_t AvailableFrames() const;
  int FullRingMs() const;
  void Publish();
  int64_t FramesAt(Time time) const;

  static constexpr int kChunkFrames = 1024;
  static constexpr int kOrders = 1024;

  // Shared with the logic.
  OutputRing ring_;
  WakeUp wake_;
  SpscRing<MixerOrder> orders_{kOrders};
  std::array<std::atomic<int>, kSlots> volumes_;
  std::array<std::atomic<uint64_t>, kSlots> statuses_{};  // packed, see MixerThread.cpp
  std::atomic<uint64_t> clockPlayed_{0};                  // the same; 0 while no clock drains
  std::atomic<int64_t> watchedUntil_{0};                  // as FramesAt: of the peaks
  std::array<std::atomic<uint32_t>, kChannels> peaks_{};  // float bits
  std::atomic<uint64_t> lateFrames_{0};
  std::atomic<bool> quit_{false};
  std::unique_ptr<DeviceThread> device_;
  std::unique_ptr<SinkThread> sink_;

  const Unheard unheard_;
  const Time made_ = std::chrono::steady_clock::now();

  // The logic's own.
  int64_t peaksTaken_ = 0;  // when, as FramesAt

  // The mixer's own.
  MixerCore core_{true};
  std::array<DecodedStream*, kSlots> streams_{};
  std::array<Status, kSlots> slots_{};
  std::unique_ptr<RateConverter> converter_;  // null at kSampleRate
  bool running_ = false;
  bool begun_ = false;  // the ring was filled and flows
  bool paused_ = false;
  bool full_ = false;  // the ring was full at the last turn
  uint16_t run_ = 0;
  int capacityFrames_ = 0;  // at kSampleRate
  int rate_ = kSampleRate;  // of the ring
  Drain drain_ = Drain::kNone;
  Time runTime_;           // when the output was started
  Time turned_;            // the last turn
  uint32_t opening_ = 0;   // of the device that drains, or drained last
  uint32_t troubled_ = 0;  // the opening that was seen to play no more
  ClockDrain clock_;
  DeviceWatch watch_;
  std::vector<float> mixed_;
  std::vector<float> converted_;
  std::vector<int16_t> samples_;
  std::thread thread_;  // last: it uses all the others
};

}  // namespace zemo
