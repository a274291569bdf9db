// A recording stream of the Pulse server, opened on the recording thread.
#include "platform/real/sound/PulseInput.h"

#include <pulse/introspect.h>
#include <pulse/timeval.h>

#include <algorithm>
#include <utility>

#include "platform/real/sound/PulseStream.h"

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
  (info->monitor_of_sink == PA_INVALID_INDEX ? listed.inputs : listed.monitors)
      .push_back(DescribedByPulse(*info));
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

  Opened Open(InputRing& ring) override {
    Close();
    try {
      return Connect(ring);
    } catch (...) {
      stream_.Close();
      throw;
    }
  }

  void Close() override { stream_.Close(); }

  OutputDevice::Condition Look() override { return stream_.Condition(); }

 private:
  Opened Connect(InputRing& ring) {
    ring_ = &ring;
    stream_.Reach(std::make_unique<PulseServer>(kInputPatience));
    const std::vector<SoundDevice> inputs = InputsOf(stream_.Server());
    const int index = FindSoundDevice(inputs, wish_);
    if (index < 0) throw NoSuchDevice("PulseAudio: no such sound input");
    const SoundDevice& device = inputs[static_cast<size_t>(index)];
    const int channels = std::min(device.channels, kChannels);
    ring.Reset(channels);
    Record(device, static_cast<uint8_t>(channels));
    stream_.Turn();
    return {device.name + " (" + device.system + ")", kSampleRate, kFragmentMs};
  }

  void Record(const SoundDevice& device, uint8_t channels) {
    const pa_sample_spec form{PA_SAMPLE_S16NE, static_cast<uint32_t>(kSampleRate), channels};
    frameBytes_ = pa_frame_size(&form);
    stream_.Hold(NewPulseStream(stream_.Server(), "Voice track", form, "production"));
    pa_stream_set_read_callback(stream_.Get(), OnFrames, this);
    pa_buffer_attr buffer{};
    buffer.maxlength = buffer.tlength = buffer.minreq = buffer.prebuf = static_cast<uint32_t>(-1);
    buffer.fragsize =
        static_cast<uint32_t>(pa_usec_to_bytes(kFragmentMs * PA_USEC_PER_MSEC, &form));
    constexpr int kFlags = PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE;
    const bool asked = pa_stream_connect_record(stream_.Get(), device.key.c_str(), &buffer,
                                                static_cast<pa_stream_flags_t>(kFlags)) >= 0;
    stream_.AwaitReady(asked, device.name);
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

  const DeviceWish wish_;
  InputRing* ring_ = nullptr;
  size_t frameBytes_ = 1;
  PulseStream stream_;
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
