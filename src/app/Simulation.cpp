#include "app/Simulation.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <vector>

#include "app/ChoicesFile.h"
#include "app/Moments.h"
#include "app/Orders.h"
#include "app/PrivateCopy.h"
#include "app/Script.h"
#include "app/SimStation.h"
#include "app/StationPaths.h"
#include "app/TempFolder.h"
#include "app/Trace.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/EngineLock.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {

namespace {
constexpr int kKilledStatus = 137;
constexpr int64_t kDefaultLengthMs = 3'600'000;

// To the second, as a begin is written.
LocalDateTime BeginOf(const SimulateOptions& options) {
  if (options.from) return *options.from;
  LocalDateTime now = RealClock().LocalNow();
  now.millisecond = 0;
  return now;
}

std::vector<ScriptOrder> ScriptOf(const SimulateOptions& options, const LocalDateTime& begin) {
  if (options.script.empty()) return {};
  try {
    const auto text = ReadWholeFile(options.script);
    if (!text) throw UsageError("--script: there is no file " + options.script);
    return ParseScript(*text, begin, options.script, Orders());
  } catch (const FileError& error) {
    throw UsageError(std::string("--script: ") + error.what());
  } catch (const ScriptError& error) {
    throw UsageError(error.what());
  }
}

// Without a word on it, an hour, or up to the script's last order when that comes later.
int64_t LengthOf(const SimulateOptions& options, const std::vector<ScriptOrder>& orders) {
  if (options.forMs) return *options.forMs;
  return std::max(kDefaultLengthMs, orders.empty() ? 0 : orders.back().atMs);
}

// The folders that a run works in, and how their paths are told: as if the station itself were
// worked on, so that two runs tell the same.
class Workplace {
 public:
  explicit Workplace(const SimulateOptions& options) {
    const std::string station = AskedStationFolder(options.station);
    folders_ = {.station = station, .machine = options.machine, .copiedFrom = {}, .changed = {}};
    if (options.inPlace && !options.machine.empty()) {
      lock_.emplace(options.machine, station);
      return;
    }

    temp_.emplace();
    folders_.machine = temp_->MakeFolder("machine");
    if (options.inPlace) return;
    if (!options.machine.empty()) CopyMachine(options.machine, folders_.machine);
    folders_.station = temp_->MakeFolder("station");
    folders_.changed = temp_->MakeFolder("changed") + "/";
    folders_.copiedFrom = LocalFolder(station).Path();
    CopyStation(station, folders_.station, options.machine);
  }

  const SimFolders& Folders() const { return folders_; }

  // Path of a place of the run and what stands for it.
  ShownPaths PathsToShow(const SimulateOptions& options) const {
    ShownPaths paths;
    if (!temp_) return paths;
    if (!folders_.copiedFrom.empty())
      paths.emplace_back(folders_.station + "/", folders_.copiedFrom);
    const std::string machine =
        options.machine.empty() ? "machine/" : LocalFolder(options.machine).Path();
    paths.emplace_back(folders_.machine + "/", machine);
    paths.emplace_back(temp_->Path() + "/", "");
    return paths;
  }

  void Remove() const {
    if (temp_) temp_->Remove();
  }

 private:
  std::optional<TempFolder> temp_;
  std::optional<EngineLock> lock_;  // where the machine's own folder is worked in
  SimFolders folders_;
};

void StartOrders(const SimulateOptions& options, Station& station) {
  if (!OnAir::Form_Load(station)) throw std::runtime_error("the station could not be loaded");
  // A copy that goes with the run need not outlive a loss of power, and need not wait for the disk.
  if (!options.inPlace && station.base.IsOpen()) {
    station.base.Db().Execute("PRAGMA synchronous = OFF");
    station.base.Db().Execute("PRAGMA journal_mode = MEMORY");
    station.base.Db().KeepAlone();
  }
  OnAir::Form_Activate(station, true);
  if (!options.noStart && !station.engine.IsRunning)
    OnAir::Toolbar_ButtonClick(station, Toolbar::kStart);
}

// A run of which nothing stays but its trace.
bool IsForItsTrace(const SimulateOptions& options, bool hasSink) {
  return !options.inPlace && options.choices.empty() && !hasSink;
}

[[noreturn]] void Kill(Trace& trace, ChoicesFile* choices, const Workplace& place) {
  try {
    trace.Flush();
    if (choices) choices->Flush();
  } catch (const std::exception&) {
    // nobody is left to tell
  }
  place.Remove();
  _exit(kKilledStatus);
}

void RunSimulation(const SimulateOptions& options, const std::vector<ScriptOrder>& orders,
                   const Workplace& place, SimStation& sim, Trace& trace, ChoicesFile* choices) {
  Station& station = sim.station;
  station.events.SetSink(choices ? static_cast<EventSink*>(choices) : &trace);
  if (choices)
    station.requests.choices.heard = [choices](const std::string& told) {
      choices->KeepRequest(told);
    };
  sim.killed = [&] { Kill(trace, choices, place); };
  // The orders due at the begin are served behind the start order, which itself can take time.
  const auto queue = [&](bool atBegin) {
    for (const ScriptOrder& order : orders)
      if ((order.atMs == 0) == atBegin)
        sim.loop.At(order.atMs, [&] { ServeOrder(sim, order.given); });
  };
  queue(false);
  StartOrders(options, station);
  queue(true);
  sim.loop.RunUntil(LengthOf(options, orders));
  // What is undone behind the end of the run is no event of it.
  station.events.SetSink(nullptr);
  station.requests.choices.heard = nullptr;
}
}  // namespace

void Simulate(const SimulateOptions& options, std::unique_ptr<SoundOpener> opener,
              const std::function<SimSoundChain::Sink()>& makeSink) {
  const LocalDateTime begin = BeginOf(options);
  const std::vector<ScriptOrder> orders = ScriptOf(options, begin);
  std::signal(SIGPIPE, SIG_IGN);  // a reader that leaves must not leave our folder behind
  const Workplace place(options);
  const ShownPaths shownPaths = place.PathsToShow(options);
  try {
    SimStation sim(place.Folders(), begin, std::move(opener));
    Trace trace(options.trace, sim.loop);
    trace.ShowPathsAs(shownPaths);
    if (IsForItsTrace(options, makeSink != nullptr))
      trace.readerLeft = [&place] {
        place.Remove();
        _exit(0);
      };
    std::optional<ChoicesFile> choices;
    if (!options.choices.empty()) choices.emplace(options.choices, trace);
    if (makeSink) sim.sound.SetSink(makeSink());
    RunSimulation(options, orders, place, sim, trace, choices ? &*choices : nullptr);
    sim.sound.FlushSink();
    trace.Flush();
    if (choices) choices->Flush();
  } catch (const std::exception& error) {
    throw std::runtime_error(WithShownPaths(error.what(), shownPaths));
  }
}

}  // namespace zemo
