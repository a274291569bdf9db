#include "ui/WaveShape.h"

#include <QPainter>
#include <algorithm>

#include "ui/Theme.h"

namespace zemo {

QPixmap DrawnShape(const QSize& size, const WavePeaks& peaks, const ShapeSpan& span,
                   const QColor& colour) {
  const int width = size.width();
  if (peaks.empty() || width < 1 || size.height() < 4 || span.length < 1) return {};
  QPixmap map(size);
  map.fill(Theme::kPanel);
  QPainter painter(&map);
  const int middle = size.height() / 2;
  const auto count = static_cast<int64_t>(peaks.size());
  // The peak in which the left edge of a pixel lies.
  const auto peakAt = [&](int x) {
    const int64_t place = span.from * width + x * (span.to - span.from);
    const auto peak = static_cast<int64_t>(static_cast<double>(place) * static_cast<double>(count) /
                                           (static_cast<double>(span.length) * width));
    return std::clamp<int64_t>(peak, 0, count);
  };
  for (int x = 0; x < width; ++x) {
    const int64_t first = std::min(peakAt(x), count - 1);
    const int64_t last = std::clamp(peakAt(x + 1), first + 1, count);
    const int peak = *std::max_element(peaks.begin() + first, peaks.begin() + last);
    const int half = std::max(1, peak * (middle - 1) / 255);
    painter.fillRect(x, middle - half, 1, 2 * half, colour);
  }
  return map;
}

}  // namespace zemo
