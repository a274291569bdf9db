// A playing stream of the Pulse server, opened on the device thread.
#include "platform/real/sound/PulseDevice.h"

#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/rtclock.h>
#include <pulse/subscribe.h>

#include <algorithm>
#include <mutex>
#include <utility>

#include "platform/real/sound/PulseStream.h"

namespace zemo {
namespace {

constexpr std::chrono::milliseconds kPatience{2000};
constexpr uint32_t kFrameBytes = kChannels * sizeof(int16_t);
// Of what the server keeps ahead: enough for a busy machine, little enough to begin soon and to
// take an operator's order soon.
constexpr uint32_t kTargetFrames = kSampleRate / 5;
constexpr int kRequestFrames = kSampleRate / 50;   // and how much it asks for at a time
constexpr int kSilentFrames = 3 * kRequestFrames;  // of silence, to begin with
constexpr pa_usec_t kBeginUsec = 300000;           // that a server may need to begin with them

struct Listed {
  std::vector<SoundDevice> devices;
  std::string defaultKey;
};

void OnServer(pa_context*, const pa_server_info* info, void* listed) {
  if (info != nullptr && info->default_sink_name != nullptr)
    static_cast<Listed*>(listed)->defaultKey = info->default_sink_name;
}

void OnSink(pa_context*, const pa_sink_info* info, int end, void* listed) {
  if (end != 0 || info == nullptr) return;
  static_cast<Listed*>(listed)->devices.push_back(DescribedByPulse(*info));
}

std::vector<SoundDevice> DevicesOf(PulseServer& server) {
  Listed listed;
  if (!server.Finish(pa_context_get_server_info(server.Context(), OnServer, &listed)) ||
      !server.Finish(pa_context_get_sink_info_list(server.Context(), OnSink, &listed)))
    throw NoSuchDevice("PulseAudio: " + server.Error());
  for (SoundDevice& device : listed.devices) device.isDefault = device.key == listed.defaultKey;
  return listed.devices;
}

std::string TextOf(const SoundDevice& device) {
  return device.name + " (" + device.system + ")";
}

class PulseDevice final : public OutputDevice {
 public:
  explicit PulseDevice(DeviceWish wish) : wish_(std::move(wish)) {}
  ~PulseDevice() override { Close(); }

  Opened Open(OutputRing& ring) override {
    Close();
    try {
      return Connect(ring);
    } catch (...) {
      Close();
      throw;
    }
  }

  void Close() override {
    stream_.Close([this] {
      if (patience_ != nullptr) stream_.Server().Api()->time_free(patience_);
      patience_ = nullptr;
    });
  }

  News Look() override {
    News news{stream_.Condition(), {}};
    const std::lock_guard lock(movedMutex_);
    std::swap(news.movedTo, movedTo_);
    return news;
  }

 private:
  Opened Connect(OutputRing& ring) {
    ring_ = &ring;
    asked_ = false;
    heldBack_ = 0;
    movedTo_.clear();
    stream_.Reach(Reached());
    const std::vector<SoundDevice> devices = DevicesOf(stream_.Server());
    const int index = FindSoundDevice(devices, wish_);
    if (index < 0) throw NoSuchDevice("PulseAudio: no such sound device");
    const SoundDevice& device = devices[static_cast<size_t>(index)];
    if (wish_.name.empty()) FollowDefault(device.key);
    Play(device);
    stream_.Turn();
    return {TextOf(device), kSampleRate, kSilentFrames,
            static_cast<int>(FramesToMs(kTargetFrames))};
  }

  // A device by name may be another system's, whatever this one does.
  std::unique_ptr<PulseServer> Reached() const {
    try {
      return std::make_unique<PulseServer>(kPatience);
    } catch (const SystemHangs& error) {
      if (wish_.name.empty()) throw;
      throw NoSuchDevice(error.what());
    }
  }

  void Play(const SoundDevice& device) {
    const PulseServer& server = stream_.Server();
    const pa_sample_spec form{PA_SAMPLE_S16NE, static_cast<uint32_t>(kSampleRate), kChannels};
    // What a server keeps of streams, their volume above all, it keeps by their role.
    stream_.Hold(wish_.prelistens ? NewPulseStream(server, "Prelisten", form, "production")
                                  : NewPulseStream(server, "Air", form, nullptr));
    pa_stream_set_write_callback(stream_.Get(), OnRequest, this);
    pa_stream_set_underflow_callback(stream_.Get(), OnUnderflow, this);
    pa_stream_set_moved_callback(stream_.Get(), OnMoved, this);
    pa_buffer_attr buffer{};
    buffer.maxlength = static_cast<uint32_t>(-1);
    buffer.tlength = kTargetFrames * kFrameBytes;
    buffer.minreq = kRequestFrames * kFrameBytes;
    buffer.prebuf = kRequestFrames * kFrameBytes;  // also what it waits for after a dropout
    buffer.fragsize = static_cast<uint32_t>(-1);
    int flags = PA_STREAM_ADJUST_LATENCY;
    // A device that was asked for by its name is waited for, not given up for another one.
    if (!wish_.name.empty()) flags |= PA_STREAM_DONT_MOVE;
    const char* to = wish_.name.empty() ? nullptr : device.key.c_str();  // else it would stay there
    const bool asked =
        pa_stream_connect_playback(stream_.Get(), to, &buffer,
                                   static_cast<pa_stream_flags_t>(flags), nullptr, nullptr) >= 0;
    stream_.AwaitReady(asked, TextOf(device));
    sink_ = pa_stream_get_device_index(stream_.Get());
    stream_.NoteSleep();
    patience_ =
        pa_context_rttime_new(server.Context(), pa_rtclock_now() + kBeginUsec, OnPatience, this);
  }

  void FollowDefault(const std::string& now) {
    defaultKey_ = now;
    pa_context_set_subscribe_callback(stream_.Server().Context(), OnEvent, this);
    constexpr int kMask = PA_SUBSCRIPTION_MASK_SERVER | PA_SUBSCRIPTION_MASK_SINK_INPUT;
    Forget(pa_context_subscribe(stream_.Server().Context(),
                                static_cast<pa_subscription_mask_t>(kMask), nullptr, nullptr));
  }

  static void Forget(pa_operation* operation) {
    if (operation != nullptr) pa_operation_unref(operation);
  }

  // --- Called back by libpulse ---
  static PulseDevice& Of(void* self) { return *static_cast<PulseDevice*>(self); }

  // Copies into the server's memory. Of the silence before its turn the server gets no more than it
  // needs to begin with, so that the programme need not wait behind it: the rest is held back.
  static void OnRequest(pa_stream* stream, size_t bytes, void* self) {
    PulseDevice& device = Of(self);
    if (device.ring_->DeviceDrains()) {
      device.heldBack_ = 0;
    } else if (!std::exchange(device.asked_, true)) {
      device.heldBack_ = bytes - std::min<size_t>(bytes, kSilentFrames * kFrameBytes);
    }
    Write(stream, bytes - std::min(bytes, device.heldBack_),
          [&](int16_t* stereo, int frames) { device.ring_->DrainForDevice(stereo, frames); });
  }

  // A server that needs more to begin gets it.
  static void OnPatience(pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
    PulseDevice& device = Of(self);
    if (device.heldBack_ == 0 || !device.stream_.Ready()) return;
    Write(device.stream_.Get(), std::exchange(device.heldBack_, 0),
          [](int16_t* stereo, int frames) { std::fill_n(stereo, frames * kChannels, int16_t{0}); });
  }

  template <typename Fill>
  static void Write(pa_stream* stream, size_t bytes, Fill fill) {
    while (bytes >= kFrameBytes) {
      void* room = nullptr;
      size_t size = bytes;
      if (pa_stream_begin_write(stream, &room, &size) < 0 || room == nullptr) return;
      const size_t frames = std::min(size, bytes) / kFrameBytes;
      if (frames == 0) {
        pa_stream_cancel_write(stream);
        return;
      }
      fill(static_cast<int16_t*>(room), static_cast<int>(frames));
      if (pa_stream_write(stream, room, frames * kFrameBytes, nullptr, 0, PA_SEEK_RELATIVE) < 0)
        return;
      bytes -= frames * kFrameBytes;
    }
  }

  static void OnUnderflow(pa_stream*, void* self) { Of(self).ring_->NoteDry(); }

  static void OnMoved(pa_stream* stream, void* self) {
    Of(self).stream_.NoteSleep();
    Forget(pa_context_get_sink_info_by_name(pa_stream_get_context(stream),
                                            pa_stream_get_device_name(stream), OnMovedTo, self));
  }

  static void OnMovedTo(pa_context* context, const pa_sink_info* info, int end, void* self) {
    Listed listed;
    OnSink(context, info, end, &listed);
    if (listed.devices.empty()) return;
    PulseDevice& device = Of(self);
    device.sink_ = info->index;
    const std::lock_guard lock(device.movedMutex_);
    device.movedTo_ = TextOf(listed.devices.front());
  }

  static void OnEvent(pa_context* context, pa_subscription_event_type_t event, uint32_t index,
                      void* self) {
    const PulseDevice& device = Of(self);
    if ((event & PA_SUBSCRIPTION_EVENT_FACILITY_MASK) == PA_SUBSCRIPTION_EVENT_SERVER)
      Forget(pa_context_get_server_info(context, OnDefault, self));
    else if (device.stream_.Ready() && index == pa_stream_get_index(device.stream_.Get()))
      Forget(pa_context_get_sink_input_info(context, index, OnInput, self));
  }

  // PipeWire does not tell the stream of a move that it made by itself; of a device that is about
  // to come it can say nothing at first, and another event follows.
  static void OnInput(pa_context* context, const pa_sink_input_info* info, int end, void* self) {
    if (end != 0 || info == nullptr || info->sink == Of(self).sink_) return;
    Forget(pa_context_get_sink_info_by_index(context, info->sink, OnMovedTo, self));
  }

  // Where the server itself moves the sound after its default, this finds it done.
  static void OnDefault(pa_context* context, const pa_server_info* info, void* self) {
    PulseDevice& device = Of(self);
    if (info == nullptr || info->default_sink_name == nullptr) return;
    if (info->default_sink_name == device.defaultKey_) return;
    device.defaultKey_ = info->default_sink_name;
    if (!device.stream_.Ready()) return;
    const char* now = pa_stream_get_device_name(device.stream_.Get());
    if (now != nullptr && device.defaultKey_ == now) return;
    Forget(pa_context_move_sink_input_by_name(context, pa_stream_get_index(device.stream_.Get()),
                                              info->default_sink_name, nullptr, nullptr));
  }

  const DeviceWish wish_;
  OutputRing* ring_ = nullptr;
  pa_time_event* patience_ = nullptr;
  bool asked_ = false;   // the server asked once
  size_t heldBack_ = 0;  // bytes that it asked for and did not get yet
  std::string defaultKey_;
  uint32_t sink_ = PA_INVALID_INDEX;  // that the sound goes to, where it is known
  std::mutex movedMutex_;
  std::string movedTo_;  // while movedMutex_ is held
  PulseStream stream_;   // last: nothing is called back once it is gone
};

}  // namespace

std::vector<SoundDevice> PulseDevices() {
  try {
    PulseServer server(kPatience);
    return DevicesOf(server);
  } catch (const SoundError&) {
    return {};
  }
}

std::unique_ptr<OutputDevice> MakePulseDevice(DeviceWish wish) {
  return std::make_unique<PulseDevice>(std::move(wish));
}

}  // namespace zemo
