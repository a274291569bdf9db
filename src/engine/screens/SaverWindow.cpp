#include "engine/screens/SaverWindow.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRandomGenerator>
#include <algorithm>
#include <utility>

#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr int kMoveMs = 3000;
constexpr double kTypePixels = 42;
}  // namespace

SaverWindow::SaverWindow(std::function<QString()> text, std::function<void()> closed)
    : askText_(std::move(text)), closed_(std::move(closed)) {
  setObjectName(QStringLiteral("FrmVeille"));
  setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(Qt::BlankCursor);
  setFocusPolicy(Qt::StrongFocus);
  TimerVeille_.setObjectName(QStringLiteral("TimerVeille"));
  TimerVeille_.setInterval(kMoveMs);
  connect(&TimerVeille_, &QTimer::timeout, this, [this] { Move(); });
  TimerVeille_.start();
}

void SaverWindow::Move() {
  text_ = askText_();
  font_ = Theme::Type(1, kTypePixels, true);
  // A text wider than the screen gets smaller until it is whole on it.
  QSize size = QFontMetrics(font_).size(Qt::TextSingleLine, text_);
  while (size.width() > width() && font_.pixelSize() > 8) {
    font_.setPixelSize(font_.pixelSize() - 1);
    size = QFontMetrics(font_).size(Qt::TextSingleLine, text_);
  }
  const int roomX = std::max(0, width() - size.width());
  const int roomY = std::max(0, height() - size.height());
  auto* chance = QRandomGenerator::global();
  place_ = QRect(QPoint(chance->bounded(roomX + 1), chance->bounded(roomY + 1)), size);
  update();
}

void SaverWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::black);
  painter.setFont(font_);
  painter.setPen(Theme::kDim);
  painter.drawText(place_, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, text_);
}

void SaverWindow::keyPressEvent(QKeyEvent*) {
  close();
}

void SaverWindow::mousePressEvent(QMouseEvent*) {
  close();
}

void SaverWindow::closeEvent(QCloseEvent*) {
  TimerVeille_.stop();
  closed_();
}

}  // namespace zemo
