// A range of a file as the stream that a decoder's callbacks read.
#pragma once

#include <algorithm>
#include <cstdio>
#include <memory>

#include "platform/real/decoders/FileBytes.h"

namespace zemo {

// Owns the file. One thread at a time.
class ByteStream {
 public:
  ByteStream(std::unique_ptr<FileBytes> file, ByteSpan within)
      : file_(std::move(file)), within_(within) {}

  const std::string& Path() const { return file_->Path(); }
  int64_t Size() const { return within_.Size(); }
  int64_t Tell() const { return at_; }

  // As fseek, with SEEK_SET, SEEK_CUR or SEEK_END; gives the new position, -1 before the start.
  int64_t Seek(int64_t offset, int whence) {
    const int64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? at_ : Size();
    if (from + offset < 0) return -1;
    return at_ = from + offset;
  }

  // Bytes read: fewer than `count` at the end of the range or where the file fails.
  size_t Read(void* to, size_t count) {
    if (at_ >= Size()) return 0;
    const size_t ask = std::min(count, static_cast<size_t>(Size() - at_));
    const size_t got = file_->Read(within_.begin + at_, to, ask);
    at_ += static_cast<int64_t>(got);
    return got;
  }

 private:
  std::unique_ptr<FileBytes> file_;
  ByteSpan within_;
  int64_t at_ = 0;
};

}  // namespace zemo
