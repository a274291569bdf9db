// Decoding ahead: the first frames at once, the rest whenever the ring is half empty.
#include "platform/real/sound/DecodedStream.h"

#include <cstring>
#include <limits>

namespace zemo {
namespace {

constexpr int kBlockFrames = 4608;   // four MPEG frames
constexpr int kFirstFrames = 13824;  // 313 ms, decoded before the stream is handed over

}  // namespace

DecodedStream::DecodedStream(std::unique_ptr<SoundSource> source, int64_t frame, int aheadFrames,
                             std::atomic<uint64_t>& lateFrames)
    : source_(std::move(source)),
      lengthFrames_(source_->LengthFrames()),
      ring_(static_cast<uint64_t>(std::max(aheadFrames, 2 * kFirstFrames)) * kChannels),
      block_(std::make_unique_for_overwrite<float[]>(kBlockFrames * kChannels)),
      lateFrames_(lateFrames) {
  if (frame > 0) source_->Seek(frame);
  while (ring_.Filled() < kFirstFrames * kChannels && DecodeBlock()) {
  }
}

DecodedStream::~DecodedStream() {
  Retire();
  if (decoder_.joinable()) decoder_.join();
}

void DecodedStream::StartDecoder() {
  if (finished_.load(std::memory_order_relaxed)) return;
  stopped_.store(false, std::memory_order_relaxed);
  decoder_ = std::thread([this] { RunDecoder(); });
}

void DecodedStream::Retire() {
  retired_.store(true, std::memory_order_release);
  wake_.Signal();
}

void DecodedStream::RunDecoder() {
  try {
    while (!retired_.load(std::memory_order_acquire) &&
           !finished_.load(std::memory_order_relaxed)) {
      wanted_.store(false, std::memory_order_seq_cst);
      while (!retired_.load(std::memory_order_acquire) && DecodeBlock()) {
      }
      if (!finished_.load(std::memory_order_relaxed)) wake_.Wait(-1);
    }
  } catch (...) {  // whatever it is, the file ends here
    failed_.store(true, std::memory_order_release);
    finished_.store(true, std::memory_order_release);
  }
  stopped_.store(true, std::memory_order_release);
}

// False when there is no room for a block, or nothing left to decode.
bool DecodedStream::DecodeBlock() {
  if (ring_.Free() < kBlockFrames * kChannels) return false;
  const int given = source_->Read(block_.get(), kBlockFrames);
  if (given > 0) ring_.Write(block_.get(), static_cast<uint64_t>(given) * kChannels);
  if (given <= 0) finished_.store(true, std::memory_order_release);
  return given > 0;
}

int64_t DecodedStream::FramesToDrySource() const {
  if (!finished_.load(std::memory_order_acquire)) return std::numeric_limits<int64_t>::max();
  return static_cast<int64_t>(ring_.Filled() / kChannels);
}

int64_t DecodedStream::AvailableFrames() const {
  if (finished_.load(std::memory_order_acquire)) return std::numeric_limits<int64_t>::max();
  return std::max<int64_t>(0, static_cast<int64_t>(ring_.Filled() / kChannels) - owedFrames_);
}

int DecodedStream::Take(float* stereo, int frames) {
  if (owedFrames_ > 0) {
    const uint64_t skipped = ring_.Skip(static_cast<uint64_t>(owedFrames_) * kChannels);
    owedFrames_ -= static_cast<int64_t>(skipped / kChannels);
  }
  return static_cast<int>(ring_.Read(stereo, static_cast<uint64_t>(frames) * kChannels) /
                          kChannels);
}

int DecodedStream::Read(float* stereo, int frames) {
  int given = Take(stereo, frames);
  if (given < frames) {
    // What was written before the end was told may have come since.
    const bool finished = finished_.load(std::memory_order_acquire);
    given += Take(stereo + given * kChannels, frames - given);
    if (given < frames && !finished) {
      const int late = frames - given;
      std::memset(stereo + given * kChannels, 0,
                  sizeof(float) * kChannels * static_cast<size_t>(late));
      owedFrames_ += late;
      lateFrames_.fetch_add(static_cast<uint64_t>(late), std::memory_order_relaxed);
      given = frames;
    }
  }
  AskForMore();
  return given;
}

void DecodedStream::AskForMore() {
  if (ring_.Filled() > ring_.Capacity() / 2 || finished_.load(std::memory_order_relaxed)) return;
  if (!wanted_.exchange(true, std::memory_order_seq_cst)) wake_.Signal();
}

}  // namespace zemo
