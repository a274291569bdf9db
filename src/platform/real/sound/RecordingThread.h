// The thread of an input: opens it, however long that takes, hears what comes, and writes a
// recording as it comes. Between it and the device stands a lock-free ring, so that a disk may
// rest for ten seconds.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/real/sound/InputDevice.h"
#include "platform/real/sound/RateConverter.h"
#include "platform/real/sound/RecordingFile.h"
#include "platform/real/sound/WakeUp.h"

namespace zemo {

class RecordingThread {
 public:
  RecordingThread();
  ~RecordingThread();  // ends what is recorded, and waits for the device
  RecordingThread(const RecordingThread&) = delete;
  RecordingThread& operator=(const RecordingThread&) = delete;

  // --- Logic's thread; nothing of it waits ---
  // Opens the input in place of the one before; one without systems opens none.
  void Use(WishedInput input);
  // Into the file of that path, from the frames on that the device gives from now on; an input
  // that is not open is opened for it. Returns the recording's number, from 1.
  uint32_t Record(const std::string& path);
  // The recording ends with what was heard up to now.
  void End();
  void Quit();  // ahead of the end, so that it does not wait then

  // --- Any thread ---
  uint32_t Ended() const {
    return ended_.load(std::memory_order_acquire);
  }  // the last one's number
  // Of the last one that ended: why by itself, empty where it was asked to.
  std::string Reason() const;
  // At kSampleRate, in the file of the recording begun last.
  int64_t RecordedFrames() const { return recorded_.load(std::memory_order_acquire); }
  // By the steady clock, when anything but digital silence came last; 0 before the first time.
  int64_t HeardAtMs() const { return heardAtMs_.load(std::memory_order_acquire); }
  std::array<float, kChannels> TakePeaks();  // since the last call; full scale 1.0
  bool Gone() const { return gone_.load(std::memory_order_acquire); }  // behind Quit: all is done

 private:
  using Time = std::chrono::steady_clock::time_point;

  struct Order {
    enum class Kind { kUse, kRecord, kEnd };
    Kind kind = Kind::kEnd;
    WishedInput input{};
    std::string path{};
    uint32_t number = 0;   // of the recording
    uint32_t opening = 0;  // of the input, at the order
    int64_t frame = 0;     // that it had given by then
  };

  void Send(Order order);
  bool NextOrder(Order& order);
  void Run();
  void Execute(Order& order);
  void OpenInput();
  void CloseInput();
  void Begin(const Order& order);
  void EndAt(const Order& order);
  void Hear(int frames);
  void NoteSound(int frames);
  void WriteHeard(int64_t first, int frames);
  void Write(const int16_t* samples, int frames);
  void LookAtInput();
  void Finish(const std::string& reason);

  static constexpr int kBlockFrames = 4096;
  static constexpr int64_t kNever = INT64_MAX;

  // Shared.
  InputRing ring_;
  WakeUp wake_;
  mutable std::mutex mutex_;  // held for some instructions
  std::deque<Order> orders_;  // while mutex_ is held; as reason_
  std::string reason_;
  std::atomic<uint32_t> opening_{0};  // counts the openings of an input
  std::atomic<uint32_t> ended_{0};
  std::atomic<int64_t> recorded_{0};
  std::atomic<int64_t> heardAtMs_{0};
  std::array<std::atomic<int>, kChannels> peaks_{};  // of 32768
  std::atomic<bool> quit_{false};
  std::atomic<bool> gone_{false};

  uint32_t numbers_ = 0;  // the logic's: of the recording asked for last

  // The thread's own.
  WishedInput input_;
  InputDevice* open_ = nullptr;               // of its systems
  InputDevice::Opened opened_;                // of it
  std::string refused_;                       // why it does not open
  int64_t heard_ = 0;                         // frames of the opening, read from the ring
  uint32_t recording_ = 0;                    // its number; 0: none runs
  std::string path_;                          // of its file
  int64_t fromFrame_ = 0;                     // of the opening
  int64_t untilFrame_ = kNever;               // the same
  Time endBy_;                                // when the end does not wait for frames any more
  Time syncedAt_;                             // when its file was last brought onto the disk
  std::unique_ptr<RecordingFile> file_;       // from its first frame on
  std::unique_ptr<RateConverter> converter_;  // null at kSampleRate
  std::vector<int16_t> block_;
  std::vector<float> floats_, converted_;
  std::vector<int16_t> samples_;
  std::thread thread_;  // last: it uses all the others
};

}  // namespace zemo
