// The automaton's contacts at every tick.
// The line is polled ahead: each poll reads what the one before has asked for.
#include "engine/AutomatonLine.h"
#include "engine/ExternalTriggers.h"
#include "engine/StartStop.h"
#include "engine/TakeOvers.h"
#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr const char* kPollRoutine = "PollInputs";

bool IsOn(const Station& station, size_t contact) {
  return station.engine.Contacts[contact];
}

bool IsClosed(uint8_t contacts, size_t contact) {
  return (contacts >> contact & 1) != 0;
}

// A pulse takes what the one before gave back. Both contacts share the time of the last pulse.
void ServePulses(Station& station, uint8_t contacts) {
  EngineState& engine = station.engine;
  const int64_t now = station.platform.clock.MonotonicMs();
  if (engine.lastPulseMs && now - *engine.lastPulseMs <= engine.TempsMaxiImPulsion * 1000) return;
  for (const size_t contact : {1, 2}) {
    if (!IsClosed(contacts, contact)) continue;
    engine.lastPulseMs = now;
    engine.Contacts[contact] = !engine.Contacts[contact];
  }
}

void NoteContacts(Station& station, uint8_t contacts) {
  EngineState& engine = station.engine;
  const bool pulses = engine.TempsMaxiImPulsion > 0;
  if (pulses) ServePulses(station, contacts);
  for (size_t contact = 0; contact < engine.Contacts.size(); ++contact)
    if (!pulses || contact == 0 || contact == 3)
      engine.Contacts[contact] = IsClosed(contacts, contact);
}

void ServeEngineContact(Station& station) {
  const EngineState& engine = station.engine;
  if (!engine.IsRunning && IsOn(station, 0)) StartStopZemoRadio(station, true);
  if (engine.IsRunning && !IsOn(station, 0)) {
    StartStopZemoRadio(station, false);
    station.platform.loop.Yield();
  }
}

void ServeSatelliteContact(Station& station) {
  const EngineState& engine = station.engine;
  if (IsOn(station, 1) && !engine.SatelliteTaking) BeginSatellite(station);
  if (!IsOn(station, 1) && engine.SatelliteTaking) EndSatellite(station);
  PrepareReturnFromSatellite(station);
}

void ServeLocalContact(Station& station) {
  const EngineState& engine = station.engine;
  if (engine.LocalProgrammeOn && !IsOn(station, 2)) EndLocalProgramme(station);
  if (!engine.LocalProgrammeOn && IsOn(station, 2)) BeginLocalProgramme(station);
}

void ServeContacts(Station& station) {
  switch (station.base.CnfInt(Cnf::kEntreSat)) {
    case 1:
      ServeEngineContact(station);
      break;
    case 2:
      ServeSatelliteContact(station);
      break;
    case 3:
      ServeLocalContact(station);
      break;
    default:
      break;
  }
  if (IsOn(station, 3)) StartPulse(station);  // whatever EntreSat says
}

}  // namespace

void PollInputs(Station& station) {
  if (station.engine.automaton.pollHeld) return;
  try {
    ComputeInputsAllowed(station);
    AskContacts(station);
    if (const auto contacts = TakeContacts(station)) NoteContacts(station, *contacts);
    AskContacts(station);
    if (station.engine.InputsAllowed) ServeContacts(station);
  } catch (const std::exception& error) {
    // The tick goes on; the next one asks again. A line that stays lost is told once a minute.
    station.engine.automaton.asked = false;
    if (!LoggedLately(station, error.what(), kSameErrorMs))
      LogCurrentException(station, kPollRoutine);
  }
}

}  // namespace zemo
