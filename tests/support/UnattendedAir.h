// The program as it comes up after a power loss, with nobody in front of it: no order to start,
// only the flag of its machine. It is on air once a sound leaves its output, which is a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "support/Child.h"

namespace zemo::test {

// The machine folder of a machine that was on air, or was not.
inline void PutRunningFlag(const std::string& machine, bool running) {
  std::ofstream(machine + "/ZemoPlay.Ini", std::ios::binary)
      << (running ? "#TRUE#\r\n" : "#FALSE#\r\n");
}

struct AirPlaces {
  std::string program, station, machine;
  std::string sound;   // the WAV file that takes its air, made anew
  std::string errors;  // the file that its standard error is appended to
};

// `zemoradio` with its screen on no display. Killed by the destructor.
class UnattendedAir {
 public:
  explicit UnattendedAir(const AirPlaces& places) : sound_(places.sound) {
    std::filesystem::remove(sound_);
    begun_ = std::chrono::steady_clock::now();
    child_ = std::make_unique<Child>(
        std::vector<std::string>{"sh", "-c", "exec env QT_QPA_PLATFORM=offscreen \"$@\" 2>>\"$0\"",
                                 places.errors, places.program, "--station", places.station,
                                 "--machine", places.machine, "--output", "file:" + places.sound});
  }

  // ms from the start of the process to the first sound; nothing when none comes in the time, or
  // the process ends.
  std::optional<int64_t> HeardWithin(std::chrono::milliseconds bound) {
    const auto latest = begun_ + bound;
    while (!heardMs_ && std::chrono::steady_clock::now() < latest && !child_->Ended()) {
      if (SoundLeft())
        heardMs_ = SinceBegin();
      else
        poll(nullptr, 0, 2);
    }
    return heardMs_;
  }
  bool Heard() {
    if (!heardMs_ && SoundLeft()) heardMs_ = SinceBegin();
    return heardMs_.has_value();
  }

  // True when it ended by itself within that time from now.
  bool EndsWithin(std::chrono::milliseconds bound) {
    const auto latest = std::chrono::steady_clock::now() + bound;
    while (!child_->Ended()) {
      if (std::chrono::steady_clock::now() >= latest) return false;
      poll(nullptr, 0, 1);
    }
    return true;
  }
  void Kill() { child_->Kill(); }

 private:
  int64_t SinceBegin() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 begun_)
        .count();
  }

  // Looks on from where the last look ended.
  bool SoundLeft() {
    std::ifstream file(sound_, std::ios::binary);
    if (!file) return false;
    if (seen_ == 0) {
      std::string head(200, '\0');
      file.read(head.data(), static_cast<std::streamsize>(head.size()));
      const size_t data = head.substr(0, static_cast<size_t>(file.gcount())).find("data");
      if (data == std::string::npos) return false;
      seen_ = static_cast<int64_t>(data) + 8;
      file.clear();
    }
    file.seekg(seen_);
    char samples[16384];
    while (file.read(samples, sizeof samples), file.gcount() > 0) {
      for (std::streamsize i = 0; i < file.gcount(); ++i)
        if (samples[i] != 0) return true;
      seen_ += file.gcount();
    }
    return false;
  }

  std::string sound_;
  std::chrono::steady_clock::time_point begun_;
  std::unique_ptr<Child> child_;
  int64_t seen_ = 0;  // bytes of the file that hold no sound
  std::optional<int64_t> heardMs_;
};

}  // namespace zemo::test
