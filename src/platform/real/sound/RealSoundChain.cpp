// Orders to the mixer's thread and what comes back from it.
#include "platform/real/sound/RealSoundChain.h"

#include <algorithm>
#include <utility>

#include "platform/real/sound/DecodedStream.h"
#include "platform/real/sound/FileSink.h"
#include "platform/real/sound/MixerThread.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {
namespace {

constexpr int kBytesOfFrame = kChannels * static_cast<int>(sizeof(int16_t));
constexpr int kLeastAheadFrames = 65536;  // 1.5 s decoded ahead of the mixer
constexpr int kMostAheadFrames = 262144;  // 5.9 s, 2 MB a slot
constexpr std::chrono::minutes kLossesToldEvery{1};
constexpr const char* kNoDevice = "no sound device on this machine";

WishedDevice Wished(const DeviceWish& wish) {
  return {MakeOutputDevices(wish),
          wish.name.empty() ? kNoDevice : wish.name + ": no such sound device on this machine"};
}

}  // namespace

using Kind = MixerOrder::Kind;

RealSoundChain::RealSoundChain(SoundOpener& opener, WishedDevice device,
                               std::unique_ptr<AirSink> sink, std::string outputText,
                               SoundNotice notice, bool told, Unheard unheard)
    : SoundChainBase(opener),
      opener_(opener),
      notice_(std::move(notice)),
      outputText_(std::move(outputText)),
      mixer_(std::make_unique<MixerThread>(std::move(device), std::move(sink), told, unheard)) {}

// The mixer's thread ends before the streams that it reads.
RealSoundChain::~RealSoundChain() {
  mixer_.reset();
}

bool RealSoundChain::Poll() {
  SendWaiting();
  TellEnds();
  ReapStreams();
  TellOutput();
  TellLosses(kLossesToldEvery);
  return !waiting_.empty();
}

bool RealSoundChain::TakePriority(int priority) {
  const bool taken = mixer_->TakePriority(priority);
  if (!taken)
    Tell("the system refuses real-time priority " + std::to_string(priority) +
         ", which the limit of this user allows: a busy machine may be heard");
  return taken;
}

int64_t RealSoundChain::SinkFrames() const {
  const SinkThread* sink = mixer_->Sink();
  return sink == nullptr ? 0 : sink->Frames();
}

void RealSoundChain::End(int64_t sinkFrames) {
  mixer_->End(sinkFrames);
  TellOutput();
  TellLosses(std::chrono::seconds{0});
}

void RealSoundChain::TellOutput() {
  const auto take = [this](const std::string& line, bool tell) {
    outputText_ = line;
    if (tell) Tell(line);
  };
  if (mixer_->Device() != nullptr) mixer_->Device()->Told().Take(take);
  if (mixer_->Sink() != nullptr) mixer_->Sink()->Told().Take(take);
}

void RealSoundChain::TellLosses(std::chrono::seconds every) {
  const SinkThread* sink = mixer_->Sink();
  const uint64_t lost = sink == nullptr ? 0 : sink->LostFrames();
  const auto now = std::chrono::steady_clock::now();
  if (lost == toldLost_ || (toldLost_ > 0 && now - toldLostAt_ < every)) return;
  toldLost_ = lost;
  toldLostAt_ = now;
  Tell(sink->Name() + ": takes the air too slowly, " +
       std::to_string(FramesToMs(static_cast<int64_t>(lost))) +
       " ms of it are missing there so far");
}

void RealSoundChain::TellEnds() {
  for (int slot = 0; slot < kSlots; ++slot) {
    if (!Sounds(slot)) continue;
    Player& player = players_[slot];
    const MixerThread::Status status = mixer_->StatusOf(slot);
    if (status.generation != player.generation || status.end == MixerThread::Status::End::kNone) {
      continue;
    }
    if (player.stream->DecoderFailed()) Tell(player.path + ": could not be read to its end");
    SlotEnded(slot,
              status.end == MixerThread::Status::End::kFile ? SlotEnd::kFile : SlotEnd::kFade);
  }
}

SoundHealth RealSoundChain::TakeHealth() {
  SoundHealth health;
  health.output = outputText_;
  DeviceThread* device = mixer_->Device();
  const SinkThread* sink = mixer_->Sink();
  health.device = device != nullptr;
  health.heard = device != nullptr ? device->GetState() == DeviceThread::State::kRunning
                                   : sink != nullptr && sink->Takes();
  health.losses = device != nullptr ? device->Losses() : 0;
  health.underruns = mixer_->Ring().Underruns();
  if (sink != nullptr) {
    health.underruns += sink->Gaps();
    health.lostFrames = sink->LostFrames();
  }
  health.lateFrames = mixer_->LateFrames().load(std::memory_order_relaxed);
  const auto peaks = mixer_->TakePeaks();
  if (device == nullptr || health.heard) {
    health.peakLeft = peaks[0];
    health.peakRight = peaks[1];
  }
  return health;
}

void RealSoundChain::ChooseDevice(const std::string& key) {
  ChooseDevice(Wished({key, true}));
}

void RealSoundChain::ChooseDevice(WishedDevice device) {
  if (mixer_->Device() != nullptr) mixer_->Device()->Choose(std::move(device));
}

DeviceThread::State RealSoundChain::DeviceState() const {
  const DeviceThread* device = mixer_->Device();
  return device == nullptr ? DeviceThread::State::kClosed : device->GetState();
}

int32_t RealSoundChain::GivenMs() const {
  if (State() != OutputState::kStarted) return 0;
  return static_cast<int32_t>(FramesToMs(mixer_->Ring().GivenFrames(run_)));
}

int32_t RealSoundChain::DelayMs() const {
  const DeviceThread* device = mixer_->Device();
  const auto mixerMs = static_cast<int32_t>(FramesToMs(MixerCore::kLatencyFrames));
  return device == nullptr ? mixerMs : device->DelayMs() + mixerMs;
}

bool RealSoundChain::Rests() const {
  const auto isFree = [](const Player& player) { return player.stream == nullptr; };
  return State() == OutputState::kClosed && waiting_.empty() && retired_.empty() &&
         std::all_of(players_.begin(), players_.end(), isFree) &&
         (mixer_->Device() == nullptr || mixer_->Device()->Rests());
}

void RealSoundChain::LoadSlot(int slot, const std::string& path,
                              std::unique_ptr<SoundSource> source) {
  players_[slot].path = path;
  players_[slot].source = std::move(source);
}

void RealSoundChain::FreeSlot(int slot) {
  RetireStream(slot);
  players_[slot].source.reset();
  players_[slot].path.clear();
}

// A stream is read once, from its beginning to where it is cut; playing on opens the file anew.
bool RealSoundChain::MakeStream(int slot, int64_t frame) {
  Player& player = players_[slot];
  RetireStream(slot);
  try {
    std::unique_ptr<SoundSource> source = std::move(player.source);
    if (source == nullptr) source = opener_.Open(player.path);
    const int ahead = std::clamp(RingBytes() / kBytesOfFrame, kLeastAheadFrames, kMostAheadFrames);
    player.stream =
        std::make_unique<DecodedStream>(std::move(source), frame, ahead, mixer_->LateFrames());
  } catch (const SoundError& error) {
    Tell(error.what());
    return false;
  }
  player.stream->StartDecoder();
  player.stream->GiveToMixer();
  player.generation = (player.generation + 1) % MixerThread::kGenerations;
  player.startFrame = frame;
  player.readFrame = frame;
  return true;
}

bool RealSoundChain::StartSlot(int slot, int64_t frame) {
  return SendStream(Kind::kStart, slot, frame);
}

bool RealSoundChain::SeekSlot(int slot, int64_t frame) {
  return SendStream(Kind::kSeek, slot, frame);
}

// A start, or a seek as one: a stream of its own from there on.
bool RealSoundChain::SendStream(Kind kind, int slot, int64_t frame) {
  if (!MakeStream(slot, frame)) return false;
  const Player& player = players_[slot];
  Send({.kind = kind,
        .slot = slot,
        .stream = player.stream.get(),
        .generation = player.generation,
        .frame = frame,
        .gain = Gain(slot)});
  return true;
}

void RealSoundChain::SilenceSlot(int slot) {
  Send({.kind = Kind::kSilence, .slot = slot});
}

void RealSoundChain::FadeSlot(int slot, int64_t frames) {
  Send({.kind = Kind::kFade, .slot = slot, .frame = frames});
}

void RealSoundChain::VolumeSlot(int slot, int volume) {
  mixer_->SetVolume(slot, volume);
}

// What the mixer's turns find may lie some frames off what went on by the clock before them.
int64_t RealSoundChain::ReadFrames(int slot) const {
  const Player& player = players_[slot];
  const MixerThread::Status status = mixer_->StatusOf(slot);
  if (status.generation != player.generation) return player.startFrame;
  const int64_t length = player.stream == nullptr ? status.frame : player.stream->LengthFrames();
  player.readFrame = std::max(player.readFrame, std::min(status.frame, length));
  return player.readFrame;
}

void RealSoundChain::PauseMixer(bool paused) {
  Send({.kind = Kind::kPause, .on = paused});
}

void RealSoundChain::OpenOutput() {
  if (mixer_->Device() != nullptr) mixer_->Device()->Want(true);
}

void RealSoundChain::StartOutput() {
  ++run_;
  Send({.kind = Kind::kRun,
        .run = run_,
        .capacityFrames = OutputBufferSize() * OutputNumBuffers() / kBytesOfFrame});
}

void RealSoundChain::StopOutput() {
  // A device falls silent at once. What a clock is due to have drained by now it drains first.
  if (mixer_->Ring().DeviceDrains()) mixer_->Ring().End();
  Send({.kind = Kind::kHalt});
}

void RealSoundChain::CloseOutput() {
  if (mixer_->Device() != nullptr) mixer_->Device()->Want(false);
}

int64_t RealSoundChain::PlayedFrames() const {
  return mixer_->PlayedFrames(run_);
}

void RealSoundChain::RetireStream(int slot) {
  Player& player = players_[slot];
  if (player.stream == nullptr) return;
  player.stream->Retire();
  retired_.push_back(std::move(player.stream));
}

void RealSoundChain::ReapStreams() {
  std::erase_if(retired_, [](const std::unique_ptr<DecodedStream>& stream) {
    return stream->DecoderStopped() && stream->ReleasedByMixer();
  });
}

void RealSoundChain::Send(const MixerOrder& order) {
  if (!waiting_.empty() || !mixer_->Send(order)) waiting_.push_back(order);
}

void RealSoundChain::SendWaiting() {
  while (!waiting_.empty() && mixer_->Send(waiting_.front())) waiting_.pop_front();
}

void RealSoundChain::Tell(const std::string& line) {
  if (notice_) notice_(line);
}

std::unique_ptr<RealSoundChain> MakeRealSoundChain(SoundOpener& opener, const OutputSpec& wanted,
                                                   SoundNotice notice) {
  const auto make = [&](WishedDevice device, std::unique_ptr<AirSink> sink, const std::string& text,
                        bool told) {
    return std::make_unique<RealSoundChain>(opener, std::move(device), std::move(sink), text,
                                            notice, told);
  };
  const std::string unheard = "no output";
  switch (wanted.kind) {
    case OutputSpec::Kind::kFile:
      return make({}, std::make_unique<FileSink>(wanted.name, wanted.mostFrames),
                  "file " + wanted.name, false);
    case OutputSpec::Kind::kNull:
      return make({}, nullptr, unheard, false);
    case OutputSpec::Kind::kDevice:
      break;
  }
  const bool none = !AnySoundDevice();
  if (none && notice)
    notice(std::string(kNoDevice) + ": the air goes on without output until there is one");
  return make(Wished({wanted.name, wanted.wholeName}), nullptr, none ? unheard : "sound device",
              none);
}

}  // namespace zemo
