// A line of text that never moves the layout: it takes the room that it gets, shrinks its type
// where the text is long, and ends in dots with the whole text as its tool tip where even that is
// too much.
#pragma once

#include <QLabel>

namespace zemo {

// text() is the whole text. Thread: the screen's.
class FitLabel : public QLabel {
 public:
  explicit FitLabel(QWidget* parent = nullptr);

  // Type of the text in pixels, and how small it may get.
  void SetType(const QFont& font, int smallestPixels);
  void SetColour(const QColor& colour);
  void Show(const QString& text);  // only when it is another

  bool Shortened() const;  // the text ends in dots

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  void Fit();

  QFont type_;
  QFont fitted_;
  int smallest_ = 0;
  QString shown_;
  QColor colour_;
};

}  // namespace zemo
