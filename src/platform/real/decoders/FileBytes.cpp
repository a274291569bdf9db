// See FileBytes.h. Plain POSIX reads: a file cut short while it plays gives fewer bytes, where a
// mapping would end the process.
#include "platform/real/decoders/FileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace zemo {
namespace {

constexpr size_t kBlock = 64 * 1024;  // 2.7 s of a 192 kbit/s stream

std::string ErrnoText() {
  return std::generic_category().message(errno);
}

// What pread gives, repeated until `count` bytes are there, the file ends or it fails.
size_t ReadFully(int fd, int64_t offset, uint8_t* to, size_t count) {
  size_t got = 0;
  while (got < count) {
    const ssize_t n = ::pread(fd, to + got, count - got, offset + static_cast<int64_t>(got));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  return got;
}

}  // namespace

SoundError CannotPlay(const std::string& path, const std::string& reason) {
  std::string line = "cannot play \"" + path + "\": " + reason;
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < ' '; }, ' ');
  return SoundError(line);
}

FileBytes::FileBytes(const std::string& path) : path_(path) {
  // Without O_NONBLOCK a named pipe in the place of a file would hold the caller for ever.
  fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (fd_ < 0) throw CannotPlay(path, ErrnoText());
  struct stat info {};
  const bool known = ::fstat(fd_, &info) == 0;
  if (!known || !S_ISREG(info.st_mode)) {
    const std::string reason = !known                  ? ErrnoText()
                               : S_ISDIR(info.st_mode) ? "it is a directory"
                                                       : "it is not a regular file";
    ::close(fd_);
    throw CannotPlay(path, reason);
  }
  size_ = info.st_size;
  ::posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
  block_ = std::make_unique_for_overwrite<uint8_t[]>(kBlock);
}

FileBytes::FileBytes(std::string path, int fd, int64_t size)
    : path_(std::move(path)),
      fd_(fd),
      size_(size),
      block_(std::make_unique_for_overwrite<uint8_t[]>(kBlock)) {}

std::unique_ptr<FileBytes> FileBytes::Again() const {
  const int fd = ::fcntl(fd_, F_DUPFD_CLOEXEC, 0);
  if (fd < 0) throw CannotPlay(path_, ErrnoText());
  return std::unique_ptr<FileBytes>(new FileBytes(path_, fd, size_));
}

FileBytes::~FileBytes() {
  ::close(fd_);
}

size_t FileBytes::Read(int64_t offset, void* to, size_t count) {
  auto* out = static_cast<uint8_t*>(to);
  size_t got = 0;
  while (got < count) {
    size_t there = 0;
    const uint8_t* from = PeekBlock(offset + static_cast<int64_t>(got), there);
    if (there == 0) break;
    const size_t n = std::min(there, count - got);
    std::memcpy(out + got, from, n);
    got += n;
  }
  return got;
}

const uint8_t* FileBytes::Peek(int64_t offset, size_t count) {
  if (offset < 0) return nullptr;
  const int64_t inBlock = offset - blockBegin_;
  if (inBlock < 0 || inBlock + static_cast<int64_t>(count) > static_cast<int64_t>(blockSize_)) {
    Load(offset);
    return blockSize_ >= count ? block_.get() : nullptr;
  }
  return block_.get() + inBlock;
}

const uint8_t* FileBytes::PeekBlock(int64_t offset, size_t& count) {
  const uint8_t* at = Peek(offset, 1);
  count = at ? blockSize_ - static_cast<size_t>(at - block_.get()) : 0;
  return at;
}

void FileBytes::Load(int64_t offset) {
  blockBegin_ = offset;
  blockSize_ = ReadFully(fd_, offset, block_.get(), kBlock);
}

}  // namespace zemo
