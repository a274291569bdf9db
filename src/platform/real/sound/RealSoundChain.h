// A sound chain that is heard, the air's or the prelisten's: decoders, mixer and output run on
// threads of their own; this is the logic's end of them. What the logic writes it reads back at
// once; what happens by itself (the end of a file or a fade) it sees from the next Poll on.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/DeviceThread.h"
#include "platform/real/sound/MixerOrder.h"
#include "platform/real/sound/OutputSpec.h"
#include "platform/sound/SoundChainBase.h"

namespace zemo {

class AirSink;
class DecodedStream;
class MixerThread;

// How the sound fares, for a health line.
struct SoundHealth {
  std::string output;  // what plays, in words
  bool heard = false;  // the output reaches a device or a file
  bool device = true;  // its way is a device, not a file or nowhere
  // Times the output found too little to play, or its file was too slow to take it; since the
  // beginning.
  uint64_t underruns = 0;
  uint64_t lateFrames = 0;  // frames of silence for late decoders, since the beginning
  uint64_t losses = 0;      // times that the device was lost while it played; the same
  uint64_t lostFrames = 0;  // frames that a slow file could not take and has as silence; the same
  float peakLeft = 0.0f;  // since the last question, 0 while a device is not heard; full scale 1.0
  float peakRight = 0.0f;
};

// Gets one line whenever the operator should hear of the output. Called on the logic's thread.
using SoundNotice = std::function<void(const std::string& line)>;

// Thread: the logic's.
class RealSoundChain final : public SoundChainBase {
 public:
  // `device` or `sink` (at most one) takes the sound; with neither a clock does. `told`: the
  // operator knows already that there is no device now.
  RealSoundChain(SoundOpener& opener, WishedDevice device, std::unique_ptr<AirSink> sink,
                 std::string outputText, SoundNotice notice, bool told = false,
                 Unheard unheard = Unheard::kGoesOn);
  ~RealSoundChain() override;

  // Ahead of whatever looks at it, and at least some times a second: tells the observer what ended
  // and the operator what happened to the output. True: again within 20 ms.
  bool Poll();
  SoundHealth TakeHealth();
  // Its mixing goes ahead of every ordinary thread of the machine from now on: a priority of real
  // time, above 0. False where the system refuses, which the operator is told.
  bool TakePriority(int priority);
  // Another device, from the next opening of the output on; nothing where the output is none.
  void ChooseDevice(const std::string& key);
  void ChooseDevice(WishedDevice device);
  DeviceThread::State DeviceState() const;  // kClosed without one
  // Of the sound, since the output's start: what its device was given, and how long that takes to
  // be heard there.
  int32_t GivenMs() const;
  int32_t DelayMs() const;
  // Closed, and no thread of it has anything left to do: it can go without waiting for any.
  bool Rests() const;
  // The sound ends for good: what its sink has not taken yet it gets, and silence up to
  // `sinkFrames` of the air in all; what fails is told.
  void End(int64_t sinkFrames = 0);
  int64_t SinkFrames() const;  // of the air, given to the sink so far; 0 without one

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
  void OpenOutput() override;
  void StartOutput() override;
  void StopOutput() override;
  void CloseOutput() override;
  int64_t PlayedFrames() const override;

 private:
  struct Player {
    std::string path;
    std::unique_ptr<SoundSource> source;    // opened, not yet played
    std::unique_ptr<DecodedStream> stream;  // of the last start
    uint32_t generation = 0;
    int64_t startFrame = 0;         // of the last start, until the mixer has taken it up
    mutable int64_t readFrame = 0;  // of the last start: the farthest that was told
  };

  bool MakeStream(int slot, int64_t frame);
  bool SendStream(MixerOrder::Kind kind, int slot, int64_t frame);
  void RetireStream(int slot);
  void ReapStreams();
  void Send(const MixerOrder& order);
  void SendWaiting();
  void TellEnds();
  void TellOutput();
  void TellLosses(std::chrono::seconds every);
  void Tell(const std::string& line);

  SoundOpener& opener_;
  SoundNotice notice_;
  std::string outputText_;
  std::unique_ptr<MixerThread> mixer_;
  std::array<Player, kSlots> players_;
  std::vector<std::unique_ptr<DecodedStream>> retired_;  // until mixer and decoder have let go
  std::deque<MixerOrder> waiting_;                       // orders that found no room
  uint16_t run_ = 0;
  uint64_t toldLost_ = 0;  // of the sink's lost frames
  std::chrono::steady_clock::time_point toldLostAt_;
};

// The chain for a choice of output. Without any sound device the air goes on by the clock until
// there is one, and the notice says so. Throws SoundError when the file cannot be made.
std::unique_ptr<RealSoundChain> MakeRealSoundChain(SoundOpener& opener, const OutputSpec& wanted,
                                                   SoundNotice notice);

}  // namespace zemo
