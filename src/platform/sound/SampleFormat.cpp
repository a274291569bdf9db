// Peaks, scrubbing and 16-bit output. Vector instructions where the processor's base set has them,
// the same result sample by sample elsewhere.
#include "platform/sound/SampleFormat.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zemo {
namespace {

constexpr float kInt16Scale = 32768.0f;
constexpr float kInt16Max = 32767.0f;
constexpr float kInt16Min = -32768.0f;

int16_t ToInt16(float sample) {
  const float scaled = std::clamp(sample * kInt16Scale, kInt16Min, kInt16Max);
  return static_cast<int16_t>(std::lrintf(scaled));
}

}  // namespace

uint32_t PeakBits(const float* samples, int count) {
  constexpr int32_t kNoSign = 0x7fffffff;
  int32_t peak =
      0;  // signed on purpose: without the sign bit it orders alike and vectorises better
  for (int i = 0; i < count; ++i) {
    int32_t bits;
    std::memcpy(&bits, samples + i, sizeof bits);
    peak = std::max(peak, bits & kNoSign);
  }
  return static_cast<uint32_t>(peak);
}

void Scrub(float* samples, int count, float limit) {
  for (int i = 0; i < count; ++i) {
    samples[i] = std::isnan(samples[i]) ? 0.0f : std::clamp(samples[i], -limit, limit);
  }
}

void FloatToInt16(const float* samples, int16_t* out, int count) {
  int i = 0;
#if defined(__SSE2__)
  const __m128 scale = _mm_set1_ps(kInt16Scale);
  const __m128 top = _mm_set1_ps(kInt16Max);  // packing saturates too, but not beyond 32 bits
  const __m128 bottom = _mm_set1_ps(kInt16Min);
  for (; i + 8 <= count; i += 8) {
    const __m128 low = _mm_mul_ps(_mm_loadu_ps(samples + i), scale);
    const __m128 high = _mm_mul_ps(_mm_loadu_ps(samples + i + 4), scale);
    const __m128i lowInts = _mm_cvtps_epi32(_mm_max_ps(_mm_min_ps(low, top), bottom));
    const __m128i highInts = _mm_cvtps_epi32(_mm_max_ps(_mm_min_ps(high, top), bottom));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packs_epi32(lowInts, highInts));
  }
#endif
  for (; i < count; ++i) out[i] = ToInt16(samples[i]);
}

}  // namespace zemo
