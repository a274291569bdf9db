// The shape of a sound as every screen draws it.
#pragma once

#include <QPixmap>

#include "platform/Waveforms.h"

namespace zemo {

// Peaks of a sound of that length, in units of the caller's, and which of it is drawn.
struct ShapeSpan {
  int64_t length = 1, from = 0, to = 1;
};

// Null for peaks or a size of which nothing can be seen.
QPixmap DrawnShape(const QSize& size, const WavePeaks& peaks, const ShapeSpan& span,
                   const QColor& colour);

}  // namespace zemo
