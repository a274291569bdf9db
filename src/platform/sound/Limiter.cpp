// The limiter's two ways: a plain delay while nothing is loud, block by block otherwise.
#include "platform/sound/Limiter.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

#include "platform/sound/SampleFormat.h"

namespace zemo {
namespace {

constexpr double kCeiling = 0.99998;  // of what has to be brought down; leaves room for rounding
constexpr float kScrubLimit = 32.0f;  // far above what three slots at double volume can add up to
constexpr int kHoldBlocks = 28;  // 20 ms: the gain stands still between the peaks of a bass note
constexpr double kReleasePerBlock = 0.0024;  // of what is missing to 1, a block: 300 ms
constexpr double kReleased = 0.9999;         // near enough to 1 to be 1

const uint32_t kFullScaleBits = std::bit_cast<uint32_t>(1.0f);
const uint32_t kScrubBits = std::bit_cast<uint32_t>(kScrubLimit);

}  // namespace

Limiter::Limiter() {
  line_.fill(0.0f);
  needed_.fill(1.0);
  envelope_.fill(1.0);
}

void Limiter::Process(float* out, int frames) {
  assert(frames >= 0 && frames <= kMaxFrames);
  uint32_t peak = PeakBits(Input(), 2 * frames);
  if (peak > kScrubBits) {
    Scrub(Input(), 2 * frames, kScrubLimit);
    peak = PeakBits(Input(), 2 * frames);
  }
  if (Idle() && peak <= kFullScaleBits && blockPeak_ <= kFullScaleBits) {
    std::memcpy(out, line_.data(), sizeof(float) * 2 * static_cast<size_t>(frames));
    PassThrough(frames);
  } else {
    for (int done = 0; done < frames;) {
      const int span = std::min(frames - done, kBlockFrames - blockFill_);
      ProcessSpan(out + 2 * done, done, span);
      done += span;
    }
  }
  std::memmove(line_.data(), line_.data() + 2 * frames, sizeof(float) * 2 * kLatencyFrames);
}

// Moves the block count on as if the blocks had gone through one by one: all of them need no gain.
void Limiter::PassThrough(int frames) {
  const int filled = blockFill_ + frames;
  slot_ = (slot_ + filled / kBlockFrames) % kWindowBlocks;
  blockFill_ = filled % kBlockFrames;
  blockPeak_ = 0;
}

// `offset` is the first frame of the span in this call; the span stays within one block.
void Limiter::ProcessSpan(float* out, int offset, int frames) {
  blockPeak_ = std::max(blockPeak_, PeakBits(Input() + 2 * offset, 2 * frames));
  const float* delayed = line_.data() + 2 * offset;
  if (gainBefore_ == 1.0 && gainAfter_ == 1.0) {
    std::memcpy(out, delayed, sizeof(float) * 2 * static_cast<size_t>(frames));
  } else {
    const auto step = static_cast<float>((gainAfter_ - gainBefore_) / kBlockFrames);
    const auto first = static_cast<float>(gainBefore_);
    for (int i = 0; i < frames; ++i) {
      const float gain = first + step * static_cast<float>(blockFill_ + i);
      out[2 * i] = delayed[2 * i] * gain;
      out[2 * i + 1] = delayed[2 * i + 1] * gain;
    }
  }
  blockFill_ += frames;
  if (blockFill_ == kBlockFrames) FinishBlock();
}

void Limiter::FinishBlock() {
  const double peak = std::bit_cast<float>(blockPeak_);
  needed_[slot_] = blockPeak_ > kFullScaleBits ? kCeiling / peak : 1.0;
  const double before = envelope_[(slot_ + kWindowBlocks - 1) % kWindowBlocks];
  const double least = *std::min_element(needed_.begin(), needed_.end());
  double next = before;
  if (least <= before) {
    next = least;
    holdBlocks_ = kHoldBlocks;
  } else if (holdBlocks_ > 0) {
    --holdBlocks_;
  } else {
    next = before + (1.0 - before) * kReleasePerBlock;
    if (next > kReleased) next = 1.0;
    next = std::min(next, least);
  }
  envelope_[slot_] = next;
  idleBlocks_ = next == 1.0 ? std::min(idleBlocks_ + 1, kWindowBlocks + 1) : 0;

  // The window of the gain ends with this block: the oldest of the eight, next to go, is left out.
  const int oldest = (slot_ + 1) % kWindowBlocks;
  double sum = 0.0;
  for (int i = 0; i < kWindowBlocks; ++i) {
    if (i != oldest) sum += envelope_[i];
  }
  gainBefore_ = gainAfter_;
  gainAfter_ = sum / (kWindowBlocks - 1);
  slot_ = oldest;
  blockFill_ = 0;
  blockPeak_ = 0;
}

}  // namespace zemo
