// The player by which a file is heard on the second output before it goes on air. It has nothing in
// common with the sound chain of the air, and neither waits for the other.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace zemo {

// Thread: the logic's. Answers at once; the sound runs on threads of its own (real) or with the
// virtual clock (simulated).
class Prelisten {
 public:
  enum class State { kClosed, kOpen, kPlaying, kPaused };

  virtual ~Prelisten() = default;

  // Output by its number in the machine's list of devices, from 0; -1, as at first, for none, which
  // refuses. Taken while the player is closed only.
  virtual void SetDevice(int number) = 0;
  virtual int Device() const = 0;

  // Opens the file (a path of this system) at its begin; what was open is closed first. Throws
  // SoundError, and is closed then.
  virtual void Open(const std::string& path) = 0;
  // Plays from where it stands; nothing while it plays or is closed. Throws SoundError when the
  // output refuses at once, and stays as it is then. An output that takes its time is heard from
  // the same place on when it begins; when it does not, that is told by OnEnd.
  virtual void Start() = 0;
  virtual void Pause() = 0;    // nothing unless it plays
  virtual void Restart() = 0;  // on from the pause; nothing unless it is paused
  virtual void Stop() = 0;     // open, at the begin
  virtual void Close() = 0;

  // A second file, which comes in over the open one, as titles meet on air.
  struct Following {
    std::string path;                 // of this system
    int32_t atMs = 0;                 // of the open file, at the latest its end, where it begins
    std::optional<int32_t> fadeMs{};  // in which the open one is silent then; none: it plays on
    double openGain = 1, gain = 1;    // of the open file and of this one
  };
  // Taken while a file is open and does not play, and kept over pauses until Stop, Close or Open.
  // Where the second file begins, to some hundredths of a second, the player goes over to it:
  // FileName, LengthMs, PositionMs and the end are its own from there on. Throws SoundError for one
  // that cannot be opened: nothing follows then. One that is gone when it should begin is left out.
  virtual void Follow(const Following& following) = 0;

  virtual State PlayerState() const = 0;
  virtual const std::string& FileName() const = 0;  // empty while closed
  virtual int32_t LengthMs() const = 0;             // 0 while closed
  virtual int32_t PositionMs() const = 0;           // of what is heard
  virtual void SetPositionMs(int32_t ms) = 0;       // clamped to the file
  // Highest level heard of late, 0 to 1, left and right.
  struct Levels {
    float left = 0, right = 0;
  };
  virtual Levels HeardLevels() const = 0;

  // Called from the event loop when the file was heard to its end; it is open at its begin then.
  // Also when the output was lost or did not begin, with `lost`.
  virtual void OnEnd(std::function<void(bool lost)> ended) = 0;
};

}  // namespace zemo
