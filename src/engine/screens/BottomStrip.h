// The foot of the screen: the list's total, the buffers and the cycle, the contacts, the ticker,
// and the health line with the last error.
#pragma once

#include <QFrame>
#include <QWidget>
#include <array>

#include "engine/HealthLine.h"
#include "ui/Translation.h"

class QLabel;

namespace zemo {

class FitLabel;
struct MainScreen;
struct ScreenNotices;

// LblInfo: a line that runs from right to left while it scrolls.
class Ticker : public QWidget {
 public:
  explicit Ticker(QWidget* parent);
  void Show(const QString& text, bool scrolling, int64_t nowMs);
  QString Text() const { return text_; }
  bool Scrolling() const { return scrolling_; }

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  QString text_;
  bool scrolling_ = false;
  int64_t begunMs_ = 0;
  int shift_ = 0;  // pixels
};

class BottomStrip : public QFrame {
 public:
  BottomStrip(Translation texts, QWidget* parent);
  void Arrange(double unit);
  void ShowStation(const MainScreen& screen, const ScreenNotices& notices, int64_t nowMs);
  void ShowHealth(const HealthLine& health, int64_t nowMs);
  // What became of an order, for some seconds in the ticker's place; empty: nothing any more.
  void Tell(const QString& text, int64_t nowMs);

 private:
  QLabel* Figure(const char* name);
  void ShowInputs(const MainScreen& screen);

  const Translation texts_;
  double unit_ = 1;
  QLabel *LblTpsTot, *HHTot, *MnTot, *SSTot, *LblCycle, *LblMaxPlayInfo;
  FitLabel *LblOffsetBuffers, *LblErreur, *LblProgression, *LblAvis;
  int64_t toldUntilMs_ = 0;  // monotonic
  std::array<QLabel*, 2> colons_;
  std::array<QLabel*, 4> LedSat;
  QLabel* LedJoystique;
  Ticker* LblInfo;
  std::array<FitLabel*, HealthLine::kFigures> health_;
};

}  // namespace zemo
