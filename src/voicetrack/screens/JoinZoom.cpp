#include "voicetrack/screens/JoinZoom.h"

#include <algorithm>

namespace zemo {

namespace {

constexpr int kMostSteps = 6;  // of half a minute half a second

}  // namespace

int64_t JoinZoom::LengthOf(const Span& whole) const {
  return std::max<int64_t>(1, (int64_t{whole.toMs} - whole.fromMs) >> step_);
}

JoinZoom::Span JoinZoom::Of(const Span& whole) const {
  if (step_ == 0) return whole;
  const int64_t length = LengthOf(whole);
  const auto from = static_cast<int32_t>(std::clamp<int64_t>(
      fromMs_, whole.fromMs, std::max<int64_t>(whole.fromMs, whole.toMs - length)));
  return {from, static_cast<int32_t>(from + length)};
}

void JoinZoom::By(int steps, int32_t aroundMs, const Span& whole) {
  const Span before = Of(whole);
  const int64_t lengthBefore = int64_t{before.toMs} - before.fromMs;
  step_ = std::clamp(step_ + steps, 0, kMostSteps);
  const int64_t ahead =
      (int64_t{aroundMs} - before.fromMs) * LengthOf(whole) / std::max<int64_t>(1, lengthBefore);
  fromMs_ = static_cast<int32_t>(aroundMs - ahead);
}

void JoinZoom::Scroll(int32_t ms, const Span& whole) {
  fromMs_ = Of(whole).fromMs + ms;
}

void JoinZoom::Reveal(int32_t ms, const Span& whole) {
  const Span now = Of(whole);
  if (ms >= now.fromMs && ms < now.toMs) return;
  fromMs_ = static_cast<int32_t>(ms - LengthOf(whole) / 8);
}

}  // namespace zemo
