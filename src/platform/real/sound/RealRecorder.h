// The recorder of voice tracks on an input of this machine.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Recorder.h"
#include "platform/real/sound/InputDevice.h"

namespace zemo {

class EventLoop;
class RecordingThread;

// Thread: the logic's. The input has one of its own, made when it is first needed; so has the file.
class RealRecorder final : public Recorder {
 public:
  // The input of a number, asked for at each use; may throw SoundError.
  using InputOfNumber = std::function<WishedInput(int number)>;

  RealRecorder(EventLoop& loop, InputOfNumber inputOf);  // the loop is not owned
  ~RealRecorder() override;  // ends what is recorded; waits 2 s for the device at most

  bool Poll();  // true: again within 20 ms; else whenever the loop wakes

  void Listen(int device) override;
  void Start(int device, Folder& folder, const std::string& name) override;
  void Stop() override;
  bool Recording() const override { return recording_ != 0; }
  int64_t RecordedMs() const override;
  bool HasFile() const override { return RecordedMs() > 0; }
  int64_t SilentMs() const override;
  Levels HeardLevels() override;
  void OnEnd(std::function<void(const std::string& reason)> ended) override {
    ended_ = std::move(ended);
  }

 private:
  void Use(int device);

  EventLoop& loop_;
  const InputOfNumber inputOf_;
  std::function<void(const std::string& reason)> ended_;
  std::unique_ptr<RecordingThread> thread_;
  std::string input_;       // identity of the one that the thread has; empty: none
  uint32_t recording_ = 0;  // number of the one that runs; 0: none does
  bool ending_ = false;     // Stop waits for the end
  int64_t sinceMs_ = 0;     // by the steady clock, when the input or the recording began
  std::shared_ptr<int> alive_ = std::make_shared<int>();  // for what is on its way
};

}  // namespace zemo
