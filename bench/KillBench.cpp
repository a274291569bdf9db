// Does a power loss cost more than its moment? The program is killed on air (SIGKILL), half of the
// times in a write to the base, a compaction, a hand-over of a new base or an upgrade of its
// tables: as soon as the folder shows the first sign of that work, and a random moment later.
// Otherwise at any moment. What lay in the folder at the death tells which it was. After each kill
// the base must be sound, with its thirteen tables; every row of the report that the program had
// told in rapportzemo.txt, or that was there before, must be there once; and the program, started
// again without an order, must be heard within a second of its start by the flag of its machine:
// the time from the start of the process to the first sound that leaves the output, a file.
//
// Works that the program does not show are given up after some tries, and their kills fall into
// writes. Prints a table; ends with status 1 when one of these bounds is broken.
//
// Usage: KillBench [KILLS] [SEED] [PROGRAM]
#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "FolderSigns.h"
#include "KilledFolder.h"
#include "ShortStation.h"
#include "support/UnattendedAir.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using zemo::bench::KilledFolder;
using zemo::bench::Remains;
using zemo::bench::SameName;
using zemo::bench::Verdict;

constexpr int64_t kOnAirMs = 1000;          // the bound
constexpr milliseconds kWaitOnAir{5000};    // then it is taken for idle
constexpr int kMostIdleStarts = 20;         // of a program that is worth killing
constexpr int kMostOnAirMs = 2000;          // a kill at any moment comes within this time
constexpr milliseconds kWaitForSign{6000};  // three elements: a hand-over waits for the next one
constexpr int kTitleMs = 3000;
constexpr int kTriesWithoutSign = 5;
constexpr int kMisses = 8;  // ahead of the half, for aims that miss at the end
constexpr const char* kGenre = "GENRE 0";

enum Work { kWrite, kCompaction, kHandOver, kUpgrade, kStart, kElsewhere, kWorks };
constexpr int kAimed = 4;  // the first ones are aimed at
constexpr std::array<const char*, kWorks> kNames = {"in a write to the base", "in a compaction",
                                                    "in a hand-over",         "in an upgrade",
                                                    "elsewhere in a start",   "elsewhere on air"};

struct Figures {
  int kills = 0, sound = 0, lost = 0, twice = 0, notOnAir = 0;
  std::vector<int64_t> onAirMs;
};

// How a work is aimed at.
struct Aim {
  double withinMs = 0;  // behind the first sign; follows what it hits
  int signs = 0, vain = 0;
};

// One field that an old base did not have.
struct OldField {
  const char *table, *field;
};
constexpr std::array<OldField, 4> kOldFields = {{{"Discotheque", "MMJJFin"},
                                                 {"Discotheque", "MMJJDebut"},
                                                 {"GrillePub", "GENREASSOCIE"},
                                                 {"DiscothequeJingle", "MMJJFin"}}};

class KillRun {
 public:
  KillRun(const std::string& folder, const std::string& program, unsigned seed)
      : folder_(folder),
        places_{program, folder + "/station", folder + "/machine", folder + "/air.wav",
                folder + "/errors"},
        killed_(places_.station, folder + "/checked", kGenre),
        signs_(places_.station),
        random_(seed) {
    aims_[kWrite].withinMs = 5;
    aims_[kCompaction].withinMs = 200;
    aims_[kHandOver].withinMs = 2;
    aims_[kUpgrade].withinMs = 50;
    zemo::test::PutRunningFlag(places_.machine, true);
    PutLastCompactage(0);
  }

  // False when the program could not be brought on air.
  bool Run(int kills) {
    killed_.Check();
    if (!GoOnAir()) return false;
    while (made_ < kills) {
      const Work aim = NextAim();
      const Work met = aim == kCompaction || aim == kUpgrade ? KillInStart(aim) : KillOnAir(aim);
      ++made_;
      ++figures_[met].kills;
      pending_.push_back(met);
      Judge(air_->Heard());
      const auto heardMs = GoOnAir();
      if (heardMs)
        figures_[met].onAirMs.push_back(*heardMs);
      else if (++figures_[met].notOnAir; !Mend())
        return false;
    }
    const bool heard = air_->Heard();
    air_.reset();
    Judge(heard);
    return true;
  }

  bool Tell() const;

 private:
  double Random(double most) { return std::uniform_real_distribution<>(0, most)(random_); }

  // The work that was hit least while fewer than half of the kills have hit one, else none.
  Work NextAim() {
    int hit = 0;
    for (int work = 0; work < kAimed; ++work) hit += figures_[work].kills;
    if (hit * 2 > made_ + kMisses) return kElsewhere;
    Work least = kWrite;
    for (const Work work : {kCompaction, kHandOver, kUpgrade})
      if (!GivenUp(work) && figures_[work].kills < figures_[least].kills) least = work;
    return least;
  }
  bool GivenUp(Work work) const {
    return aims_[work].signs == 0 && aims_[work].vain >= kTriesWithoutSign;
  }

  // Made when the engine starts: the tables are upgraded before that.
  std::string EngineSign() const { return places_.station + "/ZemoOnOff.Dat"; }

  std::optional<int64_t> GoOnAir() {
    air_ = std::make_unique<zemo::test::UnattendedAir>(places_);
    return air_->HeardWithin(kWaitOnAir);
  }

  // Behind a start that brought nothing on air: without the old table it may.
  bool Mend() {
    if (++idleStarts_ > kMostIdleStarts) return false;
    air_->Kill();
    Judge(air_->Heard());
    if (old_) JudgeUpgrade();
    return GoOnAir().has_value();
  }

  Work KillOnAir(Work aim) {
    const int rest = static_cast<int>(Random(kMostOnAirMs));
    if (aim == kElsewhere || rest < kMostOnAirMs / 4) air_->EndsWithin(milliseconds(rest));
    if (aim == kHandOver) HandOver();
    if (aim != kElsewhere) AwaitSign(aim, [] { return false; });
    return Kill(aim);
  }

  // A new start on a base that has the work before it.
  Work KillInStart(Work aim) {
    air_->Kill();
    Judge(air_->Heard());
    if (aim == kCompaction) PutLastCompactage(1);
    if (aim == kUpgrade) MakeOld();
    std::filesystem::remove(EngineSign());
    signs_.Clear();
    air_ = std::make_unique<zemo::test::UnattendedAir>(places_);
    AwaitSign(aim, [this] { return air_->Heard(); });
    return Kill(aim);
  }

  void AwaitSign(Work aim, const std::function<bool()>& over) {
    if (aim != kHandOver && aim != kCompaction && aim != kUpgrade) signs_.Clear();
    const auto wanted = [aim, this](uint32_t mask, const std::string& name) {
      switch (aim) {
        case kCompaction:
          return SameName(name, "TriskinN.MDB");
        case kHandOver:
          return (mask & (IN_DELETE | IN_MOVED_FROM)) != 0 &&
                 (SameName(name, "Triskin.BAK") || SameName(name, "Triskin.MDB"));
        default:
          return (mask & IN_CREATE) != 0 && SameName(name, "Triskin.MDB-journal") &&
                 (aim != kUpgrade || !std::filesystem::exists(EngineSign()));
      }
    };
    seen_ = signs_.Wait(wanted, Clock::now() + kWaitForSign, over);
    ++(seen_ ? aims_[aim].signs : aims_[aim].vain);
    if (seen_)
      std::this_thread::sleep_for(
          std::chrono::duration<double, std::milli>(Random(aims_[aim].withinMs)));
  }

  Work Kill(Work aim) {
    const bool onAir = air_->Heard();
    air_->Kill();
    const Remains left = killed_.Look();
    if (!left.base) ++withoutBase_;
    const Work met = WorkOf(left, aim, onAir);
    if (aim != kElsewhere && seen_)
      aims_[aim].withinMs =
          std::clamp(aims_[aim].withinMs * (met == aim ? 1.15 : 0.8), 0.05, 2000.0);
    seen_ = false;
    return met;
  }

  Work WorkOf(const Remains& left, Work aim, bool onAir) const {
    if (left.newBase && (!left.base || !left.backup)) return kHandOver;
    if (left.compacted || !left.base) return kCompaction;
    if (left.journal && aim == kUpgrade && !std::filesystem::exists(EngineSign())) return kUpgrade;
    if (left.journal) return kWrite;
    return onAir ? kElsewhere : kStart;
  }

  // Once the program is dead, which was heard or not. A death that left no base is judged by what
  // the next start makes.
  void Judge(bool heard) {
    const Verdict verdict = killed_.Check();
    if (!verdict.judged) return;
    if (!verdict.fault.empty() || verdict.lost > 0)
      std::fprintf(stderr, "behind kill %d, %s: %s\n", made_,
                   pending_.empty() ? "of no account" : kNames[pending_.back()],
                   verdict.fault.c_str());
    for (const Work work : pending_) figures_[work].sound += verdict.fault.empty() ? 1 : 0;
    Figures& last = figures_[pending_.empty() ? kElsewhere : pending_.back()];
    last.lost += verdict.lost;
    last.twice += verdict.twice;
    pending_.clear();
    if (old_ && heard && verdict.fault.empty()) JudgeUpgrade();
    RenewNewBase();
  }

  // A new base that nobody has taken yet holds the rows that were written since it was made, so
  // that two hand-overs in one life lose none by right. One made of an old base would bring the old
  // table back behind the start that upgrades it.
  void RenewNewBase() const {
    const std::string left = killed_.PathOf("New.mdb");
    if (old_)
      std::filesystem::remove(left);
    else if (std::filesystem::exists(left))
      killed_.MakeNewBase(left, "base " + std::to_string(handedOver_));
  }

  // The start behind the kill has been on air: the field is there again.
  void JudgeUpgrade() {
    const zemo::TableDef& table = *zemo::FindSchemaTable(old_->table);
    if (!killed_.HasField(old_->table, old_->field)) {
      ++notUpgraded_;
      zemo::bench::Execute(killed_.Base(),
                           {"ALTER TABLE " + table.Name + " ADD COLUMN " +
                            zemo::FieldSql(table.Name, *table.FindField(old_->field))});
    }
    old_.reset();
  }

  // Not where the last death left no base: the start has to bring that back first.
  void MakeOld() {
    if (old_ || !std::filesystem::exists(killed_.Base())) return;
    old_ = kOldFields[static_cast<size_t>(Random(kOldFields.size() - 0.001))];
    zemo::bench::Execute(killed_.Base(), {std::string("ALTER TABLE ") + old_->table +
                                          " DROP COLUMN " + old_->field});
  }

  void HandOver() {
    const std::string backup = killed_.PathOf("Triskin.BAK");
    if (!std::filesystem::exists(backup)) std::ofstream(backup) << "an older base\n";
    const std::string made = folder_ + "/made.mdb";
    killed_.MakeNewBase(made, "base " + std::to_string(++handedOver_));
    signs_.Clear();
    std::filesystem::rename(made, killed_.PathOf("New.mdb"));
  }

  // The machine's last compaction was that many months ago.
  void PutLastCompactage(int months) const {
    const std::time_t now = std::time(nullptr);
    std::tm day{};
    localtime_r(&now, &day);
    char text[64];
    std::snprintf(text, sizeof text, "LastCompactage=01/%02d/%04d 00:00:00\r\n",
                  (day.tm_mon - months + 12) % 12 + 1, day.tm_year + 1900);
    std::ofstream(places_.machine + "/Settings.Ini", std::ios::binary) << text;
  }

  std::string folder_;
  zemo::test::AirPlaces places_;
  KilledFolder killed_;
  zemo::bench::FolderSigns signs_;
  std::mt19937 random_;
  std::unique_ptr<zemo::test::UnattendedAir> air_;
  std::array<Figures, kWorks> figures_;
  std::array<Aim, kWorks> aims_;
  std::vector<Work> pending_;  // deaths that no base was there to judge
  std::optional<OldField> old_;
  int made_ = 0, withoutBase_ = 0, notUpgraded_ = 0, handedOver_ = 0, idleStarts_ = 0;
  bool seen_ = false;
};

void TellLine(const char* name, Figures figures) {
  std::sort(figures.onAirMs.begin(), figures.onAirMs.end());
  const auto& ms = figures.onAirMs;
  std::printf("| %s | %d | %d | %d | %d | ", name, figures.kills, figures.sound, figures.lost,
              figures.twice);
  if (ms.empty())
    std::printf("- |\n");
  else
    std::printf("%d ms, %d ms |\n", static_cast<int>(ms[ms.size() / 2]),
                static_cast<int>(ms.back()));
}

// True when no bound is broken.
bool KillRun::Tell() const {
  Figures all;
  std::printf(
      "| Killed | Kills | Base sound | Rows lost | Rows twice | On air again: median, most |\n");
  std::printf("|---|---|---|---|---|---|\n");
  for (int work = 0; work < kWorks; ++work) {
    const Figures& one = figures_[work];
    TellLine(kNames[work], one);
    all.kills += one.kills;
    all.sound += one.sound;
    all.lost += one.lost;
    all.twice += one.twice;
    all.notOnAir += one.notOnAir;
    all.onAirMs.insert(all.onAirMs.end(), one.onAirMs.begin(), one.onAirMs.end());
  }
  TellLine("all", all);
  std::printf("\n%zu rows in the report at the end\n", killed_.Rows());
  std::printf("%d kills left no Triskin.MDB in the folder\n", withoutBase_);
  for (const Work work : {kCompaction, kHandOver, kUpgrade})
    if (GivenUp(work))
      std::printf("%s: 0 kills, %d tries showed no sign of one\n", kNames[work], aims_[work].vain);
  if (notUpgraded_ > 0) std::printf("%d old tables were left as they were\n", notUpgraded_);
  if (all.notOnAir > 0)
    std::printf("%d starts were not on air within %d s\n", all.notOnAir,
                static_cast<int>(kWaitOnAir.count() / 1000));
  const auto late = std::count_if(all.onAirMs.begin(), all.onAirMs.end(),
                                  [](int64_t ms) { return ms > kOnAirMs; });
  std::printf("%d starts took more than %d ms\n", static_cast<int>(late),
              static_cast<int>(kOnAirMs));
  return all.sound == all.kills && all.lost == 0 && all.twice == 0 && all.notOnAir == 0 &&
         late == 0 && notUpgraded_ == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const int kills = argc > 1 ? std::atoi(argv[1]) : 200;
  const unsigned seed =
      argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : std::random_device{}();
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-kill-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  std::filesystem::create_directories(folder + "/machine");
  zemo::bench::MakeShortStation(folder + "/station", {.titleMs = kTitleMs, .exitMs = 500});
  zemo::bench::AllowEveryTitle(folder + "/station");
  const auto begin = Clock::now();
  KillRun run(folder, argc > 3 ? argv[3] : ZEMORADIO_PROGRAM, seed);
  const bool done = run.Run(kills);
  std::printf("%d kills, seed %u, titles of %d s, %d s in all\n\n", kills, seed, kTitleMs / 1000,
              static_cast<int>(std::chrono::duration<double>(Clock::now() - begin).count()));
  const bool good = run.Tell();
  if (!done) std::printf("the program did not go on air: %s/errors\n", folder.c_str());
  if (done && good) std::filesystem::remove_all(folder);
  if (!good) std::printf("a bound is broken; what was left: %s\n", folder.c_str());
  return done && good ? 0 : 1;
}
