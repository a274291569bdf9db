#include "platform/real/sound/RealRecorder.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "platform/real/sound/RecordingThread.h"

namespace zemo {
namespace {

// That an end is waited for: with words in the file, and with none, where the input may still be
// opened.
constexpr std::chrono::milliseconds kEndOfWords{5000}, kEndOfNothing{300};
constexpr std::chrono::seconds kInputParting{2};
constexpr std::chrono::milliseconds kInputPartingTurn{1};

int64_t NowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

RealRecorder::RealRecorder(EventLoop& loop, InputOfNumber inputOf)
    : loop_(loop), inputOf_(std::move(inputOf)) {}

RealRecorder::~RealRecorder() {
  if (thread_ == nullptr) return;
  thread_->Quit();
  const auto until = std::chrono::steady_clock::now() + kInputParting;
  while (!thread_->Gone() && std::chrono::steady_clock::now() < until)
    std::this_thread::sleep_for(kInputPartingTurn);
  // One that hangs in its sound system is left to itself: it shares nothing with anybody.
  if (!thread_->Gone()) std::thread([gone = std::move(thread_)] {}).detach();
}

void RealRecorder::Use(int device) {
  WishedInput wished = device < 0 ? WishedInput() : inputOf_(device);
  if (wished.identity == input_) return;
  if (thread_ == nullptr) thread_ = std::make_unique<RecordingThread>();
  input_ = wished.identity;
  sinceMs_ = NowMs();
  thread_->Use(std::move(wished));
}

void RealRecorder::Listen(int device) {
  if (!Recording() && !ending_) Use(device);
}

void RealRecorder::Start(int device, Folder& folder, const std::string& name) {
  if (ending_) throw SoundError("the recording before has not ended yet");
  Stop();
  if (device < 0) throw SoundError("no sound input is chosen");
  Use(device);
  recording_ = thread_->Record(folder.PathOf(name));
  sinceMs_ = NowMs();
}

// The station goes on meanwhile.
void RealRecorder::Stop() {
  const uint32_t ending = std::exchange(recording_, 0);
  if (ending == 0) return;
  thread_->End();
  ending_ = true;
  const auto begin = std::chrono::steady_clock::now();
  const auto patience = [this] {
    return thread_->RecordedFrames() > 0 ? kEndOfWords : kEndOfNothing;
  };
  while (thread_->Ended() != ending && std::chrono::steady_clock::now() - begin < patience())
    loop_.WaitYield();
  ending_ = false;
}

int64_t RealRecorder::RecordedMs() const {
  return thread_ == nullptr ? 0 : FramesToMs(thread_->RecordedFrames());
}

int64_t RealRecorder::SilentMs() const {
  if (input_.empty()) return 0;
  return std::max<int64_t>(0, NowMs() - std::max(sinceMs_, thread_->HeardAtMs()));
}

Recorder::Levels RealRecorder::HeardLevels() {
  if (thread_ == nullptr) return {};
  const auto peaks = thread_->TakePeaks();
  return {peaks[0], peaks[1]};
}

bool RealRecorder::Poll() {
  if (recording_ == 0) return false;
  if (thread_->Ended() != recording_) return true;
  loop_.Post([this, which = std::exchange(recording_, 0), alive = std::weak_ptr<int>(alive_)] {
    if (alive.expired() || Recording() || thread_->Ended() != which) return;
    // What it does may set another one.
    if (const auto ended = ended_; ended) ended(thread_->Reason());
  });
  return false;
}

}  // namespace zemo
