#include "library/screens/MarkerView.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cstdlib>

#include "ui/Theme.h"
#include "ui/WaveShape.h"

namespace zemo {

namespace {

constexpr int kWheelStep = 120;    // eighths of a degree
constexpr int kScrollPixels = 60;  // for a step of the wheel
constexpr int kFlag = 14;          // of a mark's letter
constexpr int kExtractAlpha = 48, kMeasuredAlpha = 190;

struct MarkLook {
  Mark mark;
  const char* letter;
  const QColor& colour;
  bool flagLeft;  // of its line
};

const MarkLook kLooks[] = {{Mark::kExtractBegin, "B", Theme::kNote, false},
                           {Mark::kExtractEnd, "E", Theme::kNote, true},
                           {Mark::kIntro, "I", Theme::kVoiceTrack, true},
                           {Mark::kExit, "O", Theme::kExit, false}};

const MarkLook& LookOf(Mark mark) {
  for (const MarkLook& look : kLooks)
    if (look.mark == mark) return look;
  return kLooks[0];
}

}  // namespace

MarkerView::MarkerView(const SoundMarkers& markers, QWidget* parent)
    : QWidget(parent), markers_(markers) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
}

void MarkerView::Show(const Shapes& shapes, int32_t heardMs, const QString& note) {
  Drawn now{markers_.lengthFrames,
            markers_.fromFrame,
            markers_.toFrame,
            markers_.cursorMs,
            heardMs,
            markers_.chosen,
            markers_.marks,
            markers_.measured,
            shapes,
            note};
  if (now == drawn_ && shapeSize_ == size()) return;
  const bool newShape = now.shapes != drawn_.shapes || now.lengthFrames != drawn_.lengthFrames ||
                        now.fromFrame != drawn_.fromFrame || now.toFrame != drawn_.toFrame ||
                        shapeSize_ != size();
  drawn_ = std::move(now);
  if (newShape) DrawShape();
  update();
}

int MarkerView::X(int32_t ms) const {
  return Markers::XOf(markers_, ms, width());
}

int MarkerView::HeardX() const {
  return drawn_.heardMs < 0 ? -1 : X(drawn_.heardMs);
}

bool MarkerView::ShowsPart() const {
  const WavePart* part = drawn_.shapes.part.get();
  return part && !part->peaks.empty() && part->fromFrame == drawn_.fromFrame &&
         part->toFrame == drawn_.toFrame;
}

void MarkerView::DrawShape() {
  shapeSize_ = size();
  shape_ = QPixmap();
  const QColor colour = Theme::kMusic.darker(130);
  const int64_t from = drawn_.fromFrame, to = drawn_.toFrame;
  if (ShowsPart())
    shape_ = DrawnShape(size(), drawn_.shapes.part->peaks, {to - from, 0, to - from}, colour);
  else if (drawn_.shapes.whole)
    shape_ = DrawnShape(size(), *drawn_.shapes.whole, {drawn_.lengthFrames, from, to}, colour);
}

// --- painting ---

void MarkerView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::kPanel);
  if (!shape_.isNull()) painter.drawPixmap(0, 0, shape_);
  if (drawn_.lengthFrames > 0) {
    PaintExtract(painter);
    PaintMeasured(painter);
    painter.fillRect(X(drawn_.cursorMs), 0, 1, height(), Theme::kFocus);
    for (const MarkLook& look : kLooks) PaintMark(painter, look.mark);
    if (drawn_.chosen != Mark::kNone) PaintMark(painter, drawn_.chosen);  // above the others
    if (HeardX() >= 0) painter.fillRect(HeardX(), 0, 2, height(), Theme::kHeard);
  }
  if (!drawn_.note.isEmpty()) {
    painter.setPen(Theme::kNote);
    painter.drawText(rect().adjusted(6, 0, -6, -3), Qt::AlignLeft | Qt::AlignBottom, drawn_.note);
  }
  painter.setPen(hasFocus() ? Theme::kFocus : Theme::kLine);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MarkerView::PaintExtract(QPainter& painter) {
  const int32_t begin = Markers::PlaceOf(markers_, Mark::kExtractBegin);
  const int32_t end = Markers::PlaceOf(markers_, Mark::kExtractEnd);
  if (begin < 0 || end < 0) return;
  QColor colour = Theme::kNote;
  colour.setAlpha(kExtractAlpha);
  painter.fillRect(QRect(QPoint(X(begin), 0), QPoint(X(end), height())), colour);
}

// What the ear of the measuring proposes, faint, below what the operator set.
void MarkerView::PaintMeasured(QPainter& painter) {
  const MeasuredMarks& measured = markers_.measured;
  const int32_t lengthMs = Markers::LengthMs(markers_);
  QColor faint = Theme::kText;
  faint.setAlpha(kMeasuredAlpha);
  painter.setPen(QPen(faint, 1, Qt::DotLine));
  for (const int32_t ms : {measured.soundBeginMs, measured.soundEndMs})
    if (ms > 0) painter.drawLine(X(ms), 0, X(ms), height());
  if (measured.exitMs <= 0) return;
  const int x = X(lengthMs - measured.exitMs);
  painter.setPen(QPen(faint, 1, Qt::DashLine));
  painter.drawLine(x, height() / 3, x, height());
}

void MarkerView::PaintMark(QPainter& painter, Mark mark) {
  const int32_t place = Markers::PlaceOf(markers_, mark);
  if (place < 0) return;
  const MarkLook& look = LookOf(mark);
  const int x = X(place);
  painter.fillRect(x, 0, 2, height(), look.colour);
  const QRect flag(look.flagLeft ? x - kFlag + 2 : x, 0, kFlag, kFlag);
  painter.fillRect(flag, look.colour);
  if (mark == drawn_.chosen) {
    painter.setPen(QPen(Theme::kFocus, 2));
    painter.drawRect(flag.adjusted(1, 1, -1, -1));
  }
  QFont type = font();
  type.setPixelSize(kFlag - 3);
  type.setBold(true);
  painter.setFont(type);
  painter.setPen(Theme::kGround);
  painter.drawText(flag, Qt::AlignCenter, QString::fromLatin1(look.letter));
}

// --- by the operator ---

void MarkerView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) pressed(static_cast<int>(event->position().x()));
}

void MarkerView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) dragged(static_cast<int>(event->position().x()));
}

void MarkerView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) released();
}

void MarkerView::wheelEvent(QWheelEvent* event) {
  const QPoint turned = event->angleDelta();
  const bool sideways = turned.x() != 0 || event->modifiers() & Qt::ShiftModifier;
  wheel_ += sideways && turned.x() != 0 ? turned.x() : turned.y();
  const int steps = wheel_ / kWheelStep;
  wheel_ -= steps * kWheelStep;
  if (steps != 0 && sideways) scrolled(-steps * kScrollPixels);
  if (steps != 0 && !sideways) zoomed(steps, static_cast<int>(event->position().x()));
  event->accept();
}

void MarkerView::keyPressEvent(QKeyEvent* event) {
  if (!typed(*event)) QWidget::keyPressEvent(event);
}

}  // namespace zemo
