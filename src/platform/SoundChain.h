// The audio chain of the air: three player slots, each on the mixer channel of its number, then the
// output ring and the device. Slots 0 and 1 carry the on-air elements in turn, slot 2 the overlays.
// Everything here is called on the logic's thread and answers at once; the sound itself runs on
// threads of its own behind the implementation (real) or with the virtual clock (simulated).
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace zemo {

inline constexpr int kSlots = 3;
inline constexpr int kOverlaySlot = 2;
inline constexpr int kUnityVolume = 16384;  // factor 1.0; 0 is silence, 32768 doubles
inline constexpr double kMostGain = 100;    // 40 dB

// Why a slot that sounded fell silent.
enum class SlotEnd {
  kFile,     // the file was played to its end
  kFade,     // its fade reached silence
  kStopped,  // silenced, freed, or the output closed under it
  kRestart,  // the output was restarted for CycleMax
};

// State of the output device. kClosed and kOpen both count as "not started".
enum class OutputState { kClosed, kOpen, kStarted };

// Hears of what happens in the chain. Called on the logic's thread, never from inside a sound
// thread.
class SoundObserver {
 public:
  virtual ~SoundObserver() = default;
  virtual void OnSlotEnd(int slot, SlotEnd reason) = 0;
  virtual void OnFade(int slot, int ms) = 0;
  virtual void OnVolume(int slot, int from, int to) = 0;  // only while the slot sounds
  virtual void OnOutput(const char* state) = 0;           // "open", "start", "stop", "close"
};

class SoundChain {
 public:
  virtual ~SoundChain() = default;

  virtual void SetObserver(SoundObserver* observer) = 0;  // not owned; may be null

  // --- AudioFile(slot) ---
  // Opens the file in the slot, at position 0, with the channel silent until it is started; the
  // empty text frees the slot. What sounded there ends (kStopped, or the reason given). Throws
  // SoundError; the slot is then free.
  virtual void SetFileName(int slot, const std::string& path,
                           SlotEnd reason = SlotEnd::kStopped) = 0;
  virtual const std::string& FileName(int slot) const = 0;
  virtual int32_t Position(int slot) const = 0;  // ms read; 0 for a free slot
  virtual void SetPosition(int slot, int32_t ms) = 0;
  virtual int32_t Length(int slot) const = 0;  // ms; 0 for a free slot
  virtual int Volume(int slot) const = 0;
  virtual void SetVolume(int slot, int volume) = 0;  // kUnityVolume is 1.0; clamped to 0..32768
  // The level of the file itself, a factor ahead of the volume, which stays as it is: 1.0 with each
  // SetFileName, which leaves every sample as it is in the file. Counts from the slot's next start
  // on, so that nothing that sounds jumps. Clamped to 0..kMostGain.
  virtual double Gain(int slot) const = 0;
  virtual void SetGain(int slot, double gain) = 0;
  // Fades the slot to silence over `ms`, asynchronously; the channel is done at the end of the
  // fade. A fade asked while one runs keeps the earlier end (and is told only if its own is the
  // earlier); 0 ms or less ends the slot at once. Nothing on a slot that does not sound.
  virtual void FadeOut(int slot, int ms) = 0;

  // --- Mixer ---
  // True when the channel has nothing to play. A channel written false without a file stays false
  // until the output runs (at Start it is done).
  virtual bool ChannelDone(int slot) const = 0;
  // false starts the channel's file where it stands, at once or when the output starts; true
  // silences it. A file that stands at its end has nothing to play and stays done.
  virtual void SetChannelDone(int slot, bool done, SlotEnd reason = SlotEnd::kStopped) = 0;
  virtual int32_t ChannelPosition(int slot) const = 0;  // ms of the file that are in the mix
  virtual bool Sounds(int slot) const = 0;  // started, with a file, not done, and the output runs
  bool ElementSounds() const { return Sounds(0) || Sounds(1); }  // the overlay's slot is no element
  virtual int32_t CycleMax() const = 0;  // ms of output run time before a restart
  virtual void SetCycleMax(int32_t ms) = 0;
  virtual void SetPaused(bool paused) = 0;

  // --- Rings, NumBuffers x BufferSize bytes of 16-bit stereo: how far decoding runs ahead, and the
  // output ring between mixer and device, which takes its size at the next start ---
  virtual void SetRing(int bufferSizeBytes, int numBuffers) = 0;
  virtual void SetOutputBuffers(int bufferSizeBytes, int numBuffers) = 0;
  virtual int OutputBufferSize() const = 0;  // bytes
  virtual int OutputNumBuffers() const = 0;

  // --- WaveOut ---
  virtual void Open() = 0;   // does nothing when open
  virtual void Start() = 0;  // opens if needed
  virtual void Stop() = 0;
  virtual void Close() = 0;
  virtual OutputState State() const = 0;
  virtual int32_t OutputPosition() const = 0;  // ms since Start; 0 while not started
};

}  // namespace zemo
