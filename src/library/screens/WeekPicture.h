// The hours of a week in which a card may play, as a picture to paint: a row a weekday, a column an
// hour.
#pragma once

#include <QWidget>
#include <functional>

#include "library/HourMasks.h"

namespace zemo {

// A press turns the hour under it, and what the mouse then passes over becomes the same; the arrows
// move the frame, space turns its hour. Thread: the screen's.
class WeekPicture : public QWidget {
 public:
  // The masks outlive the picture.
  WeekPicture(HourMasks& masks, QWidget* parent);
  std::function<void()> changed;  // the masks

  static constexpr int kHeadPixels = 14;  // of the hours above, at unit 1
  void Arrange(double unit);
  int HeadHeight() const { return head_; }
  int RowHeight() const { return row_; }
  QRect Cell(int day, int hour) const;  // day from 1
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  struct Hour {
    int day = 0, hour = 0;  // day 0: none
  };
  Hour HourAt(const QPoint& point) const;
  bool Allowed(Hour at) const;
  void Put(Hour at, bool allowed);
  void PaintTo(const QPoint& point);

  HourMasks& masks_;
  Hour frame_{1, 0};    // of the keyboard
  bool paints_ = true;  // what the held mouse makes of an hour
  QPoint passed_;       // where it was last
  int head_ = kHeadPixels, row_ = 18;
};

}  // namespace zemo
