// What does one small server carry? 50 machines, a process each with a replica of its own, poll and
// write as stations do: a row of the report every three minutes, a change of a card every ten, at
// moments of their own. Then they write twice as often, and so on up to sixty times. Each hears of
// what the others store. One more machine only looks.
//
// Of each row of the report is told how long it took from the machine's store to the server's, and
// from there to the sight on the machine that looks; "most" is the slowest answer. Machines and
// server share the processors of this machine: what a server alone carries is more.
//
// Usage: ServerLoad [SECONDS_OF_EACH_PACE [MACHINES]]
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "WholeBase.h"
#include "app/ServerLink.h"
#include "store/Database.h"
#include "store/Recordset.h"
#include "store/StationBase.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/TestServer.h"

namespace {

using zemo::test::TestServer;

constexpr int kRowMs = 180'000, kEditMs = 600'000;
constexpr int kPaces[] = {1, 2, 4, 8, 16, 30, 60};  // times as often as a station writes
constexpr int kCards = 1000;
constexpr int kMostRows = 100'000;

// Microseconds since 1970, as the server's clock has them too.
int64_t NowUs() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}
void Pass(int ms) {
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// Shared memory of the processes.
struct LoadBoard {
  std::atomic<int> ready;
  std::atomic<bool> begun, over;
  std::atomic<int> seen;
  std::array<std::pair<int64_t, int64_t>, kMostRows> rows;  // number, when it was seen
};

class LoadMachine {
 public:
  LoadMachine(const std::string& url, const std::string& folder, LoadBoard& board)
      : board_(board),
        link_(zemo::ServerPlace(url), folder),
        base_(link_.Place().closed(std::make_shared<zemo::LockWait>(zemo::kBusyTimeoutMs))) {
    while (!link_.State().reachable) Pass(5);
    base_->Open(false);
    random_.seed(static_cast<unsigned>(getpid()));
    ++board_.ready;
    while (!board_.begun) Pass(1);
  }

  // Up to the end, and until all is sent.
  void Write(int pace) {
    const int rowMs = kRowMs / pace, editMs = kEditMs / pace;
    int64_t rowUs = NowUs() + Any(rowMs) * 1000, editUs = NowUs() + Any(editMs) * 1000;
    while (!board_.over) {
      if (NowUs() >= rowUs) {
        base_->Execute("INSERT INTO Rapport(LADATE, HEURE, AUTEUR, TITRE) VALUES('', '', 'x', ?)",
                       {std::to_string(NowUs())});
        rowUs += rowMs * 1000;
      }
      if (NowUs() >= editUs) {
        base_->Execute("UPDATE Discotheque SET REFERENCE = ? WHERE CODE = ?",
                       {std::to_string(Any(90000)), int64_t{1 + Any(kCards)}});
        editUs += editMs * 1000;
      }
      Pass(20);
    }
    while (link_.State().waiting > 0) Pass(10);
  }

  void Watch() {
    while (!board_.over) {
      Look();
      Pass(2);
    }
    for (const int64_t untilUs = NowUs() + 3'000'000; NowUs() < untilUs; Pass(2)) Look();
  }

 private:
  int Any(int count) { return std::uniform_int_distribution<>(0, count - 1)(random_); }

  // Each machine has numbers of its own: what is new is told by all that were seen.
  void Look() {
    const int64_t now = base_->ForeignCounter();
    if (now == counter_) return;
    counter_ = now;
    const auto rows = base_->OpenRecordset("SELECT CODE FROM Rapport ORDER BY CODE");
    for (; !rows->Eof(); rows->MoveNext()) {
      const int64_t number = zemo::AsInt(rows->Field(0));
      if (!known_.emplace(number, true).second) continue;
      const int at = board_.seen;
      if (at >= kMostRows) return;
      board_.rows[static_cast<size_t>(at)] = {number, NowUs()};
      board_.seen = at + 1;
    }
  }

  LoadBoard& board_;
  zemo::ServerLink link_;
  std::unique_ptr<zemo::Database> base_;
  int64_t counter_ = -1;
  std::map<int64_t, bool> known_;
  std::mt19937 random_;
};

// `pace` 0: it only looks.
pid_t Begin(const std::string& url, const std::string& folder, LoadBoard& board, int pace) {
  const pid_t machine = fork();
  if (machine > 0) return machine;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  int status = 0;
  try {
    std::filesystem::create_directories(folder);
    LoadMachine on(url, folder, board);
    pace > 0 ? on.Write(pace) : on.Watch();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    status = 1;
  }
  _exit(status);
}

void MakeBase(const std::string& url) {
  zemo::ClosedPostgresDatabase(url, std::make_shared<zemo::LockWait>())->Open(true);
  zemo::StationBase base(zemo::ServerPlace(url));
  zemo::bench::OpenWhole(base);
  zemo::Transaction whole(base.Db());
  for (int card = 0; card < kCards; ++card)
    base.Db().Execute("INSERT INTO Discotheque(TITRE) VALUES(?)",
                      {"Title " + std::to_string(card)});
  whole.Commit();
}

struct Times {
  std::vector<double> ms;
  double Part(size_t of100) {
    std::sort(ms.begin(), ms.end());
    return ms.empty() ? 0 : ms[std::min(ms.size() - 1, ms.size() * of100 / 100)];
  }
};

// When each row was stored on its machine (its title tells) and on the server, in us.
std::map<int64_t, std::pair<int64_t, int64_t>> StoredRows(const TestServer& server,
                                                          const std::string& base) {
  const std::string all = server.Ask(
      base,
      "SELECT coalesce(string_agg(\"CODE\" || ' ' || \"TITRE\" || ' ' || (extract(epoch FROM at) * "
      "1000000)::bigint, ' '), '') FROM \"Rapport\" JOIN zemo.changes ON tablename = 'Rapport' AND "
      "number = \"CODE\"");
  std::map<int64_t, std::pair<int64_t, int64_t>> rows;
  const char* at = all.c_str();
  char* end = nullptr;
  for (int64_t number = std::strtoll(at, &end, 10); end != at;
       number = std::strtoll(at, &end, 10)) {
    const int64_t storedUs = std::strtoll(end, &end, 10);
    rows[number] = {storedUs, std::strtoll(end, &end, 10)};
    at = end;
  }
  return rows;
}

// The slowest answer in ms.
double Run(const std::string& folder, TestServer& server, int machines, int pace, int seconds) {
  const std::string base = server.NewBase();
  MakeBase(server.Url(base));
  void* memory =
      mmap(nullptr, sizeof(LoadBoard), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
  auto& board = *new (memory) LoadBoard{};
  std::vector<pid_t> processes;
  for (int machine = 0; machine <= machines; ++machine)
    processes.push_back(Begin(server.Url(base), folder + "/" + base + "-" + std::to_string(machine),
                              board, machine > 0 ? pace : 0));
  while (board.ready <= machines) {
    if (waitpid(-1, nullptr, WNOHANG) > 0) throw std::runtime_error("a machine ended");
    Pass(20);
  }
  Pass(2000);  // all have taken in what the others were given
  board.begun = true;
  Pass(seconds * 1000);
  board.over = true;
  for (const pid_t process : processes) waitpid(process, nullptr, 0);

  const auto rows = StoredRows(server, base);
  Times sent, seen;
  for (const auto& [number, at] : rows)
    sent.ms.push_back(static_cast<double>(at.second - at.first) / 1e3);
  for (int i = 0; i < board.seen; ++i) {
    const auto& [number, us] = board.rows[static_cast<size_t>(i)];
    if (const auto row = rows.find(number); row != rows.end())
      seen.ms.push_back(static_cast<double>(us - row->second.second) / 1e3);
  }
  std::printf("| %d | %zu | %.0f, %.0f, %.0f ms | %zu | %.0f, %.0f, %.0f ms |\n", pace, rows.size(),
              sent.Part(50), sent.Part(99), sent.Part(100), seen.ms.size(), seen.Part(50),
              seen.Part(99), seen.Part(100));
  std::fflush(stdout);
  munmap(memory, sizeof(LoadBoard));
  server.Drop(base);
  return std::max(sent.Part(100), seen.Part(100));
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
  const int machines = argc > 2 ? std::atoi(argv[2]) : 50;
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-load-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  std::filesystem::permissions(folder, std::filesystem::perms(0755));
  int most = 0;
  {
    TestServer server(folder + "/server", {"max_connections=150"});
    if (!server.Missing().empty()) {
      std::fprintf(stderr, "%s\n", server.Missing().c_str());
      return 1;
    }
    std::printf("%d machines, %d s each, times: median, 99 of 100, most\n", machines, seconds);
    std::printf(
        "| Pace | Rows | Store to server | Seen | Server to sight |\n|---|---|---|---|---|\n");
    bool below = true;
    for (const int pace : kPaces) {
      below = Run(folder, server, machines, pace, seconds) < 100 && below;
      if (below) most = pace;
    }
  }
  std::printf("every answer came within 100 ms up to %d times a station's pace\n", most);
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return 0;
}
