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

 private:
  using Peaks = std::shared_ptr<const WavePeaks>;
  void Run();
  Peaks Find(const std::string& path);
  Peaks Decode(const std::string& path);

  std::unique_ptr<SoundOpener> opener_;
  std::string folder_;
  std::mutex mutex_;
  std::condition_variable wished_;
  std::deque<std::string> wishes_;  // the newest last
  std::unordered_map<std::string, Peaks> known_;
  bool quit_ = false;
  std::thread thread_;  // last: it uses all the others
};

}  // namespace zemo
