// The whole program on an hour of 192 kbit/s MP3, beside the least that the same sound can cost:
// the files decoded by libmpg123 and mixed with straight crossfades, in one thread, in this process
// or a child of it. Told are, for each program and as a ratio to that least:
//
//   render     59 minutes with crossfades of 5 s into a file: processor and wall time
//   air        `run` on the null output: processor time a second of air, times a second that its
//              threads woke, resident memory; the least decodes and mixes 1024 frames a time
//   crossfade  the same with a crossfade of 2 s every 15 s
//
// and of each program the simulation of that hour, and
//
//   start      from the process to the first element: with the 20 titles, and with 100,000 cards
//   and
//              200,000 rows of report, as a machine knows them that was on air before
//   day        processor time of a day simulated: the demo, and the large station
//
// The programs take turns in rendering and starting, so many rounds of which the fastest one
// counts; on air they all are at the same time, so that what else the machine does is everybody's.
//
// Usage: ProgramBench [--seconds N] [--rounds N] [--folder KEPT] PROGRAM...
#include <dirent.h>
#include <mpg123.h>
#include <poll.h>
#include <signal.h>
#include <sndfile.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

#include "Figures.h"
#include "ShortStation.h"
#include "platform/sound/SampleFormat.h"

namespace {

using zemo::bench::ProcessorSeconds;
using zemo::bench::SecondsOn;
using Clock = std::chrono::steady_clock;
constexpr int kRate = 44100;
constexpr int kTitles = 20;
constexpr int kFadeSeconds = 5;  // of the render

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

void MakeTitle(const std::string& path, double hertz, int seconds) {
  SF_INFO info{};
  info.samplerate = kRate;
  info.channels = 2;
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  int mode = SF_BITRATE_MODE_CONSTANT;
  sf_command(file, SFC_SET_BITRATE_MODE, &mode, sizeof mode);
  double level = (320.0 - 192.0) / (320.0 - 32.0);  // of the bit rates of 44.1 kHz
  sf_command(file, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  std::vector<float> second(kRate * 2);
  unsigned noise = 1;
  for (int s = 0; s < seconds; ++s) {
    for (int i = 0; i < kRate; ++i) {
      noise = noise * 1664525U + 1013904223U;
      const double hiss = static_cast<double>(noise >> 8) / (1U << 24) - 0.5;
      const double phase = 2 * std::numbers::pi * hertz * (s * double{kRate} + i) / kRate;
      const double left = 0.3 * std::sin(phase) + 0.2 * std::sin(2.5 * phase) + 0.1 * hiss;
      second[static_cast<size_t>(i) * 2] = static_cast<float>(left);
      second[static_cast<size_t>(i) * 2 + 1] = static_cast<float>(left * 0.7 + 0.05 * hiss);
    }
    sf_writef_float(file, second.data(), kRate);
  }
  sf_close(file);
}

// --- The least that it costs ---

// Files one after the other, each into the next over so many seconds.
class BareAir {
 public:
  BareAir(std::vector<std::string> files, int seconds, int fadeSeconds)
      : files_(std::move(files)),
        length_(int64_t{kRate} * seconds),
        fade_(int64_t{kRate} * fadeSeconds) {
    mpg123_init();
    now_ = Open(0);
  }

  // False at the end of the last file.
  bool Mix(int16_t* out, int frames) {
    std::vector<float>& sum = sum_;
    if (next_ == nullptr && at_ + frames > length_ - fade_) next_ = Open(++file_);
    if (now_ == nullptr) return false;
    Decode(now_.get(), sum, frames);
    if (next_ != nullptr) {
      Decode(next_.get(), other_, frames);
      for (int i = 0; i < frames; ++i) {
        const float part =
            std::clamp(static_cast<float>(at_ + i - (length_ - fade_)) / static_cast<float>(fade_),
                       0.0F, 1.0F);
        for (size_t s = 2 * static_cast<size_t>(i); s < 2 * static_cast<size_t>(i) + 2; ++s)
          sum[s] = sum[s] * (1.0F - part) + other_[s] * part;
      }
    }
    at_ += frames;
    if (at_ >= length_) {
      now_ = std::move(next_);
      at_ -= length_ - fade_;
    }
    zemo::FloatToInt16(sum.data(), out, 2 * frames);
    return true;
  }

 private:
  struct Closer {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
  };
  using Decoder = std::unique_ptr<mpg123_handle, Closer>;

  Decoder Open(size_t file) {
    if (file >= files_.size()) return nullptr;
    Decoder decoder(mpg123_new(nullptr, nullptr));
    mpg123_param(decoder.get(), MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT | MPG123_QUIET, 0);
    mpg123_open(decoder.get(), files_[file].c_str());
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    mpg123_getformat(decoder.get(), &rate, &channels, &encoding);
    return decoder;
  }
  static void Decode(mpg123_handle* decoder, std::vector<float>& to, int frames) {
    to.resize(2 * static_cast<size_t>(frames));
    size_t done = 0;
    const size_t wanted = to.size() * sizeof(float);
    mpg123_read(decoder, reinterpret_cast<unsigned char*>(to.data()), wanted, &done);
    std::fill(to.begin() + static_cast<long>(done / sizeof(float)), to.end(), 0.0F);
  }

  std::vector<std::string> files_;
  int64_t length_, fade_;  // frames
  int64_t at_ = 0;         // of the file that sounds
  size_t file_ = 0;
  Decoder now_, next_;
  std::vector<float> sum_, other_;
};

struct Cost {
  double wall = 1e9;
  double cpu = 1e9;
  void Least(const Cost& other) {
    if (other.cpu < cpu) cpu = other.cpu;
    if (other.wall < wall) wall = other.wall;
  }
};

Cost RenderBarely(const std::vector<std::string>& files, int seconds, const std::string& path) {
  const auto begin = Clock::now();
  const double before = SecondsOn(CLOCK_PROCESS_CPUTIME_ID);
  std::FILE* out = std::fopen(path.c_str(), "wb");
  BareAir air(files, seconds, kFadeSeconds);
  constexpr int kFrames = 4608;
  std::vector<int16_t> block(2 * kFrames);
  while (air.Mix(block.data(), kFrames)) std::fwrite(block.data(), 4, kFrames, out);
  std::fclose(out);
  return {SecondsSince(begin), SecondsOn(CLOCK_PROCESS_CPUTIME_ID) - before};
}

[[noreturn]] void AirBarely(const std::vector<std::string>& files, int seconds, int fadeSeconds) {
  constexpr int kFrames = 1024;
  BareAir air(files, seconds, fadeSeconds);
  std::vector<int16_t> block(2 * kFrames);
  auto next = Clock::now();
  while (air.Mix(block.data(), kFrames)) {
    next += std::chrono::nanoseconds(int64_t{1'000'000'000} * kFrames / kRate);
    std::this_thread::sleep_until(next);
  }
  _exit(0);
}

// --- The programs ---

double Command(const std::string& line) {
  const auto begin = Clock::now();
  if (std::system(line.c_str()) != 0) std::fprintf(stderr, "failed: %s\n", line.c_str());
  return SecondsSince(begin);
}

long ResidentKb(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmRSS:", 0) == 0) return std::atol(line.c_str() + 6);
  return 0;
}

double CpuSeconds(pid_t process) {
  clockid_t clock{};
  return clock_getcpuclockid(process, &clock) == 0 ? SecondsOn(clock) : 0;
}

// How often each thread of a process has gone to sleep, by its number; and its name.
std::map<int, std::pair<long, std::string>> Sleeps(pid_t process) {
  std::map<int, std::pair<long, std::string>> sleeps;
  const std::string folder = "/proc/" + std::to_string(process) + "/task";
  std::error_code gone;
  for (const auto& thread : std::filesystem::directory_iterator(folder, gone)) {
    std::ifstream status(thread.path() / "status");
    auto& of = sleeps[std::atoi(thread.path().filename().c_str())];
    for (std::string line; std::getline(status, line);) {
      if (line.rfind("Name:", 0) == 0) of.second = line.substr(6);
      if (line.rfind("voluntary_ctxt_switches:", 0) == 0) of.first = std::atol(line.c_str() + 24);
    }
  }
  return sleeps;
}

// A process on air: the least, or a program.
struct Air {
  std::string name;
  pid_t process = 0;
  double firstSoundMs = 0;
  double cpuBefore = 0;
  std::map<int, std::pair<long, std::string>> sleepsBefore;
  double cpuMs = 0;  // a second of air
  double wakes = 0;  // a second
  std::vector<std::pair<double, std::string>> threads;
  double residentMb = 0;
};

// From the fork to the first line, which tells the first element.
void StartProgram(Air& air, const std::string& folder) {
  int ends[2];
  if (pipe(ends) != 0) return;
  const auto begin = Clock::now();
  air.process = fork();
  if (air.process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(ends[1], STDOUT_FILENO);
    execl(air.name.c_str(), "zemoradio", "run", "--station", (folder + "/station").c_str(),
          "--machine", (folder + "/machine").c_str(), "--output", "null", nullptr);
    _exit(127);
  }
  close(ends[1]);
  pollfd ready{ends[0], POLLIN, 0};
  poll(&ready, 1, 10000);
  air.firstSoundMs = 1000 * SecondsSince(begin);
  std::thread([end = ends[0]] {  // its lines go nowhere
    char line[4096];
    while (read(end, line, sizeof line) > 0) continue;
    close(end);
  })
      .detach();
}

void End(const Air& air) {
  kill(air.process, SIGKILL);
  waitpid(air.process, nullptr, 0);
}

void NoteBefore(Air& air) {
  air.cpuBefore = CpuSeconds(air.process);
  air.sleepsBefore = Sleeps(air.process);
}

void NoteAfter(Air& air, double seconds) {
  air.cpuMs = 1000 * (CpuSeconds(air.process) - air.cpuBefore) / seconds;
  for (const auto& [thread, sleeps] : Sleeps(air.process)) {
    const double woke =
        static_cast<double>(sleeps.first - air.sleepsBefore[thread].first) / seconds;
    air.wakes += woke;
    air.threads.emplace_back(woke, sleeps.second);
  }
  std::sort(air.threads.rbegin(), air.threads.rend());
  air.residentMb = static_cast<double>(ResidentKb(air.process)) / 1024;
}

// --- A station of so many titles ---

struct Station {
  std::string folder;
  std::vector<std::string> files;
  int seconds;      // of a title
  int fadeSeconds;  // of them, before its end, in which the next one begins
};

void MakeStation(const std::string& program, Station& station) {
  const std::string& folder = station.folder;
  const bool there = std::filesystem::exists(folder + "/made");
  std::filesystem::create_directories(folder + "/station");
  std::ofstream make(folder + "/make");
  std::ofstream play(folder + "/play");
  for (int i = 1; i <= kTitles; ++i) {
    station.files.push_back(folder + "/title" + std::to_string(i) + ".mp3");
    if (!there) MakeTitle(station.files.back(), 110.0 + 13 * i, station.seconds);
    make << "+0 sql INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, "
            "NBPASSJOUR, ECARTMINUTES, "
            "ECARTJOURS, ECARTARTISTE, POINTSORTIE, TRANCHE01, TRANCHE02, TRANCHE03, TRANCHE04, "
            "TRANCHE05, TRANCHE06, "
            "TRANCHE07) VALUES('"
         << station.files.back() << "', " << station.seconds * 1000 << ", 'ARTIST " << i
         << "', 'T', 'POP', 'NATIONAL', 9999, 0, 0, 0, " << station.fadeSeconds * 1000;
    for (int day = 0; day < 7; ++day) make << ", '" << std::string(24, '1') << "'";
    make << ")\n";
    play << "+0 insert music " << i << "\n";
  }
  for (int day = 1; day <= 7; ++day) {
    make << "+0 sql INSERT INTO Models(JOUR, GENRE";
    for (int h = 0; h < 24; ++h) make << ", TRANCHE" << h / 10 << h % 10;
    make << ") VALUES(" << day << ", 'POP'";
    for (int h = 0; h < 24; ++h) make << ", 100";
    make << ")\n";
  }
  // One variety for the whole hour: a list that is long enough asks for no more music at every
  // tick.
  make << "+0 sql UPDATE Variete SET POURCENT = 100\n";
  make.close();
  play.close();
  if (there) return;
  Command(program + " simulate --station " + folder +
          "/station --in-place --no-start --for 0 --script " + folder + "/make --trace /dev/null");
  std::ofstream made(folder + "/made");
}

void CopyStation(const std::string& from, const std::string& to) {
  std::filesystem::remove_all(to);
  std::filesystem::create_directories(to);
  std::filesystem::copy(from, to + "/station", std::filesystem::copy_options::recursive);
}

std::vector<Air> OnAir(const std::vector<std::string>& programs, const Station& station,
                       int seconds) {
  std::fflush(nullptr);
  std::vector<Air> airs(1 + programs.size());
  airs[0].name = "least";
  airs[0].process = fork();
  if (airs[0].process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    AirBarely(station.files, station.seconds, station.fadeSeconds);
  }
  for (size_t i = 0; i < programs.size(); ++i) {
    airs[i + 1].name = programs[i];
    const std::string copy = station.folder + "/air" + std::to_string(i);
    CopyStation(station.folder + "/station", copy);
    StartProgram(airs[i + 1], copy);
  }
  poll(nullptr, 0, 5000);  // the rings are full and the decoders are ahead
  const auto from = Clock::now();
  for (Air& air : airs) NoteBefore(air);
  poll(nullptr, 0, seconds * 1000);
  for (Air& air : airs) NoteAfter(air, SecondsSince(from));
  for (Air& air : airs) End(air);
  return airs;
}

void TellAir(const char* row, const std::vector<Air>& airs) {
  for (const Air& air : airs) {
    std::printf("%-10s %8.2f ms a second (%.2f), %6.1f wake-ups a second, %5.1f MB", row, air.cpuMs,
                air.cpuMs / airs[0].cpuMs, air.wakes, air.residentMb);
    if (air.firstSoundMs > 0) std::printf(", first sound %.0f ms", air.firstSoundMs);
    std::printf("  %s\n", air.name.c_str());
    for (const auto& [woke, thread] : air.threads)
      if (woke >= 0.5) std::printf("             %8.1f a second: %s\n", woke, thread.c_str());
  }
}

void Render(const std::vector<std::string>& programs, const Station& station, int rounds) {
  const std::string hour = " --station " + station.folder +
                           "/station --from '2026-11-21 10:00:30' --for 59m --script " +
                           station.folder + "/play";
  Cost least;
  std::vector<Cost> costs(programs.size());
  for (int round = 0; round < rounds; ++round) {
    least.Least(RenderBarely(station.files, station.seconds, station.folder + "/least.raw"));
    for (size_t i = 0; i < programs.size(); ++i) {
      const double before = ProcessorSeconds(RUSAGE_CHILDREN);
      const double wall = Command(programs[i] + " render" + hour + " --trace " + station.folder +
                                  "/trace" + std::to_string(i) + " --audio " + station.folder +
                                  "/hour" + std::to_string(i) + ".wav");
      costs[i].Least({wall, ProcessorSeconds(RUSAGE_CHILDREN) - before});
    }
  }
  std::printf("render     %8.2f s of processor, %.2f s  least\n", least.cpu, least.wall);
  for (size_t i = 0; i < programs.size(); ++i)
    std::printf("render     %8.2f s of processor (%.2f), %.2f s (%.2f)  %s\n", costs[i].cpu,
                costs[i].cpu / least.cpu, costs[i].wall, costs[i].wall / least.wall,
                programs[i].c_str());
  for (const std::string& program : programs)
    std::printf("simulation of 59 minutes %.2f s  %s\n",
                Command(program + " simulate" + hour + " --trace /dev/null"), program.c_str());
}

// --- Starts and days ---

// A program on air keeps its library for the next start; it has when the file begins with its form.
void RunUntilLibraryIsKept(const std::string& program, const std::string& folder) {
  constexpr int kMostSeconds = 180;
  Air air;
  air.name = program;
  StartProgram(air, folder);
  for (int second = 0; second < kMostSeconds; ++second) {
    std::ifstream kept(folder + "/machine/Library.Dat");
    if (kept.get() == 'Z') break;
    poll(nullptr, 0, 1000);
  }
  End(air);
}

void Start(const char* row, const std::vector<std::string>& programs, const Station& station,
           int rounds, bool knownBefore) {
  std::vector<double> bestMs(programs.size(), 1e9);
  for (size_t i = 0; i < programs.size(); ++i) {
    CopyStation(station.folder + "/station", station.folder + "/start" + std::to_string(i));
    if (knownBefore)
      RunUntilLibraryIsKept(programs[i], station.folder + "/start" + std::to_string(i));
  }
  for (int round = 0; round < rounds; ++round)
    for (size_t i = 0; i < programs.size(); ++i) {
      Air air;
      air.name = programs[i];
      StartProgram(air, station.folder + "/start" + std::to_string(i));
      bestMs[i] = std::min(bestMs[i], air.firstSoundMs);
      End(air);
    }
  for (size_t i = 0; i < programs.size(); ++i)
    std::printf("%-10s %8.0f ms to the first sound  %s\n", row, bestMs[i], programs[i].c_str());
}

void Day(const char* row, const std::vector<std::string>& programs, const std::string& folder,
         int rounds) {
  for (const std::string& program : programs) {
    double least = 1e9;
    for (int round = 0; round < rounds; ++round) {
      const double before = ProcessorSeconds(RUSAGE_CHILDREN);
      Command(program + " simulate --station " + folder +
              " --from '2026-11-21 00:00:00' --for 24h --trace /dev/null");
      least = std::min(least, ProcessorSeconds(RUSAGE_CHILDREN) - before);
    }
    std::printf("%-10s %8.2f s of processor for a day  %s\n", row, least, program.c_str());
  }
}

// Every card in the model, titles of three minutes that share one file.
Station MakeLargeStation(const std::string& folder) {
  Station station{folder, {}, 180, 0};
  if (!std::filesystem::exists(folder + "/made")) {
    zemo::bench::MakeShortStation(folder + "/station", {.cards = 100'000,
                                                        .reportRows = 200'000,
                                                        .sounds = 1,
                                                        .titleMs = 180'000,
                                                        .exitMs = 5000,
                                                        .requestMinutes = 30,
                                                        .allGenres = true});
    std::ofstream made(folder + "/made");
  }
  return station;
}

}  // namespace

int main(int argc, char** argv) {
  int seconds = 60;
  int rounds = 3;
  std::string kept;
  std::vector<std::string> programs;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--seconds" && i + 1 < argc)
      seconds = std::atoi(argv[++i]);
    else if (word == "--rounds" && i + 1 < argc)
      rounds = std::atoi(argv[++i]);
    else if (word == "--folder" && i + 1 < argc)
      kept = argv[++i];
    else
      programs.push_back(word);
  }
  if (programs.empty()) {
    std::fprintf(stderr,
                 "usage: %s [--seconds N] [--rounds N] [--folder KEPT] PROGRAM...\n"
                 "With 0 seconds or rounds what takes them is left out.\n",
                 argv[0]);
    return 2;
  }
  std::string folder = kept;
  if (folder.empty()) {
    folder = (std::filesystem::temp_directory_path() / "zemo-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) return 1;
  }
  std::filesystem::create_directories(folder);
  Station hour{folder + "/hour", {}, 180, kFadeSeconds};
  Station dense{folder + "/dense", {}, 17, 2};
  for (Station* station : {&hour, &dense}) {
    std::filesystem::create_directories(station->folder);
    MakeStation(programs[0], *station);
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  if (rounds > 0) Render(programs, hour, rounds);
  if (seconds > 0) {
    TellAir("air", OnAir(programs, hour, seconds));
    TellAir("crossfade", OnAir(programs, dense, seconds));
  }
  if (rounds > 0) {
    const Station large = MakeLargeStation(folder + "/large");
    const std::string demo = folder + "/demo";
    if (!std::filesystem::exists(demo)) Command(programs[0] + " demo " + demo + " >/dev/null");
    Start("start", programs, hour, rounds, false);
    Start("start 100k", programs, large, rounds, true);
    Day("demo", programs, demo, rounds);
    Day("large", programs, large.folder + "/station", rounds);
  }
  if (kept.empty()) std::filesystem::remove_all(folder);
  return 0;
}
