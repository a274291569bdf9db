// RtAudio behind the devices and inputs of JACK and ALSA.
#include "platform/real/sound/RtAudioDevice.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <mutex>

#include "platform/real/sound/RtAudioForms.h"

namespace zemo {
namespace {

constexpr unsigned int kBufferFrames = 1024;  // 23 ms: of one call back
constexpr unsigned int kBuffers = 4;          // that the device keeps, where it can be asked to

void Quiet(const char*, int, const char*, int, const char*, ...) {}

RtAudio::Api ApiOf(RtAudioSystem system) {
  return system == RtAudioSystem::kJack ? RtAudio::UNIX_JACK : RtAudio::LINUX_ALSA;
}

const char* NameOf(RtAudioSystem system) {
  return system == RtAudioSystem::kJack ? "JACK" : "ALSA";
}

// JACK's library has one buffer of messages for the whole process: two threads that look for its
// server at once can wait in it for each other for ever. Held while a thread asks for anything.
class JackTurn {
 public:
  explicit JackTurn(RtAudioSystem system) {
    static std::recursive_mutex ofTheProcess;
    if (system == RtAudioSystem::kJack) lock_ = std::unique_lock(ofTheProcess);
  }

 private:
  std::unique_lock<std::recursive_mutex> lock_;
};

// Nothing of what a sound system grumbles about absent hardware is news to the operator. Throws
// RtAudioError, and gives another system where RtAudio was built without this one.
std::unique_ptr<RtAudio> Ask(RtAudioSystem system) {
  snd_lib_error_set_handler(Quiet);
  std::unique_ptr<RtAudio> audio = MakeRtAudio(ApiOf(system));
  audio->showWarnings(false);
  return audio;
}

struct Found {
  unsigned int id;
  SoundDevice device;
  unsigned int preferredRate;
};

enum class Way { kOut, kIn };

// Adds a device that has two channels to play, or one to record. It is opened for the question.
void AddDevice(RtAudio& audio, RtAudioSystem system, Way way, unsigned int id,
               std::vector<Found>& devices) {
  try {
    const RtAudio::DeviceInfo info = audio.getDeviceInfo(id);
    const bool out = way == Way::kOut;
    const unsigned int channels = out ? info.outputChannels : info.inputChannels;
    if (!Answered(info) || channels < (out ? kChannels : 1)) return;
    SoundDevice device;
    device.name = device.key = info.name;
    device.system = NameOf(system);
    device.rates.assign(info.sampleRates.begin(), info.sampleRates.end());
    device.channels = static_cast<int>(channels);
    device.isDefault = out ? info.isDefaultOutput || id == audio.getDefaultOutputDevice()
                           : info.isDefaultInput || id == audio.getDefaultInputDevice();
    devices.push_back({id, device, info.preferredSampleRate});
  } catch (const RtAudioError&) {
    // A device that went away between the count and the question.
  }
}

// All of one sound system's, or only its default one.
std::vector<Found> Devices(RtAudio& audio, RtAudioSystem system, Way way, bool all) {
  std::vector<Found> devices;
  if (audio.getCurrentApi() != ApiOf(system)) return devices;
  const std::vector<unsigned int> ids = DeviceIds(audio);
  if (!ids.empty() && !all) AddDevice(audio, system, way, audio.getDefaultOutputDevice(), devices);
  for (size_t at = 0; at < ids.size() && all; ++at) AddDevice(audio, system, way, ids[at], devices);
  return devices;
}

std::vector<SoundDevice> Known(const std::vector<Found>& devices) {
  std::vector<SoundDevice> known;
  for (const Found& found : devices) known.push_back(found.device);
  return known;
}

std::vector<SoundDevice> AllOf(RtAudioSystem system, Way way) {
  const JackTurn turn(system);
  try {
    const std::unique_ptr<RtAudio> audio = Ask(system);
    return Known(Devices(*audio, system, way, true));
  } catch (const RtAudioError&) {
    return {};  // it does not run
  }
}

// Gives the stream up, whatever it does.
void EndStream(std::unique_ptr<RtAudio>& audio) {
  if (audio == nullptr) return;
  try {
    if (audio->isStreamRunning()) audio->abortStream();
    if (audio->isStreamOpen()) audio->closeStream();
  } catch (const RtAudioError&) {
    // It was gone already.
  }
  audio.reset();
}

// Rates to try: the mixer's own where the device has it, so that nothing need be converted.
std::vector<unsigned int> Rates(const Found& device) {
  std::vector<unsigned int> rates{static_cast<unsigned int>(kSampleRate)};
  for (const unsigned int rate : {device.preferredRate, 48000u, 96000u, 32000u}) {
    if (rate > 0 && std::find(rates.begin(), rates.end(), rate) == rates.end())
      rates.push_back(rate);
  }
  return rates;
}

RtAudio::StreamParameters ParametersOf(const Found& device, int channels) {
  RtAudio::StreamParameters parameters;
  parameters.deviceId = device.id;
  parameters.nChannels = static_cast<unsigned int>(channels);
  return parameters;
}

RtAudio::StreamOptions OptionsOf(const char* streamName) {
  RtAudio::StreamOptions options;
  options.numberOfBuffers = kBuffers;
  options.streamName = streamName;
  return options;
}

// What `open` gives for the first rate at which it does not throw RtAudioError.
template <typename Open>
auto AtFirstRate(RtAudio& audio, const Found& device, Open open) {
  std::string reason;
  for (const unsigned int rate : Rates(device)) {
    try {
      return open(rate);
    } catch (const RtAudioError& error) {
      reason = error.getMessage();
      if (audio.isStreamOpen()) audio.closeStream();
    }
  }
  throw SoundError(device.device.name + ": " + reason);
}

// What `open` gives with the system asked anew. Nothing is left of it where that throws, and only
// SoundError leaves it.
template <typename Open>
auto OpenWith(std::unique_ptr<RtAudio>& audio, RtAudioSystem system, Open open) {
  try {
    audio = Ask(system);
    return open();
  } catch (const RtAudioError& error) {
    audio.reset();
    throw SoundError(error.getMessage());
  } catch (...) {
    audio.reset();
    throw;
  }
}

// What a sound server put in the place of ALSA's default, found in ALSA's settings without opening
// it: the server is asked directly, and behind its back only its own devices come and go.
bool AlsaDefaultIsAServers() {
  constexpr int kMostSlaves = 8;
  snd_config_t* settings = nullptr;
  if (snd_config_update_ref(&settings) < 0) return false;
  std::string name = "default", type;
  for (int slaves = 0; slaves < kMostSlaves && !name.empty(); ++slaves) {
    snd_config_t *pcm = nullptr, *found = nullptr;
    if (snd_config_search_definition(settings, "pcm", name.c_str(), &pcm) < 0) break;
    const char* text = nullptr;
    if (snd_config_search(pcm, "type", &found) >= 0 && snd_config_get_string(found, &text) >= 0)
      type = text;
    const bool slave = snd_config_search(pcm, "slave.pcm", &found) >= 0 &&
                       snd_config_get_string(found, &text) >= 0;
    name = slave ? text : "";
    snd_config_delete(pcm);
  }
  snd_config_unref(settings);
  return type == "pulse" || type == "pipewire";
}

class RtAudioDevice final : public OutputDevice {
 public:
  RtAudioDevice(RtAudioSystem system, DeviceWish wish) : system_(system), wish_(std::move(wish)) {}
  ~RtAudioDevice() override { Close(); }

  Opened Open(OutputRing& ring) override {
    const JackTurn turn(system_);
    Close();
    return OpenWith(audio_, system_, [&] {
      byDefault_ =
          wish_.name.empty() && !(system_ == RtAudioSystem::kAlsa && AlsaDefaultIsAServers());
      const std::vector<Found> devices = Devices(*audio_, system_, Way::kOut, !byDefault_);
      const int index = IndexOf(devices);
      if (index < 0) throw NoSuchDevice(std::string(NameOf(system_)) + ": no such sound device");
      return OpenAt(devices[static_cast<size_t>(index)], ring);
    });
  }

  void Close() override {
    const JackTurn turn(system_);
    EndStream(audio_);
  }

 private:
  int IndexOf(const std::vector<Found>& devices) const {
    if (byDefault_) return devices.empty() ? -1 : 0;  // only the default was asked for
    if (wish_.name.empty()) {
      const auto card = std::find_if(devices.begin(), devices.end(), [](const Found& found) {
        return found.device.name != kAlsaDefault;
      });
      return card == devices.end() ? -1 : static_cast<int>(card - devices.begin());
    }
    return FindSoundDevice(Known(devices), wish_);
  }

  Opened OpenAt(const Found& device, OutputRing& ring) {
    return AtFirstRate(*audio_, device, [&](unsigned int rate) {
      RtAudio::StreamParameters parameters = ParametersOf(device, kChannels);
      RtAudio::StreamOptions options =
          OptionsOf(wish_.prelistens ? "Zemo Radio Prelisten" : "Zemo Radio");
      // The default of ALSA is not its first card but what the machine is set up to share.
      if (byDefault_) options.flags = RTAUDIO_ALSA_USE_DEFAULT;
      unsigned int frames = kBufferFrames;
      static_assert(kDeviceRanDry == RTAUDIO_OUTPUT_UNDERFLOW);
      OrThrow(*audio_, [&] {
        return audio_->openStream(&parameters, nullptr, RTAUDIO_SINT16, rate, &frames,
                                  &DeviceCallback, &ring, &options);
      });
      OrThrow(*audio_, [&] { return audio_->startStream(); });
      const unsigned int buffers = std::max(options.numberOfBuffers, kBuffers);
      const auto ahead = static_cast<int>(frames * buffers);
      return Opened{device.device.name + " (" + NameOf(system_) + ")", static_cast<int>(rate),
                    ahead, ahead * 1000 / static_cast<int>(rate)};
    });
  }

  const RtAudioSystem system_;
  const DeviceWish wish_;
  bool byDefault_ = false;  // what the system calls its default; else one of its own, by name
  std::unique_ptr<RtAudio> audio_;
};

class RtAudioInput final : public InputDevice {
 public:
  RtAudioInput(RtAudioSystem system, DeviceWish wish) : system_(system), wish_(std::move(wish)) {}
  ~RtAudioInput() override { Close(); }

  Opened Open(InputRing& ring) override {
    const JackTurn turn(system_);
    Close();
    return OpenWith(audio_, system_, [&] {
      const std::vector<Found> inputs = Devices(*audio_, system_, Way::kIn, true);
      const int index = FindSoundDevice(Known(inputs), wish_);
      if (index < 0) throw NoSuchDevice(std::string(NameOf(system_)) + ": no such sound input");
      return OpenAt(inputs[static_cast<size_t>(index)], ring);
    });
  }

  void Close() override {
    const JackTurn turn(system_);
    EndStream(audio_);
  }

 private:
  Opened OpenAt(const Found& input, InputRing& ring) {
    const int channels = std::min(input.device.channels, kChannels);
    return AtFirstRate(*audio_, input, [&](unsigned int rate) {
      RtAudio::StreamParameters parameters = ParametersOf(input, channels);
      RtAudio::StreamOptions options = OptionsOf("Zemo Radio Voice Track");
      unsigned int frames = kBufferFrames;
      ring.Reset(channels);
      OrThrow(*audio_, [&] {
        return audio_->openStream(nullptr, &parameters, RTAUDIO_SINT16, rate, &frames,
                                  &InputCallback, &ring, &options);
      });
      OrThrow(*audio_, [&] { return audio_->startStream(); });
      return Opened{input.device.name + " (" + NameOf(system_) + ")", static_cast<int>(rate),
                    static_cast<int>(frames * 1000 / rate)};
    });
  }

  const RtAudioSystem system_;
  const DeviceWish wish_;
  std::unique_ptr<RtAudio> audio_;
};

}  // namespace

std::vector<SoundDevice> RtAudioDevices(RtAudioSystem system) {
  return AllOf(system, Way::kOut);
}

std::vector<SoundDevice> RtAudioInputs(RtAudioSystem system) {
  return AllOf(system, Way::kIn);
}

bool AnyRtAudioDevice(RtAudioSystem system) {
  const JackTurn turn(system);
  try {
    const std::unique_ptr<RtAudio> audio = Ask(system);
    return audio->getCurrentApi() == ApiOf(system) && audio->getDeviceCount() > 0;
  } catch (const RtAudioError&) {
    return false;
  }
}

std::unique_ptr<OutputDevice> MakeRtAudioDevice(RtAudioSystem system, DeviceWish wish) {
  return std::make_unique<RtAudioDevice>(system, std::move(wish));
}

std::unique_ptr<InputDevice> MakeRtAudioInput(RtAudioSystem system, DeviceWish wish) {
  return std::make_unique<RtAudioInput>(system, std::move(wish));
}

}  // namespace zemo
