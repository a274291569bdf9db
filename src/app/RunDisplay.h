// What a run without a screen shows: a line for each element that starts, for faults and for rows
// that cannot be played, and on a terminal a status line that is rewritten in place; elsewhere a
// silence that lasts is a line, and so is its end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/ErrorLine.h"
#include "station/EngineEvents.h"

namespace zemo {

struct Station;

// Never waits for a reader: what cannot be written at once is left out. Thread: the logic's.
class RunDisplay : public EventSink {
 public:
  explicit RunDisplay(int output);  // a file descriptor, which stays the caller's

  // What is shown from now on, lines and status; it must live as long as they are asked for.
  void Show(const Station& station) { station_ = &station; }

  void OnEvent(const Event& event) override;
  void OnNotice(const std::string& where, const std::string& text) override;
  void ShowStatus();                     // once a second
  void ShowLine(std::string_view text);  // with the time of the station's clock in front
  // On standard error.
  void ShowFault(std::string_view text, Gravity gravity = Gravity::kError);
  void Finish();  // takes the status line away

 private:
  void TellSilence();
  int64_t RemainingMs() const;  // of what is heard; 0 in silence
  std::string StatusText() const;
  void Write(const std::string& text) const;

  const Station* station_ = nullptr;
  int output_;
  bool terminal_;
  int64_t heardUntilMs_ = 0;    // monotonic: what was read into the buffers is heard until then
  std::string title_;           // of the element that began last
  int64_t silentSinceMs_ = -1;  // monotonic; -1: something sounds, or nothing has to
  bool silenceTold_ = false;
  std::string status_;  // as it stands on the terminal; empty: none does
};

}  // namespace zemo
