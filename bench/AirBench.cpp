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
#include <fstream>
#include <string>
#include <vector>

#include "AirWatch.h"
#include "BigLibrary.h"
#include "app/RealStation.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"
#include "store/StationBase.h"

namespace {

constexpr int kReportRows = 200000;
constexpr int kSounds = 10;
constexpr int kTitleSec = 6;
constexpr int kExitMs = 1000;

// Noise, 44.1 kHz stereo 16-bit.
void MakeSound(const std::string& path) {
  constexpr uint32_t kRate = 44100, kBytes = kRate * 4 * kTitleSec;
  const auto little = [](uint32_t number, int size) {
    std::string text;
    for (int i = 0; i < size; ++i) text += static_cast<char>(number >> (8 * i));
    return text;
  };
  std::string samples(kBytes, '\0');
  unsigned noise = 1;
  for (size_t i = 1; i < samples.size(); i += 2) {
    noise = noise * 1664525U + 1013904223U;
    samples[i] = static_cast<char>(noise >> 29);
  }
  std::ofstream(path, std::ios::binary)
      << "RIFF" + little(36 + kBytes, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
             little(2, 2) + little(kRate, 4) + little(kRate * 4, 4) + little(4, 2) + little(16, 2) +
             "data" + little(kBytes, 4)
      << samples;
}

// One genre has a share, so that a request lists a title of each variety and comes again soon; all
// genres are in its query.
void MakeStation(const std::string& folder, int cards, bool starving) {
  std::filesystem::create_directories(folder);
  for (int i = 0; i < kSounds; ++i) MakeSound(folder + "/sound" + std::to_string(i) + ".wav");
  const std::string path = folder + "/Triskin.MDB";
  {
    zemo::StationBase base(path);
    base.OpenOrCreateDatabase();
    base.CreateMissingTables([](const std::string&, int, const std::string&) { std::abort(); });
    base.OpenAllTables();
    base.SeedFixedRows();
    base.Close();
  }
  std::vector<std::string> statements = zemo::bench::ModelsSql();
  statements.push_back(zemo::bench::CardsSql(cards));
  statements.push_back(zemo::bench::ReportSql(kReportRows));
  std::string noShare = "UPDATE Models SET JOUR = JOUR";
  for (int hour = 0; hour < 24; ++hour) noShare += ", TRANCHE" + zemo::TwoDigits(hour) + " = 0";
  statements.push_back(noShare + " WHERE GENRE <> 'GENRE 0'");
  statements.push_back(
      "UPDATE Discotheque SET FILENAME = '" + folder + "/sound' || (CODE % " +
      std::to_string(kSounds) + ") || '.wav', DUREE = " + std::to_string(kTitleSec * 1000) +
      ", POINTSORTIE = " + std::to_string(kExitMs) + ", INTRO = 0, ECARTMINUTES = 1");
  statements.push_back("UPDATE Cnf SET TempRequette = 1, DecalDiff = 0, EcartArtiste = 3");
  if (starving)
    statements.push_back(
        "UPDATE Discotheque SET NBPASSJOUR = 0 WHERE CODE NOT IN (SELECT CODE FROM Discotheque "
        "WHERE GENRE = 'GENRE 0' ORDER BY LASTDIFF LIMIT 6)");
  zemo::bench::Execute(path, statements);
}

void Air(const std::string& folder, int seconds, const char* run) {
  zemo::ScreenlessMachine machine;
  zemo::RealStation real(
      folder + "/station", folder + "/machine", {zemo::OutputSpec::Kind::kNull, ""},
      machine.Parts(), [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
  if (!zemo::Form_Load(real.station)) std::abort();
  zemo::Form_Activate(real.station, true);
  zemo::bench::AirWatch watch(real);
  real.station.events.SetSink(&watch);
  zemo::ToolbarButton(real.station, zemo::Toolbar::kStart);
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
