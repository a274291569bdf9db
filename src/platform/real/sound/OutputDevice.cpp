// Devices by RtAudio, over JACK, ALSA and PulseAudio in this order: the first of them that has the
// device and opens it. A sound system that is not running has no devices.
#include "platform/real/sound/OutputDevice.h"

#include <RtAudio.h>
#include <alsa/asoundlib.h>

#include <algorithm>
#include <cctype>

#include "platform/SoundSource.h"

namespace zemo {
namespace {

constexpr unsigned int kBufferFrames = 1024;  // 23 ms: of one call back
constexpr unsigned int kBuffers = 4;          // that the device keeps, where it can be asked to

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

void Quiet(const char*, int, const char*, int, const char*, ...) {}

// Nothing of what a sound system grumbles about absent hardware is news to the operator.
std::unique_ptr<RtAudio> SoundSystem(RtAudio::Api api) {
  snd_lib_error_set_handler(Quiet);
  auto audio = std::make_unique<RtAudio>(api);
  audio->showWarnings(false);
  return audio;
}

std::vector<RtAudio::Api> Apis() {
  std::vector<RtAudio::Api> compiled;
  RtAudio::getCompiledApi(compiled);
  std::vector<RtAudio::Api> apis;
  for (const RtAudio::Api api : {RtAudio::UNIX_JACK, RtAudio::LINUX_ALSA, RtAudio::LINUX_PULSE}) {
    if (std::find(compiled.begin(), compiled.end(), api) != compiled.end()) apis.push_back(api);
  }
  return apis;
}

struct Found {
  unsigned int id;
  RtAudio::DeviceInfo info;
};

// Adds a device that has two channels to play.
void AddDevice(RtAudio& audio, unsigned int id, std::vector<Found>& devices) {
  try {
    const RtAudio::DeviceInfo info = audio.getDeviceInfo(id);
    if (info.probed && info.outputChannels >= kChannels) devices.push_back({id, info});
  } catch (const RtAudioError&) {
    // A device that went away between the count and the question.
  }
}

// All of one sound system's, or only its default one: each has to be opened to be asked.
std::vector<Found> Devices(RtAudio& audio, bool all) {
  std::vector<Found> devices;
  const unsigned int count = audio.getDeviceCount();
  if (count > 0 && !all) AddDevice(audio, audio.getDefaultOutputDevice(), devices);
  for (unsigned int id = 0; id < count && all; ++id) AddDevice(audio, id, devices);
  return devices;
}

// Rates to try: the mixer's own where the device has it, so that nothing need be converted.
std::vector<unsigned int> Rates(const RtAudio::DeviceInfo& info) {
  std::vector<unsigned int> rates{static_cast<unsigned int>(kSampleRate)};
  for (const unsigned int rate : {info.preferredSampleRate, 48000u, 96000u, 32000u}) {
    if (rate > 0 && std::find(rates.begin(), rates.end(), rate) == rates.end())
      rates.push_back(rate);
  }
  return rates;
}

class SystemDevice final : public OutputDevice {
 public:
  explicit SystemDevice(std::string name) : name_(std::move(name)) {}
  ~SystemDevice() override { Close(); }

  Opened Open(OutputRing& ring) override {
    Close();
    std::string reason = name_.empty() ? "no sound device" : name_ + ": no such sound device";
    for (const RtAudio::Api api : Apis()) {
      try {
        audio_ = SoundSystem(api);
        for (const Found& device : Devices(*audio_, !name_.empty())) {
          if (!Wanted(device)) continue;
          if (const int rate = OpenAt(device, ring, reason); rate > 0)
            return {device.info.name, rate};
        }
      } catch (const RtAudioError& error) {
        reason = error.getMessage();
      }
    }
    audio_.reset();
    throw SoundError(reason);
  }

  void Close() override {
    if (audio_ == nullptr) return;
    try {
      if (audio_->isStreamRunning()) audio_->abortStream();
      if (audio_->isStreamOpen()) audio_->closeStream();
    } catch (const RtAudioError&) {
      // It was gone already.
    }
    audio_.reset();
  }

 private:
  bool Wanted(const Found& device) const {
    return name_.empty() || Folded(device.info.name).find(Folded(name_)) != std::string::npos;
  }

  // 0 with the reason when it opens at no rate.
  int OpenAt(const Found& device, OutputRing& ring, std::string& reason) {
    for (const unsigned int rate : Rates(device.info)) {
      RtAudio::StreamParameters parameters;
      parameters.deviceId = device.id;
      parameters.nChannels = kChannels;
      RtAudio::StreamOptions options;
      options.numberOfBuffers = kBuffers;
      options.streamName = "Zemo Radio";
      // The default of ALSA is not its first card but what the machine is set up to share.
      if (name_.empty()) options.flags = RTAUDIO_ALSA_USE_DEFAULT;
      unsigned int frames = kBufferFrames;
      try {
        audio_->openStream(&parameters, nullptr, RTAUDIO_SINT16, rate, &frames, &DeviceCallback,
                           &ring, &options);
        audio_->startStream();
        return static_cast<int>(rate);
      } catch (const RtAudioError& error) {
        reason = error.getMessage();
        if (audio_->isStreamOpen()) audio_->closeStream();
      }
    }
    return 0;
  }

  const std::string name_;
  std::unique_ptr<RtAudio> audio_;
};

}  // namespace

std::unique_ptr<OutputDevice> MakeSystemDevice(const std::string& name) {
  return std::make_unique<SystemDevice>(name);
}

bool AnySoundDevice() {
  const std::vector<RtAudio::Api> apis = Apis();
  return std::any_of(apis.begin(), apis.end(), [](RtAudio::Api api) {
    try {
      return SoundSystem(api)->getDeviceCount() > 0;
    } catch (const RtAudioError&) {
      return false;
    }
  });
}

std::vector<std::string> OutputDeviceNames() {
  std::vector<std::string> names;
  for (const RtAudio::Api api : Apis()) {
    const std::unique_ptr<RtAudio> audio = SoundSystem(api);
    for (const Found& device : Devices(*audio, true)) names.push_back(device.info.name);
  }
  return names;
}

}  // namespace zemo
