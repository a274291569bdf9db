#include "platform/real/sound/RealRoundTrip.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <future>
#include <string_view>

#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "platform/PreviewChain.h"
#include "platform/Recorder.h"
#include "platform/SoundChain.h"
#include "platform/SoundSource.h"
#include "platform/WavHeader.h"

namespace zemo {
namespace {

constexpr const char* kPlayedName = "RoundTrip.Wav";
constexpr const char* kHeardName = "RoundTripHeard.Wav";
constexpr int kNoiseFrames = 2048;  // 46 ms
constexpr int kNoiseLevel = 8192;   // a quarter of full scale
constexpr int32_t kNoiseAtMs = 4000, kPlayedMs = 9000;
constexpr int32_t kLongestTripMs = 3000;
constexpr std::chrono::seconds kTripPatience{12};  // with each step
constexpr double kLeastLikeness = 0.25;  // a loudspeaker and a room between; chance comes to 0.12

std::string BytesOfSamples(const std::vector<int16_t>& samples) {
  std::string bytes(samples.size() * sizeof(int16_t), '\0');
  std::memcpy(bytes.data(), samples.data(), bytes.size());
  return bytes;
}

// Silence with the noise in it.
std::string PlayedFile() {
  std::vector<int16_t> mono(static_cast<size_t>(MsToFrames(kPlayedMs)));
  const std::vector<int16_t> noise = RoundTripNoise();
  std::copy(noise.begin(), noise.end(), mono.begin() + MsToFrames(kNoiseAtMs));
  return WavHeader(1, static_cast<int64_t>(mono.size())) + BytesOfSamples(mono);
}

// Of the recorder's own files: the left channel.
std::vector<int16_t> LeftOf(std::string_view wav) {
  const size_t header = WavHeader(1, 0).size();
  constexpr size_t kChannelsAt = 22;
  if (wav.size() <= header) return {};
  const auto channels = static_cast<size_t>(wav[kChannelsAt]);
  std::vector<int16_t> samples((wav.size() - header) / sizeof(int16_t));
  std::memcpy(samples.data(), wav.data() + header, samples.size() * sizeof(int16_t));
  std::vector<int16_t> left;
  for (size_t i = 0; i < samples.size(); i += channels) left.push_back(samples[i]);
  return left;
}

}  // namespace

std::vector<int16_t> RoundTripNoise() {
  std::vector<int16_t> noise(kNoiseFrames);
  uint32_t state = 1;
  for (int16_t& sample : noise) {
    state = state * 1664525U + 1013904223U;
    sample = (state >> 31) != 0 ? kNoiseLevel : -kNoiseLevel;
  }
  return noise;
}

std::optional<int64_t> NoisePlace(const std::vector<int16_t>& mono) {
  const std::vector<int16_t> noise = RoundTripNoise();
  std::vector<float> heard(mono.begin(), mono.end()), sign(noise.begin(), noise.end());
  for (float& sample : sign) sample /= kNoiseLevel;
  double power = 0;
  double most = kLeastLikeness;
  std::optional<int64_t> place;
  for (size_t i = 0; i < heard.size(); ++i) {
    power += double{heard[i]} * heard[i];
    if (i + 1 < sign.size()) continue;
    const size_t from = i + 1 - sign.size();
    float both = 0;
    for (size_t k = 0; k < sign.size(); ++k) both += heard[from + k] * sign[k];
    // By whatever way the loudspeaker is wired.
    const double likeness = power <= 0 ? 0 : std::abs(both) / std::sqrt(power * kNoiseFrames);
    if (likeness > most) most = likeness, place = static_cast<int64_t>(from);
    power -= double{heard[from]} * heard[from];
  }
  return place;
}

int32_t RealRoundTrip::MeasureMs(int output, int input) {
  fault_.clear();
  try {
    const int32_t ms = Measure(output, input);
    End();
    return ms;
  } catch (...) {
    End();
    throw;
  }
}

// A recording that is ended at once opens the input: the next one begins with its order.
int32_t RealRoundTrip::Measure(int output, int input) {
  Play(output);
  BeginRecording(input);
  const int32_t position = BeginRecording(input);
  if (position >= kNoiseAtMs) throw SoundError("the devices take too long to begin");
  const int64_t enough = kNoiseAtMs - position + kLongestTripMs;
  Await("the sound input gives nothing", [&] { return recorder_.RecordedMs() >= enough; });
  recorder_.Stop();
  return FoundMs() - (kNoiseAtMs - position);
}

void RealRoundTrip::Play(int output) {
  folder_.Write(kPlayedName, PlayedFile());
  preview_.OnLost([this] { fault_ = "the sound output does not play"; });
  preview_.UseDevice(output);
  SoundChain& sound = preview_.Sound();
  sound.SetFileName(0, folder_.PathOf(kPlayedName));
  sound.SetVolume(0, kUnityVolume);
  sound.SetChannelDone(0, false);
  sound.Start();
  Await("the sound output does not play", [&] { return sound.Position(0) > 0; });
}

// The chain's position at its begin.
int32_t RealRoundTrip::BeginRecording(int input) {
  recorder_.OnEnd([this](const std::string& reason) { fault_ = reason; });
  recorder_.Start(input, folder_, kHeardName);
  const int32_t position = preview_.Sound().Position(0);
  Await("the sound input gives nothing", [this] { return recorder_.RecordedMs() > 0; });
  return position;
}

void RealRoundTrip::Await(const char* fault, const std::function<bool()>& condition) {
  const auto until = std::chrono::steady_clock::now() + kTripPatience;
  while (!condition()) {
    if (!fault_.empty()) throw SoundError(fault_);
    if (std::chrono::steady_clock::now() > until) throw SoundError(fault);
    loop_.WaitYield();
  }
}

// Looked for beside the loop: there are half a thousand million products.
int32_t RealRoundTrip::FoundMs() {
  auto found = std::async(std::launch::async, [this] {
    return NoisePlace(LeftOf(folder_.Read(kHeardName).value_or(std::string())));
  });
  while (found.wait_for(std::chrono::seconds(0)) != std::future_status::ready) loop_.WaitYield();
  const auto place = found.get();
  if (!place) throw SoundError("the output is not heard on the input");
  return static_cast<int32_t>(FramesToMs(*place));
}

void RealRoundTrip::End() {
  recorder_.Stop();
  recorder_.OnEnd(nullptr);
  preview_.OnLost(nullptr);
  SoundChain& sound = preview_.Sound();
  sound.Close();
  sound.SetFileName(0, "");
  folder_.Remove(kPlayedName);
  folder_.Remove(kHeardName);
}

}  // namespace zemo
