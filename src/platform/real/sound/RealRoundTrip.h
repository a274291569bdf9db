// The round trip on the devices of this machine, by the same preview and recorder as a join that is
// heard and a track that is spoken into it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/RoundTrip.h"

namespace zemo {

class EventLoop;
class Folder;
class PreviewChain;
class Recorder;
class SoundChain;

// Thread: the logic's. None of what it is given is owned; the folder takes two files for the time
// of a measure. What the preview and the recorder were told to call is forgotten.
class RealRoundTrip final : public RoundTrip {
 public:
  RealRoundTrip(EventLoop& loop, PreviewChain& preview, Recorder& recorder, Folder& folder)
      : loop_(loop), preview_(preview), recorder_(recorder), folder_(folder) {}

  int32_t MeasureMs(int output, int input) override;

 private:
  int32_t Measure(int output, int input);
  void Play(int output);
  int32_t BeginRecording(int input);
  void Await(const char* fault, const std::function<bool()>& condition);
  int32_t FoundMs();
  void End();

  EventLoop& loop_;
  PreviewChain& preview_;
  Recorder& recorder_;
  Folder& folder_;
  std::string fault_;  // that ended the output or the recording
};

// Where the noise begins among the samples, frames; none where nothing there is like it.
std::optional<int64_t> NoisePlace(const std::vector<int16_t>& mono);
// The noise, as samples of 16 bits.
std::vector<int16_t> RoundTripNoise();

}  // namespace zemo
