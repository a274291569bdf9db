// One sounding of a file: its decoder runs ahead on a thread of its own into a ring from which the
// mixer reads. A decoder that is late costs silence, counted, and never makes anybody wait.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

#include "platform/SoundSource.h"
#include "platform/real/sound/SpscRing.h"
#include "platform/real/sound/WakeUp.h"

namespace zemo {

// Made and destroyed on the logic's thread, which destroys it only once DecoderStopped and
// ReleasedByMixer; earlier, the destructor waits for the decoder.
class DecodedStream final : public SoundSource {
 public:
  // Decodes the first frames from `frame` on before it returns, so that a start is never late.
  // Throws what the source throws. `lateFrames` counts on, not owned.
  DecodedStream(std::unique_ptr<SoundSource> source, int64_t frame, int aheadFrames,
                std::atomic<uint64_t>& lateFrames);
  ~DecodedStream() override;

  // --- Logic's thread ---
  void StartDecoder();  // once, before the mixer is given the stream
  void Retire();        // the decoder stops as soon as it can
  bool DecoderStopped() const { return stopped_.load(std::memory_order_acquire); }
  bool DecoderFailed() const { return failed_.load(std::memory_order_acquire); }
  void GiveToMixer() { released_.store(false, std::memory_order_release); }
  bool ReleasedByMixer() const { return released_.load(std::memory_order_acquire); }

  // --- Mixer's thread ---
  int64_t LengthFrames() const override { return lengthFrames_; }
  // As many frames as asked, silence for those that are late (when they come they are passed over,
  // so that the air keeps its time); fewer only at the end of what can be decoded.
  int Read(float* stereo, int frames) override;
  void Seek(int64_t) override {}  // stands where it was made to begin
  // Until what was decoded is used up and nothing follows; INT64_MAX while the decoder is at work.
  int64_t FramesToDrySource() const;
  int64_t AvailableFrames() const;  // to be read without being late; INT64_MAX with all decoded
  void ReleaseByMixer() { released_.store(true, std::memory_order_release); }

 private:
  bool DecodeBlock();
  void RunDecoder();
  int Take(float* stereo, int frames);
  void AskForMore();

  std::unique_ptr<SoundSource> source_;  // the decoder's, from StartDecoder on
  const int64_t lengthFrames_;
  SpscRing<float> ring_;            // decoder to mixer, interleaved
  std::unique_ptr<float[]> block_;  // the decoder's
  std::atomic<uint64_t>& lateFrames_;
  int64_t owedFrames_ = 0;             // mixer's: late frames that silence stood for
  std::atomic<bool> finished_{false};  // the decoder will write no more
  std::atomic<bool> wanted_{false};    // the mixer has asked for more since the decoder last looked
  std::atomic<bool> retired_{false};
  std::atomic<bool> stopped_{true};
  std::atomic<bool> failed_{false};
  std::atomic<bool> released_{true};
  WakeUp wake_;
  std::thread decoder_;
};

}  // namespace zemo
