// An element as its waveform, with what has been played filled, and its introduction and exit point
// drawn; a plain bar as long as the shape is not known.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <memory>

#include "platform/Waveforms.h"

namespace zemo {

class WaveformView : public QWidget {
 public:
  explicit WaveformView(QWidget* parent = nullptr);

  struct Element {
    int32_t lengthMs = 0, positionMs = 0, introMs = 0, exitMs = 0;  // exit: ms before the end
    QColor colour;
    bool operator==(const Element&) const = default;
  };
  // Redraws only what differs by a pixel.
  void Show(const Element& element, int percent, std::shared_ptr<const WavePeaks> peaks);

  // As drawn last, in pixels from the left; -1 where there is none. For whoever tests or reads it.
  int PlayedX() const { return playedX_; }
  int IntroX() const { return introX_; }
  int ExitX() const { return exitX_; }
  bool HasShape() const { return peaks_ && !peaks_->empty(); }

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  int XOf(int64_t ms) const;
  void Place();
  void DrawShape();

  Element element_;
  int percent_ = 0;
  std::shared_ptr<const WavePeaks> peaks_;
  QPixmap rest_, played_;  // the shape in both colours
  int playedX_ = -1, introX_ = -1, exitX_ = -1;
};

}  // namespace zemo
