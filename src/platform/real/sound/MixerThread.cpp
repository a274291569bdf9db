// The mixer's thread. Of all slots and the output it has no rules of its own: what sounds when is
// the logic's, who drains the ring follows from the device.
#include "platform/real/sound/MixerThread.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/real/sound/MovingFrame.h"
#include "platform/real/sound/RealTimePriority.h"
#include "platform/sound/SampleFormat.h"

namespace zemo {
namespace {

// A turn comes once an eighth of the ring is free, but for rings so short that it would come too
// often; within these bounds, of which that of a device lets its watch see how it moves.
constexpr int kRingTurns = 8;
constexpr int kLeastTurnMs = 20;
constexpr int kDeviceTurnMs = 80;
constexpr int kClockTurnMs = 200;
constexpr int kWatchedTurnMs = 20;      // while somebody looks at the peaks
constexpr int kSoonMs = 4;              // the next turn when a decoder or the device is still at it
constexpr int kLeastRingFrames = 2048;  // 46 ms: three turns
constexpr int kLowWaterFrames = 4410;   // 100 ms: below it the ring is filled, decoders late or not
constexpr double kOpeningSeconds = 2.5;  // that a start waits for its device to begin

constexpr int64_t kPeaksWatchedFrames = kSampleRate;    // behind the last look of several
constexpr int64_t kPeaksLooksFrames = kSampleRate / 4;  // between two of them

// A status as one atomic: frame in 42 bits, whether it moves in 1, end in 2, generation in 19. The
// frame of one that moves is less by the frames of the clock (FramesAt), and may be below 0.
constexpr int kEndBits = 2;
constexpr uint64_t kMoves = uint64_t{1} << kFrameBits;

// The frames that the drain by the clock has played: frame in 42 bits, as one that moves, whether
// there are any in 1, run in 16.
constexpr int kRunShift = kFrameBits + 1;

uint64_t Packed(const MixerThread::Status& status, bool moves) {
  const uint64_t upper =
      (static_cast<uint64_t>(status.generation) << kEndBits) | static_cast<uint64_t>(status.end);
  return (upper << (kFrameBits + 1)) | (moves ? kMoves : 0) | FrameBits(status.frame);
}

// `now` is added to the frame of a status that moves.
MixerThread::Status Unpacked(uint64_t bits, int64_t now) {
  MixerThread::Status status;
  status.frame = FrameOf(bits, (bits & kMoves) != 0 ? now : 0);
  const uint64_t upper = bits >> (kFrameBits + 1);
  status.end = static_cast<MixerThread::Status::End>(upper & ((1u << kEndBits) - 1));
  status.generation = static_cast<uint32_t>(upper >> kEndBits);
  return status;
}

}  // namespace

MixerThread::MixerThread(WishedDevice device, std::unique_ptr<AirSink> sink, bool told,
                         Unheard unheard)
    : unheard_(unheard), mixed_(2 * kChunkFrames), samples_(2 * kChunkFrames) {
  for (std::atomic<int>& volume : volumes_) volume.store(kUnityVolume, std::memory_order_relaxed);
  if (!device.systems.empty())
    device_ = std::make_unique<DeviceThread>(std::move(device), ring_, wake_, told);
  if (sink != nullptr) sink_ = std::make_unique<SinkThread>(std::move(sink));
  thread_ = std::thread([this] { Run(); });
}

MixerThread::~MixerThread() {
  End();
}

void MixerThread::End(int64_t sinkFrames) {
  if (!thread_.joinable()) return;
  quit_.store(true, std::memory_order_release);
  wake_.Signal();
  thread_.join();
  if (sink_ != nullptr) sink_->End(sinkFrames);
}

bool MixerThread::Send(const MixerOrder& order) {
  if (!orders_.Push(order)) return false;
  wake_.Signal();
  return true;
}

bool MixerThread::TakePriority(int priority) {
  return thread_.joinable() && GiveRealTimePriority(thread_.native_handle(), priority);
}

// It counts from the next frame on that is mixed, as an order does.
void MixerThread::SetVolume(int slot, int volume) {
  if (volumes_[slot].exchange(volume, std::memory_order_acq_rel) != volume) wake_.Signal();
}

MixerThread::Status MixerThread::StatusOf(int slot) const {
  const uint64_t bits = statuses_[slot].load(std::memory_order_acquire);
  return Unpacked(bits, FramesAt(std::chrono::steady_clock::now()));
}

int64_t MixerThread::PlayedFrames(uint16_t run) const {
  const uint64_t bits = clockPlayed_.load(std::memory_order_acquire);
  if ((bits & kMoves) == 0 || bits >> kRunShift != run) return ring_.PlayedFrames(run);
  return FrameOf(bits, FramesAt(std::chrono::steady_clock::now()));
}

int64_t MixerThread::FramesAt(Time time) const {
  const auto us = std::chrono::duration_cast<std::chrono::microseconds>(time - made_).count();
  return us * (kSampleRate / 100) / 10000;
}

std::array<float, kChannels> MixerThread::TakePeaks() {
  const int64_t now = FramesAt(std::chrono::steady_clock::now());
  if (now - std::exchange(peaksTaken_, now) < kPeaksLooksFrames)
    watchedUntil_.store(now + kPeaksWatchedFrames, std::memory_order_relaxed);
  return {std::bit_cast<float>(peaks_[0].exchange(0, std::memory_order_relaxed)),
          std::bit_cast<float>(peaks_[1].exchange(0, std::memory_order_relaxed))};
}

// What was ordered counts from this moment on: what the ring has room for by now is mixed before.
void MixerThread::Run() {
  while (!quit_.load(std::memory_order_acquire)) {
    int waitMs = Turn();
    if (TakeOrders()) waitMs = Turn();
    Publish();
    wake_.Wait(waitMs);
  }
  TakeOrders();
  Turn();
  running_ = full_ = false;  // what is read back stands from here on
  Publish();
}

// False when there was none.
bool MixerThread::TakeOrders() {
  for (bool any = false;; any = true) {
    MixerOrder order;
    // A volume set before a start must be there at that start: orders first, then volumes.
    const bool ordered = orders_.Pop(order);
    for (int slot = 0; slot < kSlots; ++slot) {
      core_.SetVolume(slot, volumes_[slot].load(std::memory_order_acquire));
    }
    if (!ordered) return any;
    Execute(order);
  }
}

void MixerThread::Execute(const MixerOrder& order) {
  switch (order.kind) {
    case MixerOrder::Kind::kStart:
    case MixerOrder::Kind::kSeek:
      StartStream(order);
      break;
    case MixerOrder::Kind::kSilence:
      core_.Silence(order.slot);
      ReleaseStream(order.slot);
      break;
    case MixerOrder::Kind::kFade:
      core_.Fade(order.slot, order.frame);
      break;
    case MixerOrder::Kind::kPause:
      paused_ = order.on;
      core_.SetRunning(running_ && !paused_);
      break;
    case MixerOrder::Kind::kRun:
      RunOutput(order);
      break;
    case MixerOrder::Kind::kHalt:
      HaltOutput();
      break;
  }
}

void MixerThread::StartStream(const MixerOrder& order) {
  const int slot = order.slot;
  const bool seek = order.kind == MixerOrder::Kind::kSeek && core_.Plays(slot);
  if (seek) {
    core_.Seek(slot, order.stream, order.frame);
  } else {
    core_.Start(slot, order.stream, order.stream->LengthFrames(), order.frame, order.gain);
  }
  ReleaseStream(slot);  // the one before, now that its tail is read
  streams_[slot] = order.stream;
  slots_[slot] = {order.generation, Status::End::kNone, order.frame};
}

void MixerThread::ReleaseStream(int slot) {
  if (streams_[slot] != nullptr) streams_[slot]->ReleaseByMixer();
  streams_[slot] = nullptr;
}

void MixerThread::RunOutput(const MixerOrder& order) {
  running_ = true;
  begun_ = false;
  run_ = order.run;
  capacityFrames_ = std::max(order.capacityFrames, kLeastRingFrames);
  drain_ = Drain::kNone;
  runTime_ = std::chrono::steady_clock::now();
  core_.SetRunning(!paused_);
}

void MixerThread::HaltOutput() {
  if (!running_) return;
  ring_.End();
  if (drain_ == Drain::kClock) DrainFrames(OutputRing::kGlideFrames);
  running_ = false;
  core_.SetRunning(false);
  // What the limiter and the tails still hold is of this run.
  core_.Render(mixed_.data(), kChunkFrames);
}

// Keeps the ring full. Returns the ms until the next turn, below 0 for none while nothing runs.
int MixerThread::Turn() {
  if (!running_) return -1;
  const Time now = std::chrono::steady_clock::now();
  turned_ = now;
  full_ = false;
  ChooseDrain(now);
  if (drain_ == Drain::kNone) return kSoonMs;
  if (!begun_) {
    Fill();
    ring_.Begin(run_);
    begun_ = true;
  }
  if (drain_ == Drain::kClock) DrainFrames(clock_.Due(now));
  full_ = Fill();
  return full_ ? FullRingMs() : kSoonMs;
}

// The ms for which a full ring may be left alone. What ends by itself is mixed and told in time.
int MixerThread::FullRingMs() const {
  const int ringMs = ring_.CapacityFrames() * 1000 / rate_;
  int most = drain_ == Drain::kDevice ? kDeviceTurnMs : kClockTurnMs;
  if (FramesAt(turned_) < watchedUntil_.load(std::memory_order_relaxed)) most = kWatchedTurnMs;
  const int ms = std::min({std::max(kLeastTurnMs, ringMs / kRingTurns), ringMs / 3, most});
  int64_t event = core_.FramesToNextEvent();
  for (int slot = 0; slot < kSlots; ++slot)
    if (core_.Plays(slot) && !paused_) event = std::min(event, streams_[slot]->FramesToDrySource());
  if (event >= MsToFrames(ms)) return ms;
  return std::max(kSoonMs, static_cast<int>(FramesToMs(event)) + 1);
}

bool MixerThread::DevicePlays() const {
  return device_ != nullptr && device_->GetState() == DeviceThread::State::kRunning &&
         device_->Opening() != troubled_;
}

// The device while it plays, else the clock; nobody while a start waits for its device, nor where
// all waits for it.
void MixerThread::ChooseDrain(Time now) {
  if (drain_ == Drain::kDevice && DevicePlays() && opening_ == device_->Opening()) WatchDevice(now);
  if (DevicePlays()) {
    if (drain_ != Drain::kDevice || opening_ != device_->Opening()) DrainByDevice(now);
    return;
  }
  if (unheard_ == Unheard::kWaits) {
    ring_.SetDeviceDrains(false);
    drain_ = Drain::kNone;
    return;
  }
  const bool waits = drain_ == Drain::kNone && device_ != nullptr &&
                     device_->GetState() != DeviceThread::State::kLost &&
                     (troubled_ == 0 || device_->Opening() != troubled_) &&
                     SecondsBetween(runTime_, now) < kOpeningSeconds;
  if (drain_ != Drain::kClock && !waits) DrainByClock(now);
}

void MixerThread::DrainByClock(Time now) {
  ring_.SetDeviceDrains(false);
  // The clock takes over where the device left off, so that the air loses no time by it.
  const Time from = drain_ == Drain::kDevice ? watch_.LastMoved() : now;
  if (!begun_) UseRate(kSampleRate);
  drain_ = Drain::kClock;
  clock_.Restart(from, rate_);
}

void MixerThread::DrainByDevice(Time now) {
  const bool same = opening_ == device_->Opening();
  opening_ = device_->Opening();
  if (!begun_ || rate_ != device_->Rate()) UseRate(device_->Rate());
  if (same)
    watch_.Resume(now, ring_.AskedByDevice());
  else
    watch_.Restart(now, ring_.AskedByDevice(), rate_);
  if (begun_ && drain_ != Drain::kDevice) ring_.RiseNext();
  drain_ = Drain::kDevice;
  ring_.SetDeviceDrains(true);
}

void MixerThread::WatchDevice(Time now) {
  const char* trouble = watch_.Look(now, ring_.AskedByDevice());
  if (trouble == nullptr) return;
  troubled_ = opening_;
  device_->Trouble(opening_, trouble);
}

// Gives the ring its size at a rate, empty.
void MixerThread::UseRate(int rate) {
  rate_ = rate;
  converter_ = rate == kSampleRate ? nullptr : std::make_unique<RateConverter>(rate);
  const int most = converter_ == nullptr ? kChunkFrames : converter_->MostOut(kChunkFrames);
  converted_.resize(2 * static_cast<size_t>(most));
  samples_.resize(2 * static_cast<size_t>(most));
  ring_.Reset(static_cast<int>(static_cast<int64_t>(capacityFrames_) * rate / kSampleRate), rate);
}

void MixerThread::DrainFrames(int64_t frames) {
  while (frames > 0) {
    const int count = static_cast<int>(std::min<int64_t>(frames, kChunkFrames));
    ring_.Drain(samples_.data(), count);
    if (sink_ != nullptr) sink_->Take(samples_.data(), count);
    frames -= count;
  }
}

// False when some of the ring stays empty for want of decoded frames. Renders a ring full at most:
// a device that drains as fast as it is filled cannot keep the turn from its end.
bool MixerThread::Fill() {
  for (int left = ring_.CapacityFrames(); left > 0;) {
    const int free = ring_.FreeFrames();
    int frames = std::min(kChunkFrames, converter_ == nullptr ? free : converter_->MostIn(free));
    if (frames <= 0) return true;
    const int64_t available = AvailableFrames();
    if (available < frames) {
      const int low = std::min(kLowWaterFrames, ring_.CapacityFrames() / 2) - ring_.FilledFrames();
      frames = static_cast<int>(std::max<int64_t>(available, std::min(frames, low)));
      if (frames <= 0) return false;
    }
    RenderChunk(frames);
    left -= frames;
  }
  return true;
}

// Frames that no slot's decoder is late for.
int64_t MixerThread::AvailableFrames() const {
  int64_t available = std::numeric_limits<int64_t>::max();
  if (paused_) return available;
  for (int slot = 0; slot < kSlots; ++slot) {
    if (core_.Plays(slot)) available = std::min(available, streams_[slot]->AvailableFrames());
  }
  return available;
}

void MixerThread::RenderChunk(int frames) {
  core_.Render(mixed_.data(), frames);
  for (int slot = 0; slot < kSlots; ++slot) {
    const auto end = core_.TakeEnd(slot);
    if (!end.has_value()) continue;
    slots_[slot].end = *end == MixerCore::End::kFile ? Status::End::kFile : Status::End::kFade;
    slots_[slot].frame = core_.Position(slot);
    ReleaseStream(slot);
  }
  NotePeaks(mixed_.data(), frames);
  const float* stereo = mixed_.data();
  if (converter_ != nullptr) {
    frames = converter_->Convert(stereo, frames, converted_.data());
    stereo = converted_.data();
  }
  FloatToInt16(stereo, samples_.data(), 2 * frames);
  ring_.Write(samples_.data(), frames);
}

void MixerThread::NotePeaks(const float* stereo, int frames) {
  std::array<float, kChannels> most{};
  for (int i = 0; i < frames; ++i) {
    most[0] = std::max(most[0], std::abs(stereo[2 * i]));
    most[1] = std::max(most[1], std::abs(stereo[2 * i + 1]));
  }
  for (int channel = 0; channel < kChannels; ++channel) {
    const auto bits = std::bit_cast<uint32_t>(most[channel]);
    // The reader only takes them back to 0: a peak written over that costs nothing.
    if (bits > peaks_[channel].load(std::memory_order_relaxed)) {
      peaks_[channel].store(bits, std::memory_order_relaxed);
    }
  }
}

void MixerThread::Publish() {
  const int64_t now = FramesAt(turned_);
  for (int slot = 0; slot < kSlots; ++slot) {
    if (streams_[slot] != nullptr) slots_[slot].frame = core_.Position(slot);
    Status status = slots_[slot];
    const bool moves = core_.Running() && full_ && core_.Plays(slot);
    if (moves) status.frame -= now;
    statuses_[slot].store(Packed(status, moves), std::memory_order_release);
  }
  uint64_t played = 0;
  if (running_ && begun_ && drain_ == Drain::kClock) {
    const int64_t frame = ring_.PlayedFrames(run_) - now;
    played = (uint64_t{run_} << kRunShift) | kMoves | FrameBits(frame);
  }
  clockPlayed_.store(played, std::memory_order_release);
}

}  // namespace zemo
