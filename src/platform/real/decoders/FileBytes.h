// The bytes of one opened file, read in large blocks at any offset: what every decoder stands on,
// so that none of them opens files by itself or issues small reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/SoundSource.h"

namespace zemo {

// The one form of our errors: a line with the path and the reason.
SoundError CannotPlay(const std::string& path, const std::string& reason);

// A range of bytes of a file, `end` not included.
struct ByteSpan {
  int64_t begin = 0;
  int64_t end = 0;
  int64_t Size() const { return end - begin; }
};

// Not shared between threads. Owns the file descriptor and one block of memory.
class FileBytes {
 public:
  // Throws SoundError when the path is missing, unreadable, or no regular file.
  explicit FileBytes(const std::string& path);
  ~FileBytes();
  // The same opened file, whatever has its path by now. Throws SoundError.
  std::unique_ptr<FileBytes> Again() const;
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  const std::string& Path() const { return path_; }
  int64_t Size() const { return size_; }  // when it was opened
  ByteSpan Whole() const { return {0, size_}; }

  // Copies up to `count` bytes; fewer at the end of the file or where it cannot be read.
  size_t Read(int64_t offset, void* to, size_t count);

  // `count` bytes (at most kMaxPeek) in place, good until the next call; null past the end.
  static constexpr size_t kMaxPeek = 4096;
  const uint8_t* Peek(int64_t offset, size_t count);

  // All bytes of the block that holds `offset`, from there on: for searches. `count` is 0 past the
  // end. Good until the next call.
  const uint8_t* PeekBlock(int64_t offset, size_t& count);

 private:
  FileBytes(std::string path, int fd, int64_t size);
  // The block then begins at `offset`.
  void Load(int64_t offset);

  std::string path_;
  int fd_ = -1;
  int64_t size_ = 0;
  std::unique_ptr<uint8_t[]> block_;
  int64_t blockBegin_ = 0;
  size_t blockSize_ = 0;
};

}  // namespace zemo
