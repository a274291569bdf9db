// MPEG audio (MP3, MP2) through libmpg123, which is shown only the whole frames that MpegLayout
// found: no tags, no junk, no half frame at the end.
#pragma once

#include <mpg123.h>
#include <sys/types.h>

#include <memory>

#include "platform/real/decoders/MpegLayout.h"
#include "platform/real/decoders/SampleSource.h"

namespace zemo {

class MpegSource : public SampleSource {
 public:
  // `layout` is that of `file`. Throws SoundError when the decoder refuses the stream.
  MpegSource(std::unique_ptr<FileBytes> file, MpegLayout layout);

  int Rate() const override { return layout_.first.rate; }
  int64_t LengthFrames() const override { return length_; }
  int Read(float* stereo, int frames) override;
  void Seek(int64_t frame) override;
  std::unique_ptr<SampleSource> Twin() const override;

 private:
  struct Deleter {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
  };

  // The decoder's reader: the spans of the layout as one stream. `self` is the MpegSource.
  static ssize_t ReadStream(void* self, void* to, size_t count);
  static off_t SeekStream(void* self, off_t offset, int whence);

  bool OpenDecoder();
  bool HasOurFormat() const;
  // The stream ended too early: looks again at what the file really holds, once, and goes on at the
  // read position. False when there is nothing to go on with.
  bool Recover();
  bool SeekDecoder();

  std::unique_ptr<FileBytes> file_;
  MpegLayout layout_;
  int64_t begin_ = 0;  // of the sound, in the decoder's count
  int64_t length_ = 0;
  int64_t position_ = 0;  // frames from begin_
  bool ended_ = false;    // by damage; until the next Seek
  int64_t streamSize_ = 0;
  int64_t streamAt_ = 0;
  size_t span_ = 0;                                  // holds streamAt_
  int64_t spanStreamAt_ = 0;                         // stream offset of its first byte
  std::unique_ptr<mpg123_handle, Deleter> decoder_;  // last: it calls the reader
};

}  // namespace zemo
