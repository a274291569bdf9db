// The shapes of sound files, read by a thread of the lowest priority and kept in the machine's
// folder, so that each file is read once as long as it stays the same.
#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>

#include "platform/SoundSource.h"
#include "platform/Waveforms.h"

namespace zemo {

// Thread: the logic's; the reading has its own, which uses an opener of its own. The logic only
// ever waits for the copy of a pointer.
class WaveformReader : public Waveforms {
 public:
  // `folder` is made when something is to be kept; a folder that cannot be written costs the
  // keeping.
  WaveformReader(std::unique_ptr<SoundOpener> opener, std::string folder);
  ~WaveformReader() override;  // leaves off in the middle of a file

  std::shared_ptr<const WavePeaks> PeaksOf(const std::string& path) override;
  std::shared_ptr<const WavePart> PartOf(const std::string& path, int64_t fromFrame,
                                         int64_t toFrame, size_t most) override;

 private:
  using Peaks = std::shared_ptr<const WavePeaks>;
  struct PartWish {
    std::string path;
    int64_t fromFrame = 0, toFrame = 0;
    size_t most = 0;
    bool operator==(const PartWish&) const = default;
  };
  void Run();
  Peaks Find(const std::string& path);
  Peaks Decode(const std::string& path);
  void ServePart();
  WavePart ReadPart(const PartWish& wish);
  bool LeavesOff(const PartWish& wish);

  std::unique_ptr<SoundOpener> opener_;
  std::string folder_;
  std::mutex mutex_;
  std::condition_variable wished_;
  std::deque<std::string> wishes_;  // the newest last
  std::unordered_map<std::string, Peaks> known_;
  PartWish part_;                           // the one asked for last
  bool partWanted_ = false;                 // it is not read yet
  std::shared_ptr<const WavePart> read_{};  // `part_`, once it is
  bool quit_ = false;
  std::thread thread_;  // last: it uses all the others
};

}  // namespace zemo
