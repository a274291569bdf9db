// See MpegSource.h.
#include "platform/real/decoders/MpegSource.h"

#include <algorithm>
#include <cstdio>

namespace zemo {
namespace {

constexpr size_t kFrameBytes = 2 * sizeof(float);

// Frames decoded ahead of a seek target, so that the filters and the bit reservoir are as in
// reading from the start: the frame that the target's filter goes back to, the one that its overlap
// goes back to, and those whose bytes these begin in. One more to spare.
long PreFrames(const MpegLayout& layout) {
  constexpr int kFilterFrames = 3;
  const bool mpeg1 = layout.first.version == MpegVersion::kMpeg1;
  // The reservoir in bytes; what of a frame is no sound data: header, check sum, side information;
  // sound data of the smallest frames there are, at 32 and 8 kbit/s.
  const int reservoir = mpeg1 ? 511 : 255;
  const int head = 4 + 2 + (mpeg1 ? 32 : 17);
  const int smallest = mpeg1 ? 60 : 3;
  const int data = std::max(smallest, layout.leastBytes - head);
  return (reservoir + data - 1) / data + kFilterFrames;
}

}  // namespace

MpegSource::MpegSource(std::unique_ptr<FileBytes> file, MpegLayout layout)
    : file_(std::move(file)), layout_(std::move(layout)) {
  begin_ = layout_.SoundBegin();
  length_ = layout_.SoundEnd() - begin_;
  if (!OpenDecoder() || !SeekDecoder()) {
    throw CannotPlay(file_->Path(), "the MPEG decoder refuses it");
  }
}

bool MpegSource::OpenDecoder() {
  streamSize_ = 0;
  for (const ByteSpan& span : layout_.spans) streamSize_ += span.Size();
  streamAt_ = spanStreamAt_ = 0;
  span_ = 0;
  decoder_.reset(mpg123_new(nullptr, nullptr));
  if (!decoder_) return false;
  mpg123_handle* mh = decoder_.get();
  // Delay and padding are ours to take off: the decoder would keep both where frames are missing.
  mpg123_param(mh, MPG123_REMOVE_FLAGS, MPG123_GAPLESS | MPG123_AUTO_RESAMPLE | MPG123_FUZZY, 0);
  mpg123_param(mh, MPG123_ADD_FLAGS,
               MPG123_QUIET | MPG123_FORCE_FLOAT | MPG123_FORCE_STEREO | MPG123_SKIP_ID3V2 |
                   MPG123_IGNORE_INFOFRAME | MPG123_NO_READAHEAD,
               0);
  mpg123_param(mh, MPG123_PREFRAMES, PreFrames(layout_), 0);
  mpg123_format_none(mh);
  // All rates: a false header of another one would make the decoder complain on standard error.
  return mpg123_format2(mh, 0, MPG123_STEREO, MPG123_ENC_FLOAT_32) == MPG123_OK &&
         mpg123_replace_reader_handle(mh, ReadStream, SeekStream, nullptr) == MPG123_OK &&
         mpg123_open_handle(mh, this) == MPG123_OK && HasOurFormat();
}

bool MpegSource::HasOurFormat() const {
  long rate = 0;
  int channels = 0;
  int encoding = 0;
  return mpg123_getformat(decoder_.get(), &rate, &channels, &encoding) == MPG123_OK &&
         rate == Rate() && channels == 2 && encoding == MPG123_ENC_FLOAT_32;
}

bool MpegSource::SeekDecoder() {
  return mpg123_seek(decoder_.get(), begin_ + position_, SEEK_SET) == begin_ + position_;
}

int MpegSource::Read(float* stereo, int frames) {
  const int wanted = static_cast<int>(std::min<int64_t>(frames, length_ - position_));
  int given = 0;
  while (given < wanted && !ended_) {
    size_t bytes = 0;
    const int result = mpg123_read(decoder_.get(), stereo + size_t{2} * static_cast<size_t>(given),
                                   static_cast<size_t>(wanted - given) * kFrameBytes, &bytes);
    const int got = static_cast<int>(bytes / kFrameBytes);
    given += got;
    position_ += got;
    const bool goesOn =
        result == MPG123_NEW_FORMAT ? HasOurFormat() : result == MPG123_OK && got > 0;
    if (given < wanted && !goesOn) ended_ = !Recover();
  }
  return given;
}

bool MpegSource::Recover() {
  if (layout_.scanned) return false;
  ScanMpeg(*file_, layout_);
  return OpenDecoder() && SeekDecoder();
}

void MpegSource::Seek(int64_t frame) {
  position_ = std::clamp<int64_t>(frame, 0, length_);
  ended_ = position_ < length_ && !SeekDecoder() && !Recover();
}

std::unique_ptr<SampleSource> MpegSource::Twin() const {
  return std::make_unique<MpegSource>(file_->Again(), layout_);
}

ssize_t MpegSource::ReadStream(void* self, void* to, size_t count) {
  auto& me = *static_cast<MpegSource*>(self);
  auto* out = static_cast<uint8_t*>(to);
  size_t got = 0;
  while (got < count && me.streamAt_ < me.streamSize_) {
    const ByteSpan& span = me.layout_.spans[me.span_];
    const int64_t at = span.begin + (me.streamAt_ - me.spanStreamAt_);
    if (at >= span.end) {
      me.spanStreamAt_ += span.Size();
      ++me.span_;
      continue;
    }
    const size_t here = std::min(count - got, static_cast<size_t>(span.end - at));
    const size_t n = me.file_->Read(at, out + got, here);
    got += n;
    me.streamAt_ += static_cast<int64_t>(n);
    if (n < here) break;
  }
  return static_cast<ssize_t>(got);
}

off_t MpegSource::SeekStream(void* self, off_t offset, int whence) {
  auto& me = *static_cast<MpegSource*>(self);
  const int64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? me.streamAt_ : me.streamSize_;
  if (from + offset < 0) return -1;
  me.streamAt_ = from + offset;
  me.span_ = 0;
  me.spanStreamAt_ = 0;
  const auto& spans = me.layout_.spans;
  while (me.span_ + 1 < spans.size() && me.streamAt_ >= me.spanStreamAt_ + spans[me.span_].Size()) {
    me.spanStreamAt_ += spans[me.span_++].Size();
  }
  return me.streamAt_;
}

}  // namespace zemo
