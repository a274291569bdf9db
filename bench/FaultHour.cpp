// Does the machine ever hold the air? A station with titles of a quarter of a minute airs in real
// time while other processes lock its base (exclusively, for writing, by a reader; up to a minute),
// fill its disk, take sound files and side files away and put them back, and unload the module of
// its sound device: a null sink of a PulseAudio of the run's own where pulseaudio is installed, so
// that the device is a real one; else, and with `null`, the null output, whose device nobody can
// take. The station stands on a small tmpfs of the run's own; where the system refuses to mount
// one, the disk is not filled, and the figures say so. All troubles end before the last quiet time,
// in which what was kept is written.
//
// Prints a table; ends with status 1 when a bound is broken: every element begins within a tick and
// 100 ms of its predecessor's exit point (a tick more for each lost file between them), no silence
// is longer than the emergency folder allows, and each element has its row, once and in its order.
//
// Usage: FaultHour [SECONDS] [--seed N] [--null | --device NAME]
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "AirWatch.h"
#include "Figures.h"
#include "OwnSink.h"
#include "ReportCheck.h"
#include "ShortStation.h"
#include "SmallDisk.h"
#include "Troubles.h"
#include "app/RealStation.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"

namespace {

using zemo::bench::AirWatch;
using zemo::bench::OwnSink;
using zemo::bench::ReportCheck;
using zemo::bench::Troubles;

constexpr int kTickMs = 100;
constexpr int kLateMs = kTickMs + 100;  // the bound of a transition
constexpr int kSilenceMs = 5000;        // the bound of a silence
constexpr int kTitleMs = 15000;
constexpr int kSounds = 11;  // shares no factor with the genres: all are played
constexpr int kDiskMb = 96;
constexpr int kMemoryPoints = 60;

struct Wish {
  int seconds = 3600;
  unsigned seed = std::random_device{}();
  bool null = false;
  std::string device;  // of the machine, which nobody takes away
};

std::optional<Wish> ReadWish(int argc, char** argv) {
  Wish wish;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--null")
      wish.null = true;
    else if (word == "--device" && i + 1 < argc)
      wish.device = argv[++i];
    else if (word == "--seed" && i + 1 < argc)
      wish.seed = static_cast<unsigned>(std::strtoul(argv[++i], nullptr, 10));
    else if (std::atoi(argv[i]) > 0)
      wish.seconds = std::atoi(argv[i]);
    else
      return std::nullopt;
  }
  return wish;
}

// Without a title that comes again within the hour.
void MakeStation(const std::string& folder) {
  const std::string station = folder + "/station";
  zemo::bench::MakeShortStation(station, {.cards = 12000,
                                          .sounds = kSounds,
                                          .titleMs = kTitleMs,
                                          .restMinutes = 240,
                                          .requestMinutes = 20});
  zemo::bench::AllowEveryTitle(station);
  std::filesystem::create_directories(folder + "/machine/Secours");
  for (const char* name : {"a.wav", "b.wav"})
    zemo::test::MakeNoiseSound(folder + "/machine/Secours/" + name, kTitleMs);
}

struct Listener : zemo::EventSink {
  Listener(AirWatch& toWatch, ReportCheck& toReport) : watch(toWatch), report(toReport) {}
  void OnEvent(const zemo::Event& event) override {
    watch.OnEvent(event);
    report.OnEvent(event);
  }
  AirWatch& watch;
  ReportCheck& report;
};

// The lines of the log by routine and number, without the time and the text.
std::map<std::string, int> LogLines(const std::string& station) {
  std::map<std::string, int> kinds;
  std::ifstream log(station + "/Messages.Txt");
  for (std::string line; std::getline(log, line);) {
    const size_t place = line.find('\t');
    const size_t text = line.find('\t', line.find('\t', place + 1) + 1);
    if (place == std::string::npos || text == std::string::npos) continue;
    std::string kind = line.substr(place + 1, text - place - 1);
    std::replace(kind.begin(), kind.end(), '\t', ' ');
    ++kinds[kind];
  }
  return kinds;
}

// --- the table ---

std::string Ms(int64_t ms) {
  return std::to_string(ms) + " ms";
}

void TellLine(const char* what, const std::string& figures, const std::string& bound = "") {
  std::printf("| %s | %s | %s |\n", what, figures.c_str(), bound.c_str());
}

// True when all transitions are within their bound.
bool TellTransitions(const AirWatch& watch) {
  std::vector<int64_t> plain, behindLost;
  int beyond = 0;
  for (const auto& late : watch.Begun()) {
    (late.skipped > 0 ? behindLost : plain).push_back(late.ms);
    beyond += late.ms > kLateMs + late.skipped * kTickMs ? 1 : 0;
  }
  std::sort(plain.begin(), plain.end());
  std::sort(behindLost.begin(), behindLost.end());
  TellLine("transitions", std::to_string(plain.size() + behindLost.size()));
  if (!plain.empty())
    TellLine("begun behind the exit point: median, 99 of 100, most",
             Ms(plain[plain.size() / 2]) + ", " + Ms(plain[plain.size() * 99 / 100]) + ", " +
                 Ms(plain.back()),
             Ms(kLateMs));
  TellLine(
      "the same with a lost file between: how many, most",
      std::to_string(behindLost.size()) + (behindLost.empty() ? "" : ", " + Ms(behindLost.back())),
      "100 ms more a file");
  TellLine("transitions beyond the bound", std::to_string(beyond), "0");
  if (!watch.LateAt().empty()) std::fprintf(stderr, "latest during: %s\n", watch.LateAt().c_str());
  return beyond == 0;
}

bool TellReport(const ReportCheck& report) {
  const ReportCheck::Figures figures = report.Compare();
  TellLine("elements that went on air, rows in the report",
           std::to_string(figures.elements) + ", " + std::to_string(figures.rows));
  TellLine("rows missing, too many, out of order",
           std::to_string(figures.missing) + ", " + std::to_string(figures.extra) + ", " +
               std::to_string(figures.disordered),
           "0, 0, 0");
  return figures.missing == 0 && figures.extra == 0 && figures.disordered == 0;
}

void TellTroubles(const Troubles& troubles) {
  for (int i = 0; i < zemo::bench::kTroubles; ++i) {
    const Troubles::Figures& figures = troubles.Of(i);
    TellLine(zemo::bench::kTroubleNames[static_cast<size_t>(i)],
             std::to_string(figures.times) + " times, " + std::to_string(figures.allMs / 1000) +
                 " s, longest " + std::to_string(figures.mostMs / 1000) + " s");
  }
}

// True when no bound is broken.
bool Tell(zemo::RealStation& real, const AirWatch& watch, const ReportCheck& report,
          const Troubles& troubles, const std::vector<double>& mb, const std::string& station) {
  std::printf("| Figure | Measured | Bound |\n|---|---|---|\n");
  bool good = TellTransitions(watch);
  const int64_t silenceMs = watch.LongestSilenceMs();
  TellLine("longest silence", Ms(silenceMs), Ms(kSilenceMs));
  good = good && silenceMs <= kSilenceMs;
  good = TellReport(report) && good;
  const zemo::SoundHealth health = real.sound->TakeHealth();
  TellLine("underruns, late frames",
           std::to_string(health.underruns) + ", " + std::to_string(health.lateFrames));
  TellLine("longest absence of the event loop", Ms(watch.AwayMs()));
  const std::map<std::string, int> lines = LogLines(station);
  int logged = 0;
  for (const auto& [kind, count] : lines) logged += count;
  TellLine("lines in the log", std::to_string(logged));
  if (!mb.empty()) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f, %.1f, %.1f MB", mb.front(), mb.back(),
                  *std::max_element(mb.begin(), mb.end()));
    TellLine("memory: first, last, most", text);
  }
  TellTroubles(troubles);
  std::printf("\n");
  for (const auto& [kind, count] : lines) std::printf("%d x %s\n", count, kind.c_str());
  return good && !watch.Begun().empty();
}

// The run itself. True when no bound is broken.
bool Air(const std::string& folder, const Wish& wish, const zemo::OutputSpec& output,
         Troubles& troubles) {
  const std::string station = folder + "/station";
  zemo::ScreenlessMachine machine;
  zemo::RealStation real(
      station, folder + "/machine", output, machine.Parts(),
      [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
  if (!zemo::OnAir::Form_Load(real.station)) std::abort();
  zemo::OnAir::Form_Activate(real.station, true);
  AirWatch watch(real);
  ReportCheck report(station + "/Triskin.MDB");
  Listener listener(watch, report);
  real.station.events.SetSink(&listener);
  zemo::OnAir::Toolbar_ButtonClick(real.station, zemo::Toolbar::kStart);

  std::vector<double> mb;
  const int quietSec = std::clamp(wish.seconds / 4, 20, 60);
  const auto after = [&real](int ms, std::function<void()> work) {
    auto timer = real.loop.MakeTimer(ms, std::move(work));
    timer->SetEnabled(true);
    return timer;
  };
  const auto look = after(50, [&] { watch.doing = troubles.Now(); });
  const auto memory = after(std::max(1000, wish.seconds * 1000 / kMemoryPoints),
                            [&mb] { mb.push_back(zemo::bench::ResidentMb()); });
  const auto quiet = after(wish.seconds * 1000, [&] { troubles.Over(); });
  const auto end = after((wish.seconds + quietSec) * 1000, [&real] { real.loop.Quit(); });
  troubles.Begin();
  real.loop.Run();
  real.station.events.SetSink(nullptr);
  std::printf("of these %d s a last quiet time without troubles\n\n", quietSec);
  return Tell(real, watch, report, troubles, mb, station);
}

// What must not happen to the air either: its process dies.
bool AirInItsProcess(const std::string& folder, const Wish& wish, const zemo::OutputSpec& output,
                     Troubles& troubles) {
  const pid_t child = fork();
  if (child == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool good = Air(folder, wish, output, troubles);
    std::fflush(stdout);
    _exit(good ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFSIGNALED(status)) std::printf("the air died by signal %d\n", WTERMSIG(status));
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::optional<Wish> wish = ReadWish(argc, argv);
  if (!wish) {
    std::fprintf(stderr, "usage: %s [SECONDS] [--seed N] [--null | --device NAME]\n", argv[0]);
    return 2;
  }
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-fault-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  for (const char* name : {"/disk", "/server"}) std::filesystem::create_directories(folder + name);
  const std::string refused = zemo::bench::MountSmallDisk(folder + "/disk", kDiskMb);

  const bool own = !wish->null && wish->device.empty() && OwnSink::Installed();
  std::unique_ptr<OwnSink> sink;
  if (own) sink = std::make_unique<OwnSink>(folder + "/server");
  MakeStation(folder + "/disk");
  Troubles troubles(folder + "/disk/station", wish->seed,
                    std::min<int64_t>(60000, int64_t{wish->seconds} * 1000 / 4));
  troubles.Prepare(refused.empty(), own ? OwnSink::Unload : nullptr, own ? OwnSink::Load : nullptr);

  zemo::OutputSpec output{zemo::OutputSpec::Kind::kNull, ""};
  if (own || !wish->device.empty()) output = {zemo::OutputSpec::Kind::kDevice, wish->device};
  std::printf("%d s, seed %u, titles of %d s\n", wish->seconds, wish->seed, kTitleMs / 1000);
  std::printf("output: %s\n", own                    ? "a PulseAudio null sink of its own"
                              : wish->device.empty() ? "none"
                                                     : wish->device.c_str());
  std::printf("disk: %s\n", refused.empty()
                                ? ("a tmpfs of " + std::to_string(kDiskMb) + " MB").c_str()
                                : ("not filled, no tmpfs: " + refused).c_str());
  std::fflush(stdout);
  const bool good = AirInItsProcess(folder + "/disk", *wish, output, troubles);
  if (!good) std::printf("a bound is broken\n");
  std::fflush(stdout);
  troubles.End();
  sink.reset();
  if (refused.empty()) umount2((folder + "/disk").c_str(), MNT_DETACH);
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return good ? 0 : 1;
}
