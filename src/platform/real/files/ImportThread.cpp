#include "platform/real/files/ImportThread.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

#include "platform/real/files/ImportReader.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/LowestPriority.h"
#include "platform/real/files/SoundFilesBelow.h"
#include "platform/real/files/StoredPaths.h"

namespace zemo {

namespace {
constexpr size_t kMostAhead = 256;  // files that were read and not taken
}

class ImportThread::Run {
 public:
  Run(ImportTools tools, const std::string& machineFolder, std::vector<std::string> paths,
      std::vector<std::string> known)
      : tools_(std::move(tools)),
        machine_(machineFolder),
        files_(machine_),
        paths_(std::move(paths)),
        reader_(*tools_.opener, *tools_.tags, files_, std::move(known)),
        thread_([this](const std::stop_token& stop) { Work(stop); }) {}
  ~Run() {
    Stop();
    thread_.join();
  }
  Run(const Run&) = delete;

  void Stop() {
    thread_.request_stop();
    taken_.fetch_add(1);
    taken_.notify_one();
  }
  bool Ended() const { return ended_.load(); }
  Count Found() const {
    const bool all = foundAll_.load();  // first: the count is final behind it
    return {found_.load(), all};
  }

  std::optional<SoundFileReading> Take() {
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (!lock || read_.empty()) return std::nullopt;
    std::optional<SoundFileReading> oldest(std::move(read_.front()));
    read_.pop_front();
    taken_.fetch_add(1);
    taken_.notify_one();
    return oldest;
  }

 private:
  void Work(const std::stop_token& stop) {
    TakeLowestPriority();
    std::vector<std::string> files;
    for (const std::string& path : paths_)
      FindSoundFiles(path, [&](std::string file) {
        files.push_back(std::move(file));
        ++found_;
        return !stop.stop_requested();
      });
    foundAll_ = true;
    for (const std::string& file : files) {
      if (stop.stop_requested()) break;
      Give(reader_.Read(file), stop);
    }
    ended_ = true;
  }

  void Give(SoundFileReading reading, const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      const uint32_t seen = taken_.load();
      {
        const std::lock_guard lock(mutex_);
        if (read_.size() < kMostAhead) return read_.push_back(std::move(reading));
      }
      // Taken, or stopped, since then: it has counted up.
      if (!stop.stop_requested()) taken_.wait(seen);
    }
  }

  ImportTools tools_;
  LocalFolder machine_;
  StoredPaths files_;
  std::vector<std::string> paths_;
  ImportReader reader_;
  std::atomic<size_t> found_ = 0;
  std::atomic<bool> foundAll_ = false, ended_ = false;
  std::atomic<uint32_t> taken_ = 0;    // counts up when a reading was taken, or at the end
  std::mutex mutex_;                   // held for some instructions, never while a file is read
  std::deque<SoundFileReading> read_;  // the oldest first
  std::jthread thread_;                // last: it uses all the others
};

ImportThread::ImportThread(std::function<ImportTools()> makeTools, std::string machineFolder)
    : makeTools_(std::move(makeTools)), machineFolder_(std::move(machineFolder)) {}

ImportThread::~ImportThread() {
  for (const auto& run : runs_) run->Stop();  // all of them, ahead of the wait for each
}

void ImportThread::Begin(std::vector<std::string> paths, std::vector<std::string> known) {
  Stop();
  std::erase_if(runs_, [](const auto& run) { return run->Ended(); });
  runs_.push_back(
      std::make_unique<Run>(makeTools_(), machineFolder_, std::move(paths), std::move(known)));
  atWork_ = true;
}

void ImportThread::Stop() {
  if (std::exchange(atWork_, false)) runs_.back()->Stop();
}

ImportFiles::Count ImportThread::Found() const {
  return atWork_ ? runs_.back()->Found() : Count();
}

std::optional<SoundFileReading> ImportThread::Take() {
  return atWork_ ? runs_.back()->Take() : std::nullopt;
}

}  // namespace zemo
