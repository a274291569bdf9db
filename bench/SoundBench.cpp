// What mixing costs: processor time per second of air for two sounding slots, with the limiter idle
// and at work, what writing 16-bit frames adds, and all of it as a share of decoding the same air
// from 192 kbit/s MP3 with libmpg123 alone. Argument: an MP3 file to decode (else the share is left
// out).
#include <benchmark/benchmark.h>
#include <mpg123.h>
#include <sndfile.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "Figures.h"
#include "platform/sound/MixerCore.h"
#include "platform/sound/SampleFormat.h"

namespace {

using namespace zemo;
using zemo::bench::SecondsOn;

// Copies from a minute in memory: costs next to nothing itself.
class MemorySource : public SoundSource {
 public:
  MemorySource(double hertz, double amplitude) : stereo_(2 * kFrames) {
    for (int i = 0; i < kFrames; ++i) {
      stereo_[2 * i] = stereo_[2 * i + 1] =
          static_cast<float>(amplitude * std::sin(2 * M_PI * hertz * i / kSampleRate));
    }
  }
  int64_t LengthFrames() const override { return INT64_MAX / 4; }
  int Read(float* stereo, int frames) override {
    if (at_ + frames > kFrames) at_ = 0;
    std::copy_n(stereo_.data() + 2 * at_, 2 * frames, stereo);
    at_ += frames;
    return frames;
  }
  void Seek(int64_t frame) override { at_ = static_cast<int>(frame % kFrames); }

 private:
  static constexpr int kFrames = 10 * kSampleRate;
  std::vector<float> stereo_;
  int at_ = 0;
};

constexpr int kTick = 4410;  // frames of a render step

void SetSpeed(benchmark::State& state) {
  const double seconds = static_cast<double>(state.iterations()) * kTick / kSampleRate;
  state.counters["cpu_per_air_second"] =
      benchmark::Counter(seconds, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Two slots at an amplitude and a volume; `fading` keeps a long fade under way on one.
void Mix(benchmark::State& state, double amplitude, int volume, bool fading) {
  MixerCore core(true);
  MemorySource first(440.0, amplitude);
  MemorySource second(554.0, amplitude);
  core.SetRunning(true);
  core.SetVolume(0, volume);
  core.SetVolume(1, volume);
  core.Start(0, &first, first.LengthFrames(), 0);
  core.Start(1, &second, second.LengthFrames(), 0);
  if (fading) core.Fade(1, int64_t{1} << 40);
  std::vector<float> out(2 * kTick);
  for (auto _ : state) {
    core.Render(out.data(), kTick);
    benchmark::DoNotOptimize(out.data());
  }
  SetSpeed(state);
}

void To16Bit(benchmark::State& state) {
  std::vector<float> in(2 * kTick, 0.3f);
  std::vector<int16_t> out(2 * kTick);
  for (auto _ : state) {
    FloatToInt16(in.data(), out.data(), 2 * kTick);
    benchmark::DoNotOptimize(out.data());
  }
  SetSpeed(state);
}

void Advance(benchmark::State& state) {
  MixerCore core(false);
  MemorySource first(440.0, 0.4);
  core.SetRunning(true);
  core.Start(0, &first, first.LengthFrames(), 0);
  for (auto _ : state) {
    core.Render(nullptr, kTick);
    benchmark::DoNotOptimize(core.FramesToNextEvent());
  }
}

BENCHMARK_CAPTURE(Mix, two_slots_unity, 0.4, 16384, false);
BENCHMARK_CAPTURE(Mix, two_slots_at_6500, 0.4, 6500, false);
BENCHMARK_CAPTURE(Mix, two_slots_fading, 0.4, 12000, true);
BENCHMARK_CAPTURE(Mix, two_slots_limiting, 1.0, 16384, false);
BENCHMARK(To16Bit);
BENCHMARK(Advance);

// A minute of two tones over noise at 192 kbit/s.
void EncodeMinute(const std::string& path) {
  constexpr int kFrames = 60 * kSampleRate;
  std::vector<float> sound(2 * kFrames);
  uint32_t random = 1;
  for (int i = 0; i < kFrames; ++i) {
    random = random * 1664525 + 1013904223;
    const double noise = 0.1 * static_cast<int32_t>(random) / 2147483648.0;
    sound[2 * i] = static_cast<float>(0.4 * std::sin(2 * M_PI * 440.0 * i / kSampleRate) + noise);
    sound[2 * i + 1] =
        static_cast<float>(0.4 * std::sin(2 * M_PI * 550.0 * i / kSampleRate) + noise);
  }
  SF_INFO info{};
  info.samplerate = kSampleRate;
  info.channels = kChannels;
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  int mode = SF_BITRATE_MODE_CONSTANT;
  double level = 0.4;  // of the scale from 320 down to 8 kbit/s: 192
  sf_command(file, SFC_SET_BITRATE_MODE, &mode, sizeof mode);
  sf_command(file, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  sf_writef_float(file, sound.data(), kFrames);
  sf_close(file);
}

// Processor seconds a second of air, of plain decoding to 16 bits.
double DecodingCost(const std::string& path) {
  mpg123_handle* decoder = mpg123_new(nullptr, nullptr);
  double cost = 0.0;
  if (decoder != nullptr && mpg123_open(decoder, path.c_str()) == MPG123_OK) {
    std::vector<unsigned char> block(1 << 16);
    size_t bytes = 0;
    size_t given = 0;
    const double begin = SecondsOn(CLOCK_PROCESS_CPUTIME_ID);
    for (int result = MPG123_OK; result == MPG123_OK || result == MPG123_NEW_FORMAT;) {
      result = mpg123_read(decoder, block.data(), block.size(), &given);
      bytes += given;
    }
    cost = (SecondsOn(CLOCK_PROCESS_CPUTIME_ID) - begin) /
           (static_cast<double>(bytes) / (4 * kSampleRate));
  }
  mpg123_delete(decoder);
  return cost;
}

// The same of one slot mixed and turned to 16 bits.
double MixingCost() {
  constexpr int kTicks = 20000;
  MixerCore core(true);
  MemorySource source(440.0, 0.4);
  core.SetRunning(true);
  core.SetVolume(0, 12000);
  core.Start(0, &source, source.LengthFrames(), 0);
  std::vector<float> out(2 * kTick);
  std::vector<int16_t> samples(2 * kTick);
  const double begin = SecondsOn(CLOCK_PROCESS_CPUTIME_ID);
  for (int i = 0; i < kTicks; ++i) {
    core.Render(out.data(), kTick);
    FloatToInt16(out.data(), samples.data(), 2 * kTick);
    benchmark::DoNotOptimize(samples.data());
  }
  return (SecondsOn(CLOCK_PROCESS_CPUTIME_ID) - begin) /
         (static_cast<double>(kTicks) * kTick / kSampleRate);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  const auto file = std::filesystem::temp_directory_path() / "zemo-sound-bench.mp3";
  EncodeMinute(file.string());
  const double decoding = DecodingCost(file.string());
  std::filesystem::remove(file);
  const double mixing = MixingCost();
  std::printf("decoding %.3f ms, mixing %.3f ms of processor a second of air: share %.1f %%\n",
              decoding * 1e3, mixing * 1e3, 100.0 * mixing / decoding);
  return 0;
}
