// Figures of a long run that benchmarks share: memory, processor time, counts by their names.
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace zemo::bench {

inline double ResidentMb() {
  long pages = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / (1 << 20);
}

inline double ProcessorSeconds(int who) {
  rusage used{};
  getrusage(who, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

// What a clock of the system shows; 0 where it cannot be asked.
inline double SecondsOn(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// Of this thread's own time: what else the machine is at has no part in it.
inline double WorkedMs() {
  return 1e3 * SecondsOn(CLOCK_THREAD_CPUTIME_ID);
}

// What `work` takes of it.
template <typename Work>
double WorkedMsOf(const Work& work) {
  const double begin = WorkedMs();
  work();
  return WorkedMs() - begin;
}

inline void TellMemory(const std::vector<double>& mb) {
  if (mb.empty()) return;
  std::printf("  resident memory, MB             ");
  for (const double value : mb) std::printf(" %.1f", value);
  std::printf("\n  of these first, last, most       %8.1f, %.1f, %.1f MB\n", mb.front(), mb.back(),
              *std::max_element(mb.begin(), mb.end()));
}

inline void TellCounts(const char* what, const std::map<std::string, int>& counts) {
  int all = 0;
  for (const auto& [text, count] : counts) all += count;
  std::printf("  %-32s %8d\n", what, all);
  for (const auto& [text, count] : counts) std::printf("    %d x %s\n", count, text.c_str());
}

}  // namespace zemo::bench
