#include "platform/real/sound/RecordingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/SoundSource.h"
#include "platform/WavHeader.h"

namespace zemo {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they lie");

// 44 bytes of header are part of what a WAV file can count.
constexpr int64_t kMostRecordedBytes = 0xFFFFFFFF - 64;

// Bytes written; fewer than asked leave the reason in errno.
int64_t WrittenAt(int file, const char* bytes, int64_t count, int64_t offset) {
  int64_t done = 0;
  while (done < count) {
    const ssize_t written =
        pwrite(file, bytes + done, static_cast<size_t>(count - done), offset + done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;
    done += written;
  }
  return done;
}

}  // namespace

RecordingFile::RecordingFile(const std::string& path, int channels)
    : path_(path), made_(path + ".new"), channels_(channels) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  file_ = open(made_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file_ < 0) Fail(error ? error.value() : errno);
}

RecordingFile::~RecordingFile() {
  try {
    Close();
  } catch (const SoundError&) {
    // Unheard.
  }
}

// The header last: it counts only what is there.
void RecordingFile::Write(const int16_t* samples, int frames) {
  const int64_t frameBytes = int64_t{kWavSampleBytes} * channels_;
  if ((frames_ + frames) * frameBytes > kMostRecordedBytes)
    throw SoundError(path_ + ": is as long as a WAV file can be");
  const auto headerBytes = static_cast<int64_t>(WavHeader(channels_, 0).size());
  const int64_t written = WrittenAt(file_, reinterpret_cast<const char*>(samples),
                                    frames * frameBytes, headerBytes + frames_ * frameBytes);
  const int error = errno;
  const int64_t whole = written / frameBytes;
  if (whole > 0) {
    frames_ += whole;
    const std::string header = WavHeader(channels_, frames_);
    if (WrittenAt(file_, header.data(), headerBytes, 0) < headerBytes) Fail(errno);
    if (!placed_) TakePlace();
  }
  if (whole < frames) Fail(error);
}

void RecordingFile::TakePlace() {
  if (rename(made_.c_str(), path_.c_str()) != 0) Fail(errno);
  placed_ = true;
}

void RecordingFile::Sync() {
  if (fdatasync(file_) != 0 && errno != EINVAL) Fail(errno);  // a pipe or a device has none
}

void RecordingFile::Close() {
  const int file = std::exchange(file_, -1);
  if (file < 0) return;
  if (!placed_) unlink(made_.c_str());
  const int error = fsync(file) == 0 || errno == EINVAL ? 0 : errno;
  if (close(file) != 0) Fail(errno);
  if (error != 0) Fail(error);
}

void RecordingFile::Fail(int error) const {
  throw SoundError(path_ + ": " + std::strerror(error));
}

}  // namespace zemo
