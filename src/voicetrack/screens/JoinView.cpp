#include "voicetrack/screens/JoinView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "platform/SoundSource.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int32_t kTrackStepMs = 10, kLongTrackStepMs = 100, kCursorStepMs = 1000;
constexpr int32_t kScrolledShare = 8;  // of what is in view, by a notch of the wheel
constexpr int kLaneGap = 3;
constexpr int kLeastTickPixels = 70;
constexpr int32_t kTicksMs[] = {100,   200,   500,   1000,   2000,  5000,
                                10000, 30000, 60000, 120000, 300000};
constexpr int kOutsideAlpha = 90;  // of what is not heard
constexpr int kIntroAlpha = 110;

QColor ColourOf(JoinView::Lane lane, bool recording) {
  if (lane == JoinView::kTrack) return recording ? Theme::kOnAir : Theme::kVoiceTrack;
  return Theme::kMusic;
}

QString TickText(int32_t ms, bool tenths) {
  const QString text =
      QStringLiteral("%1:%2").arg(ms / 60000).arg(ms / 1000 % 60, 2, 10, QLatin1Char('0'));
  return tenths ? text + QStringLiteral(".%1").arg(ms / 100 % 10) : text;
}

// The highest level of the file between two of its moments, 0 to 255.
int PeakOf(const WavePeaks& peaks, double fromShare, double toShare) {
  if (peaks.empty() || toShare <= 0 || fromShare >= 1) return 0;
  const auto count = static_cast<double>(peaks.size());
  const auto first = static_cast<size_t>(std::clamp(fromShare * count, 0.0, count - 1));
  const auto last = static_cast<size_t>(std::clamp(std::ceil(toShare * count), 1.0, count));
  return *std::max_element(peaks.begin() + static_cast<std::ptrdiff_t>(first),
                           peaks.begin() + static_cast<std::ptrdiff_t>(std::max(last, first + 1)));
}

int PeakBetween(const JoinView::Sound& sound, double fromMs, double toMs) {
  if (sound.part && sound.part->lengthFrames > 0) {
    const auto begin = static_cast<double>(FramesToMs(sound.part->fromFrame));
    const double length = static_cast<double>(FramesToMs(sound.part->toFrame)) - begin;
    return PeakOf(sound.part->peaks, (fromMs - begin) / length, (toMs - begin) / length);
  }
  if (!sound.whole) return 0;
  return PeakOf(*sound.whole, fromMs / sound.lengthMs, toMs / sound.lengthMs);
}

}  // namespace

JoinView::JoinView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

void JoinView::Show(Picture picture) {
  if (picture == drawn_ && !shapes_.isNull()) return;
  Picture moved = drawn_;
  moved.cursorMs = picture.cursorMs;
  moved.heardMs = picture.heardMs;
  const bool newShapes = shapes_.isNull() || picture != moved;
  drawn_ = std::move(picture);
  if (newShapes) DrawShapes();
  update();
}

// --- places ---

int JoinView::XOf(int32_t ms) const {
  const int64_t length = std::max(1, drawn_.toMs - drawn_.fromMs);
  return static_cast<int>((int64_t{ms} - drawn_.fromMs) * width() / length);
}

int32_t JoinView::MsOf(int x) const {
  const int64_t length = std::max(1, drawn_.toMs - drawn_.fromMs);
  return drawn_.fromMs + static_cast<int32_t>(x * length / std::max(1, width()));
}

int JoinView::RulerHeight() const {
  return QFontMetrics(font()).height() + 2;
}

QRect JoinView::LaneRect(Lane lane) const {
  const int top = RulerHeight();
  const int height = (this->height() - top) / static_cast<int>(kLanes);
  return {0, top + static_cast<int>(lane) * height, width(), height - kLaneGap};
}

// Of the sound, up to the end of its file.
JoinView::Span JoinView::SpanOf(Lane lane) const {
  const JoinPlan& plan = drawn_.plan;
  const int32_t length = drawn_.sounds[lane].lengthMs;
  if (length <= 0) return {};
  switch (lane) {
    case kBefore:
      return {0, length};
    case kTrack:
      return plan.hasTrack ? Span{plan.trackFromMs, plan.trackToMs} : Span{};
    default:
      return plan.hasAfter ? Span{plan.afterFromMs, plan.afterFromMs + length} : Span{};
  }
}

QRect JoinView::TrackRect() const {
  const Span span = SpanOf(kTrack);
  if (span.toMs <= span.fromMs) return {};
  const QRect lane = LaneRect(kTrack);
  return {QPoint(XOf(span.fromMs), lane.top()), QPoint(XOf(span.toMs), lane.bottom())};
}

JoinView::FilePart JoinView::PartInView(Lane lane) const {
  const Span span = SpanOf(lane);
  const int32_t from = std::max(span.fromMs, drawn_.fromMs);
  const int32_t to = std::min(span.toMs, drawn_.toMs);
  return to > from ? FilePart{from - span.fromMs, to - span.fromMs} : FilePart{};
}

double JoinView::GainAt(Lane lane, int32_t ms) const {
  const JoinPlan& plan = drawn_.plan;
  if (lane == kTrack) return 1;
  const bool ducked = plan.ducks && ms >= plan.trackFromMs && ms < plan.trackToMs;
  const double level = ducked ? drawn_.duckedShare : 1;
  if (lane == kAfter || ms <= plan.exitMs) return level;
  if (ms >= plan.beforeToMs) return 0;
  return level * (plan.beforeToMs - ms) / (plan.beforeToMs - plan.exitMs);
}

// --- painting ---

void JoinView::DrawShapes() {
  if (width() < 1 || height() < 1) return;
  shapes_ = QPixmap(size());
  shapes_.fill(Theme::kPanel);
  QPainter painter(&shapes_);
  for (const Lane lane : {kBefore, kTrack, kAfter}) DrawShape(painter, lane);
}

// As loud as it is heard; what is not heard any more stands faint behind it.
void JoinView::DrawShape(QPainter& painter, Lane lane) {
  const QRect room = LaneRect(lane);
  painter.fillRect(room, Theme::kGround);
  const Span span = SpanOf(lane);
  const Sound& sound = drawn_.sounds[lane];
  const int first = std::max(0, XOf(span.fromMs)), last = std::min(width(), XOf(span.toMs));
  if (span.toMs <= span.fromMs || last <= first) return;
  const QColor colour = ColourOf(lane, drawn_.recording);
  QColor faint = colour;
  faint.setAlpha(kOutsideAlpha);
  if (lane == kTrack) {
    QColor ground = colour;
    ground.setAlpha(kOutsideAlpha / 2);
    painter.fillRect(QRect(QPoint(first, room.top()), QPoint(last - 1, room.bottom())), ground);
  }
  const double msOfPixel = static_cast<double>(drawn_.toMs - drawn_.fromMs) / width();
  const int middle = room.center().y(), most = room.height() / 2 - 1;
  int levelBefore = -1;
  for (int x = first; x < last; ++x) {
    const double from = drawn_.fromMs + x * msOfPixel - span.fromMs;
    const int peak = PeakBetween(sound, from, from + msOfPixel);
    const double gain = GainAt(lane, MsOf(x));
    const int half = std::max(1, peak * most / 255);
    const int heard = static_cast<int>(half * gain);
    if (heard < half) painter.fillRect(x, middle - half, 1, 2 * half, faint.darker(150));
    if (heard > 0) painter.fillRect(x, middle - heard, 1, 2 * heard, colour.darker(115));
    const int level = middle - static_cast<int>(most * gain);
    if (lane != kTrack) {
      const int top = levelBefore < 0 ? level : std::min(level, levelBefore);
      const int bottom = levelBefore < 0 ? level : std::max(level, levelBefore);
      painter.fillRect(x, top, 1, bottom - top + 1, Theme::kNote);
      levelBefore = level;
    }
  }
}

void JoinView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::kPanel);
  if (!shapes_.isNull()) painter.drawPixmap(0, 0, shapes_);
  PaintRuler(painter);
  PaintMarks(painter);
  PaintTitles(painter);
  painter.fillRect(XOf(drawn_.cursorMs), 0, 1, height(), Theme::kFocus);
  if (drawn_.heardMs >= 0) painter.fillRect(XOf(drawn_.heardMs), 0, 2, height(), Theme::kHeard);
  painter.setPen(hasFocus() ? Theme::kFocus : Theme::kLine);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void JoinView::PaintRuler(QPainter& painter) {
  const double msOfPixel =
      static_cast<double>(std::max(1, drawn_.toMs - drawn_.fromMs)) / std::max(1, width());
  int32_t step = std::end(kTicksMs)[-1];
  for (const int32_t each : kTicksMs)
    if (each >= kLeastTickPixels * msOfPixel) {
      step = each;
      break;
    }
  painter.setPen(Theme::kDim);
  const int height = RulerHeight();
  for (int32_t ms = (drawn_.fromMs + step - 1) / step * step; ms < drawn_.toMs; ms += step) {
    const int x = XOf(ms);
    painter.drawLine(x, height - 4, x, height - 1);
    const QString text = TickText(ms, step < 1000);
    if (x + 3 + painter.fontMetrics().horizontalAdvance(text) > width()) continue;
    painter.drawText(QRect(x + 3, 0, kLeastTickPixels, height), Qt::AlignLeft | Qt::AlignVCenter,
                     text);
  }
}

// A word at the foot of a mark's line, on the side where there is room.
void JoinView::PaintFlag(QPainter& painter, int x, Lane lane, const QColor& colour,
                         const QString& text) {
  const QRect room = LaneRect(lane);
  const int width = painter.fontMetrics().horizontalAdvance(text) + 8;
  const int height = painter.fontMetrics().height();
  const int left = x + width > this->width() ? x - width : x;
  const QRect flag(left, room.bottom() - height, width, height);
  painter.fillRect(flag, colour);
  painter.setPen(Theme::kGround);
  painter.drawText(flag, Qt::AlignCenter, text);
}

void JoinView::PaintMarks(QPainter& painter) {
  const JoinPlan& plan = drawn_.plan;
  const int exit = XOf(plan.exitMs);
  if (drawn_.sounds[kBefore].lengthMs > 0) {
    painter.fillRect(exit, RulerHeight(), 2, height(), Theme::kExit);
    PaintFlag(painter, exit, kBefore, Theme::kExit, drawn_.exit);
  }
  if (!plan.hasAfter) return;
  const QRect after = LaneRect(kAfter);
  const int begin = XOf(plan.afterFromMs);
  painter.fillRect(begin, after.top(), 2, after.height(), Theme::kExit);
  if (plan.introToMs <= plan.afterFromMs) return;
  QColor intro = Theme::kIntro;
  intro.setAlpha(kIntroAlpha);
  const int end = XOf(plan.introToMs);
  painter.fillRect(QRect(QPoint(begin, after.top()), QPoint(end, after.bottom())), intro);
  painter.fillRect(end, LaneRect(kTrack).top(), 2, height(), Theme::kIntro.lighter(170));
  PaintFlag(painter, end, kAfter, Theme::kIntro.lighter(170), drawn_.intro);
}

void JoinView::PaintTitles(QPainter& painter) {
  for (const Lane lane : {kBefore, kTrack, kAfter}) {
    const Span span = SpanOf(lane);
    const QRect room = LaneRect(lane);
    const int x = std::clamp(XOf(span.fromMs), 0, width());
    const int from = span.toMs > span.fromMs ? x : 0;
    const int most = width() - from - 12;
    if (most < 20 || drawn_.sounds[lane].title.isEmpty()) continue;
    const QString text =
        painter.fontMetrics().elidedText(drawn_.sounds[lane].title, Qt::ElideRight, most);
    const QRect label(from + 6, room.top() + 1, painter.fontMetrics().horizontalAdvance(text) + 6,
                      painter.fontMetrics().height());
    QColor ground = Theme::kGround;
    ground.setAlpha(200);
    painter.fillRect(label, ground);
    painter.setPen(span.toMs > span.fromMs ? ColourOf(lane, drawn_.recording) : Theme::kDim);
    painter.drawText(label, Qt::AlignCenter, text);
  }
}

void JoinView::resizeEvent(QResizeEvent*) {
  DrawShapes();
}

// --- by the operator ---

// A track that is an element of its own stands where it stands.
bool JoinView::TakesTrack(const QPoint& point) const {
  return drawn_.plan.ducks && !drawn_.recording && TrackRect().contains(point);
}

void JoinView::MoveCursor(int32_t ms) {
  cursorMoved(std::clamp(ms, 0, std::max(0, drawn_.lastMs)));
}

// Finer wheels and touchpads turn by parts of a notch.
void JoinView::wheelEvent(QWheelEvent* event) {
  const QPoint turned = event->angleDelta();
  const bool aside = std::abs(turned.x()) > std::abs(turned.y());
  wheelRemainder_ += aside ? turned.x() : turned.y();
  const int notches = wheelRemainder_ / QWheelEvent::DefaultDeltasPerStep;
  wheelRemainder_ %= QWheelEvent::DefaultDeltasPerStep;
  event->accept();
  if (notches == 0 || dragging_) return;
  if (aside || event->modifiers() & Qt::ShiftModifier)
    return scrolled(-notches * (drawn_.toMs - drawn_.fromMs) / kScrolledShare);
  zoomed(notches, MsOf(event->position().toPoint().x()));
}

void JoinView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint point = event->position().toPoint();
  dragging_ = TakesTrack(point);
  if (dragging_)
    grabbedMs_ = MsOf(point.x()) - drawn_.plan.trackFromMs;
  else
    MoveCursor(MsOf(point.x()));
}

void JoinView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  if (dragging_) return trackMoved(MsOf(point.x()) - grabbedMs_);
  if (event->buttons() & Qt::LeftButton) return MoveCursor(MsOf(point.x()));
  const Qt::CursorShape shape = TakesTrack(point) ? Qt::SizeHorCursor : Qt::ArrowCursor;
  if (cursor().shape() != shape) setCursor(shape);
}

void JoinView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && std::exchange(dragging_, false)) dragEnded();
}

void JoinView::keyPressEvent(QKeyEvent* event) {
  const bool left = event->key() == Qt::Key_Left;
  const Qt::KeyboardModifiers keys = event->modifiers() & ~Qt::KeypadModifier;
  if (left || event->key() == Qt::Key_Right) {
    const int32_t sign = left ? -1 : 1;
    if (keys == Qt::ControlModifier) return MoveCursor(drawn_.cursorMs + sign * kCursorStepMs);
    if (keys == Qt::NoModifier) return trackStepped(sign * kTrackStepMs);
    if (keys == Qt::ShiftModifier) return trackStepped(sign * kLongTrackStepMs);
  }
  const bool closer = event->key() == Qt::Key_Plus;
  if ((closer || event->key() == Qt::Key_Minus) && !(keys & ~Qt::ShiftModifier))
    return zoomed(closer ? 1 : -1, drawn_.cursorMs);
  if (keys != Qt::NoModifier) return QWidget::keyPressEvent(event);
  if (event->key() == Qt::Key_Home) return home();
  if (event->key() != Qt::Key_Space) return QWidget::keyPressEvent(event);
  if (!event->isAutoRepeat()) playPressed();
}

}  // namespace zemo
