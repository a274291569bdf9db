#include "platform/real/sound/PulseStream.h"

#include <pulse/proplist.h>

#include <utility>

namespace zemo {
namespace {

using DeviceCondition = OutputDevice::Condition;

void OnStreamState(pa_stream* stream, void* condition) {
  if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream)))
    static_cast<std::atomic<DeviceCondition>*>(condition)->store(DeviceCondition::kGone,
                                                                 std::memory_order_release);
}

void OnStreamSuspended(pa_stream*, void* self) {
  static_cast<PulseStream*>(self)->NoteSleep();
}

}  // namespace

void PulseStream::Reach(std::unique_ptr<PulseServer> server) {
  quit_ = false;
  condition_ = DeviceCondition::kFine;
  server_ = std::move(server);
}

void PulseStream::Hold(pa_stream* stream) {
  if (stream == nullptr) throw SoundError("PulseAudio: " + server_->Error());
  stream_ = stream;
  pa_stream_set_state_callback(stream_, OnStreamState, &condition_);
  pa_stream_set_suspended_callback(stream_, OnStreamSuspended, this);
}

void PulseStream::AwaitReady(bool asked, const std::string& device) {
  const auto settled = [this] {
    const pa_stream_state_t state = pa_stream_get_state(stream_);
    return state == PA_STREAM_READY || !PA_STREAM_IS_GOOD(state);
  };
  if (!asked || !server_->Await(settled) || !Ready())
    throw SoundError(device + ": " + server_->Error());
}

void PulseStream::Turn() {
  thread_ = std::thread([this] {
    while (!quit_.load(std::memory_order_acquire) && server_->Turn()) continue;
  });
}

void PulseStream::Close(const std::function<void()>& freeing) {
  if (thread_.joinable()) {
    quit_.store(true, std::memory_order_release);
    server_->WakeUp();
    thread_.join();
  }
  Free(freeing);
}

bool PulseStream::Ready() const {
  return stream_ != nullptr && pa_stream_get_state(stream_) == PA_STREAM_READY;
}

void PulseStream::NoteSleep() {
  condition_.store(
      pa_stream_is_suspended(stream_) > 0 ? DeviceCondition::kAsleep : DeviceCondition::kFine,
      std::memory_order_release);
}

DeviceCondition PulseStream::Condition() const {
  return condition_.load(std::memory_order_acquire);
}

void PulseStream::Free(const std::function<void()>& freeing) {
  freeing();
  if (stream_ != nullptr) {
    for (const auto set : {pa_stream_set_state_callback, pa_stream_set_suspended_callback,
                           pa_stream_set_moved_callback, pa_stream_set_underflow_callback})
      set(stream_, nullptr, nullptr);
    for (const auto set : {pa_stream_set_read_callback, pa_stream_set_write_callback})
      set(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
  }
  server_.reset();
}

pa_stream* NewPulseStream(const PulseServer& server, const char* name, const pa_sample_spec& form,
                          const char* role) {
  if (role == nullptr) return pa_stream_new(server.Context(), name, &form, nullptr);
  pa_proplist* properties = pa_proplist_new();
  pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, role);
  pa_stream* stream =
      pa_stream_new_with_proplist(server.Context(), name, &form, nullptr, properties);
  pa_proplist_free(properties);
  return stream;
}

}  // namespace zemo
