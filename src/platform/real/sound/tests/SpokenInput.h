// An input whose sound the test gives, and a reader of the file that becomes of it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/real/sound/InputDevice.h"

namespace zemo::testing {

class SpokenInput {
 public:
  std::atomic<int> channels{2};
  std::atomic<int> rate{kSampleRate};
  std::atomic<bool> absent{false};  // the next opening fails
  std::atomic<bool> holds{false};   // an opening waits
  std::atomic<bool> gone{false};    // its system says so
  std::atomic<int> lastFrames{0};   // that it gives with its going, each sample a 7
  std::atomic<int> asked{0};        // openings that were begun
  std::atomic<int> openings{0};
  std::atomic<int> closings{0};

  WishedInput Make(const std::string& identity = "spoken") {
    WishedInput wished{identity, {}};
    wished.systems.push_back(std::make_unique<Device>(*this));
    return wished;
  }

  // While it is open: so many frames, each sample by the number of its frame.
  void Give(int frames, const std::function<int(int64_t frame)>& sample) {
    const int width = channels;
    std::vector<int16_t> block(static_cast<size_t>(frames * width));
    for (size_t i = 0; i < block.size(); ++i)
      block[i] = static_cast<int16_t>(sample(static_cast<int64_t>(i) / width));
    ring_->Take(block.data(), frames);
  }
  void Give(int frames, int value) {
    Give(frames, [value](int64_t) { return value; });
  }

 private:
  class Device : public InputDevice {
   public:
    explicit Device(SpokenInput& test) : test_(test) {}
    Opened Open(InputRing& ring) override {
      ++test_.asked;
      while (test_.holds) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      if (test_.absent) throw SoundError("spoken input: absent");
      ring.Reset(test_.channels);
      test_.ring_ = &ring;
      ++test_.openings;
      return {"spoken input", test_.rate, 0};
    }
    void Close() override { ++test_.closings; }
    OutputDevice::Condition Look() override {
      if (!test_.gone) return OutputDevice::Condition::kFine;
      test_.Give(test_.lastFrames, 7);
      return OutputDevice::Condition::kGone;
    }

   private:
    SpokenInput& test_;
  };

  InputRing* ring_ = nullptr;
};

// A file as a reader finds it: what its header counts, and what lies behind that.
struct RecordedWav {
  int channels = 0, rate = 0, bits = 0;
  int64_t frames = 0;            // that the header counts
  int64_t behind = 0;            // bytes behind those
  std::vector<int16_t> samples;  // interleaved
  std::vector<int16_t> Left() const {
    std::vector<int16_t> left;
    for (size_t i = 0; i < samples.size(); i += static_cast<size_t>(channels))
      left.push_back(samples[i]);
    return left;
  }
};

inline std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Empty where there is no WAV file of the plain form, or one that is shorter than it says.
inline RecordedWav ReadRecordedWav(const std::string& path) {
  constexpr size_t kHeader = 44;
  const std::string bytes = BytesOf(path);
  RecordedWav wav;
  if (bytes.size() < kHeader || bytes.substr(0, 4) != "RIFF" || bytes.substr(36, 4) != "data")
    return wav;
  const auto number = [&bytes](size_t at, size_t size) {
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, size);
    return value;
  };
  const uint32_t data = number(40, 4);
  if (number(4, 4) != data + 36 || bytes.size() < kHeader + data) return wav;
  wav.channels = static_cast<int>(number(22, 2));
  wav.rate = static_cast<int>(number(24, 4));
  wav.bits = static_cast<int>(number(34, 2));
  wav.frames = data / (2 * wav.channels);
  wav.behind = static_cast<int64_t>(bytes.size() - kHeader - data);
  wav.samples.resize(data / 2);
  std::memcpy(wav.samples.data(), bytes.data() + kHeader, data);
  return wav;
}

}  // namespace zemo::testing
