// Does a request ever make the next element late? A station with 100,000 cards and a report of
// 200,000 rows is on air in real time, as `zemoradio run --output null` is, with titles of six
// seconds that leave a request for every second one. Told are how far each title had been read
// beyond its exit point when the next one began (target: never more than a tick, 100 ms), for how
// long the event loop was away, and what the output missed (target: nothing).
//
// Twice: with a library that gives what is asked, and with one in which all but six titles are out
// of rotation, so that the list stays short and every tick asks again.
//
// Usage: AirBench [SECONDS_OF_EACH_RUN] [CARDS]
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "AirWatch.h"
#include "ShortStation.h"
#include "app/RealStation.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"

namespace {

constexpr int kReportRows = 200000;

void MakeStation(const std::string& folder, int cards, bool starving) {
  zemo::bench::MakeShortStation(folder, {.cards = cards, .reportRows = kReportRows});
  if (starving)
    zemo::bench::Execute(
        folder + "/Triskin.MDB",
        {"UPDATE Discotheque SET NBPASSJOUR = 0 WHERE CODE NOT IN (SELECT CODE FROM Discotheque "
         "WHERE GENRE = 'GENRE 0' ORDER BY LASTDIFF LIMIT 6)"});
}

void Air(const std::string& folder, int seconds, const char* run) {
  zemo::ScreenlessMachine machine;
  zemo::RealStation real(
      folder + "/station", folder + "/machine", {zemo::OutputSpec::Kind::kNull, ""},
      machine.Parts(), [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
  if (!zemo::OnAir::Form_Load(real.station)) std::abort();
  zemo::OnAir::Form_Activate(real.station, true);
  zemo::bench::AirWatch watch(real);
  real.station.events.SetSink(&watch);
  zemo::OnAir::Toolbar_ButtonClick(real.station, zemo::Toolbar::kStart);
  const auto end = real.loop.MakeTimer(seconds * 1000, [&] { real.loop.Quit(); });
  end->SetEnabled(true);
  real.loop.Run();
  real.station.events.SetSink(nullptr);
  std::printf("%s\n", run);
  watch.Tell();
}

// Each run in a process of its own.
void Run(const std::string& folder, int seconds, int cards, bool starving) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    MakeStation(folder + "/station", cards, starving);
    std::filesystem::create_directories(folder + "/machine");
    Air(folder, seconds, starving ? "six titles in rotation" : "the whole library in rotation");
    std::fflush(stdout);
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  std::filesystem::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 120;
  const int cards = argc > 2 ? std::atoi(argv[2]) : 100000;
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-bench-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  for (const bool starving : {false, true}) Run(folder + "/run", seconds, cards, starving);
  std::filesystem::remove_all(folder);
  return 0;
}
