// The window of the voice tracks as the program has it. Whoever holds this opens it.
#pragma once

#include <QPointer>

#include "voicetrack/screens/VoiceTrackWindow.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its window works.
class VoiceTrackDesk {
 public:
  VoiceTrackDesk(Station& station, VoiceTrackSources sources);
  ~VoiceTrackDesk();

  // On the row of that key, over the window that the list is in; on another row where it is open.
  void Open(QWidget& over, int64_t key);
  // Ahead of the station's end: the window is left. False while a routine works, at whose end it
  // closes.
  bool Leave();
  VoiceTrackWindow* Window() { return window_; }  // null before the first opening

 private:
  Station& station_;
  VoiceTrackSources sources_;
  QPointer<VoiceTrackWindow> window_;  // a child of the one that it stands over
};

}  // namespace zemo
