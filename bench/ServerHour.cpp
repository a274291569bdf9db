// Three programs of a station on one server, and everything that can happen to a server: does the
// air ever wait for it, and is any row lost or doubled? The air plays titles of six seconds in real
// time into the null output; a production desk edits cards, lists, campaigns and a setting every
// one to three seconds on a replica of its own; a desk for reports has a replica, too, and runs the
// commands `report` and `affidavit` on the server.
//
// The server is one of the run's own, on a small disk, behind a line of ours. At moments that hang
// on the seed alone it is killed, restarted, made slow (0 to 2 s each way), its disk filled, its
// connections cut or silent; and one of the programs is killed and started again. All ends before
// the last quiet time. Then everything that a program noted in a list of its own, beside the base,
// has to be on the server once and as it was written last, and the server and the three replicas
// have to be alike table by table.
//
// Prints a table; ends with status 1 when a bound is broken: a transition later than a tick and
// 100 ms, a row lost, doubled or refused, tables that differ, a command that ends without its line.
//
// Longer than other files: the three programs and what happens to them stand together, since nobody
// else has a use for one.
//
// Usage: ServerHour [--seconds N] [--seed N]
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "AirWatch.h"
#include "AlikeBases.h"
#include "HourBoard.h"
#include "OwnList.h"
#include "ShortStation.h"
#include "SlowLine.h"
#include "SmallDisk.h"
#include "app/RealStation.h"
#include "app/ServerLink.h"
#include "engine/OperatorControls.h"
#include "engine/Startup.h"
#include "store/Recordset.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/Child.h"
#include "support/TestServer.h"

namespace {

using zemo::bench::HourBoard;
using zemo::bench::MonotonicMs;
using zemo::bench::OwnList;
using zemo::test::TestServer;

constexpr int kTickMs = 100;
constexpr int kLateMs = kTickMs + 100;  // the bound of a transition
constexpr int kDiskMb = 400;
constexpr int kCards = 3000;
constexpr int kRows = 5000;       // of the report, before the run
constexpr int kSettledMs = 5000;  // an element has its row by then
constexpr int kWellMs = 12000;    // behind a trouble: all lines are made again
constexpr int kEndSeconds = 120;  // bound of each step of the end

struct Wish {
  int seconds = 3600;
  unsigned seed = std::random_device{}();
};

std::optional<Wish> ReadWish(int argc, char** argv) {
  Wish wish;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string_view word = argv[i];
    if (word == "--seconds")
      wish.seconds = std::atoi(argv[i + 1]);
    else if (word == "--seed")
      wish.seed = static_cast<unsigned>(std::strtoul(argv[i + 1], nullptr, 10));
    else
      return std::nullopt;
  }
  return argc % 2 == 1 && wish.seconds > 0 ? std::optional(wish) : std::nullopt;
}

// The folders of a run.
struct Places {
  std::string folder;
  std::string Station() const { return folder + "/station"; }
  std::string MachineOf(int machine) const {
    return folder + "/" + zemo::bench::kMachineNames[static_cast<size_t>(machine)];
  }
  std::string ListOf(int machine) const { return MachineOf(machine) + ".list"; }
  std::string Disk() const { return folder + "/disk"; }
  std::string Server() const { return Disk() + "/server"; }
  std::string Line() const { return folder + "/line"; }
  std::string Url() const { return "postgresql://radio@/station?host=" + Line(); }
};

void Pass(int ms) {
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

void NoteLink(HourBoard& board, int machine, const zemo::BaseLinkState& state) {
  const auto at = static_cast<size_t>(machine);
  board.reachable[at] = state.reachable;
  board.waiting[at] = state.waiting;
  zemo::bench::KeepMost(board.longestQueue[at], state.waiting);
}

// --- the air ---

// The rows of the report in the replica, into the list; and how many elements are to have one.
class AiredRows : public zemo::EventSink {
 public:
  AiredRows(zemo::RealStation& real, HourBoard& board, const std::string& list)
      : real_(real), board_(board), list_(list), watch_(real) {
    for (const auto& [key, values] : OwnList::Read(list))
      last_ = std::max<int64_t>(last_, std::atoll(key.c_str() + key.find(' ')));
    if (last_ == 0) last_ = Ask("SELECT MAX(CODE) FROM Rapport", {});
  }

  void OnEvent(const zemo::Event& event) override {
    watch_.OnEvent(event);
    if (event.name == "start" && event.Number("slot") <= 1) startedMs_.push_back(MonotonicMs());
    for (; told_ < watch_.Begun().size(); ++told_) {
      const auto& late = watch_.Begun()[told_];
      board_.late.Add(late.ms);
      if (late.ms > kLateMs + late.skipped * kTickMs) ++board_.beyond;
    }
  }

  void Look() {
    watch_.doing = board_.trouble < zemo::bench::kHourTroubles
                       ? zemo::bench::kHourTroubleNames[static_cast<size_t>(board_.trouble.load())]
                       : "";
    NoteLink(board_, zemo::bench::kAir, real_.serverLink->State());
    zemo::bench::KeepMost(board_.awayMs, watch_.AwayMs());
    while (!startedMs_.empty() && startedMs_.front() + kSettledMs < MonotonicMs()) {
      startedMs_.pop_front();
      ++board_.elements;
    }
  }

  void ListRows() {
    try {
      const auto rows = real_.station.base.Db().OpenRecordset(
          "SELECT CODE, LADATE, HEURE, AUTEUR, TITRE FROM Rapport WHERE CODE > ? ORDER BY CODE",
          {last_});
      for (; !rows->Eof(); rows->MoveNext()) {
        last_ = zemo::AsInt(rows->Field(0));
        std::string value;
        for (int field = 1; field <= 4; ++field)
          value += (field > 1 ? "|" : "") + zemo::AsText(rows->Field(field));
        list_.Has("Rapport " + std::to_string(last_), value);
      }
    } catch (const zemo::StoreError&) {
      return;  // read at the next time
    }
  }

 private:
  int64_t Ask(const std::string& sql, const zemo::Values& values) {
    return zemo::AsInt(real_.station.base.Db().OpenRecordset(sql, values)->Field(0));
  }

  zemo::RealStation& real_;
  HourBoard& board_;
  OwnList list_;
  zemo::bench::AirWatch watch_;
  std::deque<int64_t> startedMs_;
  size_t told_ = 0;
  int64_t last_ = 0;
};

void Air(const Places& places, HourBoard& board) {
  zemo::ScreenlessMachine machine;
  zemo::RealStation real(
      places.Station(), places.MachineOf(zemo::bench::kAir), {zemo::OutputSpec::Kind::kNull, ""},
      machine.Parts(),
      [](const std::string& line) { std::fprintf(stderr, "air: %s\n", line.c_str()); });
  if (!zemo::OnAir::Form_Load(real.station)) std::abort();
  zemo::OnAir::Form_Activate(real.station, true);
  AiredRows rows(real, board, places.ListOf(zemo::bench::kAir));
  real.station.events.SetSink(&rows);
  if (!real.station.engine.IsRunning)
    zemo::OnAir::Toolbar_ButtonClick(real.station, zemo::Toolbar::kStart);
  const auto look = real.loop.MakeTimer(50, [&] {
    rows.Look();
    if (board.step >= zemo::bench::kAirEnds) real.loop.Quit();
  });
  const auto list = real.loop.MakeTimer(500, [&] { rows.ListRows(); });
  look->SetEnabled(true);
  list->SetEnabled(true);
  real.loop.Run();
  real.station.events.SetSink(nullptr);
  rows.ListRows();
  zemo::EndInOrder(real.station);
}

// --- machines without an air ---

// A replica and what a desk has open of it.
class Desk {
 public:
  Desk(const Places& places, HourBoard& board, int machine)
      : board_(board),
        machine_(machine),
        link_(zemo::ServerPlace(places.Url()), places.MachineOf(machine)),
        base_(link_.Place().closed(std::make_shared<zemo::LockWait>(zemo::kBusyTimeoutMs))) {}

  // Null: there is no replica yet, or one that cannot be opened now.
  zemo::Database* Base() {
    for (const std::string& line : link_.TakeLines())
      std::fprintf(stderr, "%s: %s\n", zemo::bench::kMachineNames[static_cast<size_t>(machine_)],
                   line.c_str());
    NoteLink(board_, machine_, link_.State());
    try {
      if (!base_->IsOpen() || base_->FileIsLost()) base_->Open(false);
      return base_.get();
    } catch (const zemo::StoreError&) {
      return nullptr;
    }
  }
  // All is sent, and the end of the run is asked for.
  bool MayEnd() const {
    const zemo::BaseLinkState state = link_.State();
    return board_.step == zemo::bench::kAllEnd && state.reachable && state.waiting == 0;
  }

 private:
  HourBoard& board_;
  const int machine_;
  zemo::ServerLink link_;
  std::unique_ptr<zemo::Database> base_;
};

// What a production desk does, one write at a time.
class Production {
 public:
  Production(HourBoard& board, const std::string& list)
      : board_(board), list_(list), known_(OwnList::Read(list)) {
    random_.seed(static_cast<unsigned>(getpid()));
  }

  void WriteOnce(zemo::Database& base) {
    switch (Any(6)) {
      case 0:
      case 1:
        return AddCard(base);
      case 2:
        return ChangeCard(base);
      case 3:
        return AddNamed(base, "Playlist", "LIBELLE",
                        "INSERT INTO Playlist(LADATE, LHEURE, LIBELLE) VALUES('', ?, ?)");
      case 4:
        return AddNamed(base, "GrillePub", "ANNONCEUR",
                        "INSERT INTO GrillePub(CAMPAGNEDEPART, CAMPAGNEFIN, HDEPART, HFIN, "
                        "DECOUPEH1, FILENAMEAUDIO, PRIORITY, PUB, CONTACT, ANNONCEUR) "
                        "VALUES('01/01/2020', '02/01/2020', '00', '23', '00', '/none.wav', 10, -1, "
                        "?, ?)");
      default:
        return ChangeAired(base);
    }
  }

 private:
  int Any(int count) { return std::uniform_int_distribution<>(0, count - 1)(random_); }
  std::string Name() { return "own " + std::to_string(getpid()) + ' ' + std::to_string(++names_); }
  static std::string Mark() { return std::to_string(MonotonicMs()); }

  void Write(zemo::Database& base, const std::string& key, const std::string& value,
             const std::string& sql, const zemo::Values& values) {
    list_.Wants(key, value);
    try {
      base.Execute(sql, values);
    } catch (const zemo::StoreError& error) {
      std::fprintf(stderr, "production: %s\n", error.what());
      ++board_.refused;
      return list_.HasNot(key, value);
    }
    list_.Has(key, value);
    ++board_.writes;
    known_[key] = {value};
  }

  // Its artist tells when it was written.
  void AddCard(zemo::Database& base) {
    const std::string name = Name(), mark = Mark();
    Write(base, "Discotheque " + name, mark,
          "INSERT INTO Discotheque(FILENAME, DUREE, NBPASSJOUR, GENRE, AUTEUR, TITRE) "
          "VALUES('/none.wav', 1000, 0, 'GENRE 11', ?, ?)",
          {mark, name});
  }
  void AddNamed(zemo::Database& base, const std::string& table, const std::string&,
                const std::string& sql) {
    const std::string name = Name(), mark = std::to_string(Any(90000));
    Write(base, table + ' ' + name, mark, sql, {mark, name});
  }
  // One of its own: another artist, or gone. The artist of one that was just written is left, since
  // the other desk reads the time in it.
  void ChangeCard(zemo::Database& base) {
    std::vector<std::string> keys;
    for (const auto& [key, values] : known_)
      if (key.starts_with("Discotheque ") && !values.contains(OwnList::kGone)) keys.push_back(key);
    if (keys.size() < 8) return AddCard(base);
    const std::string& key = keys[static_cast<size_t>(Any(static_cast<int>(keys.size())))];
    const std::string name = key.substr(key.find(' ') + 1);
    if (Any(3) == 0)
      return Write(base, key, OwnList::kGone, "DELETE FROM Discotheque WHERE TITRE = ?", {name});
    const std::string mark = "changed " + std::to_string(Any(90000));
    Write(base, key, mark, "UPDATE Discotheque SET AUTEUR = ? WHERE TITRE = ?", {mark, name});
  }
  // A field of a title that the air plays, and so writes to; or the setting.
  void ChangeAired(zemo::Database& base) {
    const std::string mark = std::to_string(Any(90000));
    if (Any(3) == 0)
      return Write(base, "Cnf TextVeille", mark, "UPDATE Cnf SET TextVeille = ?", {mark});
    const int code = 1 + Any(kCards);
    Write(base, "Card " + std::to_string(code), mark,
          "UPDATE Discotheque SET REFERENCE = ? WHERE CODE = ?", {mark, int64_t{code}});
  }

  HourBoard& board_;
  OwnList list_;
  OwnList::Values known_;
  std::mt19937 random_;
  int names_ = 0;
};

void Produce(const Places& places, HourBoard& board) {
  Desk desk(places, board, zemo::bench::kProduction);
  Production production(board, places.ListOf(zemo::bench::kProduction));
  std::mt19937 random(static_cast<unsigned>(getpid()));
  while (!desk.MayEnd()) {
    const int64_t untilMs = MonotonicMs() + std::uniform_int_distribution<>(1000, 3000)(random);
    for (; MonotonicMs() < untilMs && !desk.MayEnd(); Pass(20)) desk.Base();
    zemo::Database* base = desk.Base();
    if (base && board.step < zemo::bench::kAirEnds) production.WriteOnce(*base);
  }
}

// The commands of a desk for reports, one behind the other, each a process.
class ReportCommands {
 public:
  ReportCommands(const Places& places, HourBoard& board) : places_(places), board_(board) {}

  void Look() {
    if (running_ && running_->Ended()) Judge();
    const bool rests = MonotonicMs() < nextMs_;
    if (!running_ && !rests && board_.step == zemo::bench::kRuns) Begin();
  }
  bool Rests() const { return !running_; }

 private:
  void Begin() {
    const std::time_t now = std::time(nullptr);
    char day[16];
    std::strftime(day, sizeof day, "%Y-%m-%d", std::localtime(&now));
    const std::string asked = ++times_ % 2 ? "report --stats" : "affidavit --advertiser own";
    running_ = std::make_unique<zemo::test::Child>(std::vector<std::string>{
        "setpriv", "--pdeathsig", "KILL", "sh", "-c",
        std::string(ZEMORADIO_PROGRAM) + " " + asked + " --station " + places_.Station() +
            " --machine " + places_.MachineOf(zemo::bench::kReporting) + " --from " + day +
            " --to " + day + " > " + Out() + " 2> " + Err() + "; echo $? > " + Status()});
    beganMs_ = MonotonicMs();
    wellSince_ = board_.wellSince;
  }
  // Of a server that was well for a while before it began and up to its end.
  bool WasWell() const {
    return wellSince_ != 0 && board_.wellSince == wellSince_ && beganMs_ > wellSince_ + kWellMs;
  }
  void Judge() {
    running_.reset();
    nextMs_ = MonotonicMs() + 5000;
    ++board_.commands;
    zemo::bench::KeepMost(board_.longestCommandMs, MonotonicMs() - beganMs_);
    int status = -1;
    if (!(std::ifstream(Status()) >> status)) status = -1;
    board_.well += WasWell();
    std::ifstream err(Err());
    std::vector<std::string> lines;
    for (std::string line; std::getline(err, line);) lines.push_back(line);
    if (status == 0 && lines.empty()) return;
    const bool told = lines.size() == 1 && lines[0].starts_with("zemoradio: ");
    // With the server away the replica answers, and a line says so.
    if ((status == 0 || status == 1) && told && !WasWell()) {
      ++board_.failed;
      return;
    }
    ++board_.badly;
    std::fprintf(stderr, "a command ended with %d:\n", status);
    for (const std::string& line : lines) std::fprintf(stderr, "  %s\n", line.c_str());
  }
  std::string Out() const { return places_.folder + "/command.out"; }
  std::string Err() const { return places_.folder + "/command.err"; }
  std::string Status() const { return places_.folder + "/command.status"; }

  const Places& places_;
  HourBoard& board_;
  std::unique_ptr<zemo::test::Child> running_;
  int times_ = 0;
  int64_t beganMs_ = 0, nextMs_ = 0;
  int64_t wellSince_ = 0;  // of the server, as it was when the command began
};

// New cards of the other desk, each with the time at which it was written.
class Sight {
 public:
  explicit Sight(HourBoard& board) : board_(board) {}

  void Look(zemo::Database& base) {
    const bool first = last_ < 0;
    const auto rows =
        base.OpenRecordset("SELECT CODE, AUTEUR FROM Discotheque WHERE CODE > ? ORDER BY CODE",
                           {first ? kCards : last_});
    for (; !rows->Eof(); rows->MoveNext()) {
      last_ = std::max(last_, zemo::AsInt(rows->Field(0)));
      const int64_t wroteMs = std::atoll(zemo::AsText(rows->Field(1)).c_str());
      if (first || wroteMs == 0 || board_.wellSince == 0) continue;
      if (wroteMs > board_.wellSince + kWellMs) board_.seen.Add(MonotonicMs() - wroteMs);
    }
    last_ = std::max<int64_t>(last_, kCards);
  }

 private:
  HourBoard& board_;
  int64_t last_ = -1;
};

void Report(const Places& places, HourBoard& board) {
  Desk desk(places, board, zemo::bench::kReporting);
  ReportCommands commands(places, board);
  Sight sight(board);
  while (!desk.MayEnd() || !commands.Rests()) {
    commands.Look();
    try {
      if (zemo::Database* base = desk.Base()) sight.Look(*base);
    } catch (const zemo::StoreError& error) {
      std::fprintf(stderr, "report: %s\n", error.what());
    }
    Pass(10);
  }
}

// --- who makes the troubles ---

struct TroubleTimes {
  int times = 0;
  int64_t allMs = 0, mostMs = 0;
};

// The programs and the server, from the one thread of the run's own process.
class Hour {
 public:
  Hour(const Places& places, const Wish& wish, HourBoard& board, TestServer& server)
      : places_(places), board_(board), server_(server), random_(wish.seed) {}
  ~Hour() {
    for (const pid_t program : programs_)
      if (program > 0) kill(program, SIGKILL);
    for (const pid_t program : programs_)
      if (program > 0) waitpid(program, nullptr, 0);
  }

  void Run(int seconds) {
    for (int machine = 0; machine < zemo::bench::kMachines; ++machine) Start(machine);
    board_.wellSince = MonotonicMs();
    const int64_t quietMs = std::clamp(seconds / 6, 15, 60) * 1000;
    endMs_ = MonotonicMs() + seconds * 1000 - quietMs;
    nextKillMs_ = MonotonicMs() + Between(20000, 40000);
    Last(10000);
    while (MonotonicMs() < endMs_) {
      Trouble();
      Last(Any(2) == 0 ? Between(1000, 6000) : Between(18000, 35000));
    }
    board_.step = zemo::bench::kQuiet;
    endMs_ = MonotonicMs() + quietMs;
    nextKillMs_ = INT64_MAX;
    Last(quietMs);
  }

  // False: one of the programs did not end in its time, or not well.
  bool End() {
    board_.step = zemo::bench::kAirEnds;
    bool good = HasEnded(zemo::bench::kAir);
    board_.step = zemo::bench::kAllEnd;
    for (const int machine : {zemo::bench::kProduction, zemo::bench::kReporting})
      good = HasEnded(machine) && good;
    return good && died_ == 0;
  }

  const TroubleTimes& Of(int trouble) const { return times_[static_cast<size_t>(trouble)]; }
  int AirKilled() const { return airKilled_; }

 private:
  int Any(int count) { return std::uniform_int_distribution<>(0, count - 1)(random_); }
  int64_t Between(int64_t least, int64_t most) {
    return std::uniform_int_distribution<int64_t>(least, most)(random_);
  }

  void Start(int machine) {
    static constexpr void (*kPrograms[])(const Places&, HourBoard&) = {Air, Produce, Report};
    std::fflush(nullptr);
    const pid_t program = fork();
    if (program == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      int status = 0;
      try {
        kPrograms[machine](places_, board_);
      } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        status = 1;
      }
      std::fflush(nullptr);
      _exit(status);
    }
    programs_[static_cast<size_t>(machine)] = program;
  }

  // As long as that; programs are killed meanwhile, and one that died is started again.
  void Last(int64_t ms) {
    for (const int64_t untilMs = std::min(MonotonicMs() + ms, endMs_); MonotonicMs() < untilMs;) {
      if (MonotonicMs() >= nextKillMs_) KillProgram();
      for (int machine = 0; machine < zemo::bench::kMachines; ++machine) {
        int status = 0;
        if (waitpid(programs_[static_cast<size_t>(machine)], &status, WNOHANG) <= 0) continue;
        std::printf("%s died by itself, status %d\n",
                    zemo::bench::kMachineNames[static_cast<size_t>(machine)], status);
        ++died_;
        Start(machine);
      }
      Pass(20);
    }
  }

  void KillProgram() {
    nextKillMs_ = INT64_MAX;
    const int machine = Any(zemo::bench::kMachines);
    const pid_t program = programs_[static_cast<size_t>(machine)];
    board_.wellSince = 0;
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    airKilled_ += machine == zemo::bench::kAir;
    ++times_[zemo::bench::kProgramKilled].times;
    Pass(static_cast<int>(Between(0, 2000)));
    Start(machine);
    nextKillMs_ = MonotonicMs() + Between(20000, 60000);
    if (board_.trouble == zemo::bench::kHourTroubles) board_.wellSince = MonotonicMs();
  }

  void Trouble() {
    const int trouble = Any(zemo::bench::kProgramKilled);
    const int64_t beganMs = MonotonicMs();
    board_.wellSince = 0;
    board_.trouble = trouble;
    Suffer(trouble, Any(4) == 0 ? Between(20000, 60000) : Between(500, 15000));
    board_.trouble = zemo::bench::kHourTroubles;
    board_.wellSince = MonotonicMs();
    TroubleTimes& times = times_[static_cast<size_t>(trouble)];
    ++times.times;
    times.allMs += MonotonicMs() - beganMs;
    times.mostMs = std::max(times.mostMs, MonotonicMs() - beganMs);
  }

  void Suffer(int trouble, int64_t ms) {
    switch (trouble) {
      case zemo::bench::kKilled:
        server_.Stop();
        Last(ms);
        return server_.Start();
      case zemo::bench::kRestarted:
        server_.StopInOrder();
        return server_.Start();
      case zemo::bench::kSlow:
        for (const int64_t untilMs = MonotonicMs() + ms; MonotonicMs() < untilMs; Last(2000))
          board_.line.delayMs = static_cast<int>(Between(0, 2000));
        board_.line.delayMs = 0;
        return;
      case zemo::bench::kFull:
        return FillDisk(ms);
      case zemo::bench::kCut:
        ++board_.line.cuts;
        return;
      default:
        board_.line.silent = true;
        Last(ms);
        board_.line.silent = false;
    }
  }

  // A server whose disk is full may end; its administrator starts it again.
  void FillDisk(int64_t ms) {
    const std::string path = places_.Disk() + "/filler";
    {
      std::ofstream file(path, std::ios::binary);
      const std::string block(1 << 16, 'x');
      while (file.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
      }
    }
    Last(ms);
    unlink(path.c_str());
    if (!server_.Try("station", "SELECT 1").empty()) server_.Stop();
    server_.Start();
  }

  bool HasEnded(int machine) {
    const pid_t program = programs_[static_cast<size_t>(machine)];
    int status = 0;
    for (const int64_t untilMs = MonotonicMs() + kEndSeconds * 1000; MonotonicMs() < untilMs;
         Pass(20))
      if (waitpid(program, &status, WNOHANG) == program) {
        programs_[static_cast<size_t>(machine)] = 0;
        if (status != 0)
          std::printf("status %d at the end of %s\n", status,
                      zemo::bench::kMachineNames[static_cast<size_t>(machine)]);
        return status == 0;
      }
    std::printf("%s does not end\n", zemo::bench::kMachineNames[static_cast<size_t>(machine)]);
    return false;
  }

  const Places& places_;
  HourBoard& board_;
  TestServer& server_;
  std::mt19937 random_;
  std::array<pid_t, zemo::bench::kMachines> programs_{};
  std::array<TroubleTimes, zemo::bench::kHourTroubles> times_;
  int64_t endMs_ = INT64_MAX, nextKillMs_ = INT64_MAX;
  int died_ = 0, airKilled_ = 0;
};

// --- the end ---

// What is still to go from one machine to the others goes now. False: it does not in its time.
bool Settle(const Places& places) {
  std::vector<std::unique_ptr<zemo::ServerLink>> links;
  for (int machine = 0; machine < zemo::bench::kMachines; ++machine)
    links.push_back(std::make_unique<zemo::ServerLink>(zemo::ServerPlace(places.Url()),
                                                       places.MachineOf(machine)));
  // Each is reachable with the server's changes taken in up to that moment.
  for (const int64_t untilMs = MonotonicMs() + kEndSeconds * 1000; MonotonicMs() < untilMs;
       Pass(20))
    if (std::all_of(links.begin(), links.end(), [](const auto& link) {
          const zemo::BaseLinkState state = link->State();
          return state.reachable && state.waiting == 0;
        })) {
      Pass(2000);  // what they have sent just now is notified
      return true;
    }
  return false;
}

struct ListFigures {
  size_t listed = 0;
  int lost = 0, wrong = 0, doubled = 0;
};

void HoldAgainst(const std::string& base, const std::string& sql, const std::string& table,
                 const OwnList::Values& values, ListFigures& figures) {
  std::map<std::string, std::vector<std::string>> there;
  for (const auto& row : zemo::bench::Ask(base, sql)) there[row.at(0)].push_back(row.at(1));
  for (const auto& [key, may] : values) {
    if (!key.starts_with(table + ' ')) continue;
    ++figures.listed;
    const auto found = there.find(key.substr(table.size() + 1));
    const bool gone = found == there.end();
    const std::string is = gone ? OwnList::kGone : found->second.front();
    if (!gone && found->second.size() > 1) ++figures.doubled;
    if (may.contains(is) && (gone || found->second.size() == 1)) continue;
    ++(gone ? figures.lost : figures.wrong);
    std::fprintf(stderr, "%s is '%s' on the server, and was to be '%s'\n", key.c_str(), is.c_str(),
                 may.empty() ? "" : may.begin()->c_str());
  }
}

ListFigures CheckLists(const Places& places, const std::string& base) {
  ListFigures figures;
  const auto own = OwnList::Read(places.ListOf(zemo::bench::kProduction));
  for (const auto& [table, name, value] :
       {std::array<std::string, 3>{"Discotheque", "TITRE", "AUTEUR"},
        {"Playlist", "LIBELLE", "LHEURE"},
        {"GrillePub", "ANNONCEUR", "CONTACT"}})
    HoldAgainst(
        base,
        "SELECT " + name + ", " + value + " FROM " + table + " WHERE " + name + " LIKE 'own %'",
        table, own, figures);
  HoldAgainst(base, "SELECT 'TextVeille', TextVeille FROM Cnf", "Cnf", own, figures);
  HoldAgainst(base, "SELECT CODE, REFERENCE FROM Discotheque", "Card", own, figures);
  HoldAgainst(base,
              "SELECT CODE, LADATE || '|' || HEURE || '|' || AUTEUR || '|' || TITRE FROM Rapport",
              "Rapport", OwnList::Read(places.ListOf(zemo::bench::kAir)), figures);
  return figures;
}

void TellLine(const std::string& what, const std::string& figures, const std::string& bound = "") {
  std::printf("| %s | %s | %s |\n", what.c_str(), figures.c_str(), bound.c_str());
}
std::string Text(int64_t number) {
  return std::to_string(number);
}

void TellMs(const char* what, const zemo::bench::SharedFigures& figures, const std::string& bound) {
  const std::vector<int32_t> ms = figures.Sorted();
  if (ms.empty()) return TellLine(what, "none");
  TellLine(what,
           Text(static_cast<int64_t>(ms.size())) + ": " + Text(ms[ms.size() / 2]) + ", " +
               Text(ms[ms.size() * 99 / 100]) + ", " + Text(ms.back()) + " ms",
           bound);
}

void TellTroubles(const Hour& hour) {
  for (int trouble = 0; trouble < zemo::bench::kHourTroubles; ++trouble) {
    const TroubleTimes& times = hour.Of(trouble);
    TellLine(zemo::bench::kHourTroubleNames[static_cast<size_t>(trouble)],
             Text(times.times) + " times, " + Text(times.allMs / 1000) + " s, longest " +
                 Text(times.mostMs / 1000) + " s");
  }
}

// True when no bound is broken.
bool Judge(const Places& places, HourBoard& board, const Hour& hour) {
  std::printf("| Figure | Measured | Bound |\n|---|---|---|\n");
  TellMs("transitions; late by: median, 99 of 100, most", board.late, Text(kLateMs) + " ms");
  TellLine("transitions beyond the bound", Text(board.beyond), "0");
  TellLine("longest absence of the air's loop", Text(board.awayMs) + " ms");
  TellMs("writes seen on another machine, server well: median, 99 of 100, most", board.seen,
         "1000 ms");
  for (size_t machine = 0; machine < zemo::bench::kMachines; ++machine)
    TellLine(std::string("longest queue, ") + zemo::bench::kMachineNames[machine],
             Text(board.longestQueue[machine]));
  TellLine("writes of production; refused", Text(board.writes) + "; " + Text(board.refused), "; 0");
  TellLine(
      "commands; of these with the server well, that told why not, or of what moment, ended badly; "
      "longest",
      Text(board.commands) + "; " + Text(board.well) + ", " + Text(board.failed) + ", " +
          Text(board.badly) + "; " + Text(board.longestCommandMs) + " ms",
      "; , 0;");

  zemo::bench::AlikeBases bases;
  bases.Add("the server", zemo::ServerPlace(places.Url()), places.folder + "/server.mdb");
  for (int machine = 0; machine < zemo::bench::kMachines; ++machine)
    bases.Add(zemo::bench::kMachineNames[static_cast<size_t>(machine)],
              zemo::FilePlace(places.MachineOf(machine) + "/" +
                              zemo::ServerLink::FileName(zemo::ServerPlace(places.Url()))),
              places.MachineOf(machine) + ".mdb");
  const int differing = bases.Differing();
  TellLine("rows of each base; tables that differ from the server's",
           Text(bases.Rows()) + "; " + Text(differing), "; 0");
  const ListFigures lists = CheckLists(places, places.folder + "/server.mdb");
  TellLine("rows in the programs' own lists; lost, other, doubled",
           Text(static_cast<int64_t>(lists.listed)) + "; " + Text(lists.lost) + ", " +
               Text(lists.wrong) + ", " + Text(lists.doubled),
           "; 0, 0, 0");
  const int64_t rows = std::atoll(
      zemo::bench::Ask(places.folder + "/server.mdb",
                       "SELECT COUNT(*) FROM Rapport WHERE CODE > " + std::to_string(kRows))[0][0]
          .c_str());
  // A title of one moment, which its CODE alone does not tell from another row.
  const int64_t doubled = std::atoll(
      zemo::bench::Ask(places.folder + "/server.mdb",
                       "SELECT COUNT(*) FROM (SELECT 1 FROM Rapport WHERE CODE > " +
                           std::to_string(kRows) +
                           " GROUP BY LADATE, HEURE, AUTEUR, TITRE HAVING COUNT(*) > 1)")[0][0]
          .c_str());
  TellLine("elements that are to have a row in the report, rows, of one moment twice",
           Text(board.elements) + ", " + Text(rows) + ", " + Text(doubled), "at least as many, 0");
  int left = 0;
  for (int machine = 0; machine < zemo::bench::kMachines; ++machine)
    left += std::filesystem::exists(places.MachineOf(machine) + "/RefusedRows.Txt");
  TellLine("machines with refused rows", Text(left), "0");
  TellTroubles(hour);
  const std::vector<int32_t> seen = board.seen.Sorted();
  return board.beyond == 0 && !board.late.Sorted().empty() && differing == 0 && lists.lost == 0 &&
         lists.wrong == 0 && lists.doubled == 0 && board.elements <= rows && doubled == 0 &&
         left == 0 && board.refused == 0 && board.badly == 0 &&
         (seen.empty() || seen.back() <= 1000);
}

// The station's base is carried to the server by the program itself.
void MakeStation(const Places& places, TestServer& server) {
  for (int machine = 0; machine < zemo::bench::kMachines; ++machine)
    std::filesystem::create_directories(places.MachineOf(machine));
  zemo::bench::MakeShortStation(places.Station(),
                                {.cards = kCards, .reportRows = kRows, .restMinutes = 20});
  zemo::bench::AllowEveryTitle(places.Station());
  // Of which the commands ask.
  zemo::bench::Execute(places.Station() + "/Triskin.MDB",
                       {"INSERT INTO GrillePub(CAMPAGNEDEPART, CAMPAGNEFIN, HDEPART, HFIN, "
                        "DECOUPEH1, FILENAMEAUDIO, PRIORITY, PUB, ANNONCEUR) VALUES('01/01/2020', "
                        "'02/01/2020', '00', '23', '00', '/none.wav', 10, -1, 'own')"});
  server.Try("postgres", "CREATE DATABASE station");
  const std::string words = std::string(ZEMORADIO_PROGRAM) + " move --station " + places.Station() +
                            " --machine " + places.MachineOf(zemo::bench::kAir) + " --to '" +
                            places.Url() + "' > " + places.folder + "/move.out";
  if (std::system(words.c_str()) != 0) throw std::runtime_error("the base is not moved");
}

pid_t BeginLine(const Places& places, HourBoard& board) {
  const pid_t line = fork();
  if (line > 0) return line;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  std::filesystem::create_directories(places.Line());
  zemo::bench::SlowLine(places.Line() + "/.s.PGSQL.5432", places.Server() + "/.s.PGSQL.5432",
                        board.line)
      .Serve();
}

bool RunHour(const Places& places, const Wish& wish) {
  HourBoard& board = zemo::bench::MakeHourBoard();
  TestServer server(places.Server(), {"max_wal_size=64MB", "min_wal_size=32MB"});
  if (!server.Missing().empty()) throw std::runtime_error(server.Missing());
  const pid_t line = BeginLine(places, board);
  while (!std::filesystem::exists(places.Line() + "/.s.PGSQL.5432")) Pass(10);
  MakeStation(places, server);
  bool good = false;
  {
    Hour hour(places, wish, board, server);
    hour.Run(wish.seconds);
    good = hour.End();
    good = Settle(places) && good;
    good = Judge(places, board, hour) && good;
  }
  kill(line, SIGKILL);
  waitpid(line, nullptr, 0);
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  const std::optional<Wish> wish = ReadWish(argc, argv);
  if (!wish) {
    std::fprintf(stderr, "usage: %s [--seconds N] [--seed N]\n", argv[0]);
    return 2;
  }
  Places places{(std::filesystem::temp_directory_path() / "zemo-hour-XXXXXX").string()};
  if (!mkdtemp(places.folder.data())) return 1;
  std::filesystem::permissions(places.folder, std::filesystem::perms(0755));
  std::filesystem::create_directories(places.Disk());
  bool good = false;
  const std::string refused = zemo::bench::MountSmallDisk(places.Disk(), kDiskMb);
  std::printf("%d s, seed %u\n", wish->seconds, wish->seed);
  try {
    if (!refused.empty()) throw std::runtime_error("no small disk: " + refused);
    good = RunHour(places, *wish);
  } catch (const std::exception& error) {
    std::printf("%s\n", error.what());
  }
  std::printf("%s\n", good ? "no bound is broken" : "a bound is broken");
  if (refused.empty()) umount2(places.Disk().c_str(), MNT_DETACH);
  std::error_code ignored;
  if (good) std::filesystem::remove_all(places.folder, ignored);
  return good ? 0 : 1;
}
