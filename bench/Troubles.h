// What a machine does to a station on air: another process locks its base, the disk is full, files
// are gone for a while, the device is away. Each trouble is a process of its own, so that a lock is
// real and nothing of it is measured with the air; all come again and again at random, over each
// other, and are undone when they end.
// Longer than other headers: the troubles stand together, since nobody else has a use for one.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "TroubleBoard.h"

namespace zemo::bench {

class Troubles {
 public:
  using Figures = TroubleFigures;

  Troubles(std::string station, unsigned seed, int64_t mostMs)
      : station_(std::move(station)), seed_(seed), mostMs_(mostMs) {
    void* memory = mmap(nullptr, sizeof(TroubleBoard), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
    board_ = new (memory) TroubleBoard{};
  }
  ~Troubles() { End(); }
  Troubles(const Troubles&) = delete;

  // Forks; to be called before there are threads. They rest until Begin.
  void Prepare(bool disk, const std::function<bool()>& unload, const std::function<bool()>& load) {
    Fork([this] { LockBase(); });
    if (disk) Fork([this] { FillDisk(); });
    Fork([this] { TakeFiles(); });
    if (unload) Fork([&] { UnloadDevice(unload, load); });
  }
  void Begin() { board_->begun = true; }
  // Each trouble is undone at once, without waiting for it.
  void Over() { board_->over = true; }
  // All is undone when it returns.
  void End() {
    Over();
    for (const pid_t process : processes_) waitpid(process, nullptr, 0);
    processes_.clear();
  }

  // The troubles of this moment, in words.
  std::string Now() const {
    std::string text;
    for (int i = 0; i < kTroubles; ++i)
      if (board_->figures[static_cast<size_t>(i)].now)
        text += (text.empty() ? "" : ", ") + std::string(kTroubleNames[static_cast<size_t>(i)]);
    return text;
  }
  const Figures& Of(int trouble) const { return board_->figures[static_cast<size_t>(trouble)]; }

 private:
  using Clock = std::chrono::steady_clock;

  void Fork(const std::function<void()>& work) {
    const auto number = static_cast<unsigned>(processes_.size());
    const pid_t process = fork();
    if (process < 0) throw std::runtime_error("fork");
    if (process > 0) return processes_.push_back(process);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    random_.seed(seed_ * 16 + number);
    while (!board_->begun && !board_->over) Pass(20);
    while (!board_->over) work();
    _exit(0);
  }

  static void Pass(int ms) { poll(nullptr, 0, ms); }
  double Between(double least, double most) {
    return std::uniform_real_distribution<>(least, most)(random_);
  }
  int Any(int count) { return std::uniform_int_distribution<>(0, count - 1)(random_); }
  void Rest(double leastSec, double mostSec) {
    const double share = std::min(1.0, static_cast<double>(mostMs_) / 60000);
    Last(static_cast<int64_t>(Between(leastSec, mostSec) * share * 1000));
  }
  // As long as that, but no longer than the run.
  void Last(int64_t ms) const {
    const auto end = Clock::now() + std::chrono::milliseconds(std::min(ms, mostMs_));
    while (Clock::now() < end && !board_->over) Pass(10);
  }
  // A trouble for that time: from when it is there to when it is undone.
  void Suffer(Trouble trouble, double seconds) {
    Figures& figures = board_->figures[trouble];
    const auto begin = Clock::now();
    figures.now = 1;
    Last(static_cast<int64_t>(seconds * 1000));
    figures.now = 0;
    const int64_t ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count();
    ++figures.times;
    figures.allMs += ms;
    figures.mostMs = std::max<int64_t>(figures.mostMs, ms);
  }

  // Half of the spans are short, a fifth up to a minute.
  void LockBase() {
    Rest(3, 25);
    const double which = Between(0, 1);
    const double seconds = which < 0.5   ? Between(0.1, 3)
                           : which < 0.8 ? Between(3, 15)
                                         : Between(15, 60);
    const int kind = Any(5);
    const Trouble trouble = kind < 3 ? kExclusive : kind == 3 ? kImmediate : kShared;
    const char* orders[] = {"BEGIN EXCLUSIVE", "BEGIN IMMEDIATE",
                            "BEGIN; SELECT COUNT(*) FROM Cnf"};
    sqlite3* base = nullptr;
    if (sqlite3_open_v2((station_ + "/Triskin.MDB").c_str(), &base, SQLITE_OPEN_READWRITE,
                        nullptr) == SQLITE_OK) {
      sqlite3_busy_timeout(base, 2000);
      if (sqlite3_exec(base, orders[trouble], nullptr, nullptr, nullptr) == SQLITE_OK)
        Suffer(trouble, seconds);
      sqlite3_exec(base, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    sqlite3_close(base);
  }

  void FillDisk() {
    Rest(15, 60);
    const std::string path = station_ + "/filler";
    const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    const std::string block(1 << 20, 'x');
    for (size_t size = block.size(); size > 0; size /= 16)
      while (write(file, block.data(), size) == static_cast<ssize_t>(size)) {
      }
    Suffer(kDiskFull, Between(2, 30));
    close(file);
    unlink(path.c_str());
  }

  // What the program has made anew meanwhile gives way to what was there.
  void TakeFiles() {
    Rest(2, 15);
    static constexpr const char* kSide[] = {"Donnees_Associees.Txt", "Artiste-Titre.Txt",
                                            "rapportzemo.txt",       "ZemoOnOff.Dat",
                                            "LectureBase.Txt",       "Genre.Txt"};
    const bool sound = Any(2) == 0;
    std::vector<std::string> sounds;
    for (const auto& entry : std::filesystem::directory_iterator(station_))
      if (entry.path().extension() == ".wav") sounds.push_back(entry.path().string());
    std::sort(sounds.begin(), sounds.end());
    const std::string path = sound && !sounds.empty()
                                 ? sounds[static_cast<size_t>(Any(static_cast<int>(sounds.size())))]
                                 : station_ + "/" + kSide[Any(6)];
    if (rename(path.c_str(), (path + ".away").c_str()) != 0) return;
    Suffer(sound ? kSoundGone : kSideGone, Between(1, 20));
    if (rename((path + ".away").c_str(), path.c_str()) != 0)
      std::fprintf(stderr, "%s did not come back\n", path.c_str());
  }

  void UnloadDevice(const std::function<bool()>& unload, const std::function<bool()>& load) {
    Rest(15, 60);
    if (!unload()) return;
    Suffer(kDeviceGone, Between(1, 10));
    while (!load()) Pass(100);
  }

  std::string station_;
  unsigned seed_;
  int64_t mostMs_;  // of any trouble
  TroubleBoard* board_ = nullptr;
  std::vector<pid_t> processes_;
  std::mt19937 random_;
};

}  // namespace zemo::bench
