// The engine's events for several who listen.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "station/EngineEvents.h"

namespace zemo {

// Thread: the logic's.
class EventFan : public EventSink {
 public:
  explicit EventFan(std::vector<EventSink*> sinks) : sinks_(std::move(sinks)) {}  // not owned

  void OnEvent(const Event& event) override {
    for (EventSink* sink : sinks_) sink->OnEvent(event);
  }
  void OnNotice(const std::string& where, const std::string& text) override {
    for (EventSink* sink : sinks_) sink->OnNotice(where, text);
  }

 private:
  std::vector<EventSink*> sinks_;
};

}  // namespace zemo
