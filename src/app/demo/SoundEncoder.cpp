// libsndfile writing into a string.
#include "app/demo/SoundEncoder.h"

#include <sndfile.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

#include "app/demo/Demo.h"

namespace zemo {
namespace {

// The file that libsndfile believes to write.
struct Bytes {
  std::string bytes;
  sf_count_t at = 0;

  static Bytes& Of(void* user) { return *static_cast<Bytes*>(user); }
};

sf_count_t LengthOf(void* user) {
  return static_cast<sf_count_t>(Bytes::Of(user).bytes.size());
}
sf_count_t Tell(void* user) {
  return Bytes::Of(user).at;
}

sf_count_t Seek(sf_count_t offset, int whence, void* user) {
  Bytes& file = Bytes::Of(user);
  const sf_count_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.at : LengthOf(user);
  return file.at = std::max<sf_count_t>(0, from + offset);
}

sf_count_t ReadBytes(void* to, sf_count_t count, void* user) {
  Bytes& file = Bytes::Of(user);
  const sf_count_t given = std::clamp<sf_count_t>(LengthOf(user) - file.at, 0, count);
  std::memcpy(to, file.bytes.data() + file.at, static_cast<size_t>(given));
  file.at += given;
  return given;
}

sf_count_t WriteBytes(const void* from, sf_count_t count, void* user) {
  Bytes& file = Bytes::Of(user);
  const auto end = static_cast<size_t>(file.at + count);
  if (end > file.bytes.size()) file.bytes.resize(end);
  std::memcpy(file.bytes.data() + file.at, from, static_cast<size_t>(count));
  file.at += count;
  return count;
}

}  // namespace

std::string EncodeSound(const StereoBuffer& sound, SoundForm form) {
  Bytes file;
  SF_INFO info{};
  info.samplerate = kDemoRate;
  info.channels = 2;
  info.format = form == SoundForm::kWav ? SF_FORMAT_WAV | SF_FORMAT_PCM_16
                                        : SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  SF_VIRTUAL_IO access{LengthOf, Seek, ReadBytes, WriteBytes, Tell};
  std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> writer(
      sf_open_virtual(&access, SFM_WRITE, &info, &file), sf_close);
  if (!writer) throw DemoError(std::string("the sound cannot be encoded: ") + sf_strerror(nullptr));
  if (form == SoundForm::kMp3) {
    int constantRate = SF_BITRATE_MODE_CONSTANT;
    double compression = 0.55;  // 160 kbit/s at 44.1 kHz
    sf_command(writer.get(), SFC_SET_BITRATE_MODE, &constantRate, sizeof constantRate);
    sf_command(writer.get(), SFC_SET_COMPRESSION_LEVEL, &compression, sizeof compression);
  }
  if (sf_writef_float(writer.get(), sound.samples.data(), sound.Frames()) != sound.Frames()) {
    throw DemoError(std::string("the sound cannot be encoded: ") + sf_strerror(writer.get()));
  }
  writer.reset();  // closing writes the headers, with the encoder's delay in that of the MP3
  return std::move(file.bytes);
}

}  // namespace zemo
