// VueIntro: seconds of the introduction gone and in all, as a filled bar with its text.
#pragma once

#include <QWidget>

namespace zemo {

class IntroBar : public QWidget {
 public:
  explicit IntroBar(QWidget* parent = nullptr);
  void Show(bool visible, int elapsedSec, int lengthSec);
  QString Text() const { return text_; }
  int FilledPercent() const;

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  int elapsedSec_ = 0, lengthSec_ = 0;
  QString text_;
};

}  // namespace zemo
