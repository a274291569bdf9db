// Topage: the engine gave the air away at a time of the day and waits for the word that hands it
// back. Idle -> pending (a topage time, see TimedStartStop.cpp) -> resumed (here, or by another
// start).
#include "engine/ExternalTriggers.h"
#include "engine/StartStop.h"
#include "platform/Desktop.h"
#include "station/Station.h"

namespace zemo {

void AwaitHandBack(Station& station) {
  try {
    if (station.platform.clipboard.Text() != "Zemo Play Now") return;
    StartStopZemoRadio(station, true);
    station.engine.TopagePending = false;
  } catch (const std::exception&) {
    LogCurrentException(station, "TraiteTopage");
  }
}

}  // namespace zemo
