#include "traffic/screens/CampaignGridView.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <cstdlib>
#include <string>

#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/screens/GridMarks.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kWidestColumn = 72;
constexpr int kWeekdayRow = 2;
constexpr int64_t kMinuteMs = 60000;
const QColor kWeekend{0x1f, 0x26, 0x30};
const QColor kBorder{0x5a, 0x66, 0x76};  // of a month and of an hour

QString Shown(const std::string& text) {
  return QString::fromStdString(text);
}

// The crosses of a day take the month's place where it was marked.
bool IsMonth(const CampaignForm& form, int column) {
  const auto day = static_cast<size_t>(column - kFirstDayColumn);
  return day < form.gridDays.size() &&
         form.GPub.Cell(0, column) == TwoDigits(form.gridDays[day].month);
}

}  // namespace

CampaignGridView::CampaignGridView(const CampaignForm& form, const BreakLoads& loads,
                                   const Translation& texts, QWidget* parent)
    : QAbstractScrollArea(parent), form_(form), loads_(loads), texts_(texts) {
  setFocusPolicy(Qt::StrongFocus);
  setFrameShape(QFrame::NoFrame);
  viewport()->setMouseTracking(false);
  viewport()->setContextMenuPolicy(Qt::NoContextMenu);
  setContextMenuPolicy(Qt::NoContextMenu);
}

// --- measures ---

void CampaignGridView::Arrange(double unit) {
  setFont(Theme::Type(unit, 12));
  const QFontMetrics metrics(font());
  row_ = std::max(Theme::Px(unit, 19), metrics.height() + 2);
  headRow_ = std::max(Theme::Px(unit, 17), metrics.height());
  leastColumn_ = std::max(Theme::Px(unit, 20), metrics.horizontalAdvance(QStringLiteral("000")));
  moment_ = metrics.horizontalAdvance(QStringLiteral("00:00 ")) + 12;
  count_ = metrics.horizontalAdvance(QStringLiteral("000")) + 8;
  Measure();
}

// A grid of few days takes the room that there is.
void CampaignGridView::Measure() {
  const int room = std::max(0, viewport()->width() - SideWidth());
  const int days = std::max(1, Days());
  column_ = std::clamp(room / days, leastColumn_, std::max(leastColumn_, kWidestColumn));
  const int rowsRoom = std::max(0, viewport()->height() - HeadHeight());
  horizontalScrollBar()->setRange(0, std::max(0, Days() * column_ - room));
  horizontalScrollBar()->setSingleStep(column_);
  horizontalScrollBar()->setPageStep(room);
  verticalScrollBar()->setRange(0, std::max(0, Moments() * row_ - rowsRoom));
  verticalScrollBar()->setSingleStep(row_);
  verticalScrollBar()->setPageStep(rowsRoom);
  viewport()->update();
}

void CampaignGridView::ShowGrid() {
  frame_.row =
      std::clamp(frame_.row, kFirstMomentRow, std::max(kFirstMomentRow, Grid().RowCount() - 1));
  frame_.column = std::clamp(frame_.column, kFirstDayColumn,
                             std::max(kFirstDayColumn, GridColumns(Grid()) - 1));
  Measure();
}

QRect CampaignGridView::Cell(GridPlace place) const {
  const int left =
      SideWidth() + (place.column - kFirstDayColumn) * column_ - horizontalScrollBar()->value();
  const int top =
      HeadHeight() + (place.row - kFirstMomentRow) * row_ - verticalScrollBar()->value();
  return {left, top, column_, row_};
}

GridPlace CampaignGridView::PlaceAt(const QPoint& point) const {
  if (!viewport()->rect().contains(point)) return {-1, -1};
  GridPlace place;
  if (point.x() >= SideWidth())
    place.column =
        kFirstDayColumn + (point.x() - SideWidth() + horizontalScrollBar()->value()) / column_;
  // The counts belong to the last of the told heads.
  place.row =
      point.y() < HeadHeight()
          ? std::min(point.y() / headRow_, kFirstMomentRow - 1)
          : kFirstMomentRow + (point.y() - HeadHeight() + verticalScrollBar()->value()) / row_;
  if (place.row >= Grid().RowCount() || place.column >= GridColumns(Grid())) return {-1, -1};
  return place;
}

bool CampaignGridView::IsCell(GridPlace place) const {
  return place.row >= kFirstMomentRow && place.row < Grid().RowCount() &&
         place.column >= kFirstDayColumn && place.column < GridColumns(Grid());
}

bool CampaignGridView::IsCross(GridPlace place) const {
  return Grid().Cell(place.row, place.column) == kCross;
}

int CampaignGridView::CrossesInRow(int row) const {
  int crosses = 0;
  for (int column = kFirstDayColumn; column < GridColumns(Grid()); ++column)
    if (IsCross({row, column})) ++crosses;
  return crosses;
}

CampaignGridView::Span CampaignGridView::SeenColumns() const {
  const int first = kFirstDayColumn + horizontalScrollBar()->value() / column_;
  const int count = (viewport()->width() - SideWidth()) / column_ + 2;
  return {first, std::min(first + count, GridColumns(Grid())) - 1};
}

CampaignGridView::Span CampaignGridView::SeenRows() const {
  const int first = kFirstMomentRow + verticalScrollBar()->value() / row_;
  const int count = (viewport()->height() - HeadHeight()) / row_ + 2;
  return {first, std::min(first + count, Grid().RowCount()) - 1};
}

// --- drawing ---

void CampaignGridView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), Theme::kPanel);
  if (GridColumns(Grid()) > 0) {
    const QRect room = viewport()->rect();
    painter.setClipRect(room.adjusted(SideWidth(), HeadHeight(), 0, 0));
    PaintCells(painter);
    painter.setClipRect(room.adjusted(SideWidth(), 0, 0, 0));
    PaintDays(painter);
    painter.setClipRect(room.adjusted(0, HeadHeight(), 0, 0));
    PaintMoments(painter);
    painter.setClipping(false);
    painter.fillRect(0, 0, SideWidth(), HeadHeight(), Theme::kRaised);
    painter.setPen(Theme::kDim);
    for (int row = 0; row < 2; ++row)
      painter.drawText(QRect(4, row * headRow_, SideWidth() - 8, headRow_),
                       Qt::AlignLeft | Qt::AlignVCenter, Shown(Grid().Cell(row, 0)));
    painter.drawText(QRect(moment_, 3 * headRow_, count_ - 4, headRow_),
                     Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Σ"));
  }
  painter.setPen(hasFocus() ? Theme::kFocus : Theme::kLine);
  painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
}

void CampaignGridView::PaintCells(QPainter& painter) const {
  const auto [firstColumn, lastColumn] = SeenColumns();
  const auto [firstRow, lastRow] = SeenRows();
  const int bottom = Cell({Grid().RowCount(), 0}).top(), top = HeadHeight();
  for (int column = firstColumn; column <= lastColumn; ++column) {
    const QRect cell = Cell({kFirstMomentRow, column});
    const std::string& letter = Grid().Cell(kWeekdayRow, column);
    if (letter == "S" || letter == "D")
      painter.fillRect(QRect(cell.left(), top, cell.width(), bottom - top), kWeekend);
    painter.setPen(Grid().Cell(1, column) == "01" ? kBorder : Theme::kRaised);
    painter.drawLine(cell.left(), top, cell.left(), bottom);
  }
  for (int row = firstRow; row <= lastRow; ++row) {
    const int y = Cell({row, kFirstDayColumn}).top();
    const bool hour = Grid().Cell(row, 0).substr(0, 2) != Grid().Cell(row - 1, 0).substr(0, 2);
    painter.setPen(hour ? kBorder : Theme::kRaised);
    painter.drawLine(SideWidth(), y, Cell({row, lastColumn}).right(), y);
  }
  for (int column = firstColumn; column <= lastColumn; ++column)
    PaintColumn(painter, column, {firstRow, lastRow});
  if (!hasFocus() || !IsCell(frame_)) return;
  painter.setPen(QPen(Theme::kFocus, 2));
  painter.drawRect(Cell(frame_).adjusted(1, 1, -1, -1));
}

void CampaignGridView::PaintColumn(QPainter& painter, int column, Span rows) const {
  const QColor mark = !isEnabled() ? Theme::kDim : form_.OptPub[0] ? Theme::kSpot : Theme::kNews;
  const std::vector<BreakLoad> loads = loads_.OfDay(Grid(), column);
  for (int row = rows.first; row <= rows.last; ++row) {
    const QRect cell = Cell({row, column});
    if (IsCross({row, column})) GridMarks::PaintCross(painter, cell, mark);
    const auto moment = static_cast<size_t>(row - kFirstMomentRow);
    if (moment >= loads.size()) continue;
    const BreakLoad& load = loads[moment];
    if (load.ofAdvertiser > 0) GridMarks::PaintOfAdvertiser(painter, cell);
    if (load.gapMs > 0)
      GridMarks::PaintLoad(painter, cell,
                           static_cast<double>(load.lengthMs) / static_cast<double>(load.gapMs));
  }
}

void CampaignGridView::PaintDays(QPainter& painter) const {
  painter.fillRect(0, 0, viewport()->width(), HeadHeight(), Theme::kRaised);
  const auto [first, last] = SeenColumns();
  for (int column = first; column <= last; ++column) {
    const QRect cell = Cell({kFirstMomentRow, column});
    const std::string& letter = Grid().Cell(kWeekdayRow, column);
    const bool weekend = letter == "S" || letter == "D";
    for (int head = 0; head < kHeadRows; ++head) {
      const int crosses = head < kFirstMomentRow ? 0 : CrossesInColumn(Grid(), column);
      const std::string text = head < kFirstMomentRow ? Grid().Cell(head, column)
                               : crosses > 0          ? std::to_string(crosses)
                                                      : std::string();
      const QString shown = head == kWeekdayRow ? DayLetter(column) : Shown(text);
      const bool count = head == kFirstMomentRow || (head == 0 && !IsMonth(form_, column));
      painter.setPen(count ? Theme::kGood : head == 1 || weekend ? Theme::kText : Theme::kDim);
      painter.drawText(QRect(cell.left(), head * headRow_, cell.width(), headRow_), Qt::AlignCenter,
                       shown);
    }
    if (Grid().Cell(1, column) != "01") continue;
    painter.setPen(kBorder);
    painter.drawLine(cell.left(), 0, cell.left(), HeadHeight());
  }
}

void CampaignGridView::PaintMoments(QPainter& painter) const {
  painter.fillRect(0, HeadHeight(), SideWidth(), viewport()->height(), Theme::kRaised);
  const auto [first, last] = SeenRows();
  for (int row = first; row <= last; ++row) {
    const QRect cell = Cell({row, kFirstDayColumn});
    painter.setPen(Theme::kText);
    painter.drawText(QRect(4, cell.top(), moment_ - 4, row_), Qt::AlignLeft | Qt::AlignVCenter,
                     Shown(Grid().Cell(row, 0)));
    const int crosses = CrossesInRow(row);
    if (crosses == 0) continue;
    painter.setPen(Theme::kGood);
    painter.drawText(QRect(moment_, cell.top(), count_ - 4, row_),
                     Qt::AlignRight | Qt::AlignVCenter, QString::number(crosses));
  }
}

// --- the mouse ---

void CampaignGridView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton) return;
  pressed_ = PlaceAt(event->pos());
  passed_ = event->pos();
  held_ = true;
  paints_ = false;
}

void CampaignGridView::mouseMoveEvent(QMouseEvent* event) {
  const bool withKey = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
  if (!held_ || withKey || !IsCell(pressed_) || !takesMarks()) return;
  const GridPlace place = PlaceAt(event->pos());
  if (!paints_) {
    if (place.row == pressed_.row && place.column == pressed_.column) return;
    paints_ = true;
    paintsCross_ = !IsCross(pressed_);
    painted({pressed_}, paintsCross_);
  }
  PaintTo(event->pos());
}

void CampaignGridView::Paint(const std::vector<GridPlace>& places, bool cross) {
  if (std::ranges::any_of(places, [&](GridPlace place) { return IsCross(place) != cross; }))
    painted(places, cross);
}

// Also what lies between two places, as a quick mouse tells few of them.
void CampaignGridView::PaintTo(const QPoint& point) {
  const QPoint way = point - passed_;
  const int steps = std::max({std::abs(way.x()), std::abs(way.y()), 1});
  std::vector<GridPlace> passed;
  for (int step = 1; step <= steps; ++step) {
    const GridPlace place = PlaceAt(passed_ + way * step / steps);
    if (IsCell(place)) passed.push_back(place);
  }
  passed_ = point;
  if (passed.empty()) return;
  Paint(passed, paintsCross_);
  MoveFrame(passed.back());
}

void CampaignGridView::mouseReleaseEvent(QMouseEvent* event) {
  if (!held_ || event->buttons() & (Qt::LeftButton | Qt::RightButton)) return;
  held_ = false;
  if (paints_) return;
  const GridPlace place = PlaceAt(event->pos());
  if (place.row < 0) return;
  if (IsCell(place)) MoveFrame(place);
  marked(event->button() == Qt::LeftButton ? MouseButton::kLeft : MouseButton::kRight,
         event->modifiers() & Qt::ShiftModifier, event->modifiers() & Qt::ControlModifier, place);
}

// --- the keys ---

void CampaignGridView::MoveFrame(GridPlace place) {
  frame_ = place;
  ShowGrid();
  ScrollTo(frame_);
}

// What lies between is passed, too.
void CampaignGridView::StepFrame(GridPlace place, bool paints) {
  const GridPlace from = frame_;
  MoveFrame(place);
  if (!paints || !IsCell(from)) return;
  const bool cross = IsCross(from);
  const auto [firstRow, lastRow] = std::minmax(from.row, frame_.row);
  const auto [firstColumn, lastColumn] = std::minmax(from.column, frame_.column);
  std::vector<GridPlace> passed;
  for (int row = firstRow; row <= lastRow; ++row)
    for (int column = firstColumn; column <= lastColumn; ++column) passed.push_back({row, column});
  Paint(passed, cross);
}

void CampaignGridView::ScrollTo(GridPlace place) {
  const auto scroll = [](QScrollBar& bar, int begin, int size, int room) {
    bar.setValue(
        std::clamp(bar.value(), begin + size - room, std::max(begin, begin + size - room)));
  };
  scroll(*horizontalScrollBar(), (place.column - kFirstDayColumn) * column_, column_,
         viewport()->width() - SideWidth());
  scroll(*verticalScrollBar(), (place.row - kFirstMomentRow) * row_, row_,
         viewport()->height() - HeadHeight());
}

void CampaignGridView::keyPressEvent(QKeyEvent* event) {
  if (!MoveByKey(*event) && !MarkByKey(*event)) QAbstractScrollArea::keyPressEvent(event);
}

bool CampaignGridView::MoveByKey(const QKeyEvent& event) {
  const bool control = event.modifiers() & Qt::ControlModifier;
  const int page = std::max(1, (viewport()->height() - HeadHeight()) / row_ - 1);
  const int allRows = Grid().RowCount(), allColumns = GridColumns(Grid());
  GridPlace way{0, 0};
  switch (event.key()) {
    case Qt::Key_Up:
      way.row = -1;
      break;
    case Qt::Key_Down:
      way.row = 1;
      break;
    case Qt::Key_Left:
      way.column = -1;
      break;
    case Qt::Key_Right:
      way.column = 1;
      break;
    case Qt::Key_PageUp:
      way.row = -page;
      break;
    case Qt::Key_PageDown:
      way.row = page;
      break;
    case Qt::Key_Home:
      (control ? way.row : way.column) = control ? -allRows : -allColumns;
      break;
    case Qt::Key_End:
      (control ? way.row : way.column) = control ? allRows : allColumns;
      break;
    default:
      return false;
  }
  const bool paints = event.modifiers() & Qt::ShiftModifier && takesMarks();
  StepFrame({frame_.row + way.row, frame_.column + way.column}, paints);
  return true;
}

// Space is the left button, Delete the right one, which never marks.
bool CampaignGridView::MarkByKey(const QKeyEvent& event) {
  const bool shift = event.modifiers() & Qt::ShiftModifier;
  const bool control = event.modifiers() & Qt::ControlModifier;
  if (event.key() == Qt::Key_Space) {
    marked(MouseButton::kLeft, shift, control, frame_);
    return true;
  }
  if (event.key() != Qt::Key_Delete) return false;
  if (IsCross(frame_) || shift || control) marked(MouseButton::kRight, shift, control, frame_);
  return true;
}

void CampaignGridView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void CampaignGridView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

void CampaignGridView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  Measure();
}

void CampaignGridView::scrollContentsBy(int, int) {
  viewport()->update();
}

// --- the tip ---

bool CampaignGridView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QAbstractScrollArea::viewportEvent(event);
  ShowTip(*static_cast<QHelpEvent*>(event));
  return true;
}

// The day and the moment under the mouse, whose heads are far from it, and what stands there
// besides.
void CampaignGridView::ShowTip(const QHelpEvent& help) {
  const GridPlace place = PlaceAt(help.pos());
  const bool head = place.row >= 0 && place.row < kFirstMomentRow && place.column > 0;
  if (head)
    return QToolTip::showText(help.globalPos(), DayTip(place.column), viewport(),
                              QRect(Cell(place).left(), 0, column_, HeadHeight()));
  if (!IsCell(place)) return QToolTip::showText(help.globalPos(), toolTip(), viewport());
  QToolTip::showText(help.globalPos(), CellTip(place), viewport(), Cell(place));
}

QString CampaignGridView::DayLetter(int column) const {
  if (Grid().Cell(kWeekdayRow, column).empty()) return {};
  const int first = form_.gridDays.empty() ? 1 : CurrentWeekday(form_.gridDays.front());
  return texts_.Word("DayLetters").mid((first - 1 + column - kFirstDayColumn) % kWeekDays, 1);
}

QString CampaignGridView::DayTip(int column) const {
  const std::string& day = Grid().Cell(1, column);
  const QString name = DayLetter(column) + Shown((day.empty() ? "" : " ") + day);
  const int others = loads_.OfAdvertiser(column);
  if (others == 0) return name;
  return name + u'\n' + texts_.Word("TipAdvertiserDay", QString::number(others));
}

QString CampaignGridView::CellTip(GridPlace place) const {
  const std::string& day = Grid().Cell(1, place.column);
  QString tip = DayLetter(place.column) +
                Shown((day.empty() ? "" : " ") + day + "  " + Grid().Cell(place.row, 0));
  const std::vector<BreakLoad> loads = loads_.OfDay(Grid(), place.column);
  const auto moment = static_cast<size_t>(place.row - kFirstMomentRow);
  if (moment >= loads.size() || loads[moment].gapMs == 0) return tip;
  const BreakLoad& load = loads[moment];
  const QString gap = QStringLiteral("%1 min").arg(load.gapMs / kMinuteMs);
  if (load.elements > 0)
    tip +=
        u'\n' + texts_.Word("TipOthers")
                    .arg(QString::number(load.elements), Shown(FormatDuration(load.lengthMs)), gap);
  else
    tip += u'\n' + texts_.Word("TipNoOther", gap);
  if (load.ofAdvertiser > 0)
    tip += u'\n' + texts_.Word("TipAdvertiser", QString::number(load.ofAdvertiser));
  return tip;
}

}  // namespace zemo
