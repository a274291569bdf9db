#include "app/RunDisplay.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/Clock.h"
#include "platform/SoundChain.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {
constexpr std::string_view kEraseLine = "\r\033[K";
constexpr int64_t kLastingSilenceMs = 3000;
constexpr int kUsualWidth = 80;  // columns, where the terminal does not tell

int Width(int terminal) {
  winsize size{};
  return ioctl(terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualWidth;
}

// A pipe with room for its smallest whole write, and a terminal that is not held, take a line
// without waiting.
bool HasRoom(int descriptor) {
  pollfd room{.fd = descriptor, .events = POLLOUT, .revents = 0};
  return poll(&room, 1, 0) == 1 && (room.revents & POLLOUT) != 0;
}
}  // namespace

RunDisplay::RunDisplay(int output) : output_(output), terminal_(isatty(output) != 0) {}

void RunDisplay::OnEvent(const Event& event) {
  if (event.name == "start") {
    const std::string title = Trim(event.Text("title"));
    title_ = title.empty() ? event.Text("file") : title;
    ShowLine(title_ + "  " + FormatDuration(event.Number("length_ms")));
  } else if (event.name == "silence") {
    const bool begins = event.Text("state") == "begin";
    silentSinceMs_ = begins && station_ ? station_->platform.clock.MonotonicMs() : -1;
    const bool told = !begins && std::exchange(silenceTold_, false);
    if (told && station_->engine.IsRunning) ShowLine("sound again");
  } else if (event.name == "end" && station_) {
    heardUntilMs_ = station_->platform.clock.MonotonicMs() +
                    static_cast<int64_t>(station_->engine.BufferOffsetSec * 1000);
  } else if (event.name == "error") {
    ShowFault(event.Text("where") + ": " + event.Text("text"));
  }
}

void RunDisplay::OnNotice(const std::string& where, const std::string& text) {
  ShowFault(where + ": " + text, Gravity::kWarning);
}

void RunDisplay::ShowFault(std::string_view text, Gravity gravity) {
  if (!HasRoom(STDERR_FILENO)) return;
  if (!status_.empty()) Write(std::string(kEraseLine));
  PrintError(text, gravity);
  if (!status_.empty()) Write(status_);
}

void RunDisplay::ShowLine(std::string_view text) {
  const std::string line = Printable(TimeText(station_->Now()) + "  " + std::string(text)) + "\n";
  if (status_.empty())
    Write(line);
  else
    Write(std::string(kEraseLine) + line + status_);
}

// Between two elements it may be silent for a moment.
void RunDisplay::TellSilence() {
  if (silentSinceMs_ < 0 || silenceTold_ ||
      station_->platform.clock.MonotonicMs() - silentSinceMs_ < kLastingSilenceMs)
    return;
  silenceTold_ = true;
  ShowLine("silence on air");
}

void RunDisplay::ShowStatus() {
  if (!terminal_) return TellSilence();
  status_ = FirstCharacters(Printable(StatusText()), Width(output_) - 1);
  Write(std::string(kEraseLine) + status_);
}

void RunDisplay::Finish() {
  if (!status_.empty()) Write(std::string(kEraseLine));
  status_.clear();
}

int64_t RunDisplay::RemainingMs() const {
  const SoundChain& sound = station_->platform.sound;
  if (sound.ElementSounds()) return std::max(station_->engine.RemainingMs, 1);
  return std::max<int64_t>(heardUntilMs_ - station_->platform.clock.MonotonicMs(), 0);
}

std::string RunDisplay::StatusText() const {
  std::string text = TimeText(station_->Now());
  if (!station_->engine.IsRunning) text += "  stopping";
  const int64_t remainingMs = RemainingMs();
  if (remainingMs > 0)
    text += "  -" + FormatDuration(remainingMs) + "  " + title_;
  else
    text += "  silence";
  if (!station_->PL.Empty()) {
    const OnAirRow& next = station_->PL.Row(1);
    text += "  |  next: " + next.title + "  " + next.secondLine;
  }
  return text;
}

void RunDisplay::Write(const std::string& text) const {
  if (!HasRoom(output_)) return;
  [[maybe_unused]] const ssize_t written = write(output_, text.data(), text.size());
}

}  // namespace zemo
