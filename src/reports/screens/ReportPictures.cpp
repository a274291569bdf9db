#include "reports/screens/ReportPictures.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

#include "station/OnAirList.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "ui/FieldPage.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kHours = 24;
constexpr int kNameLines = 7;  // width of a genre, in heights of a text
constexpr int kMostBars = 4;   // of the varieties
constexpr int kLeastBar = 2;   // pixels
constexpr int64_t kDaySec = 86400, kHourSec = 3600;
const QColor kNothing{0x1f, 0x25, 0x2d};

// The colour that elements of that genre have on air.
QColor ColourOfGenre(const std::string& genre) {
  constexpr std::pair<const char*, int32_t> kWords[] = {{"JINGLE", Element::kJingle},
                                                        {"PUB", Element::kSpot},
                                                        {"TOP-H", Element::kHourPip},
                                                        {"RUBRIQUE", Element::kNews},
                                                        {"AUTRES", Element::kOther}};
  for (const auto& [word, code] : kWords)
    if (EqualNoCase(genre, word)) return Theme::ColourOfElement(code);
  return Theme::kMusic;
}

QColor Between(const QColor& from, const QColor& to, double share) {
  const auto mix = [share](int a, int b) {
    return static_cast<int>(std::lround(a + (b - a) * share));
  };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

QString TwoDigitHour(int hour) {
  return QString::fromStdString(TwoDigits(hour));
}

}  // namespace

// --- any of them ---

ReportPicture::ReportPicture(const char* name, const Translation& texts, QWidget* parent)
    : QWidget(parent), texts_(texts) {
  Named(this, name);
  setAccessibleName(texts.Word(std::string("For.") + name));
}

void ReportPicture::Arrange(double unit) {
  setFont(Theme::Type(unit, 12));
  line_ = QFontMetrics(font()).height() + 2;
  updateGeometry();
  update();
}

QRect ReportPicture::Room() const {
  return rect().adjusted(8, line_ + 8, -8, -6);
}

void ReportPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(font());
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillRect(rect(), Theme::kPanel);
  painter.setPen(Theme::kLine);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  const QRect head(8, 4, width() - 16, line_);
  painter.setPen(Theme::kDim);
  painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(Head(), Qt::ElideRight, head.width()));
  if (!IsEmpty()) return Paint(painter);
  painter.drawText(Room(), Qt::AlignCenter | Qt::TextWordWrap, Instead());
}

bool ReportPicture::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  const QString tip = IsEmpty() ? QString() : TipAt(help.pos());
  if (tip.isEmpty())
    QToolTip::hideText();
  else
    QToolTip::showText(help.globalPos(), tip, this);
  return true;
}

// --- by hour and genre ---

HourPicture::HourPicture(const Translation& texts, QWidget* parent)
    : ReportPicture("VueHeures", texts, parent) {
  setMinimumHeight(120);
}

void HourPicture::Show(HourFigures figures) {
  figures_ = std::move(figures);
  update();
}

int HourPicture::Rows() const {
  const int room = std::max(1, (Room().height() - Line()) / LeastRow());
  return std::min(static_cast<int>(figures_.genres.size()), room);
}

// Few genres take more of the room.
int HourPicture::RowHeight() const {
  const int room = (Room().height() - Line()) / std::max(1, Rows());
  return std::clamp(room, LeastRow(), Line() + Line() * 3 / 4);
}

bool HourPicture::IsRest(int row) const {
  return row + 1 == Rows() && figures_.genres.size() > static_cast<size_t>(Rows());
}

uint32_t HourPicture::Plays(int row, int hour) const {
  const std::vector<uint32_t>& plays = figures_.plays[static_cast<size_t>(hour)];
  const auto first = static_cast<size_t>(row);
  if (!IsRest(row)) return plays[first];
  uint32_t rest = 0;
  for (size_t genre = first; genre < plays.size(); ++genre) rest += plays[genre];
  return rest;
}

QString HourPicture::NameOf(int row) const {
  const auto genre = static_cast<size_t>(row);
  if (!IsRest(row)) return QString::fromStdString(figures_.genres[genre]);
  return texts_.Word("Others", QString::number(figures_.genres.size() - genre));
}

QColor HourPicture::ColourOf(int row) const {
  return IsRest(row) ? Theme::kDim : ColourOfGenre(figures_.genres[static_cast<size_t>(row)]);
}

QRect HourPicture::Cell(int row, int hour) const {
  const QRect room = Room();
  const int names = std::min(kNameLines * Line(), room.width() / 3);
  const int width = room.width() - names;
  const int left = room.left() + names + width * hour / kHours;
  const int right = room.left() + names + width * (hour + 1) / kHours;
  return {left, room.top() + Line() + row * RowHeight(), right - left, RowHeight()};
}

// Of several a quarter of the plays is half as bright: few plays can be told from none.
void HourPicture::Paint(QPainter& painter) const {
  uint32_t most = 1;
  for (int row = 0; row < Rows(); ++row)
    for (int hour = 0; hour < kHours; ++hour) most = std::max(most, Plays(row, hour));
  const int step =
      painter.fontMetrics().horizontalAdvance(QStringLiteral("000")) > Cell(0, 0).width() ? 3 : 1;
  painter.setPen(Theme::kDim);
  for (int hour = 0; hour < kHours; hour += step) {
    const QRect cell = Cell(0, hour);
    painter.drawText(QRect(cell.left(), cell.top() - Line(), cell.width() * step, Line()),
                     (step == 1 ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter,
                     TwoDigitHour(hour));
  }
  for (int row = 0; row < Rows(); ++row) {
    const QRect name(Room().left(), Cell(row, 0).top(), Cell(row, 0).left() - Room().left() - 6,
                     RowHeight());
    painter.setPen(IsRest(row) ? Theme::kDim : Theme::kText);
    painter.drawText(name, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(NameOf(row), Qt::ElideRight, name.width()));
    for (int hour = 0; hour < kHours; ++hour) {
      const double share = std::sqrt(static_cast<double>(Plays(row, hour)) / most);
      painter.fillRect(Cell(row, hour).adjusted(0, 0, -1, -1),
                       Between(kNothing, ColourOf(row), share));
    }
  }
}

QString HourPicture::TipAt(const QPoint& point) const {
  for (int row = 0; row < Rows(); ++row)
    for (int hour = 0; hour < kHours; ++hour)
      if (Cell(row, hour).contains(point))
        return QStringLiteral("%1, %2 h: %3")
            .arg(NameOf(row), TwoDigitHour(hour))
            .arg(Plays(row, hour));
  return {};
}

// --- one title ---

TitlePicture::TitlePicture(const Translation& texts, QWidget* parent)
    : ReportPicture("VueRotation", texts, parent) {
  setMinimumHeight(90);
}

void TitlePicture::Show(QString title, TitleFigures figures) {
  title_ = std::move(title);
  figures_ = std::move(figures);
  update();
}

QString TitlePicture::Head() const {
  if (IsEmpty()) return ReportPicture::Head();
  return QStringLiteral("%1: %2").arg(title_).arg(figures_.Total());
}

QString TitlePicture::Instead() const {
  return texts_.Word("ChooseRow");
}

// Where there are more steps than room several stand in one bar.
std::vector<TitlePicture::Bar> TitlePicture::Bars() const {
  const QRect room = Room().adjusted(0, 0, 0, -Line());
  const size_t steps = figures_.plays.size();
  const auto fit = static_cast<size_t>(std::max(1, room.width() / (kLeastBar + 1)));
  const size_t inBar = std::max<size_t>(1, (steps + fit - 1) / fit);
  std::vector<Bar> bars;
  for (size_t first = 0; first < steps; first += inBar) {
    Bar bar{{}, first, std::min(first + inBar, steps) - 1, 0};
    for (size_t step = bar.first; step <= bar.last; ++step) bar.plays += figures_.plays[step];
    bars.push_back(bar);
  }
  uint32_t most = 1;
  for (const Bar& bar : bars) most = std::max(most, bar.plays);
  const auto count = static_cast<int>(bars.size());
  for (int i = 0; i < count; ++i) {
    Bar& bar = bars[static_cast<size_t>(i)];
    const int left = room.width() * i / count, right = room.width() * (i + 1) / count;
    const int height = static_cast<int>(int64_t{room.height()} * bar.plays / most);
    bar.place = QRect(room.left() + left, room.bottom() + 1 - height,
                      std::max(kLeastBar, right - left - 1), height);
  }
  return bars;
}

QString TitlePicture::MomentOf(size_t step) const {
  const int64_t second = figures_.firstSec + static_cast<int64_t>(step) * figures_.stepSec;
  const LocalDateTime moment = FromDateSerial(static_cast<double>(second) / kDaySec);
  std::string text = DateText(moment);
  if (figures_.stepSec == kHourSec) text += " " + TwoDigits(moment.hour) + " h";
  return QString::fromStdString(text);
}

void TitlePicture::Paint(QPainter& painter) const {
  const QRect room = Room();
  const int ground = room.bottom() + 1 - Line();
  painter.setPen(Theme::kLine);
  painter.drawLine(room.left(), ground, room.right(), ground);
  const QFontMetrics metrics = painter.fontMetrics();
  for (const Bar& bar : Bars()) {
    painter.fillRect(bar.place, Theme::kIntro);
    const QString plays = QString::number(bar.plays);
    const bool fits =
        bar.place.height() >= Line() && metrics.horizontalAdvance(plays) + 2 <= bar.place.width();
    painter.setPen(Theme::kText);
    if (fits) painter.drawText(bar.place, Qt::AlignHCenter | Qt::AlignTop, plays);
  }
  painter.setPen(Theme::kDim);
  const QRect words(room.left(), ground + 1, room.width(), Line());
  painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter, MomentOf(0));
  if (figures_.plays.size() > 1)
    painter.drawText(words, Qt::AlignRight | Qt::AlignVCenter, MomentOf(figures_.plays.size() - 1));
}

QString TitlePicture::TipAt(const QPoint& point) const {
  for (const Bar& bar : Bars()) {
    if (point.x() < bar.place.left() || point.x() > bar.place.right()) continue;
    QString from = MomentOf(bar.first);
    if (bar.last > bar.first) from += QStringLiteral(" - ") + MomentOf(bar.last);
    return QStringLiteral("%1: %2").arg(from).arg(bar.plays);
  }
  return {};
}

// --- by variety ---

SharePicture::SharePicture(const Translation& texts, QWidget* parent)
    : ReportPicture("VueParts", texts, parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SharePicture::Show(const std::vector<NamedPlays>& varieties) {
  bars_.clear();
  total_ = 0;
  const bool all = varieties.size() <= kMostBars;
  for (const NamedPlays& variety : varieties) {
    total_ += variety.plays;
    if (all || bars_.size() + 1 < kMostBars)
      bars_.push_back(variety);
    else if (bars_.size() + 1 == kMostBars)
      bars_.push_back(
          {texts_.Word("Others", QString::number(varieties.size() + 1 - kMostBars)).toStdString(),
           variety.plays});
    else
      bars_.back().plays += variety.plays;
  }
  update();
}

QSize SharePicture::sizeHint() const {
  return {200, Line() + 16 + kMostBars * (Line() + 4)};
}

QRect SharePicture::Bar(size_t number) const {
  const QRect room = Room();
  const int height = Line() + 2;
  const int width =
      total_ == 0 ? 0 : static_cast<int>(room.width() * uint64_t{bars_[number].plays} / total_);
  return {room.left(), room.top() + static_cast<int>(number) * (height + 2), width, height};
}

QString SharePicture::TextOf(const NamedPlays& bar) const {
  return QStringLiteral("%1  %2 (%3 %)")
      .arg(QString::fromStdString(bar.name))
      .arg(bar.plays)
      .arg(WholePercent(bar.plays, total_));
}

void SharePicture::Paint(QPainter& painter) const {
  for (size_t number = 0; number < bars_.size(); ++number) {
    const QRect bar = Bar(number);
    const QRect whole(bar.left(), bar.top(), Room().width(), bar.height());
    painter.fillRect(whole, kNothing);
    painter.fillRect(bar, Theme::kIntro);
    painter.setPen(Theme::kText);
    const QRect words = whole.adjusted(6, 0, -6, 0);
    painter.drawText(
        words, Qt::AlignLeft | Qt::AlignVCenter,
        painter.fontMetrics().elidedText(TextOf(bars_[number]), Qt::ElideMiddle, words.width()));
  }
}

QString SharePicture::TipAt(const QPoint& point) const {
  for (size_t number = 0; number < bars_.size(); ++number)
    if (point.y() >= Bar(number).top() && point.y() <= Bar(number).bottom())
      return TextOf(bars_[number]);
  return {};
}

}  // namespace zemo
