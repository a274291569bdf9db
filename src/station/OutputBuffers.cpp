#include "station/OutputBuffers.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace zemo {

namespace {
constexpr int64_t kBytesASecond = 2048 * 100;
constexpr int64_t kMostSeconds = 10;
}  // namespace

double BufferSeconds(int64_t bytes, int64_t buffers) {
  return static_cast<double>(bytes) * static_cast<double>(buffers) / kBytesASecond;
}

int64_t MostBuffers(int64_t bytes) {
  if (bytes <= 0) return std::numeric_limits<int16_t>::max();
  return std::max<int64_t>(1, kMostSeconds * kBytesASecond / bytes);
}

std::string WhyTooManyBuffers(int64_t bytes, int64_t buffers) {
  const int64_t most = MostBuffers(bytes);
  if (buffers <= most) return {};
  char text[160];
  std::snprintf(
      text, sizeof text, "%lld buffers of %lld bytes are %g s: %lld s is the most (%lld buffers)",
      static_cast<long long>(buffers), static_cast<long long>(bytes), BufferSeconds(bytes, buffers),
      static_cast<long long>(kMostSeconds), static_cast<long long>(most));
  return text;
}

}  // namespace zemo
