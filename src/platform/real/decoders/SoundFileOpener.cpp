// See SoundFileOpener.h.
#include "platform/real/decoders/SoundFileOpener.h"

#include "platform/real/decoders/FileBytes.h"
#include "platform/real/decoders/MpegSource.h"
#include "platform/real/decoders/ResampledSource.h"
#include "platform/real/decoders/SndfileSource.h"
#include "platform/real/decoders/SoundContent.h"
#include "platform/real/decoders/VorbisSource.h"

namespace zemo {
namespace {

// A file that has our rate already.
class PlainSource : public SoundSource {
 public:
  explicit PlainSource(std::unique_ptr<SampleSource> source) : source_(std::move(source)) {}
  int64_t LengthFrames() const override { return source_->LengthFrames(); }
  int Read(float* stereo, int frames) override { return source_->Read(stereo, frames); }
  void Seek(int64_t frame) override { source_->Seek(frame); }
  std::unique_ptr<SoundSource> Twin() const override {
    auto twin = source_->Twin();
    return twin == nullptr ? nullptr : std::make_unique<PlainSource>(std::move(twin));
  }

 private:
  std::unique_ptr<SampleSource> source_;
};

std::unique_ptr<SampleSource> OpenDecoder(std::unique_ptr<FileBytes> file) {
  if (file->Size() == 0) throw CannotPlay(file->Path(), "the file is empty");
  const SoundContent content = IdentifySound(*file);
  if (content.kind == SoundKind::kSndfile) {
    return std::make_unique<SndfileSource>(ByteStream(std::move(file), content.bytes),
                                           content.zeroLengthAt);
  }
  if (content.kind == SoundKind::kVorbis) {
    return std::make_unique<VorbisSource>(ByteStream(std::move(file), content.bytes));
  }
  auto layout = LayOutMpeg(*file, content.bytes);
  if (!layout) throw CannotPlay(file->Path(), "no sound in a known format");
  return std::make_unique<MpegSource>(std::move(file), std::move(*layout));
}

}  // namespace

std::unique_ptr<SoundSource> SoundFileOpener::Open(const std::string& path) {
  auto source = OpenDecoder(std::make_unique<FileBytes>(path));
  if (source->LengthFrames() <= 0) throw CannotPlay(path, "it holds no sound");
  if (source->Rate() == kSampleRate) return std::make_unique<PlainSource>(std::move(source));
  if (source->Rate() < ResampledSource::kLowestRate ||
      source->Rate() > ResampledSource::kHighestRate) {
    throw CannotPlay(path, "a rate of " + std::to_string(source->Rate()) + " Hz");
  }
  return std::make_unique<ResampledSource>(std::move(source));
}

}  // namespace zemo
