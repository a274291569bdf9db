// The sound chain on the virtual clock: a started slot is read at the speed of that clock, and is
// done at the very instant its file or its fade ends. Nothing is decoded unless a sink wants the
// sound.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/sim/SimMover.h"
#include "platform/sound/MixerCore.h"
#include "platform/sound/SoundChainBase.h"

namespace zemo {

// Thread: the logic's, which is the only one.
class SimSoundChain final : public SoundChainBase, public SimMover {
 public:
  explicit SimSoundChain(SoundOpener& opener);  // not owned
  ~SimSoundChain() override;

  // Gets the frames as they leave the mixer, within -1..1: one for each frame of virtual time from
  // the call on, silence while the output is not started.
  using Sink = std::function<void(const float* stereo, int frames)>;
  void SetSink(Sink sink);
  // Gives the sink the last frames before now, which the limiter still holds. At the end of a
  // render.
  void FlushSink();

  // Moves on to a moment in ms since the beginning of the simulation; never back. What ends on the
  // way is told to the observer in the order of its frames.
  void AdvanceTo(int64_t virtualMs) override;
  // The first ms at which something ends by itself; INT64_MAX for never.
  int64_t NextDueMs() const override;

 protected:
  void LoadSlot(int slot, const std::string& path, std::unique_ptr<SoundSource> source) override;
  void FreeSlot(int slot) override;
  bool StartSlot(int slot, int64_t frame) override;
  void SilenceSlot(int slot) override;
  bool SeekSlot(int slot, int64_t frame) override;
  void FadeSlot(int slot, int64_t frames) override;
  void VolumeSlot(int slot, int volume) override;
  int64_t ReadFrames(int slot) const override;
  void PauseMixer(bool paused) override;
  void OpenOutput() override {}
  void StartOutput() override;
  void StopOutput() override;
  void CloseOutput() override {}
  int64_t PlayedFrames() const override { return frame_ - startFrame_; }

 private:
  void Render(int64_t frames);
  void GiveSink(int frames);

  MixerCore core_;
  std::array<std::unique_ptr<SoundSource>, kSlots> sources_;
  bool started_ = false;
  bool paused_ = false;
  int64_t frame_ = 0;       // now, in frames since the beginning of the simulation
  int64_t startFrame_ = 0;  // of the last start of the output
  Sink sink_;
  int skipFrames_ = 0;        // what the limiter held when the sink came: from before, not given
  std::vector<float> block_;  // rendered frames on their way to the sink
};

}  // namespace zemo
