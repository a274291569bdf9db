// `zemoradio run`: on air in real time without a screen, until SIGINT or SIGTERM, which stop and
// drain.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <vector>

#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/EndSignals.h"
#include "app/RealStation.h"
#include "app/RunDisplay.h"
#include "app/StationPaths.h"
#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/OutputSpec.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"

namespace zemo {

namespace {
constexpr int kWatchMs = 50;
constexpr int kStatusMs = 1000;

std::string MakeStationFolder(const CommandLine& line) {
  const std::string folder = line.station.empty() ? DefaultStationFolder() : line.station;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder))
    throw std::runtime_error("cannot make the station folder " + folder + ": " + error.message());
  return folder;
}

// A machine folder that cannot be made costs its values, not the air.
std::string MakeMachineFolder(const CommandLine& line) {
  const std::string folder = line.machine.empty() ? DefaultMachineFolder() : line.machine;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    std::fprintf(stderr, "zemoradio: cannot make the machine folder %s: %s\n", folder.c_str(),
                 error.message().c_str());
  return folder;
}

// The output device that the machine's settings chose by its number, for a run that names none;
// empty for the system's own choice.
std::string ChosenDevice(const LocalFolder& machine) {
  try {
    const auto bytes = machine.Read("ZemoAudio.Ini");
    if (!bytes) return {};
    const std::vector<SideField> fields = ReadFields(DecodeSideFile(*bytes));
    if (fields.empty() || fields[0].AsInt(-1) < 0) return {};
    const std::vector<std::string> names = OutputDeviceNames();
    const auto number = static_cast<size_t>(fields[0].AsInt(-1));
    return number < names.size() ? names[number] : std::string();
  } catch (const FileError&) {
    return {};  // the load of the station tells of it
  }
}

// Stopped, and all that was to be heard has been heard.
bool Drained(const Station& station) {
  return !station.engine.IsRunning && station.platform.sound.State() == OutputState::kClosed;
}

// From the first order to stop to the end of the run.
class RunEnd {
 public:
  RunEnd(RealStation& real, RunDisplay& display, std::optional<int64_t> forMs)
      : real_(real), display_(display) {
    if (forMs) endMs_ = real.clock.MonotonicMs() + *forMs;
  }

  // SIGINT or SIGTERM: the first stops and drains, the second leaves at once.
  void OnSignal() {
    if (asked_) LeaveAtOnce();
    Ask();
  }

  // Every kWatchMs.
  void Watch() {
    if (!asked_ && endMs_ && real_.clock.MonotonicMs() >= *endMs_) Ask();
    if (asked_ && Drained(real_.station)) real_.loop.Quit();
  }

 private:
  void Ask() {
    asked_ = true;
    StartStopZemoRadio(real_.station, false);
    if (!Drained(real_.station)) display_.ShowLine("stopping: what is on air plays to its end");
  }

  // Whatever routine waits below this one on the stack is not gone back to.
  [[noreturn]] void LeaveAtOnce() {
    display_.Finish();
    real_.sound->Stop();
    real_.sound->Close();
    WriteZemoOnOff(real_.station, '0');
    _exit(0);
  }

  RealStation& real_;
  RunDisplay& display_;
  std::optional<int64_t> endMs_;
  bool asked_ = false;
};
}  // namespace

int RunOnAir(const CommandLine& line) {
  auto output = ParseOutputSpec(line.output);
  if (!output) throw UsageError("--output: '" + line.output + "' is no output");
  std::signal(SIGPIPE, SIG_IGN);  // who listens to our lines may leave; the air goes on
  EndSignals endSignals;          // before any thread is made
  RunDisplay display(STDOUT_FILENO);
  const std::string stationPath = MakeStationFolder(line);
  const std::string machinePath = MakeMachineFolder(line);
  if (output->kind == OutputSpec::Kind::kDevice && output->name.empty())
    output->name = ChosenDevice(LocalFolder(machinePath));
  RealStation real(stationPath, machinePath, *output,
                   [&](const std::string& notice) { display.ShowFault(notice); });
  Station& station = real.station;
  display.Show(station);
  station.events.SetSink(&display);

  if (!Form_Load(station)) return 1;
  Form_Activate(station, true);
  if (!station.engine.IsRunning) ToolbarButton(station, Toolbar::kStart);

  RunEnd end(real, display, line.forMs);
  endSignals.Deliver([&] { end.OnSignal(); });
  const auto watch = real.loop.MakeTimer(kWatchMs, [&] { end.Watch(); });
  watch->SetEnabled(true);
  const auto status = real.loop.MakeTimer(kStatusMs, [&] { display.ShowStatus(); });
  status->SetEnabled(true);
  real.loop.Run();

  display.Finish();
  station.events.SetSink(nullptr);
  Quitter(station);
  return 0;
}

}  // namespace zemo
