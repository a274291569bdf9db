// See KnownLengths.h.
#include "platform/real/files/KnownLengths.h"

#include <sys/stat.h>

#include <algorithm>
#include <exception>
#include <limits>

namespace zemo {

int64_t KnownLengths::LengthFrames(const std::string& path, SoundOpener& opener) {
  struct stat info {};
  const bool there = ::stat(path.c_str(), &info) == 0;
  const int64_t size = info.st_size;
  const int64_t changedNs = int64_t{info.st_mtim.tv_sec} * 1'000'000'000 + info.st_mtim.tv_nsec;
  const auto found = known_.find(path);
  if (there && found != known_.end() && found->second.size == size &&
      found->second.changedNs == changedNs)
    return found->second.lengthFrames;
  const int64_t length = opener.Open(path)->LengthFrames();
  if (there) known_[path] = {size, changedNs, length};
  return length;
}

int32_t SoundFileLengths::LengthMs(std::string_view storedPath) {
  if (storedPath.empty()) return 0;
  try {
    const int64_t frames = known_.LengthFrames(files_.Resolve(storedPath), opener_);
    return static_cast<int32_t>(
        std::min<int64_t>(FramesToMs(frames), std::numeric_limits<int32_t>::max()));
  } catch (const std::exception&) {
    return 0;
  }
}

}  // namespace zemo
