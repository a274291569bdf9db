// The bookkeeping of the sound chain that real and simulated air share: file names, volumes, done
// flags, the state of the output, and what the observer is told. What makes the sound stands below
// it, behind the protected operations. Thread: the logic's, throughout.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "platform/SoundChain.h"
#include "platform/SoundSource.h"

namespace zemo {

class SoundChainBase : public SoundChain {
 public:
  explicit SoundChainBase(SoundOpener& opener);  // not owned

  void SetObserver(SoundObserver* observer) final { observer_ = observer; }

  void SetFileName(int slot, const std::string& path, SlotEnd reason = SlotEnd::kStopped) final;
  const std::string& FileName(int slot) const final { return slots_[slot].file; }
  int32_t Position(int slot) const final;
  void SetPosition(int slot, int32_t ms) final;
  int32_t Length(int slot) const final;
  int Volume(int slot) const final { return slots_[slot].volume; }
  void SetVolume(int slot, int volume) final;
  double Gain(int slot) const final { return slots_[slot].gain; }
  void SetGain(int slot, double gain) final;
  void FadeOut(int slot, int ms) final;

  bool ChannelDone(int slot) const final;
  void SetChannelDone(int slot, bool done, SlotEnd reason = SlotEnd::kStopped) final;
  int32_t ChannelPosition(int slot) const final { return Position(slot); }
  bool Sounds(int slot) const final { return slots_[slot].state == SlotState::kSounding; }
  int32_t CycleMax() const final { return cycleMaxMs_; }
  void SetCycleMax(int32_t ms) final { cycleMaxMs_ = ms; }
  void SetPaused(bool paused) final;

  void SetRing(int bufferSizeBytes, int numBuffers) final;
  void SetOutputBuffers(int bufferSizeBytes, int numBuffers) final;
  int OutputBufferSize() const final { return outputBufferBytes_; }
  int OutputNumBuffers() const final { return outputBuffers_; }

  void Open() final;
  void Start() final;
  void Stop() final;
  void Close() final;
  OutputState State() const final { return output_; }
  int32_t OutputPosition() const final;

 protected:
  // --- What makes the sound. Frames count in the file, at kSampleRate ---
  virtual void LoadSlot(int slot, const std::string& path, std::unique_ptr<SoundSource> source) = 0;
  virtual void FreeSlot(int slot) = 0;  // its source goes; it does not sound any more
  // The slot sounds from `frame` on, below its length, at its Gain. False: its file cannot be read
  // any more.
  virtual bool StartSlot(int slot, int64_t frame) = 0;
  virtual void SilenceSlot(int slot) = 0;  // a sounding slot stops
  virtual bool SeekSlot(int slot,
                        int64_t frame) = 0;  // a sounding slot goes on at `frame`; as StartSlot
  virtual void FadeSlot(int slot, int64_t frames) = 0;  // a sounding slot; 0 is silence now
  virtual void VolumeSlot(int slot, int volume) = 0;
  virtual int64_t ReadFrames(int slot) const = 0;  // position of a sounding slot
  virtual void PauseMixer(bool paused) = 0;
  virtual void OpenOutput() = 0;
  virtual void StartOutput() = 0;  // after StartSlot of what waited for it
  virtual void StopOutput() = 0;   // after SilenceSlot of what sounded
  virtual void CloseOutput() = 0;
  virtual int64_t PlayedFrames() const = 0;  // since the output was started

  // For the implementation: a sounding slot fell silent by itself (kFile, kFade).
  void SlotEnded(int slot, SlotEnd reason);

  int RingBytes() const { return ringBytes_; }  // of SetRing, all buffers

 private:
  // What a slot is, and what moves it:
  //
  //   state      file  done   file set  "" set  done=false      done=true  output starts  output
  //   stops kFree      no    true   kReady    -       kAsked/-(1)     -          -              -
  //   kAsked     no    false  kReady    -       -               kFree      kFree          -
  //   kReady     yes   true   kReady    kFree   kWaiting/kSounding(2)  -   -              -
  //   kWaiting   yes   false  kReady    kFree   -               kReady     kSounding      -
  //   kSounding  yes   false  kReady*   kFree*  -               kReady*    (cannot be)    kReady*
  //   kEnded     yes   true   kReady    kFree   -               -          -              -
  //
  //   (1) kAsked while the output is not started, nothing while it runs.  (2) kWaiting while the
  //   output is not started.  * OnSlotEnd with kStopped or the reason given.
  // A sounding slot comes to kEnded at the end of its file (kFile), to kReady at the end of its
  // fade (kFade). SetPosition to the end of the file makes kReady and kWaiting kEnded; to anywhere
  // else it makes kEnded kReady.
  enum class SlotState { kFree, kAsked, kReady, kWaiting, kSounding, kEnded };

  struct Slot {
    SlotState state = SlotState::kFree;
    std::string file;
    int64_t lengthFrames = 0;
    int64_t frame = 0;         // position while it does not sound
    int64_t fadeEndFrame = 0;  // position at which the running fade ends; 0: none runs
    int volume = kUnityVolume;
    double gain = 1.0;  // of its file
  };

  int64_t FrameOf(int slot) const;
  void BeginSounding(int slot);
  void EndSounding(int slot, SlotEnd reason);
  void StandAt(int slot, int64_t frame);
  void TellEnd(int slot, SlotEnd reason);
  void TellOutput(const char* state);

  SoundOpener& opener_;
  SoundObserver* observer_ = nullptr;
  std::array<Slot, kSlots> slots_;
  OutputState output_ = OutputState::kClosed;
  bool paused_ = false;
  int32_t cycleMaxMs_ = 0;
  int ringBytes_;
  int outputBufferBytes_;
  int outputBuffers_;
};

}  // namespace zemo
