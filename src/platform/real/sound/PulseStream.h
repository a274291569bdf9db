// A stream to or from the Pulse server, as the devices that play and those that record share it:
// opened on its device's thread, then turned by a thread of its own until the closing, so that
// nothing of libpulse is ever used by two threads at once.
#pragma once

#include <pulse/stream.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/PulseServer.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

class PulseStream {
 public:
  ~PulseStream() { Close(); }

  // From here on the server's thread is the caller's, until Turn.
  void Reach(std::unique_ptr<PulseServer> server);
  // Takes a stream of that server, still unconnected: null throws SoundError. Its condition is
  // followed from here on.
  void Hold(pa_stream* stream);
  // Waits until the stream is ready. Throws SoundError with that device's text when it was not
  // asked for, is refused, or is not ready in the server's patience.
  void AwaitReady(bool asked, const std::string& device);
  void Turn();  // what the server calls back happens on the stream's own thread from here on

  // Comes back when that thread has ended and nothing is called back any more. Before the server
  // goes, `freeing` gives back what else is held of it.
  void Close(const std::function<void()>& freeing = [] {});

  pa_stream* Get() const { return stream_; }
  PulseServer& Server() const { return *server_; }
  bool Ready() const;
  void NoteSleep();                           // asks whether the device sleeps
  OutputDevice::Condition Condition() const;  // any thread

 private:
  void Free(const std::function<void()>& freeing);

  std::unique_ptr<PulseServer> server_;
  pa_stream* stream_ = nullptr;
  std::atomic<OutputDevice::Condition> condition_{OutputDevice::Condition::kFine};
  std::atomic<bool> quit_{false};
  std::thread thread_;
};

// What the server tells of a sink or a source.
template <typename Info>
SoundDevice DescribedByPulse(const Info& info) {
  SoundDevice device;
  device.key = info.name;
  device.name = info.description != nullptr ? info.description : info.name;
  device.system = "PulseAudio";
  device.rates = {static_cast<int>(info.sample_spec.rate)};
  device.channels = info.sample_spec.channels;
  return device;
}

// With a role a server keeps the volume by that role, else by the program's name.
pa_stream* NewPulseStream(const PulseServer& server, const char* name, const pa_sample_spec& form,
                          const char* role);

}  // namespace zemo
