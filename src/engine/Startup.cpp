#include "engine/Startup.h"

#include <algorithm>

#include "engine/BaseMaintenance.h"
#include "engine/ElementPlayback.h"
#include "engine/EmergencyFolder.h"
#include "engine/ExternalTriggers.h"
#include "engine/KeptPosition.h"
#include "engine/MainTick.h"
#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "library/HotKeys.h"
#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/Joystick.h"
#include "platform/LocalValues.h"
#include "reports/AirWrites.h"
#include "settings/SerialInput.h"
#include "settings/SideFiles.h"
#include "station/BaseCompaction.h"
#include "station/BaseFiles.h"
#include "station/OutputBuffers.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/StoreError.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {

constexpr int kTickMs = 100;
constexpr int kMinWidth = 800;
constexpr int kMinHeight = 600;

bool ScreenTooSmall(Station& station) {
  const ScreenSize size = station.platform.system.Screen();
  if (size.width == 0 && size.height == 0) return false;  // no screen: nothing to lay out
  if (size.width >= kMinWidth && size.height >= kMinHeight) return false;
  station.platform.messages.Show("Alerte", "Le programme ne fonctione pas en dessous de 800x600",
                                 Buttons::kOk);
  return true;
}

// Only the creators of Cnf and Discotheque speak up; the others leave without a word.
void TellFailedCreation(Station& station, const std::string& table, const std::string& text) {
  if (table == "Cnf")
    station.platform.messages.Show("ERREUR CREATION TABLE",
                                   text + "\r\nErreur en création Table Cnf", Buttons::kOk);
  else if (table == "Discotheque")
    station.platform.messages.Show("ERREUR CREATION TABLE", text, Buttons::kOk);
}

// A step whose fault is logged and stops nothing behind it.
template <typename Work>
void Guarded(Station& station, const char* name, Work work) {
  try {
    work();
  } catch (const std::exception&) {
    LogCurrentException(station, name);
  }
}

void OpenBase(Station& station) {
  FinishInterruptedChange(station);
  const bool created = station.base.OpenOrCreateDatabase();
  station.events.Base(created ? "created" : "opened");
}

// A base that is locked, or whose share is away, does not keep a machine off the air that has
// something to play without it; the tick opens it as soon as it can.
void OpenBaseOrGoWithout(Station& station) {
  try {
    OpenBase(station);
  } catch (const StoreError& error) {
    if (!error.MayPass() || EmergencyFiles(station.platform.machineFolder).empty()) throw;
    LogCurrentException(station, "Form_Load");
  }
}

void OpenTables(Station& station) {
  if (!station.base.IsOpen()) return;
  if (!station.engine.ReportsDisabled)
    station.base.CreateMissingTables(
        [&station](const std::string& table, int, const std::string& text) {
          TellFailedCreation(station, table, text);
        });
  // What is there is opened, and a base that cannot be written still plays.
  Guarded(station, "OpenAllTables", [&] { station.base.OpenAllTables(); });
  Guarded(station, "SeedFixedRows", [&] { station.base.SeedFixedRows(); });
  CheckStructures(station);
  TellGaps(station);
  station.engine.baseWasOpen = true;
}

void ResetScreen(Station& station) {
  station.notices.titleOnAir.clear();
  station.PL.Clear();
  station.engine.IsAutomatic = true;
  station.browse.open = false;
  station.engine.Contacts.fill(false);
}

void ConfigureSound(Station& station) {
  SoundChain& sound = station.Sound();
  const auto cycleMs = static_cast<int32_t>(station.base.CnfInt(Cnf::kCycleMaxi));
  const auto bufferBytes = static_cast<int>(station.base.CnfInt(Cnf::kBuffers));
  const int64_t wanted = station.base.CnfInt(Cnf::kNbrBuffers);
  const auto buffers = static_cast<int>(std::min(wanted, MostBuffers(bufferBytes)));
  if (const std::string why = WhyTooManyBuffers(bufferBytes, wanted); !why.empty())
    LogError(station, "Form_Load", kErrOverflow, "NbrBuffers: " + why);
  sound.SetCycleMax(cycleMs);
  station.notices.cycleMs = cycleMs;
  sound.SetRing(bufferBytes, buffers * 2);
  sound.SetOutputBuffers(bufferBytes, buffers);
  ComputeBufferOffset(station);
}

// Also without a port: one that is chosen later is heard at once.
void CaptureJoystick(Station& station) {
  station.platform.joystick.OnButton([&station](int button, bool down) {
    if (down)
      JoystickButtonDown(station, button);
    else
      JoystickButtonUp(station, button);
  });
  UseJoystick(station, static_cast<int>(station.base.CnfInt(Cnf::kJoystiquePort)));
}

// The automaton of a machine whose settings name its port.
void OpenAutomaton(Station& station) {
  const auto port = static_cast<int>(station.base.CnfInt(Cnf::kPortCom));
  if (port > 0) Settings::PortCom_Click(station, port, LineSetting(station));
}

// Settings that the start reads once.
void TakeInputSettings(Station& station) {
  CaptureJoystick(station);
  station.engine.TempsMaxiImPulsion =
      static_cast<int>(std::max<int64_t>(0, station.base.CnfInt(Cnf::kTempsMaxiImPulsion)));
  station.notices.counterColour =
      static_cast<uint32_t>(station.base.CnfInt(Cnf::kCouleurdesCompteur));
}

void LoadStationLists(Station& station) {
  station.notices.day =
      LongDateText(station.Now(), static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
  TakeInputSettings(station);
  LoadSaveExclusion(station, "Load");
  const int day = CurrentWeekday(station.Now()) - 1;
  LoadSaveStartStop(station, "Load", day, true);
  LoadSaveTopage(station, "Load", day, true);
  std::string password;
  LoadSavePassword(station, "Load", password);
  LoadFileRealAudio(station);
  LoadReadSettingsOfBase(station);
}

void ObeyAutoPlay(Station& station) {
  const LocalValues& local = station.platform.localValues;
  station.engine.MnuStartStop = local.GetBool("StartAndStop", true);
  if (local.GetBool("AutoPlay", false)) StartStopZemoRadio(station, true);
}

// "Squelette" and "Langue" choose the caption.
const char* ModelCaption(bool skeleton, int64_t langue) {
  switch (langue) {
    case 1:
      return skeleton ? "Skeleton" : "Model in %";
    case 2:
      return skeleton ? "Modelo Esqueleto" : "Modelo em %";
    case 3:
      return skeleton ? "Modelo Esqueleto" : "Modelo en %";
    default:
      return skeleton ? "Model en Squelette" : "Model en %";
  }
}

void ActivateFirst(Station& station) {
  LoadSaveAudio(station, "Load");
  ComposeDayGrid(station);
  Guarded(station, "LoadHotKeys", [&] { LoadHotKeys(station); });
  OpenAutomaton(station);
  if (!LoadSavePlay(station, "Load")) return;
  TakeUpAirPosition(station);
  StartStopZemoRadio(station, true);
}

}  // namespace

bool OnAir::Form_Load(Station& station) {
  if (ScreenTooSmall(station)) return false;
  OpenBaseOrGoWithout(station);
  SetSideFileNames(station);
  LoadMachineState(station);
  OpenTables(station);
  TakeUpKeptWrites(station);
  ResetScreen(station);
  ConfigureSound(station);
  station.engine.LastDay = station.Now().day;
  LoadStationLists(station);
  CompactOnceAMonth(station);
  station.engine.MainTimer =
      station.platform.loop.MakeTimer(kTickMs, [&station] { MainTimer_Timer(station); });
  station.engine.MainTimer->SetEnabled(true);
  ObeyAutoPlay(station);
  return true;
}

void TakeUpOpenedBase(Station& station) {
  if (!station.engine.baseWasOpen) {
    OpenTables(station);
    if (station.Sound().State() != OutputState::kStarted) ConfigureSound(station);
    TakeInputSettings(station);
    OpenAutomaton(station);
  }
  Guarded(station, "LoadHotKeys", [&] { LoadHotKeys(station); });
}

void OnAir::Form_Activate(Station& station, bool first) {
  if (first) ActivateFirst(station);
  EngineState& engine = station.engine;
  engine.LastActivityTimer = station.Timer();
  engine.HotKeysArmed = true;
  engine.ActiveList = "PL";
  station.notices.modelCaption =
      ModelCaption(station.base.CnfBool(Cnf::kSquelette), station.base.CnfInt(Cnf::kLangue));
}

bool OnAir::Form_QueryUnload(Station& station) {
  return EndInOrder(station);
}

bool EndInOrder(Station& station) {
  if (station.engine.IsRunning) return false;
  station.base.Waiting().LetEachWait(kBusyTimeoutMs);
  WriteKeptAtTheEnd(station);
  station.engine.MainTimer.reset();
  station.base.Close();
  station.Sound().Stop();
  station.Sound().Close();
  station.platform.joystick.Close();
  station.platform.joystick.OnButton(nullptr);
  Settings::PortCom_Click(station, 0, {});
  station.platform.loop.Yield();
  return true;
}

}  // namespace zemo
