// A recording stream of the Pulse server. As of PulseDevice: opened on the recording thread, then
// turned by a thread of its own until the closing.
#include "platform/real/sound/PulseInput.h"

#include <pulse/introspect.h>
#include <pulse/proplist.h>
#include <pulse/stream.h>
#include <pulse/timeval.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "platform/real/sound/PulseServer.h"

namespace zemo {
namespace {

constexpr std::chrono::milliseconds kInputPatience{2000};
constexpr int kFragmentMs = 20;  // of sound that the server gives at a time

struct ListedInputs {
  std::vector<SoundDevice> inputs, monitors;
  std::string defaultKey;
};

void OnInputServer(pa_context*, const pa_server_info* info, void* listed) {
  if (info != nullptr && info->default_source_name != nullptr)
    static_cast<ListedInputs*>(listed)->defaultKey = info->default_source_name;
}

void OnSource(pa_context*, const pa_source_info* info, int end, void* given) {
  if (end != 0 || info == nullptr) return;
  auto& listed = *static_cast<ListedInputs*>(given);
  SoundDevice device;
  device.key = info->name;
  device.name = info->description != nullptr ? info->description : info->name;
  device.system = "PulseAudio";
  device.rates = {static_cast<int>(info->sample_spec.rate)};
  device.channels = info->sample_spec.channels;
  (info->monitor_of_sink == PA_INVALID_INDEX ? listed.inputs : listed.monitors).push_back(device);
}

std::vector<SoundDevice> InputsOf(PulseServer& server) {
  ListedInputs listed;
  if (!server.Finish(pa_context_get_server_info(server.Context(), OnInputServer, &listed)) ||
      !server.Finish(pa_context_get_source_info_list(server.Context(), OnSource, &listed)))
    throw NoSuchDevice("PulseAudio: " + server.Error());
  std::vector<SoundDevice> all = std::move(listed.inputs);
  all.insert(all.end(), listed.monitors.begin(), listed.monitors.end());
  for (SoundDevice& device : all) device.isDefault = device.key == listed.defaultKey;
  return all;
}

class PulseInput final : public InputDevice {
 public:
  explicit PulseInput(DeviceWish wish) : wish_(std::move(wish)) {}
  ~PulseInput() override { Close(); }

  Opened Open(InputRing& ring) override {
    Close();
    try {
      return Connect(ring);
    } catch (...) {
      Free();
      throw;
    }
  }

  void Close() override {
    if (thread_.joinable()) {
      quit_.store(true, std::memory_order_release);
      server_->WakeUp();
      thread_.join();
    }
    Free();
  }

  OutputDevice::Condition Look() override { return condition_.load(std::memory_order_acquire); }

 private:
  Opened Connect(InputRing& ring) {
    ring_ = &ring;
    quit_ = false;
    condition_ = OutputDevice::Condition::kFine;
    server_ = std::make_unique<PulseServer>(kInputPatience);
    const std::vector<SoundDevice> inputs = InputsOf(*server_);
    const int index = FindSoundDevice(inputs, wish_);
    if (index < 0) throw NoSuchDevice("PulseAudio: no such sound input");
    const SoundDevice& device = inputs[static_cast<size_t>(index)];
    const int channels = std::min(device.channels, kChannels);
    ring.Reset(channels);
    Record(device, static_cast<uint8_t>(channels));
    thread_ = std::thread([this] {
      while (!quit_.load(std::memory_order_acquire) && server_->Turn()) continue;
    });
    return {device.name + " (" + device.system + ")", kSampleRate, kFragmentMs};
  }

  void Record(const SoundDevice& device, uint8_t channels) {
    const pa_sample_spec form{PA_SAMPLE_S16NE, static_cast<uint32_t>(kSampleRate), channels};
    frameBytes_ = pa_frame_size(&form);
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "production");
    stream_ =
        pa_stream_new_with_proplist(server_->Context(), "Voice track", &form, nullptr, properties);
    pa_proplist_free(properties);
    if (stream_ == nullptr) throw SoundError("PulseAudio: " + server_->Error());
    pa_stream_set_read_callback(stream_, OnFrames, this);
    pa_stream_set_state_callback(stream_, OnState, this);
    pa_stream_set_suspended_callback(stream_, OnSuspended, this);
    pa_buffer_attr buffer{};
    buffer.maxlength = buffer.tlength = buffer.minreq = buffer.prebuf = static_cast<uint32_t>(-1);
    buffer.fragsize =
        static_cast<uint32_t>(pa_usec_to_bytes(kFragmentMs * PA_USEC_PER_MSEC, &form));
    constexpr int kFlags = PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE;
    const bool asked = pa_stream_connect_record(stream_, device.key.c_str(), &buffer,
                                                static_cast<pa_stream_flags_t>(kFlags)) >= 0;
    const auto settled = [this] {
      const pa_stream_state_t state = pa_stream_get_state(stream_);
      return state == PA_STREAM_READY || !PA_STREAM_IS_GOOD(state);
    };
    if (!asked || !server_->Await(settled) || pa_stream_get_state(stream_) != PA_STREAM_READY)
      throw SoundError(device.name + ": " + server_->Error());
  }

  void Free() {
    if (stream_ != nullptr) {
      pa_stream_set_state_callback(stream_, nullptr, nullptr);
      pa_stream_set_suspended_callback(stream_, nullptr, nullptr);
      pa_stream_set_read_callback(stream_, nullptr, nullptr);
      pa_stream_disconnect(stream_);
      pa_stream_unref(stream_);
      stream_ = nullptr;
    }
    server_.reset();
  }

  // --- Called back by libpulse ---
  static PulseInput& Of(void* self) { return *static_cast<PulseInput*>(self); }

  // Null data is a hole, which sounds as silence.
  static void OnFrames(pa_stream* stream, size_t, void* self) {
    const PulseInput& input = Of(self);
    while (pa_stream_readable_size(stream) > 0) {
      const void* data = nullptr;
      size_t bytes = 0;
      if (pa_stream_peek(stream, &data, &bytes) < 0 || bytes == 0) return;
      input.ring_->Take(static_cast<const int16_t*>(data),
                        static_cast<int>(bytes / input.frameBytes_));
      pa_stream_drop(stream);
    }
  }

  static void OnState(pa_stream* stream, void* self) {
    if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream)))
      Of(self).condition_.store(OutputDevice::Condition::kGone, std::memory_order_release);
  }

  static void OnSuspended(pa_stream* stream, void* self) {
    Of(self).condition_.store(pa_stream_is_suspended(stream) > 0 ? OutputDevice::Condition::kAsleep
                                                                 : OutputDevice::Condition::kFine,
                              std::memory_order_release);
  }

  const DeviceWish wish_;
  InputRing* ring_ = nullptr;
  std::unique_ptr<PulseServer> server_;
  pa_stream* stream_ = nullptr;
  size_t frameBytes_ = 1;
  std::atomic<OutputDevice::Condition> condition_{OutputDevice::Condition::kFine};
  std::atomic<bool> quit_{false};
  std::thread thread_;
};

}  // namespace

std::vector<SoundDevice> PulseInputs() {
  try {
    PulseServer server(kInputPatience);
    return InputsOf(server);
  } catch (const SoundError&) {
    return {};
  }
}

std::unique_ptr<InputDevice> MakePulseInput(DeviceWish wish) {
  return std::make_unique<PulseInput>(std::move(wish));
}

}  // namespace zemo
