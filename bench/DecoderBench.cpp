// What decoding costs: an hour of 192 kbit/s MP3 through SoundFileOpener against libmpg123 alone on
// the same file, what opening a file of 5 MB costs with and without its information frame, and how
// long a waveform waits for the part of it that it shows.
#include <benchmark/benchmark.h>
#include <mpg123.h>
#include <sndfile.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

#include "platform/real/decoders/FileBytes.h"
#include "platform/real/decoders/MpegHeader.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/WaveformReader.h"

namespace zemo {
namespace {

constexpr int kReadFrames = 4096;
constexpr int kMinuteFrames = 60 * kSampleRate;

// A minute of two tones over coloured noise: enough for an encoder to have work in every band.
std::vector<float> Minute() {
  std::vector<float> sound(2 * kMinuteFrames);
  uint32_t random = 1;
  double low = 0;
  for (size_t i = 0; i < kMinuteFrames; ++i) {
    random = random * 1664525 + 1013904223;
    low = 0.9 * low + 0.1 * (static_cast<double>(static_cast<int32_t>(random)) / 2147483648.0);
    const double turn = 2 * std::numbers::pi * static_cast<double>(i) / kSampleRate;
    sound[2 * i] = static_cast<float>(0.3 * std::sin(440 * turn) + 0.3 * low);
    sound[2 * i + 1] = static_cast<float>(0.3 * std::sin(550 * turn) + 0.3 * low);
  }
  return sound;
}

std::string EncodeMinute(const std::filesystem::path& path, int mode, double level) {
  SF_INFO info{};
  info.samplerate = kSampleRate;
  info.channels = 2;
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  SNDFILE* out = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!out) std::abort();
  sf_command(out, SFC_SET_BITRATE_MODE, &mode, sizeof mode);
  sf_command(out, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  const std::vector<float> sound = Minute();
  sf_writef_float(out, sound.data(), kMinuteFrames);
  sf_close(out);
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void PutBigEndian32(std::string& bytes, size_t at, size_t value) {
  for (size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> (24 - 8 * i) & 0xFF);
}

// The minute's frames `times` over, behind an information frame that states the new counts, or
// none.
std::string Repeat(const std::string& minute, size_t times, bool withInfo) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(minute.data());
  const auto header = ParseMpegHeader(bytes);
  const auto size = static_cast<size_t>(header->bytes);
  const auto info = ParseMpegInfo(*header, bytes, size);
  std::string result = withInfo ? minute.substr(0, size) : "";
  for (size_t i = 0; i < times; ++i) result.append(minute, size);
  if (withInfo) {
    constexpr size_t kFramesAt = 4 + 32 + 8;
    PutBigEndian32(result, kFramesAt, static_cast<size_t>(*info->frames) * times);
    PutBigEndian32(result, kFramesAt + 4, result.size());
  }
  return result;
}

// The files, made once and removed at the end.
class Files {
 public:
  Files() {
    std::string folder = (std::filesystem::temp_directory_path() / "decoder-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) std::abort();
    folder_ = folder;
    // Level 0.4 of libsndfile is 192 kbit/s at 44.1 kHz.
    const std::string cbr = EncodeMinute(folder_ / "cbr.mp3", SF_BITRATE_MODE_CONSTANT, 0.4);
    const std::string vbr = EncodeMinute(folder_ / "vbr.mp3", SF_BITRATE_MODE_VARIABLE, 0.4);
    const auto times = [](const std::string& minute) { return 5'000'000 / minute.size() + 1; };
    Write("hour", Repeat(cbr, 60, true));
    Write("cbr with header", Repeat(cbr, times(cbr), true));
    Write("cbr without header", Repeat(cbr, times(cbr), false));
    Write("vbr with header", Repeat(vbr, times(vbr), true));
    Write("vbr without header", Repeat(vbr, times(vbr), false));
  }
  ~Files() { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / (name + ".mp3")).string(); }

 private:
  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
  }

  std::filesystem::path folder_;
};

const Files& TestFiles() {
  static const Files files;
  return files;
}

void HourByLibmpg123(benchmark::State& state) {
  const std::string path = TestFiles().Path("hour");
  std::vector<float> buffer(2 * kReadFrames);
  for (auto _ : state) {
    mpg123_handle* mh = mpg123_new(nullptr, nullptr);
    mpg123_param(mh, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_FORCE_FLOAT, 0);
    if (mpg123_open(mh, path.c_str()) != MPG123_OK) std::abort();
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    mpg123_getformat(mh, &rate, &channels, &encoding);
    size_t bytes = 0;
    while (mpg123_read(mh, buffer.data(), buffer.size() * sizeof(float), &bytes) == MPG123_OK) {
      benchmark::DoNotOptimize(buffer.data());
    }
    mpg123_delete(mh);
  }
}

void HourBySoundFileOpener(benchmark::State& state) {
  const std::string path = TestFiles().Path("hour");
  std::vector<float> buffer(2 * kReadFrames);
  SoundFileOpener opener;
  for (auto _ : state) {
    const auto source = opener.Open(path);
    int64_t frames = 0;
    while (const int got = source->Read(buffer.data(), kReadFrames)) frames += got;
    if (frames != source->LengthFrames()) state.SkipWithError("not all of the hour was read");
  }
}

// To the first frames in hand, as the start of an element needs it.
void OpenAndReadFirst(benchmark::State& state, const std::string& name) {
  const std::string path = TestFiles().Path(name);
  std::vector<float> buffer(2 * kReadFrames);
  SoundFileOpener opener;
  for (auto _ : state) {
    const auto source = opener.Open(path);
    if (source->Read(buffer.data(), kReadFrames) != kReadFrames) state.SkipWithError("no sound");
  }
}

// A third into the file: what an extract costs to begin.
void SeekInto(benchmark::State& state, const std::string& name) {
  const std::string path = TestFiles().Path(name);
  std::vector<float> buffer(2 * kReadFrames);
  SoundFileOpener opener;
  for (auto _ : state) {
    const auto source = opener.Open(path);
    source->Seek(source->LengthFrames() / 3);
    if (source->Read(buffer.data(), kReadFrames) != kReadFrames) state.SkipWithError("no sound");
  }
}

// What a waveform waits for that shows a 2^-n-th of a title of three and a half minutes, 600 pixels
// wide, another one each time.
void PartOfAWaveform(benchmark::State& state) {
  const std::string path = TestFiles().Path("cbr with header");
  const int64_t length = SoundFileOpener().Open(path)->LengthFrames();
  const int64_t frames = std::max<int64_t>(220, length >> state.range(0));
  WaveformReader reader(std::make_unique<SoundFileOpener>(), "/nonexistent");
  int64_t from = length / 3;
  for (auto _ : state) {
    ++from;
    while (!reader.PartOf(path, from, from + frames, 600)) std::this_thread::yield();
  }
}

BENCHMARK(HourByLibmpg123)->Unit(benchmark::kMillisecond);
BENCHMARK(HourBySoundFileOpener)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OpenAndReadFirst, CbrWithHeader, "cbr with header");
BENCHMARK_CAPTURE(OpenAndReadFirst, CbrWithoutHeader, "cbr without header");
BENCHMARK_CAPTURE(OpenAndReadFirst, VbrWithHeader, "vbr with header");
BENCHMARK_CAPTURE(OpenAndReadFirst, VbrWithoutHeader, "vbr without header");
BENCHMARK_CAPTURE(SeekInto, CbrWithHeader, "cbr with header");
BENCHMARK_CAPTURE(SeekInto, HourWithHeader, "hour");
BENCHMARK(PartOfAWaveform)
    ->Arg(1)
    ->Arg(4)
    ->Arg(8)
    ->Arg(16)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zemo

BENCHMARK_MAIN();
