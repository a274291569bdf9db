// An open window that takes over what others store in the base.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>

class QWidget;

namespace zemo {

struct Station;

// Twice a second, while the window is seen and at a free moment, it asks the base for its sign of
// others' writes, which costs microseconds and waits for no lock; the window then reads again what
// it shows. Thread: the logic's. The station and the window outlive it.
class BaseFollower : public QObject {
 public:
  static constexpr int kLookMs = 500;

  // What others stored before this is made was read by nobody. `takeOver` reads again; false: it
  // cannot now, and is called again. Of what it throws nothing is told: it is called again.
  BaseFollower(Station& station, QWidget& window, std::function<bool()> takeOver);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Look();

  Station& station_;
  QWidget& window_;
  const std::function<bool()> takeOver_;
  int64_t seen_ = 0;
  QTimer timer_;
};

}  // namespace zemo
