// The sound of the music card shown: its waveform with the marks, and what is heard of it on the
// prelisten.
#pragma once

#include <QFrame>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "library/CardSound.h"
#include "library/screens/MarkerView.h"

class QBoxLayout;
class QLabel;
class QPushButton;

namespace zemo {

class Translation;
class Waveforms;
struct LibraryEditor;
struct Station;

// While it is seen it follows card, boxes and player by itself. A card is looked at once it stands
// still, so that moving through many reads no file. Thread: the logic's.
class MarkerPane : public QFrame {
 public:
  // All outlive it; `waveforms` may be null: no shape is drawn. `marked`: a box of the card has
  // another value.
  MarkerPane(Station& station, LibraryEditor& editor, Waveforms* waveforms,
             const Translation& texts, std::function<void()> marked, QWidget* parent);

  void Arrange(double unit, bool wide);  // wide: its buttons stand in one row
  void Look();                           // at the card shown, now
  void Refresh();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QPushButton* Button(const char* name, std::function<void()> pressed);
  void MakeMarkButtons(QBoxLayout& row);
  void MakeJoinButtons(QBoxLayout& row);
  void ConnectView();
  void Poll();
  bool Looked() const;
  void Change(const std::function<void(SoundMarkers&)>& change);
  void PutMark(Mark mark);  // where the card is heard, else at the cursor
  void Press(int x);
  void Drag(int x);
  bool Type(const QKeyEvent& key);
  bool TypeMark(const QKeyEvent& key);
  bool TypeView(const QKeyEvent& key);
  void Zoom(int steps);
  void Listen();
  void Join(Library::JoinSide side);
  void ReadShapes();
  void ShowButtons();
  void ShowPartners();
  SoundMarkers& Marks();

  Station& station_;
  LibraryEditor& editor_;
  Waveforms* waveforms_;
  const Translation& texts_;
  std::function<void()> marked_;
  QTimer poll_;

  bool lengthKnown_ = false;  // as the file has it
  MarkerView::Shapes shapes_;
  Mark dragged_ = Mark::kNone;
  std::string standing_;  // the card that was shown at the last poll
  int stands_ = 0;        // polls since then
  std::string looked_;    // the card that was looked at
  bool waits_ = false;    // for a free moment, to look

  MarkerView* VueOnde;
  QBoxLayout* rows_;
  QLabel* LblPosition;
  QPushButton *BtnEcoute, *BtnAnnule, *BtnPropose, *BtnRetenir;
  QPushButton *BtnRaccordAvant, *BtnRaccordApres;
  std::vector<QPushButton*> markButtons_;
};

}  // namespace zemo
