// The writer's two forms: WAV by our own hand, FLAC by libsndfile.
#include "platform/real/sound/SoundFileWriter.h"

#include <sndfile.h>

#include <algorithm>
#include <cctype>
#include <utility>

#include "platform/SoundSource.h"
#include "platform/sound/SampleFormat.h"

namespace zemo {
namespace {

// A file cut off by a crash is readable up to here before its end.
constexpr int64_t kHeaderEveryFrames = 10 * kSampleRate;
// Six hours are 3.8 GB: what a plain WAV header can tell, with room to spare.
constexpr int64_t kMostPlainFrames = int64_t{6} * 3600 * kSampleRate;

bool EndsIn(const std::string& path, const std::string& ending) {
  if (path.size() < ending.size()) return false;
  return std::equal(
      ending.begin(), ending.end(), path.end() - static_cast<long>(ending.size()),
      [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

}  // namespace

SoundFileWriter::SoundFileWriter(const std::string& path, int64_t mostFrames) : path_(path) {
  if (EndsIn(path, ".wav")) {
    wav_ = std::make_unique<WavFile>(path, mostFrames > kMostPlainFrames);
    return;
  }
  if (!EndsIn(path, ".flac"))
    throw SoundError(path + ": a sound file to write must end in .wav or .flac");
  SF_INFO info{};
  info.samplerate = kSampleRate;
  info.channels = kChannels;
  info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
  flac_ = sf_open(path.c_str(), SFM_WRITE, &info);
  if (flac_ == nullptr) throw SoundError(path + ": " + sf_strerror(nullptr));
}

SoundFileWriter::~SoundFileWriter() {
  if (flac_ != nullptr) sf_close(flac_);
}

void SoundFileWriter::Write(const float* stereo, int frames) {
  samples_.resize(static_cast<size_t>(frames) * kChannels);
  FloatToInt16(stereo, samples_.data(), frames * kChannels);
  Write(samples_.data(), frames);
}

void SoundFileWriter::Write(const int16_t* stereo, int frames) {
  if (wav_ != nullptr)
    wav_->Write(stereo, frames);
  else if (flac_ == nullptr)
    throw SoundError(path_ + ": is closed");
  else if (sf_writef_short(flac_, stereo, frames) != frames)
    throw SoundError(path_ + ": " + sf_strerror(flac_));
  frames_ += frames;
  if (frames_ - headerFrames_ < kHeaderEveryFrames) return;
  headerFrames_ = frames_;
  if (wav_ != nullptr)
    wav_->WriteHeader();
  else
    sf_command(flac_, SFC_UPDATE_HEADER_NOW, nullptr, 0);
}

void SoundFileWriter::Close() {
  if (wav_ != nullptr) std::exchange(wav_, nullptr)->Close();
  if (flac_ == nullptr) return;
  sf_write_sync(flac_);
  const int result = sf_close(std::exchange(flac_, nullptr));
  if (result != 0) throw SoundError(path_ + ": " + sf_error_number(result));
}

}  // namespace zemo
