// The picture of a station on air as the control socket gives it: what the main on-air screen
// shows, as JSON. docs/control-socket.md tells each of its members.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "app/ControlSources.h"
#include "engine/HealthLine.h"

namespace zemo {

struct Station;

// Thread: the logic's. Looks at the state; the base is asked for the next pip and the language once
// a second at most, and never waited for.
class StatusPicture {
 public:
  StatusPicture(Station& station, ControlSources& sources);  // neither owned

  // Without the moment, so that two pictures of the same state are the same text.
  std::string Now();
  // The same with the moment ahead of it.
  std::string WithMoment(const std::string& picture) const;
  int64_t UptimeMs() const;

 private:
  using Json = nlohmann::ordered_json;
  void Observe(int64_t nowMs);
  void AskBase();
  void AddAir(Json& picture) const;
  void AddElement(Json& picture) const;
  void AddComing(Json& picture);
  void AddList(Json& picture) const;
  void AddLights(Json& picture) const;
  void AddHealth(Json& picture, int64_t nowMs) const;
  const char* Lamp() const;

  Station& station_;
  ControlSources& sources_;
  HealthLine health_;
  OutputFigures output_;
  int64_t begunMs_, observedMs_ = -1;  // monotonic
  int64_t planShiftMs_ = 0;
  int langue_ = 0;
  bool pip_ = false;  // at the next hour
};

}  // namespace zemo
