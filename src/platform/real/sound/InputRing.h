// The ring between an input device's callback and the thread that records: interleaved 16-bit
// samples, one or two channels. What fills it only copies: no lock, no allocation, no system call.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/SoundSource.h"
#include "platform/real/sound/SpscRing.h"

namespace zemo {

class InputRing {
 public:
  static constexpr int kMostSeconds = 10;  // of stereo at kSampleRate, that a disk may rest

  // While no device calls. Empties the ring for another device of so many channels, 1 or 2.
  void Reset(int channels) {
    samples_.Skip(samples_.Filled());
    channels_ = channels;
    received_.store(0, std::memory_order_relaxed);
    lost_.store(0, std::memory_order_relaxed);
  }
  int Channels() const { return channels_; }

  // --- Device's callback (DeviceCallback.cpp) ---
  // Null: so many frames of silence.
  void Take(const int16_t* samples, int frames);

  // --- The thread that records ---
  int Filled() const { return static_cast<int>(samples_.Filled()) / channels_; }  // frames
  int Read(int16_t* samples, int frames) {
    const uint64_t wanted = static_cast<uint64_t>(frames) * static_cast<uint64_t>(channels_);
    return static_cast<int>(samples_.Read(samples, wanted)) / channels_;
  }

  // --- Any thread: frames since the reset ---
  int64_t Received() const { return received_.load(std::memory_order_acquire); }  // into the ring
  int64_t Lost() const { return lost_.load(std::memory_order_acquire); }  // that it had no room for

 private:
  SpscRing<int16_t> samples_{uint64_t{kMostSeconds} * kSampleRate * kChannels};
  int channels_ = kChannels;
  std::atomic<int64_t> received_{0};
  std::atomic<int64_t> lost_{0};
};

// RtAudio's callback of an input; `ring` is the InputRing. Never stops the stream by itself.
int InputCallback(void* output, void* input, unsigned int frames, double streamTime,
                  unsigned int status, void* ring);

}  // namespace zemo
