// The output ring: 16-bit stereo frames between the mixer's thread and whatever plays them, a
// device's callback or a clock. What drains it only copies: no lock, no allocation, no system call.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/SoundSource.h"

namespace zemo {

class OutputRing {
 public:
  static constexpr int kGlideFrames = 441;  // 10 ms: to silence when cut, from it in the middle

  // --- Mixer's thread ---
  // Empties the ring and gives it another size and rate (frames a second). Draining meanwhile
  // yields silence; what was played counts on.
  void Reset(int capacityFrames, int rate);
  int CapacityFrames() const { return capacity_; }
  int FilledFrames() const;
  int FreeFrames() const { return capacity_ - FilledFrames(); }
  void Write(const int16_t* stereo, int frames);  // at most FreeFrames
  // From now on the ring's frames flow, counted from 0 in PlayedFrames under this run's number.
  void Begin(uint16_t run);
  void SetDeviceDrains(bool device) { deviceDrains_.store(device, std::memory_order_release); }
  // The next frames that a device drains rise from silence: it takes over in the middle.
  void RiseNext() { rises_.store(true, std::memory_order_release); }

  // --- Any thread ---
  void End();  // what still waits is given up, but for a glide to silence
  bool Flows() const { return flows_.load(std::memory_order_acquire); }
  // Frames of the air, at kSampleRate, that were drained; 0 unless that is the run begun last.
  int64_t PlayedFrames(uint16_t run) const;
  // Those of them that were the ring's own, and not silence in an underrun.
  int64_t GivenFrames(uint16_t run) const;
  uint64_t Underruns() const { return underruns_.load(std::memory_order_relaxed); }
  // Frames that the device has asked for, whatever it was given.
  bool DeviceDrains() const { return deviceDrains_.load(std::memory_order_acquire); }
  uint64_t AskedByDevice() const { return askedByDevice_.load(std::memory_order_acquire); }

  // --- The one that drains (DeviceCallback.cpp) ---
  // Fills `stereo` with `frames` frames, silence where the ring has none. Returns those of the
  // ring.
  int Drain(int16_t* stereo, int frames);
  // The same for a device; silence while the mixer lets a clock drain.
  int DrainForDevice(int16_t* stereo, int frames);
  // The device says that it had run out of frames between two of its calls: an underrun.
  void NoteDry();

 private:
  int64_t AtSampleRate(int64_t frames) const;
  int Copy(int16_t* stereo, int frames);
  int Glide(int16_t* stereo, int frames);
  static void Rise(int16_t* stereo, int frames);

  // Of played_: the run's number above, frames below.
  static constexpr int kRunShift = 48;
  static constexpr uint64_t kFramesMask = (uint64_t{1} << kRunShift) - 1;

  std::unique_ptr<int16_t[]> items_;  // changed only while taken_ is held
  int capacity_ = 0;                  // frames; as items_
  std::atomic<uint64_t> written_{0};  // frames ever written
  std::atomic<uint64_t> read_{0};     // frames ever read
  // Held by who drains, for the time of the copy, or by Reset. Who drains never waits for it.
  std::atomic<bool> taken_{false};
  std::atomic<bool> flows_{false};
  std::atomic<bool> deviceDrains_{false};
  std::atomic<bool> rises_{false};
  bool flowed_ = false;  // while taken_ is held: the last drain was of a flowing ring
  std::atomic<uint64_t> played_{0};
  std::atomic<int64_t> missed_{0};  // of the played frames of the run begun last
  std::atomic<int> rate_{kSampleRate};
  std::atomic<uint64_t> underruns_{0};
  std::atomic<uint64_t> askedByDevice_{0};
};

inline constexpr unsigned int kDeviceRanDry = 2;  // of RtAudio's status
// RtAudio's callback; `ring` is the OutputRing. Never stops the stream by itself.
int DeviceCallback(void* output, void* input, unsigned int frames, double streamTime,
                   unsigned int status, void* ring);

}  // namespace zemo
