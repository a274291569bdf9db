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

// The allocator has locks of its own, one for what each thread has allocated. So that the logic
// never waits for one that a thread without a processor holds, each of the two frees what it
// allocated: the thread copies what it is given, the logic what it takes.
class ImportThread::Run {
 public:
  Run(ImportTools tools, const std::string& machineFolder, std::vector<std::string> paths,
      std::vector<std::string> known)
      : tools_(std::move(tools)),
        machine_(machineFolder),
        files_(machine_),
        paths_(std::move(paths)),
        known_(std::move(known)),
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
    if (!lock || copied_ == read_.size()) return std::nullopt;
    std::optional<SoundFileReading> oldest(read_[copied_]);
    ++copied_;
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
    ReadAll(files, stop);
    ended_ = true;
  }

  void ReadAll(const std::vector<std::string>& files, const std::stop_token& stop) {
    ImportReader reader(*tools_.opener, *tools_.tags, files_, known_);
    for (const std::string& file : files) {
      if (stop.stop_requested()) return;
      Give(reader.Read(file), stop);
    }
  }

  void Give(SoundFileReading reading, const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      const uint32_t seen = taken_.load();
      {
        const std::lock_guard lock(mutex_);
        for (; copied_ > 0; --copied_) read_.pop_front();
        if (read_.size() < kMostAhead) return read_.push_back(std::move(reading));
      }
      // Taken, or stopped, since then: it has counted up.
      if (!stop.stop_requested()) taken_.wait(seen);
    }
  }

  ImportTools tools_;
  LocalFolder machine_;
  StoredPaths files_;
  const std::vector<std::string> paths_, known_;
  std::atomic<size_t> found_ = 0;
  std::atomic<bool> foundAll_ = false, ended_ = false;
  std::atomic<uint32_t> taken_ = 0;    // counts up when a reading was taken, or at the end
  std::mutex mutex_;                   // held for some instructions, never while a file is read
  std::deque<SoundFileReading> read_;  // the oldest first; the thread alone puts in and takes out
  size_t copied_ = 0;                  // of these, by the logic
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
