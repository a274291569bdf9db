// Look-ahead limiter on the sum of the slots. Whatever stays within full scale passes bit for bit;
// before a louder moment the level glides down in time, holds, and comes back slowly.
//
// The gain is worked out once per block of 32 frames and runs in a straight line over each block.
// For block b, R[b] is the gain that brings its peak to the ceiling (1 when it needs none), E[b]
// the least R of blocks b-7..b with hold and release, and the gain at the border before block j is
// G[j] = mean of E[j..j+6]. Each of these seven windows holds blocks j-1 and j, so that G[j] is at
// most R[j-1] and R[j], and a line from G[j] to G[j+1] never exceeds R[j]: no sample leaves full
// scale.
#pragma once

#include <array>
#include <cstdint>

namespace zemo {

// Stereo frames in, the same number out, kLatencyFrames later. Never allocates. One thread at a
// time.
class Limiter {
 public:
  static constexpr int kBlockFrames = 32;
  static constexpr int kWindowBlocks = 8;  // blocks that one loud block holds down
  static constexpr int kLatencyFrames = kBlockFrames * kWindowBlocks;  // 256, 5.8 ms
  static constexpr int kMaxFrames = 2304;                              // of one Process call

  Limiter();

  // Where the caller puts the next frames (room for kMaxFrames) before calling Process.
  float* Input() { return line_.data() + 2 * kLatencyFrames; }

  // Takes `frames` from Input() and writes as many, from kLatencyFrames before, to `out`.
  void Process(float* out, int frames);

  bool Idle() const { return idleBlocks_ > kWindowBlocks; }  // gain 1 and nothing loud in sight
  float Gain() const {
    return static_cast<float>(gainAfter_);
  }  // at the end of the block going out

 private:
  void PassThrough(int frames);
  void ProcessSpan(float* out, int offset, int frames);
  void FinishBlock();

  // kLatencyFrames that wait, then the frames of the running call.
  std::array<float, 2 * (kLatencyFrames + kMaxFrames)> line_;
  std::array<double, kWindowBlocks> needed_;    // R of the last eight blocks, by block number mod 8
  std::array<double, kWindowBlocks> envelope_;  // E of the same
  int slot_ = 0;                                // block number mod 8 of the block coming in
  int blockFill_ = 0;                           // frames of it already in
  uint32_t blockPeak_ = 0;                      // its peak so far, as PeakBits gives it
  int holdBlocks_ = 0;                          // blocks before the release begins
  int idleBlocks_ =
      kWindowBlocks + 1;     // blocks since anything was above full scale or below gain 1
  double gainBefore_ = 1.0;  // G at the beginning of the block going out
  double gainAfter_ = 1.0;   // G at its end
};

}  // namespace zemo
