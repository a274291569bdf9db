// Sound files for the tests of the decoders, made in a folder of the test's own, and what is
// measured on what was read back.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/SoundSource.h"

namespace zemo {

// A folder that lives as long as this.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  std::string Path(const std::string& name) const { return folder_ + "/" + name; }

 private:
  std::string folder_;
};

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);

// One tone a channel, as a file is made of it.
struct Tones {
  int rate = 44100;
  std::vector<double> hertz;  // a channel each
  double level = 0.5;         // peak
  int64_t frames = 0;
};

std::vector<float> Render(const Tones& tones);  // interleaved

// Writes through libsndfile; `format` is one of its SF_FORMAT_ sums. Fails the test on errors.
void WriteSound(const std::string& path, int format, const Tones& tones);

// MP3 through libsndfile's encoder, with its information frame. `level` 0 (best) to 1.
inline constexpr double kLevel192 = 0.4;  // 192 kbit/s at 44.1 and 48 kHz
enum class Mp3Mode { kConstant, kVariable };
std::string Mp3Bytes(const Tones& tones, Mp3Mode mode, double level);
// The same without the information frame.
std::string WithoutInfoFrame(const std::string& mp3);
// A frame of noise between two silences, over and over: what makes an encoder save up bits.
std::vector<float> Bursts(int rate, int channels, int64_t frames);
std::string Mp3BytesOf(const std::vector<float>& samples, int rate, int channels, Mp3Mode mode,
                       double level);

// A WAV file of a "fmt " chunk and a "data" chunk; the stated lengths are those of the bytes.
struct WaveForm {
  int tag = 1;
  int channels = 2;
  int rate = 44100;
  int bits = 16;
};
std::string WaveBytes(const WaveForm& form, const std::string& data);
inline constexpr size_t kWaveRiffLengthAt = 4;
inline constexpr size_t kWaveDataLengthAt = 40;
inline constexpr size_t kWaveDataAt = 44;

std::string LittleEndian(int64_t value, int bytes);
void PutLittleEndian32(std::string& bytes, size_t at, uint32_t value);
void PutBigEndian32(std::string& bytes, size_t at, uint32_t value);
std::string Noise(size_t bytes, uint32_t seed);

// All that a fresh source of the file gives, by reads of `chunk` frames.
std::vector<float> ReadAll(SoundSource& source, int chunk = 1000);
std::vector<float> Decode(const std::string& path);
std::vector<float> Left(std::span<const float> stereo);
std::vector<float> Right(std::span<const float> stereo);

// Peak level of a tone within the samples (Goertzel), full scale 1.
double ToneLevel(std::span<const float> samples, double hertz, int rate = 44100);
double LargestDifference(std::span<const float> a, std::span<const float> b);

// Seeks to many frames, the ends among them, and expects there what `all` (stereo, read from the
// start) has, to within `tolerance`.
void ExpectExactSeeks(SoundSource& source, const std::vector<float>& all, double tolerance);

}  // namespace zemo
