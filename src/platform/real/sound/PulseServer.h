// A connection to the Pulse server of this machine: PulseAudio, or PipeWire in its place. None is
// started where none runs.
#pragma once

#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>

#include <chrono>
#include <functional>
#include <string>

namespace zemo {

// One thread at a time; what it was told happens inside Turn and Await.
class PulseServer {
 public:
  // Throws NoSuchDevice where none runs, SystemHangs when it does not answer in all that time.
  explicit PulseServer(std::chrono::milliseconds patience);
  ~PulseServer();
  PulseServer(const PulseServer&) = delete;
  PulseServer& operator=(const PulseServer&) = delete;

  pa_context* Context() const { return context_; }
  pa_mainloop_api* Api() const { return pa_mainloop_get_api(loop_); }
  bool Alive() const;
  // Serves what comes until the answer is yes. False when the patience since the making is over.
  bool Await(const std::function<bool()>& condition);
  // The same until the operation is done (it is taken over; null: it could not be asked).
  bool Finish(pa_operation* operation);
  // Waits for what comes next and serves it. False: nothing will come any more.
  bool Turn() { return pa_mainloop_iterate(loop_, 1, nullptr) >= 0; }
  void WakeUp() { pa_mainloop_wakeup(loop_); }  // any thread: ends a running Turn
  std::string Error() const;

 private:
  void Free();

  pa_mainloop* loop_ = nullptr;
  pa_context* context_ = nullptr;
  std::chrono::steady_clock::time_point until_;
};

}  // namespace zemo
