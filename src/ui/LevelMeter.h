// A level in decibels, fast up and slow down, with its highest point held.
#pragma once

#include <QWidget>
#include <cstdint>

namespace zemo {

class LevelMeter : public QWidget {
 public:
  explicit LevelMeter(QWidget* parent = nullptr);
  void Show(float peak, int64_t nowMs);  // full scale 1.0
  double Decibels() const { return decibels_; }

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  double decibels_ = kFloor, held_ = kFloor;
  int64_t lastMs_ = 0, heldMs_ = 0;
  int drawn_ = -1, drawnHeld_ = -1;
  int PixelsOf(double decibels) const;

  static constexpr double kFloor = -60;
};

}  // namespace zemo
