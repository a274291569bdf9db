#include "platform/real/sound/RealPreview.h"

#include <string>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/ChainParting.h"
#include "platform/real/sound/RealSoundChain.h"

namespace zemo {
namespace {

// The output ring: enough for a busy machine, little enough to begin soon.
constexpr int kPreviewFrames = 2048, kPreviewBuffers = 4;
constexpr int kPreviewBufferBytes = kPreviewFrames * kChannels * static_cast<int>(sizeof(int16_t));

// In the place of a device until one is chosen.
class NoOutput final : public OutputDevice {
 public:
  Opened Open(OutputRing&) override { throw NoSuchDevice("no sound device is chosen"); }
  void Close() override {}
};

}  // namespace

RealPreview::RealPreview(EventLoop& loop, SoundOpener& opener, DeviceOf deviceOf,
                         std::chrono::milliseconds patience)
    : loop_(loop), opener_(opener), deviceOf_(std::move(deviceOf)), patience_(patience) {}

RealPreview::~RealPreview() {
  if (chain_ == nullptr) return;
  chain_->SetObserver(nullptr);
  chain_->Close();
  FreeSlots(*chain_);
  LeavingChains leaving;
  leaving.push_back(std::move(chain_));
  PartFrom(std::move(leaving));
}

RealSoundChain& RealPreview::Chain() {
  if (chain_ == nullptr) {
    WishedDevice none;
    none.systems.push_back(std::make_unique<NoOutput>());
    chain_ = std::make_unique<RealSoundChain>(opener_, std::move(none), nullptr, "", nullptr, false,
                                              Unheard::kWaits);
    chain_->SetOutputBuffers(kPreviewBufferBytes, kPreviewBuffers);
  }
  return *chain_;
}

SoundChain& RealPreview::Sound() {
  return Chain();
}

void RealPreview::UseDevice(int number) {
  WishedDevice wished = deviceOf_(number);
  if (!device_.empty() && wished.identity == device_) return;
  device_ = wished.identity;
  Chain().ChooseDevice(std::move(wished));
}

PreviewChain::Levels RealPreview::HeardLevels() {
  if (chain_ == nullptr) return {};
  const SoundHealth health = chain_->TakeHealth();
  return {health.peakLeft, health.peakRight};
}

bool RealPreview::Poll() {
  if (chain_ == nullptr) return false;
  chain_->Poll();
  Watch();
  return !chain_->Rests();
}

void RealPreview::Watch() {
  const auto now = std::chrono::steady_clock::now();
  const bool starts = chain_->State() == OutputState::kStarted;
  if (starts && !std::exchange(started_, true)) {
    watching_ = true;
    playedAt_ = now;
  }
  started_ = starts;
  if (!started_ || !watching_) return;
  const DeviceThread::State device = chain_->DeviceState();
  if (device == DeviceThread::State::kRunning) playedAt_ = now;
  if (device != DeviceThread::State::kLost && now - playedAt_ <= patience_) return;
  watching_ = false;
  loop_.Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (alive.expired() || watching_ || chain_->State() != OutputState::kStarted) return;
    // What it does may set another one.
    if (const auto lost = lost_; lost) lost();
  });
}

}  // namespace zemo
