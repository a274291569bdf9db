#include "platform/real/decoders/WaveformReader.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "platform/real/decoders/ShapeMaker.h"

namespace zemo {

namespace {

constexpr size_t kMostKnown = 64;  // shapes in memory
constexpr size_t kMostWishes = 8;
constexpr uint64_t kCacheFiles = 4096;  // at most that many files of about 1 kB
constexpr int kBlockFrames = 4096;
constexpr int kLowestPriority = 19;

// What a kept shape is good for: the file as it was.
std::optional<std::string> Stamp(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return std::nullopt;
  return path + '\n' + std::to_string(info.st_size) + ' ' + std::to_string(info.st_mtim.tv_sec) +
         '.' + std::to_string(info.st_mtim.tv_nsec) + '\n';
}

// FNV-1a over the path chooses the file; one that has the same simply takes its place.
std::string CacheName(const std::string& path) {
  uint64_t hash = 14695981039346656037ULL;
  for (const unsigned char byte : path) hash = (hash ^ byte) * 1099511628211ULL;
  char name[32];
  std::snprintf(name, sizeof name, "%04llx.peaks",
                static_cast<unsigned long long>(hash % kCacheFiles));
  return name;
}

std::shared_ptr<const WavePeaks> ReadKept(const std::string& file, const std::string& stamp) {
  std::ifstream in(file, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), {});
  if (bytes.size() != stamp.size() + kWavePeaks || bytes.compare(0, stamp.size(), stamp) != 0)
    return nullptr;
  return std::make_shared<WavePeaks>(bytes.begin() + static_cast<std::ptrdiff_t>(stamp.size()),
                                     bytes.end());
}

// Whole or not at all, so that a power loss leaves no half shape.
void Keep(const std::string& folder, const std::string& file, const std::string& stamp,
          const WavePeaks& peaks) {
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  const std::string fresh = file + ".new";
  {
    std::ofstream out(fresh, std::ios::binary);
    out << stamp;
    out.write(reinterpret_cast<const char*>(peaks.data()),
              static_cast<std::streamsize>(peaks.size()));
    if (!out) return;
  }
  std::filesystem::rename(fresh, file, ignored);
}

}  // namespace

WaveformReader::WaveformReader(std::unique_ptr<SoundOpener> opener, std::string folder)
    : opener_(std::move(opener)), folder_(std::move(folder)), thread_([this] { Run(); }) {}

WaveformReader::~WaveformReader() {
  {
    const std::lock_guard lock(mutex_);
    quit_ = true;
  }
  wished_.notify_all();
  thread_.join();
}

std::shared_ptr<const WavePeaks> WaveformReader::PeaksOf(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(path);
  if (found != known_.end()) return found->second;
  if (std::find(wishes_.begin(), wishes_.end(), path) == wishes_.end()) {
    wishes_.push_back(path);
    if (wishes_.size() > kMostWishes) wishes_.pop_front();
    wished_.notify_all();
  }
  return nullptr;
}

std::shared_ptr<const WavePart> WaveformReader::PartOf(const std::string& path, int64_t fromFrame,
                                                       int64_t toFrame, size_t most) {
  PartWish wish{path, std::max<int64_t>(0, fromFrame), toFrame, most};
  const std::lock_guard lock(mutex_);
  if (wish == part_) return read_;
  part_ = std::move(wish);
  partWanted_ = true;
  read_ = nullptr;
  wished_.notify_all();
  return nullptr;
}

void WaveformReader::Run() {
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kLowestPriority);
  std::unique_lock lock(mutex_);
  while (true) {
    wished_.wait(lock, [this] { return quit_ || partWanted_ || !wishes_.empty(); });
    if (quit_) return;
    const bool part = partWanted_;
    const std::string path = part ? std::string() : wishes_.back();
    lock.unlock();
    if (part) {
      ServePart();
      lock.lock();
      continue;
    }
    Peaks peaks = Find(path);
    lock.lock();
    if (quit_) return;
    wishes_.erase(std::remove(wishes_.begin(), wishes_.end(), path), wishes_.end());
    if (known_.size() >= kMostKnown) known_.clear();
    known_[path] = std::move(peaks);
  }
}

WaveformReader::Peaks WaveformReader::Find(const std::string& path) {
  const auto stamp = Stamp(path);
  if (!stamp) return std::make_shared<WavePeaks>();
  const std::string file = folder_ + "/" + CacheName(path);
  if (Peaks kept = ReadKept(file, *stamp)) return kept;
  Peaks peaks = Decode(path);
  if (!peaks->empty()) Keep(folder_, file, *stamp, *peaks);
  return peaks;
}

// Empty for a file that cannot be opened, and when the program ends meanwhile.
WaveformReader::Peaks WaveformReader::Decode(const std::string& path) {
  auto peaks = std::make_shared<WavePeaks>();
  try {
    const auto source = opener_->Open(path);
    ShapeMaker shape(source->LengthFrames());
    std::vector<float> block(static_cast<size_t>(kBlockFrames) * kChannels);
    while (const int read = source->Read(block.data(), kBlockFrames)) {
      shape.Add(block.data(), read);
      std::unique_lock lock(mutex_);
      if (quit_) return std::make_shared<WavePeaks>();
      if (!partWanted_) continue;
      lock.unlock();
      ServePart();
    }
    *peaks = shape.Peaks();
  } catch (const std::exception&) {
    peaks->clear();
  }
  return peaks;
}

// A part is read ahead of whole shapes, and in the middle of one: an operator waits for it.
void WaveformReader::ServePart() {
  std::unique_lock lock(mutex_);
  const PartWish wish = part_;
  lock.unlock();
  auto part = std::make_shared<WavePart>();
  try {
    *part = ReadPart(wish);
  } catch (const std::exception&) {
    *part = {.lengthFrames = 0, .fromFrame = wish.fromFrame, .toFrame = wish.toFrame, .peaks = {}};
  }
  lock.lock();
  if (wish != part_) return;
  read_ = std::move(part);
  partWanted_ = false;
}

WavePart WaveformReader::ReadPart(const PartWish& wish) {
  const auto source = opener_->Open(wish.path);
  const int64_t frames = std::max<int64_t>(0, wish.toFrame - wish.fromFrame);
  const size_t stretches = std::min(wish.most, static_cast<size_t>(frames));
  if (stretches == 0) return {source->LengthFrames(), wish.fromFrame, wish.toFrame, {}};
  ShapeMaker shape(frames, stretches);
  source->Seek(wish.fromFrame);
  std::vector<float> block(static_cast<size_t>(kBlockFrames) * kChannels);
  for (int64_t left = frames; left > 0 && !LeavesOff(wish);) {
    const int read =
        source->Read(block.data(), static_cast<int>(std::min<int64_t>(left, kBlockFrames)));
    if (read == 0) break;
    shape.Add(block.data(), read);
    left -= read;
  }
  return {source->LengthFrames(), wish.fromFrame, wish.toFrame, shape.Peaks()};
}

bool WaveformReader::LeavesOff(const PartWish& wish) {
  const std::lock_guard lock(mutex_);
  return quit_ || wish != part_;
}

}  // namespace zemo
