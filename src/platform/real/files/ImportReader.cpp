#include "platform/real/files/ImportReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <exception>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

namespace zemo {

namespace {

constexpr int kComparedFrames = 2 * kSampleRate;  // of the begin of a sound
constexpr int kBlockFrames = 4096;

constexpr float kHeard = 0.001F;               // of full scale: 60 dB below it
constexpr int64_t kSoundFrames = kSampleRate;  // that a file has at least if it is to be heard
constexpr int kLookedAtFrames = 600 * kSampleRate;

// From the first frame that is heard to the last one, as far as it is long enough.
class HeardSpan {
 public:
  void Take(const float* stereo, int frames) {
    for (int frame = 0; frame < frames && !LongEnough(); ++frame, ++at_) {
      if (std::fabs(stereo[2 * frame]) < kHeard && std::fabs(stereo[2 * frame + 1]) < kHeard)
        continue;
      if (first_ < 0) first_ = at_;
      last_ = at_;
    }
  }
  bool LongEnough() const { return first_ >= 0 && last_ - first_ + 1 >= kSoundFrames; }

 private:
  int64_t at_ = 0, first_ = -1, last_ = -1;
};

uint64_t HashOn(uint64_t hash, const float* samples, size_t count) {
  constexpr uint64_t kPrime = 1099511628211U;
  for (size_t i = 0; i < count; ++i) {
    uint32_t bits = 0;
    std::memcpy(&bits, samples + i, sizeof bits);
    hash = (hash ^ bits) * kPrime;
  }
  return hash;
}

// The path stands beside the reason wherever it is told.
std::string WithoutPath(const std::string& reason, const std::string& path) {
  const std::string named = '"' + path + "\": ";
  const size_t at = reason.find(named);
  return at == std::string::npos ? reason : reason.substr(at + named.size());
}

}  // namespace

ImportReader::ImportReader(SoundOpener& opener, SoundTags& tags, const SoundFiles& files,
                           std::vector<std::string> known)
    : opener_(opener),
      tags_(tags),
      files_(files),
      toMeasure_(std::move(known)),
      known_(toMeasure_.begin(), toMeasure_.end()) {}

void ImportReader::MeasureKnown() {
  for (std::string& path : std::exchange(toMeasure_, {})) {
    const int64_t size = files_.SizeBytes(path);
    sizes_.emplace(size, std::move(path));
  }
}

ImportReader::Begin ImportReader::BeginOf(const std::string& path, Heard heard) {
  const auto source = opener_.Open(files_.Resolve(path));
  std::array<float, size_t{kBlockFrames} * kChannels> block;
  Begin begin{source->LengthFrames(), 14695981039346656037U};
  HeardSpan span;
  const auto read = [&](int most) {
    const int frames = source->Read(block.data(), std::min(kBlockFrames, most));
    if (heard == Heard::kWanted) span.Take(block.data(), frames);
    return frames;
  };
  int frames = 0;
  while (frames < kComparedFrames) {
    const int more = read(kComparedFrames - frames);
    if (more == 0) break;
    begin.hash = HashOn(begin.hash, block.data(), static_cast<size_t>(more) * kChannels);
    frames += more;
  }
  if (FramesToMs(frames) == 0) throw SoundError("holds no sound");
  if (heard == Heard::kIdle) return begin;
  int more = frames;
  while (more > 0 && frames < kLookedAtFrames && !span.LongEnough())
    frames += more = read(kBlockFrames);
  begin.hardlySounds = !span.LongEnough() && frames < kLookedAtFrames;
  return begin;
}

std::string ImportReader::SameSound(const Sound& sound) {
  const auto [first, end] = sizes_.equal_range(sound.first);
  for (auto known = first; known != end; ++known) {
    try {
      sounds_.emplace(Sound(sound.first, BeginOf(known->second, Heard::kIdle).hash), known->second);
    } catch (const std::exception&) {
      continue;  // a card whose file is lost or damaged has no sound to compare
    }
  }
  sizes_.erase(first, end);
  const auto same = sounds_.find(sound);
  return same == sounds_.end() ? std::string() : same->second;
}

SoundFileReading ImportReader::Read(const std::string& path) {
  SoundFileReading reading{.path = path};
  try {
    if (!files_.Exists(path)) {
      std::error_code error;
      reading.error = std::filesystem::is_directory(files_.Resolve(path), error)
                          ? "the folder cannot be read"
                          : "there is no such file";
      return reading;
    }
    if (known_.contains(path)) return reading;
    const Begin begin = BeginOf(path, Heard::kWanted);
    reading.lengthMs = static_cast<int32_t>(
        std::min<int64_t>(FramesToMs(begin.lengthFrames), std::numeric_limits<int32_t>::max()));
    reading.hardlySounds = begin.hardlySounds;
    MeasureKnown();
    const Sound sound(files_.SizeBytes(path), begin.hash);
    reading.sameSoundAs = SameSound(sound);
    reading.tags = tags_.Read(files_.Resolve(path));
    sounds_.emplace(sound, path);
  } catch (const std::exception& error) {
    reading.error = WithoutPath(error.what(), path);
  }
  return reading;
}

}  // namespace zemo
