// The waveform of a title with its marks: draws SoundMarkers, and hands on what mouse and keys do.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <memory>

#include "library/SoundMarkers.h"
#include "platform/Waveforms.h"

namespace zemo {

class MarkerView : public QWidget {
 public:
  // What is drawn outlives it.
  explicit MarkerView(const SoundMarkers& markers, QWidget* parent = nullptr);

  // Shapes as far as they are known: of the whole sound, and the last part that was read.
  struct Shapes {
    std::shared_ptr<const WavePeaks> whole;
    std::shared_ptr<const WavePart> part;
    bool operator==(const Shapes&) const = default;
  };
  // `heardMs` below 0: nothing is heard. Redraws only what is another.
  void Show(const Shapes& shapes, int32_t heardMs, const QString& note);

  int HeardX() const;  // as drawn last, in pixels; -1 for none
  QSize sizeHint() const override { return {0, maximumHeight()}; }
  bool ShowsPart() const;  // the shape is that of the part in view

  // --- by the operator; x in pixels ---
  std::function<void(int x)> pressed, dragged;
  std::function<void()> released;
  std::function<void(int steps, int x)> zoomed;
  std::function<void(int pixels)> scrolled;
  std::function<bool(const QKeyEvent& key)> typed;  // true: it was an order

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // All that a picture depends on.
  struct Drawn {
    int64_t lengthFrames = 0, fromFrame = 0, toFrame = 0;
    int32_t cursorMs = 0, heardMs = -1;
    Mark chosen = Mark::kNone;
    SoundMarks marks;
    MeasuredMarks measured;
    Shapes shapes;
    QString note;
    bool operator==(const Drawn&) const = default;
  };
  void DrawShape();
  void PaintExtract(QPainter& painter);
  void PaintMeasured(QPainter& painter);
  void PaintMark(QPainter& painter, Mark mark);
  int X(int32_t ms) const;

  const SoundMarkers& markers_;
  Drawn drawn_;
  QPixmap shape_;
  QSize shapeSize_;
  int wheel_ = 0;  // of a step, in eighths of a degree
};

}  // namespace zemo
