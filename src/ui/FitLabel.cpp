#include "ui/FitLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "ui/Theme.h"

namespace zemo {

FitLabel::FitLabel(QWidget* parent) : QLabel(parent), colour_(Theme::kText) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  type_ = fitted_ = Theme::Type(1, 15);
  smallest_ = type_.pixelSize();
}

void FitLabel::SetType(const QFont& font, int smallestPixels) {
  type_ = font;
  smallest_ = std::min(smallestPixels, font.pixelSize());
  Fit();
  updateGeometry();
}

void FitLabel::SetColour(const QColor& colour) {
  if (colour == colour_) return;
  colour_ = colour;
  update();
}

void FitLabel::Show(const QString& text) {
  if (text == this->text()) return;
  setText(text);
  Fit();
}

bool FitLabel::Shortened() const {
  return shown_ != text();
}

QSize FitLabel::sizeHint() const {
  return {QFontMetrics(type_).horizontalAdvance(text()), QFontMetrics(type_).height()};
}

QSize FitLabel::minimumSizeHint() const {
  return {1, QFontMetrics(type_).height()};
}

void FitLabel::Fit() {
  fitted_ = type_;
  while (fitted_.pixelSize() > smallest_ &&
         QFontMetrics(fitted_).horizontalAdvance(text()) > width())
    fitted_.setPixelSize(fitted_.pixelSize() - 1);
  shown_ = QFontMetrics(fitted_).elidedText(text(), Qt::ElideRight, width());
  setToolTip(Shortened() ? text() : accessibleDescription());
  update();
}

void FitLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(fitted_);
  painter.setPen(isEnabled() ? colour_ : Theme::kDim);
  painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine, shown_);
}

void FitLabel::resizeEvent(QResizeEvent*) {
  Fit();
}

}  // namespace zemo
