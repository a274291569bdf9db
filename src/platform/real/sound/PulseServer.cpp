// libpulse's own loop, turned with a bound.
#include "platform/real/sound/PulseServer.h"

#include <pulse/error.h>

#include "platform/real/sound/OutputDevice.h"

namespace zemo {

PulseServer::PulseServer(std::chrono::milliseconds patience)
    : loop_(pa_mainloop_new()), until_(std::chrono::steady_clock::now() + patience) {
  if (loop_ == nullptr) throw NoSuchDevice("PulseAudio: no memory");
  context_ = pa_context_new(pa_mainloop_get_api(loop_), "Zemo Radio");
  bool ready = false;
  if (context_ != nullptr &&
      pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) {
    ready =
        Await([this] { return !Alive() || pa_context_get_state(context_) == PA_CONTEXT_READY; }) &&
        Alive();
  }
  if (ready) return;
  const std::string reason = Error();
  const bool hangs = context_ != nullptr && Alive();
  Free();
  if (hangs) throw SystemHangs("PulseAudio: the server does not answer");
  throw NoSuchDevice("PulseAudio: " + reason);
}

PulseServer::~PulseServer() {
  Free();
}

void PulseServer::Free() {
  if (context_ != nullptr) {
    pa_context_disconnect(context_);
    pa_context_unref(context_);
  }
  pa_mainloop_free(loop_);
}

bool PulseServer::Alive() const {
  return PA_CONTEXT_IS_GOOD(pa_context_get_state(context_));
}

bool PulseServer::Await(const std::function<bool()>& condition) {
  while (!condition()) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
        until_ - std::chrono::steady_clock::now());
    if (left.count() <= 0 || !Alive()) return false;
    if (pa_mainloop_prepare(loop_, static_cast<int>(left.count())) < 0 ||
        pa_mainloop_poll(loop_) < 0 || pa_mainloop_dispatch(loop_) < 0)
      return false;
  }
  return true;
}

bool PulseServer::Finish(pa_operation* operation) {
  if (operation == nullptr) return false;
  Await([&] { return pa_operation_get_state(operation) != PA_OPERATION_RUNNING; });
  const bool done = pa_operation_get_state(operation) == PA_OPERATION_DONE;
  if (!done) pa_operation_cancel(operation);
  pa_operation_unref(operation);
  return done;
}

std::string PulseServer::Error() const {
  return context_ == nullptr ? "no context" : pa_strerror(pa_context_errno(context_));
}

}  // namespace zemo
