// The head of the screen, to be read from two metres: on air or not, what plays and how long it
// still runs, what comes next and when, the time, the next break and the pip.
#pragma once

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <array>
#include <memory>

#include "platform/Waveforms.h"
#include "ui/Translation.h"

namespace zemo {

class FitLabel;
class IntroBar;
class LevelMeter;
class WaveformView;
struct LocalDateTime;
struct NextUp;
struct OutputFigures;
struct MainScreen;
struct Station;

class StatusHeader : public QFrame {
 public:
  StatusHeader(Translation texts, QWidget* parent);

  void Arrange(double unit);

  // Each draws only what is another than before.
  // `silent`: running, and nothing has left the output for some seconds.
  void ShowStation(const Station& station, const MainScreen& screen, const LocalDateTime& now,
                   const OutputFigures& output, bool silent);
  void ShowNext(const NextUp& next);
  void ShowWave(const Station& station, const MainScreen& screen,
                std::shared_ptr<const WavePeaks> peaks);
  void ShowLevels(const OutputFigures& output, int64_t nowMs);

 private:
  // A figure with a small heading: NEXT, BREAK, PIP.
  struct Tile {
    QFrame* frame = nullptr;
    QLabel* head = nullptr;
    FitLabel* when = nullptr;
    FitLabel* what = nullptr;
  };
  FitLabel* Line(const char* name);
  QHBoxLayout* Figures(QWidget* zone);
  QLabel* Light(const char* name);
  Tile MakeTile(const char* name);
  QWidget* LeftZone();
  QWidget* MiddleZone();
  QWidget* RightZone();
  void ShowLamp(const Station& station, const OutputFigures& output, bool silent);
  void ShowLights(const MainScreen& screen);
  void ShowClock(const MainScreen& screen, const LocalDateTime& now);
  void ShowElement(const MainScreen& screen, int32_t codeOnAir, uint32_t counterColour);

  const Translation texts_;
  bool sounding_ = false;
  bool idle_ = true;     // it does not run, and nothing sounds any more
  int32_t introMs_ = 0;  // of the element on air; the count forgets it at its end
  std::string introFile_;

  QLabel* lamp_;
  FitLabel* lampReason_;  // where the sound goes, while no device takes it
  QLabel* hh_;
  QLabel* mn_;
  QLabel* ss_;
  std::array<QLabel*, 2> colons_;
  FitLabel *LblMode, *LblDateTitre, *LblArtiste, *LblEncours, *LblLongueur, *PSortie, *InfoDate,
      *Temp;
  QLabel *LblTemp, *LblFeu, *LblTopage, *LblIntro;
  QLabel *Tmn, *Tss;
  std::array<QLabel*, 2> figureHeads_;  // of LblLongueur and LblEncours
  WaveformView* VuMettre;
  IntroBar* VueIntro;
  LevelMeter *MMLevelX1, *MMLevelX2;
  Tile next_, break_, pip_;
};

}  // namespace zemo
