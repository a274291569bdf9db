// `zemoradio run`: on air in real time without a screen, until SIGINT or SIGTERM, which stop and
// drain.
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "app/BackgroundMeasuring.h"
#include "app/Commands.h"
#include "app/EndSignals.h"
#include "app/LibraryKeeping.h"
#include "app/RealStation.h"
#include "app/RunDisplay.h"
#include "app/RunEnd.h"
#include "app/RunFolders.h"
#include "app/demo/LocaleLanguage.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"

namespace zemo {

namespace {
constexpr int kStatusMs = 1000;
}  // namespace

int RunOnAir(const AirOptions& options) {
  AskedOutput(options);           // refused before anything is made
  std::signal(SIGPIPE, SIG_IGN);  // who listens to our lines may leave; the air goes on
  EndSignals endSignals;          // before any thread is made
  RunDisplay display(STDOUT_FILENO);
  const RunFolders folders = MakeRunFolders(options);
  ScreenlessMachine machine;
  RealStation real(folders.station, folders.machine, WantedOutput(options, folders.machine),
                   machine.Parts(), [&](const std::string& notice) { display.ShowFault(notice); });
  Station& station = real.station;
  display.Show(station);
  station.events.SetSink(&display);

  station.engine.keptAir.wanted = true;
  const bool first = HoldsNoBase(station);
  if (!OnAir::Form_Load(station)) return 1;
  if (first) GiveNewStationItsLanguage(station);
  const LibraryKeeping libraryKeeping(station);  // ahead of the first request
  OnAir::Form_Activate(station, true);
  if (!station.engine.IsRunning) OnAir::Toolbar_ButtonClick(station, Toolbar::kStart);

  const BackgroundMeasuring measuring(station);
  RunEnd end(real, options,
             {.drained = [&] { real.loop.Quit(); },
              .leaving = [&] { display.Finish(); },
              .line = [&](const std::string& line) { display.ShowLine(line); }});
  endSignals.Deliver([&] { end.OnSignal(); });
  const auto status = real.loop.MakeTimer(kStatusMs, [&] { display.ShowStatus(); });
  status->SetEnabled(true);
  real.loop.Run();

  display.Finish();
  station.events.SetSink(nullptr);
  EndInOrder(station);
  return EndStatus(station);
}

}  // namespace zemo
