// What benchmarks in real time share: how punctual the air is, from the engine's events, the loop
// and the output.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/RealStation.h"
#include "station/EngineEvents.h"

namespace zemo::bench {

// Hears the events of a station on air and asks its loop and its output. Thread: the logic's.
class AirWatch : public EventSink {
 public:
  explicit AirWatch(RealStation& real) : real_(real) {
    timer_ = real.loop.MakeTimer(10, [this] { NoteLoop(); });
    timer_->SetEnabled(true);
  }

  void OnEvent(const Event& event) override {
    if (event.name == "start") {
      NoteStart(event);
    } else if (event.name == "onair") {
      exitMs_ = event.Number("mix_ms");
      exitKnown_ = true;
      onAirMs_ = real_.clock.MonotonicMs();
    } else if (event.name == "end") {
      ranOut_ = real_.station.PL.Empty();
    } else if (event.name == "skip") {
      ++skipped_;
    } else if (event.name == "request") {
      ++requests_;
      refused_ = event.Number("refused");
    } else if (event.name == "error") {
      std::fprintf(stderr, "%s\n", event.Text("text").c_str());
      ++errors_[event.Text("where") + ": " + event.Text("text")];
    }
  }

  std::string doing;  // what whoever drives the run is at, for the two worst moments

  // How late an element began, and how many lost files stood before it: each takes a tick.
  struct Late {
    int64_t ms = 0;
    int skipped = 0;
  };
  const std::vector<Late>& Begun() const { return late_; }
  int64_t AwayMs() const { return awayMs_; }  // the longest absence of the loop
  const std::string& AwayAt() const { return awayAt_; }
  // The longest time without a sound between two elements; what is on air now counts as well.
  int64_t LongestSilenceMs() const { return std::max(silenceMs_, SilentFor()); }
  const std::string& LateAt() const { return lateAt_; }

  const std::map<std::string, int>& Errors() const { return errors_; }  // how often each came

  void Tell() {
    std::vector<int64_t> lateMs;
    for (const Late& late : late_) lateMs.push_back(late.ms);
    std::sort(lateMs.begin(), lateMs.end());
    const SoundHealth health = real_.sound->TakeHealth();
    std::printf("  requests                         %8d, %d cards refused in the last\n", requests_,
                static_cast<int>(refused_));
    std::printf("  transitions                      %8zu, and %d after the list had run out\n",
                lateMs.size(), afterSilence_);
    const auto at = [](const std::string& what) { return what.empty() ? "" : " (" + what + ")"; };
    if (!lateMs.empty())
      std::printf("  begun late, median and most      %8d and %d ms%s, %d beyond a tick\n",
                  static_cast<int>(lateMs[lateMs.size() / 2]), static_cast<int>(lateMs.back()),
                  at(lateAt_).c_str(), Beyond(lateMs));
    if (overlapped_ > 0)
      std::printf("  exit point within an overlap     %8d, counted from its end\n", overlapped_);
    if (unmeasured_ > 0)
      std::printf("  behind too short an element      %8d, not measured\n", unmeasured_);
    std::printf("  longest absence of the loop      %8d ms%s\n", static_cast<int>(awayMs_),
                at(awayAt_).c_str());
    std::printf("  underruns, late frames           %8d, %d\n", static_cast<int>(health.underruns),
                static_cast<int>(health.lateFrames));
  }

 private:
  // The slot that sounded until now is still read; what it was read beyond its exit point is what
  // the new element is late by. Where it has ended though the list was not empty, the clock tells.
  // The tick is held until the overlap before has ended: where a short element's exit point lies
  // within it, that end is what the new one is late by. Slot 2 plays over the air and follows
  // nothing. An element that is over before its predecessor is was never told to be on air, and its
  // exit point is not known.
  void NoteStart(const Event& event) {
    const int64_t slot = event.Number("slot");
    if (slot > 1) return;
    const SoundChain& sound = *real_.sound;
    const int old = slot == 0 ? 1 : 0;
    silenceMs_ = std::max(silenceMs_, SilentFor());
    const std::string title = event.Text("title");
    if (lengthMs_ > 0 && !exitKnown_)
      ++unmeasured_;
    else if (lengthMs_ > 0 && sound.Sounds(old))
      NoteLate(BehindOverlap(sound.Position(old) + exitMs_ - lengthMs_), title);
    else if (lengthMs_ > 0 && !ranOut_)
      NoteLate(BehindOverlap(exitMs_ + SilentFor()), title);
    else if (lengthMs_ > 0)
      ++afterSilence_;
    lengthMs_ = event.Number("length_ms");
    endMs_ = real_.clock.MonotonicMs() + lengthMs_ - event.Number("position_ms");
    exitKnown_ = false;
    skipped_ = 0;
  }

  // Since the last element ended; 0 while one sounds.
  int64_t SilentFor() const {
    if (lengthMs_ == 0 || real_.sound->Sounds(0) || real_.sound->Sounds(1)) return 0;
    return std::max<int64_t>(0, real_.clock.MonotonicMs() - endMs_);
  }

  int64_t BehindOverlap(int64_t behindExitMs) {
    const int64_t behindOverlapMs = real_.clock.MonotonicMs() - onAirMs_;
    if (behindExitMs <= kTickMs || behindOverlapMs >= behindExitMs) return behindExitMs;
    ++overlapped_;
    return behindOverlapMs;
  }

  void NoteLate(int64_t ms, const std::string& title) {
    if (ms > kTickMs)
      std::fprintf(stderr, "%d ms late: %s behind an element of %d ms%s%s\n", static_cast<int>(ms),
                   title.c_str(), static_cast<int>(lengthMs_), doing.empty() ? "" : ", during ",
                   doing.c_str());
    if (ms > mostMs_) {
      mostMs_ = ms;
      lateAt_ = doing;
    }
    late_.push_back({ms, skipped_});
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
  std::vector<Late> late_;
  std::map<std::string, int> errors_;
  std::string lateAt_, awayAt_;
  int64_t lengthMs_ = 0, exitMs_ = 0, endMs_ = 0;  // of what is on air; by the monotonic clock
  int64_t onAirMs_ = 0;                            // when its overlap had ended
  int64_t silenceMs_ = 0, mostMs_ = INT64_MIN;
  int64_t servedMs_ = 0, awayMs_ = 0, refused_ = 0;
  int requests_ = 0, afterSilence_ = 0, unmeasured_ = 0, skipped_ = 0;
  int overlapped_ = 0;
  bool exitKnown_ = false;
  bool ranOut_ = false;  // nothing was there to follow what ended last
};

}  // namespace zemo::bench
