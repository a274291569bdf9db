// Sources of known samples and an opener that gives them out by name, for the tests of the sound.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/SoundChain.h"
#include "platform/SoundSource.h"

namespace zemo::testing {

// A frame's left sample by its number; the right one is the left one negated.
using Wave = std::function<float(int64_t frame)>;

inline Wave Constant(float value) {
  return [value](int64_t) { return value; };
}

inline Wave Sine(double hertz, double amplitude) {
  return [=](int64_t frame) {
    const double turns = hertz * static_cast<double>(frame) / kSampleRate;
    return static_cast<float>(amplitude * std::sin(2.0 * M_PI * (turns - std::floor(turns))));
  };
}

// Different for each frame below 2^20 and exact in a float: tells which frame came out.
inline Wave Numbered() {
  return [](int64_t frame) { return static_cast<float>(frame + 1) / (1 << 20); };
}

class WaveSource : public SoundSource {
 public:
  // `dries`: frames after which it gives nothing more, though its length says otherwise.
  WaveSource(Wave wave, int64_t lengthFrames, int64_t dries = INT64_MAX)
      : wave_(std::move(wave)), length_(lengthFrames), end_(std::min(lengthFrames, dries)) {}

  int64_t LengthFrames() const override { return length_; }
  int Read(float* stereo, int frames) override {
    const int count =
        static_cast<int>(std::min<int64_t>(frames, std::max<int64_t>(0, end_ - frame_)));
    for (int i = 0; i < count; ++i) {
      stereo[2 * i] = wave_(frame_ + i);
      stereo[2 * i + 1] = -stereo[2 * i];
    }
    frame_ += count;
    return count;
  }
  void Seek(int64_t frame) override { frame_ = std::clamp<int64_t>(frame, 0, length_); }

 private:
  Wave wave_;
  int64_t length_;
  int64_t end_;
  int64_t frame_ = 0;
};

class WaveOpener : public SoundOpener {
 public:
  void Add(const std::string& path, Wave wave, int64_t lengthFrames, int64_t dries = INT64_MAX) {
    files_[path] = {std::move(wave), lengthFrames, dries};
  }
  void Remove(const std::string& path) { files_.erase(path); }

  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    const auto file = files_.find(path);
    if (file == files_.end()) throw SoundError(path + ": no such file");
    return std::make_unique<WaveSource>(file->second.wave, file->second.length, file->second.dries);
  }

 private:
  struct File {
    Wave wave;
    int64_t length;
    int64_t dries;
  };
  std::map<std::string, File> files_;
};

// Writes down what the chain tells, one text each: "end 0 fade", "volume 1 100>200", "output
// start".
class ObserverLog : public SoundObserver {
 public:
  void OnSlotEnd(int slot, SlotEnd reason) override {
    static const char* const kReasons[] = {"file", "fade", "stopped", "restart"};
    Note("end " + std::to_string(slot) + " " + kReasons[static_cast<int>(reason)]);
  }
  void OnFade(int slot, int ms) override {
    Note("fade " + std::to_string(slot) + " " + std::to_string(ms));
  }
  void OnVolume(int slot, int from, int to) override {
    Note("volume " + std::to_string(slot) + " " + std::to_string(from) + ">" + std::to_string(to));
  }
  void OnOutput(const char* state) override { Note(std::string("output ") + state); }

  // What was told since the last call.
  std::vector<std::string> Take() { return std::exchange(lines_, {}); }
  std::function<void()> onNote;  // called at each

 private:
  void Note(std::string line) {
    lines_.push_back(std::move(line));
    if (onNote) onNote();
  }
  std::vector<std::string> lines_;
};

using Lines = std::vector<std::string>;

// The largest difference between neighbouring left samples.
inline float LargestJump(const std::vector<float>& stereo) {
  float largest = 0.0f;
  for (size_t i = 2; i < stereo.size(); i += 2) {
    largest = std::max(largest, std::abs(stereo[i] - stereo[i - 2]));
  }
  return largest;
}

inline float LargestMagnitude(const std::vector<float>& stereo) {
  float largest = 0.0f;
  for (const float sample : stereo) largest = std::max(largest, std::abs(sample));
  return largest;
}

}  // namespace zemo::testing
