#include "engine/screens/IntroBar.h"

#include <QPainter>
#include <algorithm>

#include "ui/Theme.h"

namespace zemo {

IntroBar::IntroBar(QWidget* parent) : QWidget(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setRetainSizeWhenHidden(true);
  setSizePolicy(policy);
}

void IntroBar::Show(bool visible, int elapsedSec, int lengthSec) {
  setVisible(visible);
  if (!visible || (elapsedSec == elapsedSec_ && lengthSec == lengthSec_)) return;
  elapsedSec_ = elapsedSec;
  lengthSec_ = lengthSec;
  text_ = QStringLiteral("%1 / %2").arg(elapsedSec).arg(lengthSec);
  update();
}

int IntroBar::FilledPercent() const {
  return lengthSec_ > 0 ? std::min(100, elapsedSec_ * 100 / lengthSec_) : 0;
}

void IntroBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::kRaised);
  painter.fillRect(0, 0, width() * FilledPercent() / 100, height(), Theme::kIntro);
  painter.setFont(font());
  painter.setPen(Theme::kText);
  painter.drawText(rect(), Qt::AlignCenter, text_);
}

}  // namespace zemo
