#include "voicetrack/screens/JoinList.h"

#include <QPainter>
#include <utility>

#include "ui/Named.h"
#include "ui/Theme.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {

namespace {

constexpr double kTypePixels = 13;

// A full disc for what is done, an empty one for what is missing, a mark in it for a fault.
QIcon MarkOf(const TrackJoin& join, int size) {
  QPixmap mark(size, size);
  mark.fill(Qt::transparent);
  QPainter painter(&mark);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF disc(1.5, 1.5, size - 3, size - 3);
  const bool fault = join.fault != NeighbourFault::kNone;
  const QColor colour = join.track == 0 ? Theme::kDim : fault ? Theme::kNote : Theme::kVoiceTrack;
  painter.setPen(QPen(colour, 1.5));
  if (join.track != 0) painter.setBrush(colour);
  painter.drawEllipse(disc);
  if (fault) {
    painter.setPen(Theme::kGround);
    painter.setFont(Theme::Type(1, size - 3, true));
    painter.drawText(disc, Qt::AlignCenter, QStringLiteral("!"));
  }
  painter.end();
  QIcon icon(mark);
  icon.addPixmap(mark, QIcon::Selected);  // not tinted
  return icon;
}

}  // namespace

JoinList::JoinList(const Translation& texts, QWidget* parent) : QListWidget(parent), texts_(texts) {
  setObjectName(QStringLiteral("ListJoins"));
  setAccessibleName(texts_.Word("For.ListJoins"));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTextElideMode(Qt::ElideRight);
  connect(this, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
    const auto at = static_cast<size_t>(row(item));
    if (at < joins_.size()) chosen(TrackJoin(joins_[at]));
  });
}

void JoinList::Arrange(double unit) {
  setFont(Theme::Type(unit, kTypePixels));
  const int mark = QFontMetrics(font()).height() - 2;
  setIconSize({mark, mark});
  setSpacing(Theme::Px(unit, 2));
  Fill();
}

void JoinList::Show(std::vector<TrackJoin> joins) {
  if (joins == joins_) return;
  joins_ = std::move(joins);
  Fill();
}

void JoinList::Fill() {
  clear();
  for (const TrackJoin& join : joins_) {
    const QString titles =
        ShownText(join.titleBefore) + QStringLiteral("\n") + ShownText(join.titleAfter);
    auto* item = new QListWidgetItem(MarkOf(join, iconSize().width()), titles, this);
    if (join.track == 0) item->setForeground(Theme::kDim);
    const QString state = ShownText(ShownState(join, texts_.Langue()));
    item->setToolTip(titles + QStringLiteral("\n") + state);
    item->setData(Qt::AccessibleTextRole, QString(titles + QStringLiteral(", ") + state));
    if (!join.open) continue;
    QFont bold = font();
    bold.setBold(true);
    item->setFont(bold);
    setCurrentItem(item);
    scrollToItem(item);
  }
}

}  // namespace zemo
