// libsndfile behind the writer.
#include "platform/real/sound/SoundFileWriter.h"

#include <sndfile.h>

#include <algorithm>
#include <cctype>

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
  SF_INFO info{};
  info.samplerate = kSampleRate;
  info.channels = kChannels;
  const bool wav = EndsIn(path, ".wav");
  if (wav) {
    const int form = mostFrames <= kMostPlainFrames ? SF_FORMAT_WAV : SF_FORMAT_RF64;
    info.format = form | SF_FORMAT_PCM_16;
  } else if (EndsIn(path, ".flac")) {
    info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
  } else {
    throw SoundError(path + ": a sound file to write must end in .wav or .flac");
  }
  file_ = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file_ == nullptr) throw SoundError(path + ": " + sf_strerror(nullptr));
  // Without effect on a plain header.
  if (wav) sf_command(file_, SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
}

SoundFileWriter::~SoundFileWriter() {
  if (file_ != nullptr) sf_close(file_);
}

void SoundFileWriter::Write(const float* stereo, int frames) {
  samples_.resize(static_cast<size_t>(frames) * kChannels);
  FloatToInt16(stereo, samples_.data(), frames * kChannels);
  Write(samples_.data(), frames);
}

void SoundFileWriter::Write(const int16_t* stereo, int frames) {
  if (file_ == nullptr) throw SoundError(path_ + ": is closed");
  if (sf_writef_short(file_, stereo, frames) != frames) Fail();
  frames_ += frames;
  if (frames_ - headerFrames_ >= kHeaderEveryFrames) {
    sf_command(file_, SFC_UPDATE_HEADER_NOW, nullptr, 0);
    headerFrames_ = frames_;
  }
}

void SoundFileWriter::Close() {
  if (file_ == nullptr) return;
  sf_write_sync(file_);
  const int result = sf_close(file_);
  file_ = nullptr;
  if (result != 0) throw SoundError(path_ + ": " + sf_error_number(result));
}

void SoundFileWriter::Fail() {
  throw SoundError(path_ + ": " + sf_strerror(file_));
}

}  // namespace zemo
