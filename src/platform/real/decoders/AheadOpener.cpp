#include "platform/real/decoders/AheadOpener.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace zemo {
namespace {

// 2.8 MB, of which a sounding file has two. Shorter ones cost more: behind a seek the decoder
// begins a dozen of its frames earlier, 0.3 s.
constexpr int kPartFrames = 8 * kSampleRate;
constexpr int kOverlapFrames = 1152;  // decoded by both, and compared
constexpr int kStepFrames = 4608;     // between two looks at whether it is to end

// One of the two: decodes every other part of the file, and then waits until its part was read.
class Lane {
 public:
  // The source is not owned, and the lane's until it ends; `frame` is where its first part begins,
  // `there` that the source stands there.
  Lane(SoundSource& source, int64_t frame, bool there, int partFrames)
      : source_(source), partFrames_(partFrames), frame_(frame), seeks_(!there) {
    part_ = std::make_unique_for_overwrite<float[]>(
        2 * static_cast<size_t>(partFrames + kOverlapFrames));
    thread_ = std::thread([this] { Run(); });
  }
  ~Lane() { End(); }
  Lane(const Lane&) = delete;
  Lane& operator=(const Lane&) = delete;

  void Await() {  // until the part is there
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return ready_; });
  }
  // Until so much of it is there as overlaps the part before; its frames by then.
  int AwaitBegin() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return begun_ || ready_; });
    return begunFrames_;
  }
  // Of the part that was waited for; the overlap lies behind its frames.
  const float* Samples() const { return part_.get(); }
  int Frames() const { return frames_; }
  std::exception_ptr Fault() const { return fault_; }  // that ended it, null without one

  void Next() {  // the part was read
    {
      const std::lock_guard lock(mutex_);
      ready_ = begun_ = false;
    }
    changed_.notify_all();
  }
  void End() {
    if (!thread_.joinable()) return;
    {
      const std::lock_guard lock(mutex_);
      quit_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }

 private:
  void Run() {
    while (Wanted()) {
      try {
        DecodePart();
      } catch (...) {
        fault_ = std::current_exception();  // the part ends there
        TellBegin();
      }
      {
        const std::lock_guard lock(mutex_);
        ready_ = true;
      }
      changed_.notify_all();
    }
  }

  bool Wanted() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return quit_ || !ready_; });
    return !quit_;
  }
  bool Quits() {
    const std::lock_guard lock(mutex_);
    return quit_;
  }

  void DecodePart() {
    frames_ = 0;
    if (std::exchange(seeks_, true)) source_.Seek(frame_);
    frame_ += 2 * int64_t{partFrames_};
    const int wanted = partFrames_ + kOverlapFrames;
    while (frames_ < wanted && !Quits()) {
      const int given = source_.Read(part_.get() + 2 * static_cast<size_t>(frames_),
                                     std::min(kStepFrames, wanted - frames_));
      if (given <= 0) break;
      frames_ += given;
      TellBegin();
    }
    TellBegin();
  }

  void TellBegin() {
    {
      const std::lock_guard lock(mutex_);
      if (begun_) return;
      begun_ = true;
      begunFrames_ = frames_;
    }
    changed_.notify_all();
  }

  SoundSource& source_;
  const int partFrames_;
  int64_t frame_;
  bool seeks_;
  std::unique_ptr<float[]> part_;
  int frames_ = 0;  // of part_, the overlap included
  std::exception_ptr fault_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool ready_ = false;  // the part is there, and not read
  bool begun_ = false;  // so are its first frames
  int begunFrames_ = 0;
  bool quit_ = false;
  std::thread thread_;  // last: it uses all the others
};

class AheadSource final : public SoundSource {
 public:
  AheadSource(std::unique_ptr<SoundSource> source, int partFrames)
      : sources_{std::move(source)}, partFrames_(partFrames) {}

  int64_t LengthFrames() const override { return sources_[0]->LengthFrames(); }

  void Seek(int64_t frame) override {
    EndLanes();
    alone_ = nullptr;
    fault_ = nullptr;
    left_.clear();
    sources_[0]->Seek(frame);
    frame_ = std::clamp<int64_t>(frame, 0, LengthFrames());
  }

  int Read(float* stereo, int frames) override {
    if (alone_ == nullptr && lanes_[0] == nullptr) BeginLanes();
    int given = 0;
    while (alone_ == nullptr && given < frames) {
      const Lane& lane = *lanes_[lane_];
      const int count = std::min(frames - given, std::min(lane.Frames(), partFrames_) - at_);
      std::memcpy(stereo + 2 * static_cast<size_t>(given),
                  lane.Samples() + 2 * static_cast<size_t>(at_),
                  sizeof(float) * 2 * static_cast<size_t>(count));
      given += count;
      at_ += count;
      if (given < frames) GoOn();
    }
    if (given == frames || (given > 0 && fault_ != nullptr)) return given;
    return given + ReadAlone(stereo + 2 * static_cast<size_t>(given), frames - given);
  }

 private:
  void BeginLanes() {
    try {
      if (sources_[1] == nullptr) sources_[1] = sources_[0]->Twin();
    } catch (const SoundError&) {
      // It can be read as ever.
    }
    if (sources_[1] == nullptr) {
      alone_ = sources_[0].get();
      return;
    }
    std::array<std::unique_ptr<Lane>, 2> lanes;  // both, or none
    for (size_t i = lanes.size(); i-- > 0;)      // the one that moves its source from here is last
      lanes[i] = std::make_unique<Lane>(
          *sources_[i], frame_ + static_cast<int64_t>(i) * partFrames_, i == 0, partFrames_);
    lanes_ = std::move(lanes);
    lane_ = 0;
    at_ = 0;
    lanes_[0]->Await();
  }

  void EndLanes() {
    for (auto& lane : lanes_) lane.reset();
  }

  // From the part that was read to the next one, if it goes on there.
  void GoOn() {
    Lane& before = *lanes_[lane_];
    const int overlap = before.Frames() - at_;
    Lane& next = *lanes_[1 - lane_];
    const bool same = overlap > 0 && next.AwaitBegin() >= overlap &&
                      std::memcmp(before.Samples() + 2 * static_cast<size_t>(at_), next.Samples(),
                                  sizeof(float) * 2 * static_cast<size_t>(overlap)) == 0;
    if (!same) return GoOnAlone();
    before.Next();  // ahead of the waiting, so that both are at work
    lane_ = 1 - lane_;
    at_ = 0;
    next.Await();
  }

  // What lies in the overlap is still to be given.
  void GoOnAlone() {
    Lane& lane = *lanes_[lane_];
    lane.End();
    left_.assign(lane.Samples() + 2 * static_cast<size_t>(at_),
                 lane.Samples() + 2 * static_cast<size_t>(lane.Frames()));
    alone_ = sources_[lane_].get();
    fault_ = lane.Fault();
    EndLanes();
  }

  int ReadAlone(float* stereo, int frames) {
    const size_t samples = std::min(left_.size(), 2 * static_cast<size_t>(frames));
    std::copy_n(left_.begin(), samples, stereo);
    left_.erase(left_.begin(), left_.begin() + static_cast<long>(samples));
    const int given = static_cast<int>(samples / 2);
    if (given == frames || (given > 0 && fault_ != nullptr)) return given;
    if (fault_ != nullptr) std::rethrow_exception(std::exchange(fault_, nullptr));
    return given + alone_->Read(stereo + samples, frames - given);
  }

  std::array<std::unique_ptr<SoundSource>, 2> sources_;  // it and, once it was read, its twin
  const int partFrames_;
  int64_t frame_ = 0;                           // where it was made to stand
  std::array<std::unique_ptr<Lane>, 2> lanes_;  // from the first Read behind a Seek on
  size_t lane_ = 0;                             // that is read
  int at_ = 0;                                  // frames of its part that were
  SoundSource* alone_ = nullptr;                // that reads the rest
  std::vector<float> left_;                     // ahead of that
  std::exception_ptr fault_;                    // behind left_, ahead of alone_
};

}  // namespace

std::unique_ptr<SoundSource> DecodeAhead(std::unique_ptr<SoundSource> source, int partFrames) {
  return std::make_unique<AheadSource>(std::move(source), partFrames);
}

std::unique_ptr<SoundSource> AheadOpener::Open(const std::string& path) {
  return DecodeAhead(opener_->Open(path), kPartFrames);
}

}  // namespace zemo
