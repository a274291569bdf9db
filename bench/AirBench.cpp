// Does a request ever make the next element late? A station with 100,000 cards and a report of
// 200,000 rows is on air in real time, as `zemoradio run --output null` is, with titles of six
// seconds that leave a request for every second one. Told are how far each title had been read
// beyond its exit point when the next one began (target: never more than a tick, 100 ms), for how
// long the event loop was away, and what the output missed (target: nothing).
//
// Three times: with a library that gives what is asked, with one in which all but six titles are
// out of rotation, so that the list stays short and every tick asks again, and with the first one
// while another program writes to the base every second: to a card, and to another table. Of each
// is told how often the library in memory was known, of looks twice a second once it was read;
// behind a write it is known again with the next look of the tick or with the next request.
//
// Usage: AirBench [SECONDS_OF_EACH_RUN] [CARDS]
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "AirWatch.h"
#include "ShortStation.h"
#include "app/RealStation.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"
#include "library/KnownCards.h"

namespace {

constexpr int kReportRows = 200000;

enum class Form { kWhole, kStarving, kWrittenTo };
constexpr const char* kFormNames[] = {"the whole library in rotation", "six titles in rotation",
                                      "another program writes every second"};

void MakeStation(const std::string& folder, int cards, Form form) {
  zemo::bench::MakeShortStation(folder, {.cards = cards, .reportRows = kReportRows});
  if (form == Form::kStarving)
    zemo::bench::Execute(
        folder + "/Triskin.MDB",
        {"UPDATE Discotheque SET NBPASSJOUR = 0 WHERE CODE NOT IN (SELECT CODE FROM Discotheque "
         "WHERE GENRE = 'GENRE 0' ORDER BY LASTDIFF LIMIT 6)"});
}

// Until it is killed. The start compacts the base, and wants it for itself.
[[noreturn]] void WriteEverySecond(const std::string& folder, int cards) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  constexpr int kStartSeconds = 8;
  sleep(kStartSeconds);
  for (int second = 0;; ++second) {
    sleep(1);
    zemo::bench::Ask(folder + "/Triskin.MDB",
                     second % 2
                         ? "UPDATE Cnf SET JingleCode = JingleCode + 1"
                         : "UPDATE Discotheque SET NBPASSJOUR = NBPASSJOUR + 1 WHERE CODE = " +
                               std::to_string(1 + second * 7919 % cards));
  }
}

void Air(const std::string& folder, int seconds, const char* run) {
  zemo::ScreenlessMachine machine;
  zemo::RealStation real(
      folder + "/station", folder + "/machine", {zemo::OutputSpec::Kind::kNull, ""},
      machine.Parts(), [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
  if (!zemo::OnAir::Form_Load(real.station)) std::abort();
  zemo::OnAir::Form_Activate(real.station, true);
  zemo::OnAir::Toolbar_ButtonClick(real.station, zemo::Toolbar::kStart);
  zemo::bench::AirWatch watch(real);  // from behind the start's request, ahead of the first tick
  real.station.events.SetSink(&watch);
  const auto end = real.loop.MakeTimer(seconds * 1000, [&] { real.loop.Quit(); });
  end->SetEnabled(true);
  int looks = 0, known = 0;
  const auto look = real.loop.MakeTimer(500, [&] {
    const bool now = zemo::CardsListedAlready(real.station).has_value();
    looks += now || looks > 0;  // from the first time on
    known += now;
  });
  look->SetEnabled(true);
  real.loop.Run();
  real.station.events.SetSink(nullptr);
  std::printf("%s\n", run);
  watch.Tell();
  std::printf("  library known                   %6.1f %%\n", 100.0 * known / std::max(looks, 1));
}

// Each run in a process of its own.
void Run(const std::string& folder, int seconds, int cards, Form form) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    MakeStation(folder + "/station", cards, form);
    std::filesystem::create_directories(folder + "/machine");
    const pid_t writer = form == Form::kWrittenTo ? fork() : -1;
    if (writer == 0) WriteEverySecond(folder + "/station", cards);
    Air(folder, seconds, kFormNames[static_cast<int>(form)]);
    if (writer > 0) kill(writer, SIGKILL);
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
  for (const Form form : {Form::kWhole, Form::kStarving, Form::kWrittenTo})
    Run(folder + "/run", seconds, cards, form);
  std::filesystem::remove_all(folder);
  return 0;
}
