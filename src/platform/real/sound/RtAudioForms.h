// RtAudio in one form, as of version 5 (Debian 12) and of version 6 (Debian 13): what fails throws
// RtAudioError, and each device has an id.
#pragma once

#include <RtAudio.h>

#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

namespace zemo {

#ifdef RTAUDIO_VERSION_MAJOR  // from version 6 on

struct RtAudioError : std::runtime_error {
  using std::runtime_error::runtime_error;
  std::string getMessage() const { return what(); }
};

inline constexpr const char* kAlsaDefault = "Default ALSA Device";  // as it stands beside the cards

// Without a listener it would write what fails to the console.
inline std::unique_ptr<RtAudio> MakeRtAudio(RtAudio::Api api) {
  return std::make_unique<RtAudio>(api, [](RtAudioErrorType, const std::string&) {});
}

inline std::vector<unsigned int> DeviceIds(RtAudio& audio) {
  return audio.getDeviceIds();
}

inline bool Answered(const RtAudio::DeviceInfo& info) {
  return !info.name.empty();
}

template <typename Call>
void OrThrow(RtAudio& audio, Call call) {
  const RtAudioErrorType fault = call();
  if (fault != RTAUDIO_NO_ERROR && fault != RTAUDIO_WARNING)
    throw RtAudioError(audio.getErrorText());
}

#else

inline constexpr const char* kAlsaDefault = "default";

inline std::unique_ptr<RtAudio> MakeRtAudio(RtAudio::Api api) {
  return std::make_unique<RtAudio>(api);
}

inline std::vector<unsigned int> DeviceIds(RtAudio& audio) {
  std::vector<unsigned int> ids(audio.getDeviceCount());
  std::iota(ids.begin(), ids.end(), 0U);
  return ids;
}

inline bool Answered(const RtAudio::DeviceInfo& info) {
  return info.probed;
}

template <typename Call>
void OrThrow(RtAudio&, Call call) {
  call();
}

#endif

}  // namespace zemo
