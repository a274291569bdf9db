// See TestSounds.h.
#include "TestSounds.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>

#include "platform/real/decoders/MpegHeader.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

uint32_t Next(uint32_t& random) {
  return random = random * 1664525 + 1013904223;
}

void WriteSamples(const std::string& path, int format, const std::vector<float>& samples, int rate,
                  int channels, Mp3Mode mode, double level) {
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = channels;
  info.format = format;
  SNDFILE* out = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(out, nullptr) << path << ": " << sf_strerror(nullptr);
  if ((format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG) {
    int bitRateMode =
        mode == Mp3Mode::kConstant ? SF_BITRATE_MODE_CONSTANT : SF_BITRATE_MODE_VARIABLE;
    sf_command(out, SFC_SET_BITRATE_MODE, &bitRateMode, sizeof bitRateMode);
    sf_command(out, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  }
  const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
  // In pieces: one call with much sound overflows the stack of some of libsndfile's encoders.
  constexpr sf_count_t kPiece = 1000;
  for (sf_count_t at = 0; at < frames; at += kPiece) {
    const sf_count_t n = std::min(kPiece, frames - at);
    ASSERT_EQ(sf_writef_float(out, samples.data() + at * channels, n), n);
  }
  sf_close(out);
}

std::vector<float> EverySecond(std::span<const float> stereo, size_t first) {
  std::vector<float> one;
  one.reserve(stereo.size() / 2);
  for (size_t i = first; i < stereo.size(); i += 2) one.push_back(stereo[i]);
  return one;
}

}  // namespace

TestFolder::TestFolder() : folder_(testing::TempDir() + "decoders-XXXXXX") {
  if (!mkdtemp(folder_.data())) throw std::runtime_error("no folder for the test");
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<float> Render(const Tones& tones) {
  std::vector<float> samples;
  samples.reserve(static_cast<size_t>(tones.frames) * tones.hertz.size());
  for (int64_t i = 0; i < tones.frames; ++i) {
    for (const double hertz : tones.hertz) {
      const double turn = 2 * std::numbers::pi * hertz * static_cast<double>(i) / tones.rate;
      samples.push_back(static_cast<float>(tones.level * std::sin(turn)));
    }
  }
  return samples;
}

void WriteSound(const std::string& path, int format, const Tones& tones) {
  WriteSamples(path, format, Render(tones), tones.rate, static_cast<int>(tones.hertz.size()),
               Mp3Mode::kConstant, 0);
}

std::string Mp3Bytes(const Tones& tones, Mp3Mode mode, double level) {
  return Mp3BytesOf(Render(tones), tones.rate, static_cast<int>(tones.hertz.size()), mode, level);
}

std::string Mp3BytesOf(const std::vector<float>& samples, int rate, int channels, Mp3Mode mode,
                       double level) {
  const TestFolder folder;
  const std::string path = folder.Path("made.mp3");
  WriteSamples(path, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, samples, rate, channels, mode,
               level);
  return ReadBytes(path);
}

std::string WithoutInfoFrame(const std::string& mp3) {
  const auto header = ParseMpegHeader(reinterpret_cast<const uint8_t*>(mp3.data()));
  return mp3.substr(static_cast<size_t>(header.value().bytes));
}

std::vector<float> Bursts(int rate, int channels, int64_t frames) {
  std::vector<float> samples(static_cast<size_t>(frames * channels));
  uint32_t random = 1;
  for (int64_t i = 0; i < frames; ++i) {
    const bool loud = i % 8000 > 6500;
    const double turn = 2 * std::numbers::pi * 300 * static_cast<double>(i) / rate;
    for (int c = 0; c < channels; ++c) {
      const double noise = static_cast<int32_t>(Next(random)) / 2147483648.0;
      const double sample = loud ? 0.6 * noise : 0.02 * std::sin(turn * (c + 1));
      samples[static_cast<size_t>(i * channels + c)] = static_cast<float>(sample);
    }
  }
  return samples;
}

std::string WaveBytes(const WaveForm& form, const std::string& data) {
  const int block = form.channels * form.bits / 8;
  const auto size = static_cast<int64_t>(data.size());
  return "RIFF" + LittleEndian(36 + size, 4) + "WAVEfmt " + LittleEndian(16, 4) +
         LittleEndian(form.tag, 2) + LittleEndian(form.channels, 2) + LittleEndian(form.rate, 4) +
         LittleEndian(int64_t{form.rate} * block, 4) + LittleEndian(block, 2) +
         LittleEndian(form.bits, 2) + "data" + LittleEndian(size, 4) + data;
}

std::string LittleEndian(int64_t value, int bytes) {
  std::string result;
  for (int i = 0; i < bytes; ++i) result += static_cast<char>(value >> (8 * i) & 0xFF);
  return result;
}

void PutLittleEndian32(std::string& bytes, size_t at, uint32_t value) {
  bytes.replace(at, 4, LittleEndian(value, 4));
}

void PutBigEndian32(std::string& bytes, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> (24 - 8 * i) & 0xFF);
}

std::string Noise(size_t bytes, uint32_t seed) {
  std::string noise(bytes, '\0');
  for (char& c : noise) c = static_cast<char>(Next(seed) >> 24);
  return noise;
}

std::vector<float> ReadAll(SoundSource& source, int chunk) {
  std::vector<float> all;
  std::vector<float> buffer(2 * static_cast<size_t>(chunk));
  while (const int got = source.Read(buffer.data(), chunk)) {
    all.insert(all.end(), buffer.begin(), buffer.begin() + 2 * got);
  }
  return all;
}

std::vector<float> Decode(const std::string& path) {
  return ReadAll(*SoundFileOpener().Open(path));
}

std::vector<float> Left(std::span<const float> stereo) {
  return EverySecond(stereo, 0);
}
std::vector<float> Right(std::span<const float> stereo) {
  return EverySecond(stereo, 1);
}

double ToneLevel(std::span<const float> samples, double hertz, int rate) {
  const double turn = 2 * std::numbers::pi * hertz / rate;
  std::complex<double> sum = 0;
  for (size_t i = 0; i < samples.size(); ++i) {
    sum += static_cast<double>(samples[i]) * std::polar(1.0, -turn * static_cast<double>(i));
  }
  return 2 * std::abs(sum) / static_cast<double>(samples.size());
}

double LargestDifference(std::span<const float> a, std::span<const float> b) {
  EXPECT_EQ(a.size(), b.size());
  double largest = 0;
  for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    largest = std::max(largest, std::abs(static_cast<double>(a[i]) - static_cast<double>(b[i])));
  }
  return largest;
}

void ExpectExactSeeks(SoundSource& source, const std::vector<float>& all, double tolerance) {
  constexpr int kAsk = 1500;
  const auto length = static_cast<int64_t>(all.size() / 2);
  ASSERT_EQ(source.LengthFrames(), length);
  std::vector<int64_t> targets = {length - 1, 0, 1, length / 2, length / 2 + 1, length / 2, length};
  uint32_t random = 42;
  for (int i = 0; i < 100; ++i) targets.push_back(Next(random) % (length + 1));
  std::vector<float> buffer(2 * kAsk);
  for (const int64_t target : targets) {
    source.Seek(target);
    const auto due = static_cast<int>(std::min<int64_t>(kAsk, length - target));
    ASSERT_EQ(source.Read(buffer.data(), kAsk), due) << "at frame " << target;
    const std::span<const float> there(all.data() + 2 * target, 2 * static_cast<size_t>(due));
    const std::span<const float> got(buffer.data(), there.size());
    ASSERT_LE(LargestDifference(got, there), tolerance) << "at frame " << target;
  }
  source.Seek(-5);
  ASSERT_GT(source.Read(buffer.data(), 1), 0);
  EXPECT_NEAR(buffer[0], all[0], tolerance);
  source.Seek(length + 5);
  EXPECT_EQ(source.Read(buffer.data(), 1), 0);
}

}  // namespace zemo
