// An open window that takes over what others store in the base.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <string>

class QWidget;

namespace zemo {

struct Station;

// Twice a second, while the window is seen and at a free moment, it asks the base for its sign of
// others' writes, which costs microseconds and waits for no lock, and the window for that of what
// it shows beside the base; where either is another one the window reads again what it shows.
// Thread: the logic's. The station and the window outlive it.
class BaseFollower : public QObject {
 public:
  static constexpr int kLookMs = 500;

  // What others stored before this is made was read by nobody. `takeOver` reads again; false: it
  // cannot now, and is called again. Of what it throws nothing is told: it is called again.
  // `sideSign` gives another text once a side file that the window shows has changed.
  BaseFollower(
      Station& station, QWidget& window, std::function<bool()> takeOver,
      std::function<std::string()> sideSign = [] { return std::string(); });

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Look();

  Station& station_;
  QWidget& window_;
  const std::function<bool()> takeOver_;
  const std::function<std::string()> sideSign_;
  int64_t seen_ = 0;
  std::string sideSeen_;
  QTimer timer_;
};

}  // namespace zemo
