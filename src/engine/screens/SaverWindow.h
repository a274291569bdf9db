// The screen saver: a text that moves about a black screen until a key or a click. The engine does
// not know of it.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

namespace zemo {

class SaverWindow : public QWidget {
 public:
  // `text` is asked for at each move; closing calls `closed` and stops the moves.
  SaverWindow(std::function<QString()> text, std::function<void()> closed);
  void Move();  // to another place at random, the text whole on the screen
  QRect TextRect() const { return place_; }
  bool Moving() const { return TimerVeille_.isActive(); }

 protected:
  void paintEvent(QPaintEvent*) override;
  void keyPressEvent(QKeyEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void closeEvent(QCloseEvent*) override;

 private:
  std::function<QString()> askText_;
  std::function<void()> closed_;
  QTimer TimerVeille_;
  QString text_;
  QFont font_;
  QRect place_;
};

}  // namespace zemo
