#include "platform/real/sound/SinkThread.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace zemo {

SinkThread::SinkThread(std::unique_ptr<AirSink> sink)
    : name_(sink->Name()),
      ring_(static_cast<uint64_t>(sink->AheadFrames()) * kChannels),
      sink_(std::move(sink)),
      block_(static_cast<size_t>(kBlockFrames) * kChannels) {
  thread_ = std::thread([this] { Run(); });
}

SinkThread::~SinkThread() {
  End();
}

void SinkThread::Take(const int16_t* stereo, int frames) {
  if (frames <= 0) return;
  given_.fetch_add(frames, std::memory_order_relaxed);
  if (!Takes()) return;
  const uint64_t samples = static_cast<uint64_t>(frames) * kChannels;
  const uint64_t free = ring_.Free();
  const bool fits = missing_ == 0 ? free >= samples : free >= ring_.Capacity() / 2;
  // The gap is told before the frames behind it: who sees them sees it.
  if (!fits || (missing_ > 0 && !gaps_.Push({taken_, missing_}))) {
    if (missing_ == 0) gapsBegun_.fetch_add(1, std::memory_order_relaxed);
    missing_ += static_cast<uint64_t>(frames);
    lostFrames_.fetch_add(static_cast<uint64_t>(frames), std::memory_order_relaxed);
    return;
  }
  missing_ = 0;
  ring_.Write(stereo, samples);
  taken_ += static_cast<uint64_t>(frames);
  wake_.Signal();
}

void SinkThread::End(int64_t frames) {
  if (!thread_.joinable()) return;
  if (frames > Frames()) missing_ += static_cast<uint64_t>(frames - Frames());
  if (missing_ > 0) gaps_.Push({taken_, missing_});
  ended_.store(true, std::memory_order_release);
  wake_.Signal();
  thread_.join();
}

void SinkThread::Run() {
  try {
    for (bool ended = false; !ended;) {
      ended = ended_.load(std::memory_order_acquire);
      while (HandOver()) {
      }
      if (!ended) wake_.Wait(-1);
    }
    sink_->Close();
  } catch (const std::exception& error) {
    takes_.store(false, std::memory_order_release);
    notices_.Put(error.what(), true);
  }
  sink_.reset();
}

// Gives the sink a block, or the gap that is next. False when nothing waits.
bool SinkThread::HandOver() {
  uint64_t frames = ring_.Filled() / kChannels;  // before the gaps are looked at
  if (Gap gap; !gap_.has_value() && gaps_.Pop(gap)) gap_ = gap;
  if (gap_.has_value() && gap_->at == handed_) {
    sink_->WriteLost(static_cast<int64_t>(std::exchange(gap_, std::nullopt)->frames));
    return true;
  }
  frames = std::min<uint64_t>(frames, kBlockFrames);
  if (gap_.has_value()) frames = std::min(frames, gap_->at - handed_);
  if (frames == 0) return false;
  ring_.Read(block_.data(), frames * kChannels);
  handed_ += frames;
  sink_->Write(block_.data(), static_cast<int>(frames));
  return true;
}

}  // namespace zemo
