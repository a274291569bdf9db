// What benchmarks in real time share: how punctual the air is, from the engine's events, the loop
// and the output.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/RealStation.h"

namespace zemo::bench {

inline std::string TextOf(const Event& event, std::string_view name) {
  for (const auto& [member, value] : event.members)
    if (member == name)
      if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return {};
}

inline int64_t NumberOf(const Event& event, std::string_view name) {
  for (const auto& [member, value] : event.members) {
    if (member != name) continue;
    if (const auto* whole = std::get_if<int64_t>(&value)) return *whole;
    if (const auto* real = std::get_if<double>(&value)) return static_cast<int64_t>(*real);
  }
  return 0;
}

// Hears the events of a station on air and asks its loop and its output. Thread: the logic's.
class AirWatch : public EventSink {
 public:
  explicit AirWatch(RealStation& real) : real_(real) {
    timer_ = real.loop.MakeTimer(10, [this] { NoteLoop(); });
    timer_->SetEnabled(true);
  }

  void OnEvent(const Event& event) override {
    if (event.name == "start") {
      NoteStart(NumberOf(event, "slot"), NumberOf(event, "length_ms"), TextOf(event, "title"));
    } else if (event.name == "onair") {
      exitMs_ = NumberOf(event, "mix_ms");
      exitKnown_ = true;
    } else if (event.name == "end") {
      ranOut_ = real_.station.PL.Empty();
    } else if (event.name == "request") {
      ++requests_;
      refused_ = NumberOf(event, "refused");
    } else if (event.name == "error") {
      std::fprintf(stderr, "%s\n", TextOf(event, "text").c_str());
      ++errors_[TextOf(event, "where") + ": " + TextOf(event, "text")];
    }
  }

  std::string doing;  // what whoever drives the run is at, for the two worst moments

  const std::map<std::string, int>& Errors() const { return errors_; }  // how often each came

  void Tell() {
    std::sort(lateMs_.begin(), lateMs_.end());
    const SoundHealth health = real_.sound->TakeHealth();
    std::printf("  requests                         %8d, %d cards refused in the last\n", requests_,
                static_cast<int>(refused_));
    std::printf("  transitions                      %8zu, and %d after the list had run out\n",
                lateMs_.size(), afterSilence_);
    const auto at = [](const std::string& what) { return what.empty() ? "" : " (" + what + ")"; };
    if (!lateMs_.empty())
      std::printf("  begun late, median and most      %8d and %d ms%s, %d beyond a tick\n",
                  static_cast<int>(lateMs_[lateMs_.size() / 2]), static_cast<int>(lateMs_.back()),
                  at(lateAt_).c_str(), Beyond(lateMs_));
    if (unmeasured_ > 0)
      std::printf("  behind too short an element      %8d, not measured\n", unmeasured_);
    std::printf("  longest absence of the loop      %8d ms%s\n", static_cast<int>(awayMs_),
                at(awayAt_).c_str());
    std::printf("  underruns, late frames           %8d, %d\n", static_cast<int>(health.underruns),
                static_cast<int>(health.lateFrames));
  }

 private:
  // The slot that sounded until now is still read; what it was read beyond its exit point is what
  // the new element is late by. Where it has ended though the list was not empty, that is its exit
  // distance at least. Slot 2 plays over the air and follows nothing. An element that is over
  // before its predecessor is was never told to be on air, and its exit point is not known.
  void NoteStart(int64_t slot, int64_t lengthMs, const std::string& title) {
    if (slot > 1) return;
    const SoundChain& sound = *real_.sound;
    const int old = slot == 0 ? 1 : 0;
    if (lengthMs_ > 0 && !exitKnown_)
      ++unmeasured_;
    else if (lengthMs_ > 0 && sound.Sounds(old))
      NoteLate(sound.Position(old) + exitMs_ - lengthMs_, title);
    else if (lengthMs_ > 0 && !ranOut_)
      NoteLate(exitMs_, title);
    else if (lengthMs_ > 0)
      ++afterSilence_;
    lengthMs_ = lengthMs;
    exitKnown_ = false;
  }

  void NoteLate(int64_t ms, const std::string& title) {
    if (ms > kTickMs)
      std::fprintf(stderr, "%d ms late: %s behind an element of %d ms%s%s\n", static_cast<int>(ms),
                   title.c_str(), static_cast<int>(lengthMs_), doing.empty() ? "" : ", during ",
                   doing.c_str());
    if (lateMs_.empty() || ms > *std::max_element(lateMs_.begin(), lateMs_.end())) lateAt_ = doing;
    lateMs_.push_back(ms);
  }
  static int Beyond(const std::vector<int64_t>& lateMs) {
    return static_cast<int>(
        std::count_if(lateMs.begin(), lateMs.end(), [](int64_t ms) { return ms > kTickMs; }));
  }

  void NoteLoop() {
    const int64_t now = real_.clock.MonotonicMs();
    if (servedMs_ > 0 && now - servedMs_ > awayMs_) {
      awayMs_ = now - servedMs_;
      awayAt_ = doing;
    }
    servedMs_ = now;
  }

  static constexpr int64_t kTickMs = 100;

  RealStation& real_;
  std::unique_ptr<LoopTimer> timer_;
  std::vector<int64_t> lateMs_;
  std::map<std::string, int> errors_;
  std::string lateAt_, awayAt_;
  int64_t lengthMs_ = 0, exitMs_ = 0;  // of what is on air
  int64_t servedMs_ = 0, awayMs_ = 0, refused_ = 0;
  int requests_ = 0, afterSilence_ = 0, unmeasured_ = 0;
  bool exitKnown_ = false;
  bool ranOut_ = false;  // nothing was there to follow what ended last
};

}  // namespace zemo::bench
