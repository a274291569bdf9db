// From the outside in: the directory entry, the decoder's opinion, the headers of WAV and MP3, and
// whether the end that the length promises can be read.
#include "app/check/SoundFileCheck.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>

#include "platform/real/decoders/FileBytes.h"
#include "platform/real/decoders/MpegLayout.h"
#include "platform/real/decoders/SoundContent.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

// The reason alone of the opener's line, which names the path as well.
std::string WithoutPath(const std::string& line, const std::string& path) {
  const std::string end = path + "\": ";
  const size_t at = line.find(end);
  return at == std::string::npos ? line : line.substr(at + end.size());
}

// What the directory says; nullopt when there is a file with something in it.
std::optional<std::string> WhyNoFile(const std::string& path) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (status.type() == fs::file_type::not_found) return "the sound file is missing";
  if (failed) return "the sound file cannot be looked at: " + failed.message();
  if (fs::is_directory(status)) return "is a folder, not a sound file";
  if (!fs::is_regular_file(status)) return "is no file";
  if (fs::file_size(path, failed) == 0 && !failed) return "the sound file is empty";
  return std::nullopt;
}

uint32_t Little(const uint8_t* bytes, int count) {
  uint32_t number = 0;
  for (int i = count; i-- > 0;) number = number << 8 | bytes[i];
  return number;
}

std::string Bytes(int64_t count) {
  return std::to_string(count) + " bytes";
}

// The chunks of a RIFF WAVE file against the file's size and against each other.
void LookAtWavHeader(FileBytes& file, std::vector<SoundFault>& faults) {
  const uint8_t* head = file.Peek(0, 12);
  if (!head || std::memcmp(head, "RIFF", 4) != 0 || std::memcmp(head + 8, "WAVE", 4) != 0) return;
  const auto add = [&](Severity severity, std::string why) {
    faults.push_back({severity, std::move(why)});
  };
  uint32_t blockAlign = 0;
  for (int64_t at = 12; at + 8 <= file.Size();) {
    const uint8_t* chunk = file.Peek(at, 8);
    if (!chunk) return;
    const int64_t size = Little(chunk + 4, 4);
    if (std::memcmp(chunk, "data", 4) == 0) {
      const int64_t held = file.Size() - at - 8;
      // Writers to a pipe leave 0 or the largest number, which all readers take as "to the end".
      if (size == 0xFFFFFFFF || (size == 0 && held > 0)) {
        add(Severity::kWarning,
            "its header states no length; the file holds " + Bytes(held) + " of sound");
      } else if (size > held) {
        add(Severity::kError,
            "its header promises " + Bytes(size) + " of sound, the file holds " + Bytes(held));
      } else if (blockAlign > 0 && size % blockAlign != 0) {
        add(Severity::kWarning, "its sound does not end with a whole frame");
      }
      return;
    }
    if (std::memcmp(chunk, "fmt ", 4) == 0 && size >= 16) {
      const uint8_t* format = file.Peek(at + 8, 16);
      if (!format) return;
      const uint32_t tag = Little(format, 2), channels = Little(format + 2, 2);
      const uint32_t rate = Little(format + 4, 4), bytesPerSecond = Little(format + 8, 4);
      const uint32_t bits = Little(format + 14, 2);
      blockAlign = Little(format + 12, 2);
      const bool plain = tag == 1 || tag == 3;
      if (plain &&
          (blockAlign != channels * ((bits + 7) / 8) || bytesPerSecond != rate * blockAlign)) {
        add(Severity::kError, "its header contradicts itself: " + std::to_string(channels) +
                                  " channels of " + std::to_string(bits) + " bits at " +
                                  std::to_string(rate) + " Hz are not " +
                                  std::to_string(bytesPerSecond) + " bytes a second");
      }
    }
    at += 8 + size + size % 2;
  }
  add(Severity::kError, "its header names no sound");
}

// An MPEG stream against its own information frame, and its last frame.
void LookAtMpeg(FileBytes& file, ByteSpan within, std::vector<SoundFault>& faults) {
  const std::optional<MpegLayout> layout = LayOutMpeg(file, within);
  if (!layout || !layout->scanned) return;  // else its header agrees with its size
  if (layout->info && layout->info->frames && *layout->info->frames > layout->frames) {
    faults.push_back({Severity::kError,
                      "is cut short: its header promises " + std::to_string(*layout->info->frames) +
                          " frames, the file holds " + std::to_string(layout->frames)});
    return;
  }
  const int64_t end = layout->spans.back().end;
  const uint8_t* rest = layout->area.end - end >= 4 ? file.Peek(end, 4) : nullptr;
  const std::optional<MpegHeader> half = rest ? ParseMpegHeader(rest) : std::nullopt;
  if (half && SameStream(*half, layout->first) && end + half->bytes > layout->area.end) {
    faults.push_back({Severity::kError, "is cut short: it ends in the middle of a frame"});
  }
}

// Whether the length that the file states can be read to its end.
void ReadEnds(SoundSource& source, std::vector<SoundFault>& faults) {
  constexpr int64_t kFrames = kSampleRate / 2;
  std::vector<float> buffer(static_cast<size_t>(kFrames * kChannels));
  const int64_t length = source.LengthFrames();
  const auto readFrom = [&](int64_t begin) {
    source.Seek(begin);
    int64_t at = begin;
    const int64_t end = std::min(begin + kFrames, length);
    while (at < end) {
      const int got = source.Read(buffer.data(), static_cast<int>(end - at));
      if (got <= 0) break;
      at += got;
    }
    return at == end;
  };
  if (!readFrom(0)) {
    faults.push_back({Severity::kError, "its sound cannot be read from the beginning"});
  } else if (!readFrom(std::max<int64_t>(0, length - kFrames))) {
    faults.push_back({Severity::kError, "its sound ends before the stated length of " +
                                            std::to_string(FramesToMs(length)) + " ms"});
  }
}

SoundFileLook LookInto(const std::string& path) {
  SoundFileLook look;
  if (const std::optional<std::string> why = WhyNoFile(path)) {
    look.faults.push_back({Severity::kError, *why});
    return look;
  }
  try {
    const std::unique_ptr<SoundSource> source = SoundFileOpener().Open(path);
    look.lengthMs = FramesToMs(source->LengthFrames());
    FileBytes file(path);
    LookAtWavHeader(file, look.faults);
    const SoundContent content = IdentifySound(file);
    if (content.kind != SoundKind::kSndfile) LookAtMpeg(file, content.bytes, look.faults);
    if (look.faults.empty()) ReadEnds(*source, look.faults);
  } catch (const SoundError& error) {
    look.faults.push_back({Severity::kError, WithoutPath(error.what(), path)});
  }
  return look;
}

}  // namespace

SoundFileLook LookAtSoundFile(const std::string& path) {
  SoundFileLook look = LookInto(path);
  if (look.lengthMs >= 0 && fs::path(path).is_relative())
    look.faults.push_back({Severity::kWarning,
                           "its path is not absolute: it is found only from the folder that the "
                           "program is started in"});
  return look;
}

}  // namespace zemo
