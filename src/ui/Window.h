// What every window of the program stands on: its language, a unit that grows with it, orders that
// wait for a free moment, a place that this machine keeps, and one way to be left.
#pragma once

#include <QMainWindow>
#include <functional>

#include "ui/Translation.h"

namespace zemo {

struct Station;

enum class PlaceOfWindow { kGiven, kKept };  // by whoever shows it; as it was left

// Speaks the Langue of the moment it is made. Thread: the logic's. The station outlives it.
class Window : public QMainWindow {
 public:
  // `name` is also that of the window's kept place.
  Window(Station& station, const char* name, const WindowTexts& texts,
         PlaceOfWindow place = PlaceOfWindow::kKept);

  // Runs an order that may ask the operator, or that holds the tick for a while (ui/WhenFree.h).
  void WhenFree(std::function<void()> order);

 protected:
  // Measures for the window's size, at the end of its making and whenever the unit is another.
  void Arrange();
  double Unit() const { return unit_; }
  // What a window's inside may take of its screen, pixels: the frame stands around it.
  QSize RoomOnScreen() const;
  const Translation& Texts() const { return texts_; }

  virtual void ArrangeParts(double unit) = 0;
  // The window is being left, at a free moment: whether it may, which may ask.
  virtual bool MayLeave() { return true; }
  virtual void Left() { hide(); }

  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

  Station& station_;

 private:
  void KeepPlaceOf();
  void Leave();

  const Translation texts_;
  const PlaceOfWindow place_;
  bool placed_ = false;
  double unit_ = 1;
};

}  // namespace zemo
