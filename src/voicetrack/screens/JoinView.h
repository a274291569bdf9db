// The join as a picture: the element before, the track and the element after on one time line, with
// exit point, intro, fades and ducking; and what mouse and keys do in it.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/Waveforms.h"
#include "voicetrack/JoinPlan.h"

class QPainter;

namespace zemo {

class JoinView : public QWidget {
 public:
  explicit JoinView(QWidget* parent = nullptr);

  enum Lane : size_t { kBefore, kTrack, kAfter, kLanes };
  // A part of a sound file and where it is drawn.
  struct Sound {
    QString title;
    int32_t lengthMs = 0;  // of the file; 0: there is none
    std::shared_ptr<const WavePeaks> whole;
    std::shared_ptr<const WavePart> part;  // takes the place of the whole where it is that in view
    bool operator==(const Sound&) const = default;
  };
  // ms of the time line but where it says otherwise.
  struct Picture {
    JoinPlan plan;
    std::array<Sound, kLanes> sounds;
    QString intro, exit;           // the words at their marks
    int32_t fromMs = 0, toMs = 1;  // what is in view
    int32_t lastMs = 1;            // the end of all that there is to see
    int32_t cursorMs = 0;
    int32_t heardMs = -1;  // below 0: nothing is heard
    bool recording = false;
    double duckedShare = 1;  // of the music's level, below the track
    bool operator==(const Picture&) const = default;
  };
  void Show(Picture picture);  // redraws only what is another
  const Picture& Shown() const { return drawn_; }

  int XOf(int32_t ms) const;
  int32_t MsOf(int x) const;
  QRect TrackRect() const;  // of the track as drawn last; empty for none
  bool Dragging() const { return dragging_; }
  // The part of a file of that lane that is in view, ms of the file; empty (0, 0) for none.
  struct FilePart {
    int32_t fromMs = 0, toMs = 0;
  };
  FilePart PartInView(Lane lane) const;
  double GainAt(Lane lane, int32_t ms) const;  // of its own level, 0 to 1

  // --- by the operator ---
  std::function<void(int32_t ms)> trackMoved;               // to that place
  std::function<void(int32_t ms)> trackStepped;             // by as much
  std::function<void(int32_t ms)> cursorMoved;              // to that place
  std::function<void(int steps, int32_t aroundMs)> zoomed;  // closer, below 0 away
  std::function<void(int32_t ms)> scrolled;                 // by as much
  std::function<void()> dragEnded, playPressed, home;

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Span {
    int32_t fromMs = 0, toMs = 0;
  };
  Span SpanOf(Lane lane) const;
  QRect LaneRect(Lane lane) const;
  int RulerHeight() const;
  void DrawShapes();
  void DrawShape(QPainter& painter, Lane lane);
  void PaintRuler(QPainter& painter);
  void PaintMarks(QPainter& painter);
  void PaintTitles(QPainter& painter);
  void PaintFlag(QPainter& painter, int x, Lane lane, const QColor& colour, const QString& text);
  bool TakesTrack(const QPoint& point) const;
  void MoveCursor(int32_t ms);

  Picture drawn_;
  QPixmap shapes_;
  bool dragging_ = false;
  int grabbedMs_ = 0;       // of the track, where the mouse holds it
  int wheelRemainder_ = 0;  // of a notch of the wheel; finer ones tell parts of it
};

}  // namespace zemo
