#include "platform/sim/SimRecorder.h"

#include <exception>
#include <utility>

#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "platform/SoundSource.h"
#include "platform/WavHeader.h"

namespace zemo {

namespace {

constexpr int kMono = 1;
constexpr int kWritingMs = 200;  // what a loss of power costs at most

}  // namespace

SimRecorder::SimRecorder(EventLoop& loop, const Clock& clock)
    : clock_(clock), writing_(loop.MakeTimer(kWritingMs, [this] {
        try {
          WriteUpToNow(*folder_);
        } catch (const FileError& error) {
          EndFor(error.what());
        }
      })) {}

SimRecorder::~SimRecorder() {
  try {
    Stop();
  } catch (const std::exception&) {
    // nobody is left to tell
  }
}

void SimRecorder::Listen(int device) {
  if (Recording() || device == listening_) return;
  listening_ = device;
  sinceMs_ = clock_.MonotonicMs();
}

int64_t SimRecorder::SilentMs() const {
  return gives || listening_ < 0 ? 0 : clock_.MonotonicMs() - sinceMs_;
}

void SimRecorder::Start(int device, Folder& folder, const std::string& name) {
  Stop();
  if (device < 0 || device >= kInputs)
    throw SoundError("input " + std::to_string(device) + " does not open");
  folder.Write(name, WavHeader(kMono, 0));
  folder_ = &folder;
  name_ = name;
  listening_ = device;
  begunMs_ = sinceMs_ = clock_.MonotonicMs();
  frames_ = 0;
  writing_->SetEnabled(true);
}

int64_t SimRecorder::RecordedMs() const {
  return Recording() ? clock_.MonotonicMs() - begunMs_ : recordedMs_;
}

void SimRecorder::WriteUpToNow(Folder& folder) {
  const int64_t frames = MsToFrames(RecordedMs());
  folder.Append(name_, std::string(static_cast<size_t>(frames - frames_) * kWavSampleBytes, '\0'));
  folder.PutBytes(name_, 0, WavHeader(kMono, frames));
  frames_ = frames;
}

void SimRecorder::Stop() {
  if (!Recording()) return;
  recordedMs_ = RecordedMs();
  writing_->SetEnabled(false);
  WriteUpToNow(*std::exchange(folder_, nullptr));
}

void SimRecorder::Lose() {
  if (!Recording()) return;
  Stop();
  EndFor("the input was lost");
}

void SimRecorder::EndFor(const std::string& reason) {
  if (Recording()) recordedMs_ = FramesToMs(frames_);
  writing_->SetEnabled(false);
  folder_ = nullptr;
  // What it does may set another one.
  if (const auto ended = ended_; ended) ended(reason);
}

}  // namespace zemo
