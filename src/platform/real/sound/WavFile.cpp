// Chunks by hand: libsndfile writes a file that may outgrow 4 GB in the extensible form only, which
// many readers do not know.
#include "platform/real/sound/WavFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstring>

#include "platform/SoundSource.h"

namespace zemo {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they lie");

constexpr int64_t kStereoBytes = kChannels * static_cast<int64_t>(sizeof(int16_t));
constexpr int64_t kMostSize = 0xFFFFFFFF;

std::string Little(int64_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i));
  return text;
}

constexpr int64_t kFormatBytes = 24;
constexpr int64_t kSizesBytes = 28;  // of the chunk of 64-bit sizes: three, and an empty table

// What the RIFF chunk of a file of so many frames holds.
int64_t RiffSize(int64_t frames, bool grows) {
  return 4 + (grows ? 8 + kSizesBytes : 0) + kFormatBytes + 8 + frames * kStereoBytes;
}

std::string Format() {
  constexpr int kPcm = 1;
  return "fmt " + Little(16, 4) + Little(kPcm, 2) + Little(kChannels, 2) + Little(kSampleRate, 4) +
         Little(kSampleRate * kStereoBytes, 4) + Little(kStereoBytes, 2) +
         Little(8 * static_cast<int64_t>(sizeof(int16_t)), 2);
}

}  // namespace

std::string WavFile::Header(int64_t frames, bool grows) {
  const int64_t data = frames * kStereoBytes;
  const int64_t riff = RiffSize(frames, grows);
  if (riff <= kMostSize) {
    const std::string empty(kSizesBytes, '\0');
    return "RIFF" + Little(riff, 4) + "WAVE" + Format() +
           (grows ? "JUNK" + Little(kSizesBytes, 4) + empty : "") + "data" + Little(data, 4);
  }
  return "RF64" + Little(kMostSize, 4) + "WAVE" + "ds64" + Little(kSizesBytes, 4) +
         Little(riff, 8) + Little(data, 8) + Little(frames, 8) + Little(0, 4) + Format() + "data" +
         Little(kMostSize, 4);
}

WavFile::WavFile(const std::string& path, bool grows) : path_(path), grows_(grows) {
  file_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file_ < 0) Fail();
  const std::string header = Header(0, grows_);
  try {
    WriteAll(header.data(), header.size());
  } catch (const SoundError&) {
    close(file_);
    throw;
  }
}

WavFile::~WavFile() {
  try {
    Close();
  } catch (const SoundError&) {
    // Unheard.
  }
}

void WavFile::Write(const int16_t* stereo, int frames) {
  if (!grows_ && RiffSize(frames_ + frames, false) > kMostSize)
    throw SoundError(path_ + ": is as long as a WAV file can be");
  WriteAll(reinterpret_cast<const char*>(stereo), static_cast<size_t>(frames * kStereoBytes));
  frames_ += frames;
}

void WavFile::WriteHeader() {
  const std::string header = Header(frames_, grows_);
  if (pwrite(file_, header.data(), header.size(), 0) != static_cast<ssize_t>(header.size())) Fail();
}

void WavFile::Close() {
  if (file_ < 0) return;
  const int file = file_;
  try {
    WriteHeader();
  } catch (const SoundError&) {
    file_ = -1;
    close(file);
    throw;
  }
  file_ = -1;
  const bool synced = fsync(file) == 0 || errno == EINVAL;  // a pipe or a device has none
  const int error = errno;
  if (close(file) == 0 && synced) return;
  if (!synced) errno = error;
  Fail();
}

void WavFile::WriteAll(const char* bytes, size_t count) {
  while (count > 0) {
    const ssize_t written = write(file_, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Fail();
    bytes += written;
    count -= static_cast<size_t>(written);
  }
}

void WavFile::Fail() const {
  throw SoundError(path_ + ": " + std::strerror(errno));
}

}  // namespace zemo
