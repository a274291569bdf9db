#include "platform/real/sound/RecordingThread.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <utility>

#include "platform/sound/SampleFormat.h"

namespace zemo {
namespace {

constexpr int kHearingTurnMs = 10;
constexpr std::chrono::milliseconds kLastFrames{200};  // that an end waits for them at most
constexpr std::chrono::seconds kSyncEvery{1};

int64_t SteadyMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

RecordingThread::RecordingThread() : block_(size_t{kBlockFrames} * kChannels) {
  thread_ = std::thread([this] { Run(); });
}

RecordingThread::~RecordingThread() {
  Quit();
  thread_.join();
}

void RecordingThread::Quit() {
  quit_.store(true, std::memory_order_release);
  wake_.Signal();
}

void RecordingThread::Use(WishedInput input) {
  Send({.kind = Order::Kind::kUse, .input = std::move(input)});
}

uint32_t RecordingThread::Record(const std::string& path) {
  recorded_.store(0, std::memory_order_release);
  Send({.kind = Order::Kind::kRecord, .path = path, .number = ++numbers_});
  return numbers_;
}

void RecordingThread::End() {
  Send({.kind = Order::Kind::kEnd, .number = numbers_});
}

// A frame counts for the opening that it is of: the number is read first, and an opening counts
// once its ring begins anew.
void RecordingThread::Send(Order order) {
  order.opening = opening_.load(std::memory_order_acquire);
  order.frame = ring_.Received();
  {
    const std::lock_guard lock(mutex_);
    orders_.push_back(std::move(order));
  }
  wake_.Signal();
}

bool RecordingThread::NextOrder(Order& order) {
  const std::lock_guard lock(mutex_);
  if (orders_.empty()) return false;
  order = std::move(orders_.front());
  orders_.pop_front();
  return true;
}

std::string RecordingThread::Reason() const {
  const std::lock_guard lock(mutex_);
  return reason_;
}

std::array<float, kChannels> RecordingThread::TakePeaks() {
  std::array<float, kChannels> peaks{};
  for (size_t channel = 0; channel < peaks.size(); ++channel)
    peaks[channel] =
        static_cast<float>(peaks_[channel].exchange(0, std::memory_order_relaxed)) / 32768.0f;
  return peaks;
}

// What came before an order is heard before it, and no frame behind it.
void RecordingThread::Run() {
  while (!quit_.load(std::memory_order_acquire)) {
    const int frames = open_ != nullptr ? ring_.Filled() : 0;
    Order order;
    if (NextOrder(order)) {
      Execute(order);
      continue;
    }
    Hear(frames);
    if (open_ != nullptr) LookAtInput();
    wake_.Wait(open_ != nullptr ? kHearingTurnMs : -1);
  }
  Finish("");
  CloseInput();
  gone_.store(true, std::memory_order_release);
}

void RecordingThread::Execute(Order& order) {
  switch (order.kind) {
    case Order::Kind::kUse:
      Finish("");
      CloseInput();
      input_ = std::move(order.input);
      if (!input_.systems.empty()) OpenInput();
      break;
    case Order::Kind::kRecord:
      Begin(order);
      break;
    case Order::Kind::kEnd:
      EndAt(order);
      break;
  }
}

void RecordingThread::OpenInput() {
  refused_.clear();
  for (const auto& system : input_.systems) {
    try {
      opened_ = system->Open(ring_);
      converter_ = opened_.rate == kSampleRate ? nullptr
                                               : std::make_unique<RateConverter>(
                                                     kSampleRate, opened_.rate, ring_.Channels());
      heard_ = 0;
      open_ = system.get();
      opening_.fetch_add(1, std::memory_order_acq_rel);
      return;
    } catch (const NoSuchDevice& error) {
      // The next one may have it; the one of a number has a reason of its own.
      if (input_.systems.size() == 1) refused_ = error.what();
    } catch (const SystemHangs& error) {
      refused_ = error.what();
      return;
    } catch (const std::exception& error) {  // the libraries and the thread they make throw theirs
      if (refused_.empty()) refused_ = error.what();
    }
  }
  if (refused_.empty()) refused_ = input_.identity + ": no such sound input on this machine";
}

void RecordingThread::CloseInput() {
  if (open_ != nullptr) std::exchange(open_, nullptr)->Close();
}

void RecordingThread::Begin(const Order& order) {
  Finish("");
  recording_ = order.number;
  path_ = order.path;
  untilFrame_ = kNever;
  syncedAt_ = std::chrono::steady_clock::now();
  const bool waits = open_ != nullptr && order.opening == opening_.load(std::memory_order_relaxed);
  fromFrame_ = waits ? order.frame : 0;
  if (open_ != nullptr) return;
  if (!input_.systems.empty()) OpenInput();
  if (open_ == nullptr) Finish(refused_.empty() ? "no sound input is chosen" : refused_);
}

// What sounded up to the order is on its way for as long as the device takes.
void RecordingThread::EndAt(const Order& order) {
  if (recording_ != order.number || recording_ == 0) return;
  if (open_ == nullptr || order.opening != opening_.load(std::memory_order_relaxed))
    return Finish("");
  untilFrame_ = order.frame + int64_t{opened_.delayMs} * opened_.rate / 1000;
  endBy_ = std::chrono::steady_clock::now() + kLastFrames;
}

void RecordingThread::Hear(int frames) {
  while (frames > 0 && open_ != nullptr) {
    const int count = ring_.Read(block_.data(), std::min(frames, kBlockFrames));
    if (count == 0) break;
    frames -= count;
    NoteSound(count);
    if (recording_ != 0) WriteHeard(heard_, count);
    heard_ += count;
  }
  if (recording_ == 0) return;
  const bool over = untilFrame_ != kNever &&
                    (heard_ >= untilFrame_ || std::chrono::steady_clock::now() >= endBy_);
  if (over)
    Finish("");
  else if (ring_.Lost() > 0)
    Finish(path_ + ": the disk is too slow for the recording");
}

void RecordingThread::NoteSound(int frames) {
  const int channels = ring_.Channels();
  std::array<int, kChannels> most{};
  for (int i = 0; i < frames * channels; ++i) {
    int& peak = most[static_cast<size_t>(i % channels)];
    peak = std::max(peak, std::abs(static_cast<int>(block_[static_cast<size_t>(i)])));
  }
  if (channels == 1) most[1] = most[0];
  for (size_t channel = 0; channel < most.size(); ++channel) {
    // The reader only takes them back to 0: a peak written over that costs nothing.
    if (most[channel] > peaks_[channel].load(std::memory_order_relaxed))
      peaks_[channel].store(most[channel], std::memory_order_relaxed);
  }
  if (most[0] > 0 || most[1] > 0) heardAtMs_.store(SteadyMs(), std::memory_order_release);
}

// Of the block that begins with that frame of the opening, what is the recording's.
void RecordingThread::WriteHeard(int64_t first, int frames) {
  const int64_t from = std::clamp<int64_t>(fromFrame_ - first, 0, frames);
  const int64_t until = std::clamp<int64_t>(untilFrame_ - first, from, frames);
  if (from == until) return;
  try {
    Write(block_.data() + from * ring_.Channels(), static_cast<int>(until - from));
    const auto now = std::chrono::steady_clock::now();
    if (now - syncedAt_ < kSyncEvery) return;
    syncedAt_ = now;
    file_->Sync();
  } catch (const std::exception& error) {
    Finish(error.what());
  }
}

void RecordingThread::Write(const int16_t* samples, int frames) {
  const int channels = ring_.Channels();
  if (file_ == nullptr) file_ = std::make_unique<RecordingFile>(path_, channels);
  if (converter_ != nullptr) {
    const auto count = static_cast<size_t>(frames * channels);
    const auto most = static_cast<size_t>(converter_->MostOut(frames) * channels);
    floats_.resize(count);
    std::transform(samples, samples + count, floats_.begin(),
                   [](int16_t sample) { return static_cast<float>(sample) / 32768.0f; });
    converted_.resize(most);
    samples_.resize(most);
    frames = converter_->Convert(floats_.data(), frames, converted_.data());
    FloatToInt16(converted_.data(), samples_.data(), frames * channels);
    samples = samples_.data();
  }
  try {
    file_->Write(samples, frames);
  } catch (const SoundError&) {
    recorded_.store(file_->Frames(), std::memory_order_release);
    throw;
  }
  recorded_.store(file_->Frames(), std::memory_order_release);
}

// What a lost one gave before is still in the ring.
void RecordingThread::LookAtInput() {
  if (open_->Look() != OutputDevice::Condition::kGone) return;
  Hear(ring_.Filled());
  CloseInput();
  Finish("sound input " + opened_.name + " is gone");
}

// The file first: who sees the end finds it whole.
void RecordingThread::Finish(const std::string& reason) {
  if (recording_ == 0) return;
  std::string why = reason;
  try {
    if (file_ != nullptr) file_->Close();
  } catch (const std::exception& error) {
    if (why.empty()) why = error.what();
  }
  file_.reset();
  {
    const std::lock_guard lock(mutex_);
    reason_ = why;
  }
  ended_.store(std::exchange(recording_, 0), std::memory_order_release);
}

}  // namespace zemo
