// The window of the voice tracks: the joins of the list beside one of them, with its titles, its
// picture and the controls of its track. It shows a VoiceTrackEditor and calls its routines.
#pragma once

#include <QTimer>
#include <array>
#include <memory>
#include <string>

#include "platform/Waveforms.h"
#include "ui/OfficeWindow.h"
#include "voicetrack/VoiceTrackScreen.h"
#include "voicetrack/screens/JoinView.h"
#include "voicetrack/screens/JoinZoom.h"
#include "voicetrack/screens/VoiceTrackPage.h"

class QLabel;
class QPushButton;

namespace zemo {

class JoinCards;
class JoinList;

// What the window is given besides the station.
struct VoiceTrackSources {
  Waveforms* waveforms = nullptr;  // none: no shape is drawn
};

// Modal to the window that it stands over, which owns it, and not to the air. Thread: the logic's.
// The station outlives it.
class VoiceTrackWindow : public OfficeWindow {
 public:
  VoiceTrackWindow(Station& station, VoiceTrackSources sources, QWidget& over);
  void Open(int64_t key);  // of a row of PL; nothing where it is gone or the menus are locked
  bool IsOpen() const override { return editor_.open || Barred(); }
  void Refresh();  // as it does 20 times a second
  const VoiceTrackEditor& Editor() const { return editor_; }

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  bool MayLeave() override;
  void keyPressEvent(QKeyEvent* event) override;
  void Left() override;

 private:
  void MakeOrders();
  QWidget* Side();
  QWidget* Foot();
  void ConnectView();
  QPushButton* Button(const char* name, const QKeySequence& keys,
                      void (*routine)(Station&, VoiceTrackEditor&), QWidget* parent);
  void ChooseFile();
  void ChooseEditor();
  void OpenNow(int64_t key);

  // --- the picture ---
  JoinView::Picture PictureNow();
  JoinZoom::Span WholeSpan(const JoinPlan& plan) const;
  JoinZoom::Span WholeSpanNow();
  void PutSpan(JoinView::Picture& picture);
  void ReadShapes(JoinView::Picture& picture);
  void MoveTrack(int32_t ms);
  void PlayOrStop();
  void CursorHome();
  QString Note() const;

  const VoiceTrackSources sources_;
  VoiceTrackEditor editor_;
  VoiceTrackOrders orders_;
  QTimer poll_;
  int64_t joinsShownMs_ = 0;  // monotonic
  int32_t cursorMs_ = 0;
  JoinZoom zoom_;
  // Of each sound the part that was asked for last, and what became of it.
  struct Shape {
    std::string file;  // and which take of it
    int64_t fromFrame = 0, toFrame = 0;
    std::shared_ptr<const WavePart> part;
  };
  std::array<Shape, JoinView::kLanes> shapes_;

  JoinCards* cards_ = nullptr;
  JoinList* ListJoins = nullptr;
  JoinView* VueRaccord = nullptr;
  VoiceTrackPage* page_ = nullptr;
  QWidget* side_ = nullptr;
  QLabel *LblJoins = nullptr, *LblMicro = nullptr, *LblSortie = nullptr, *note_ = nullptr;
};

}  // namespace zemo
