// The recorder on the virtual clock: silence, mono, as long as virtual time ran.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/Recorder.h"

namespace zemo {

class Clock;
class EventLoop;
class LoopTimer;

// Thread: the logic's, which is the only one.
class SimRecorder final : public Recorder {
 public:
  static constexpr int kInputs = 4;  // that the simulated machine has, from 0; others refuse

  SimRecorder(EventLoop& loop, const Clock& clock);  // not owned
  ~SimRecorder() override;                           // writes what was being recorded

  void Listen(int device) override;
  void Start(int device, Folder& folder, const std::string& name) override;
  void Stop() override;
  bool Recording() const override { return folder_ != nullptr; }
  int64_t RecordedMs() const override;
  bool HasFile() const override { return !name_.empty(); }
  int64_t SilentMs() const override;
  Levels HeardLevels() override { return {}; }
  void OnEnd(std::function<void(const std::string& reason)> ended) override {
    ended_ = std::move(ended);
  }

  // The device goes, in the middle of a recording.
  void Lose();
  int Listening() const { return listening_; }  // -1: to none
  bool gives = true;                            // sound, as far as SilentMs tells

 private:
  void WriteUpToNow(Folder& folder);
  void EndFor(const std::string& reason);

  const Clock& clock_;
  std::unique_ptr<LoopTimer> writing_;  // enabled while it records
  std::function<void(const std::string& reason)> ended_;
  Folder* folder_ = nullptr;  // of the recording that runs; null: none does
  std::string name_;
  int listening_ = -1;
  int64_t sinceMs_ = 0;     // monotonic: the input's opening or the recording's begin
  int64_t begunMs_ = 0;     // monotonic
  int64_t frames_ = 0;      // in the file
  int64_t recordedMs_ = 0;  // of the last one
};

}  // namespace zemo
