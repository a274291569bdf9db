// How soon an order is heard: from the call on the logic's thread to the moment at which a device
// of 5 ms a call takes the first frame of it, less the output's buffers as they are set, which
// every order stands behind. Median and most of many orders at any moment, for an empty air
// (start), with a title on air that fades (next) and with one that plays on (overlay). Below 0: the
// buffers were not full. Usage: OrderBench [ORDERS]
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/RealSoundChain.h"

namespace {

using namespace zemo;
using Clock = std::chrono::steady_clock;

// A file of one level, as long as nothing else ends it.
class LevelSource : public SoundSource {
 public:
  explicit LevelSource(float level) : level_(level) {}
  int64_t LengthFrames() const override { return int64_t{3600} * kSampleRate; }
  int Read(float* stereo, int frames) override {
    std::fill_n(stereo, 2 * frames, level_);
    return frames;
  }
  void Seek(int64_t) override {}

 private:
  float level_;
};

// The path is the level.
class LevelOpener : public SoundOpener {
 public:
  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    return std::make_unique<LevelSource>(std::strtof(path.c_str(), nullptr));
  }
};

// What the device took last, and when it first took more than it was waited for.
struct Heard {
  std::atomic<float> waited{2.0F};
  std::atomic<int64_t> atNs{0};
};

class ShortDevice : public OutputDevice {
 public:
  explicit ShortDevice(Heard& heard) : heard_(heard) {}
  ~ShortDevice() override { Close(); }
  Opened Open(OutputRing& ring) override {
    quit_ = false;
    thread_ = std::thread([this, &ring] { Play(ring); });
    return {"device", kSampleRate, 0, 0};
  }
  void Close() override {
    quit_ = true;
    if (thread_.joinable()) thread_.join();
  }

 private:
  void Play(OutputRing& ring) {
    constexpr int kFrames = 220;
    std::vector<int16_t> block(2 * kFrames);
    auto next = Clock::now();
    while (!quit_) {
      ring.DrainForDevice(block.data(), kFrames);
      const float most = static_cast<float>(*std::max_element(block.begin(), block.end())) / 32768;
      if (most >= heard_.waited) {
        heard_.waited = 2.0F;
        heard_.atNs = Clock::now().time_since_epoch().count();
      }
      next += std::chrono::microseconds(1'000'000LL * kFrames / kSampleRate);
      std::this_thread::sleep_until(next);
    }
  }

  Heard& heard_;
  std::atomic<bool> quit_{false};
  std::thread thread_;
};

void Sleep(RealSoundChain& chain, int ms) {
  for (const auto end = Clock::now() + std::chrono::milliseconds(ms); Clock::now() < end;) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    chain.Poll();
  }
}

struct Bench {
  explicit Bench(int bytes, int count)
      : bufferMs(static_cast<double>(bytes) * count / 4 * 1000 / kSampleRate) {
    WishedDevice wished;
    wished.systems.push_back(std::make_unique<ShortDevice>(heard));
    chain = std::make_unique<RealSoundChain>(opener, std::move(wished), nullptr, "", nullptr);
    chain->SetOutputBuffers(bytes, count);
    chain->SetRing(bytes, 2 * count);
    chain->Start();
    Sleep(*chain, 1000 + static_cast<int>(2 * bufferMs));
  }

  void Play(int slot, const char* level) {
    chain->SetFileName(slot, level);
    chain->SetChannelDone(slot, false);
  }

  // Ms from the order to its sound at that level, less the buffers.
  template <class Order>
  double Late(float level, Order order) {
    const auto begin = Clock::now();
    heard.atNs = 0;
    heard.waited = level;
    order();
    while (heard.atNs == 0) Sleep(*chain, 10);
    return static_cast<double>(heard.atNs - begin.time_since_epoch().count()) / 1e6 - bufferMs;
  }

  void Silence() {
    for (int slot = 0; slot < kSlots; ++slot) chain->SetFileName(slot, "");
    Sleep(*chain, static_cast<int>(bufferMs) + 50 + std::rand() % 100);
  }

  double bufferMs;
  LevelOpener opener;
  Heard heard;
  std::unique_ptr<RealSoundChain> chain;
};

void Tell(const char* order, double bufferMs, std::vector<double> late) {
  std::sort(late.begin(), late.end());
  std::printf("%-8s behind %6.0f ms of buffers: %6.1f ms, least %6.1f, most %6.1f\n", order,
              bufferMs, late[late.size() / 2], late.front(), late.back());
}

void Measure(int bytes, int count, int orders) {
  Bench bench(bytes, count);
  std::vector<double> starts, nexts, overlays;
  for (int i = 0; i < orders; ++i) {
    bench.Silence();
    starts.push_back(bench.Late(0.2F, [&] { bench.Play(0, "0.25"); }));
    Sleep(*bench.chain, std::rand() % 300);
    overlays.push_back(bench.Late(0.3F, [&] { bench.Play(2, "0.125"); }));
    bench.Silence();
    bench.Play(0, "0.25");
    Sleep(*bench.chain, static_cast<int>(bench.bufferMs) + 50 + std::rand() % 300);
    nexts.push_back(bench.Late(0.45F, [&] {
      bench.Play(1, "0.5");
      bench.chain->FadeOut(0, 1000);
    }));
  }
  Tell("start", bench.bufferMs, starts);
  Tell("next", bench.bufferMs, nexts);
  Tell("overlay", bench.bufferMs, overlays);
}

}  // namespace

int main(int argc, char** argv) {
  const int orders = argc > 1 ? std::atoi(argv[1]) : 30;
  Measure(4096, 10, orders);
  Measure(4096, 100, orders);
  return 0;
}
