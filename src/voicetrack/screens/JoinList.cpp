#include "voicetrack/screens/JoinList.h"

#include <utility>

#include "ui/Named.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

// By NeighbourFault.
constexpr const char* kFaultWords[kNeighbourFaults] = {
    "Join.Done", "TrackOtherBefore", "TrackChangedBefore", "TrackOtherAfter", "TrackChangedAfter"};

struct JoinLook {
  const char* mark;
  QColor colour;
};

JoinLook LookOf(const TrackJoin& join) {
  if (join.track == 0) return {"○", Theme::kDim};
  if (join.fault != NeighbourFault::kNone) return {"!", Theme::kNote};
  return {"●", Theme::kVoiceTrack};
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

void JoinList::Show(std::vector<TrackJoin> joins) {
  if (joins == joins_) return;
  joins_ = std::move(joins);
  Fill();
}

void JoinList::Fill() {
  clear();
  for (const TrackJoin& join : joins_) {
    const JoinLook look = LookOf(join);
    const QString titles =
        ShownText(join.titleBefore) + QStringLiteral("\n") + ShownText(join.titleAfter);
    auto* item =
        new QListWidgetItem(QStringLiteral("%1  %2\n     %3")
                                .arg(QString::fromUtf8(look.mark), ShownText(join.titleBefore),
                                     ShownText(join.titleAfter)),
                            this);
    item->setForeground(look.colour);
    const QString state = texts_.Word(
        join.track == 0 ? "Join.Missing" : kFaultWords[static_cast<size_t>(join.fault)]);
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
