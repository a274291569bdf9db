// The whole program on an hour of 192 kbit/s MP3: render speed against plain decoding of the same
// files with libmpg123 in one thread, the simulation of that hour and of a whole day (target: under
// 10 s), and of `run` on the null output the time to the first sound, the processor time a second
// of air and the resident memory. Usage: ProgramBench PROGRAM [SECONDS_OF_RUN]
#include <mpg123.h>
#include <poll.h>
#include <signal.h>
#include <sndfile.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kTitles = 20;
constexpr int kSeconds = 180;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

double ChildCpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void MakeTitle(const std::string& path, double hertz) {
  SF_INFO info{};
  info.samplerate = 44100;
  info.channels = 2;
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  int mode = SF_BITRATE_MODE_CONSTANT;
  sf_command(file, SFC_SET_BITRATE_MODE, &mode, sizeof mode);
  double level = (320.0 - 192.0) / (320.0 - 32.0);  // of the bit rates of 44.1 kHz
  sf_command(file, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  std::vector<float> second(44100 * 2);
  unsigned noise = 1;
  for (int s = 0; s < kSeconds; ++s) {
    for (int i = 0; i < 44100; ++i) {
      noise = noise * 1664525U + 1013904223U;
      const double hiss = static_cast<double>(noise >> 8) / (1U << 24) - 0.5;
      const double phase = 2 * std::numbers::pi * hertz * (s * 44100.0 + i) / 44100;
      const double left = 0.3 * std::sin(phase) + 0.2 * std::sin(2.5 * phase) + 0.1 * hiss;
      second[static_cast<size_t>(i) * 2] = static_cast<float>(left);
      second[static_cast<size_t>(i) * 2 + 1] = static_cast<float>(left * 0.7 + 0.05 * hiss);
    }
    sf_writef_float(file, second.data(), 44100);
  }
  sf_close(file);
}

double DecodePlainly(const std::vector<std::string>& files) {
  mpg123_init();
  const auto begin = Clock::now();
  for (const std::string& path : files) {
    mpg123_handle* handle = mpg123_new(nullptr, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT | MPG123_QUIET, 0);
    mpg123_open(handle, path.c_str());
    std::vector<unsigned char> block(65536);
    size_t done = 0;
    int result = MPG123_OK;
    while (result == MPG123_OK || result == MPG123_NEW_FORMAT)
      result = mpg123_read(handle, block.data(), block.size(), &done);
    mpg123_close(handle);
    mpg123_delete(handle);
  }
  return SecondsSince(begin);
}

double Command(const std::string& line) {
  const auto begin = Clock::now();
  if (std::system(line.c_str()) != 0) std::fprintf(stderr, "failed: %s\n", line.c_str());
  return SecondsSince(begin);
}

struct Run {
  double firstSoundMs = 0;
  double cpuMsPerSecond = 0;
  long residentKb = 0;
};

long ResidentKb(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmRSS:", 0) == 0) return std::atol(line.c_str() + 6);
  return 0;
}

double CpuSeconds(pid_t process) {
  std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(stat, line);
  const size_t behindName = line.rfind(')');
  long user = 0;
  long system = 0;
  std::sscanf(line.c_str() + behindName + 2, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %ld %ld",
              &user, &system);
  return static_cast<double>(user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// From the fork to the first line, which tells the first element; then that many seconds of air.
Run Air(const std::string& program, const std::string& folder, int seconds) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  const auto begin = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    execl(program.c_str(), "zemoradio", "run", "--station", (folder + "/station").c_str(),
          "--machine", (folder + "/machine").c_str(), "--output", "null", nullptr);
    _exit(127);
  }
  close(ends[1]);
  pollfd ready{ends[0], POLLIN, 0};
  poll(&ready, 1, 10000);
  Run run;
  run.firstSoundMs = 1000 * SecondsSince(begin);
  poll(nullptr, 0, 5000);  // the ring is full and the decoders are ahead
  const double before = CpuSeconds(child);
  const auto from = Clock::now();
  poll(nullptr, 0, seconds * 1000);
  run.cpuMsPerSecond = 1000 * (CpuSeconds(child) - before) / SecondsSince(from);
  run.residentKb = ResidentKb(child);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ends[0]);
  return run;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s PROGRAM [SECONDS_OF_RUN]\n", argv[0]);
    return 2;
  }
  const std::string program = argv[1];
  const int airSeconds = argc > 2 ? std::atoi(argv[2]) : 60;
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-bench-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  std::filesystem::create_directories(folder + "/station");
  std::vector<std::string> files;
  std::ofstream make(folder + "/make");
  std::ofstream play(folder + "/play");
  for (int i = 1; i <= kTitles; ++i) {
    files.push_back(folder + "/title" + std::to_string(i) + ".mp3");
    MakeTitle(files.back(), 110.0 + 13 * i);
    make << "+0 sql INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, "
            "NBPASSJOUR, ECARTMINUTES, "
            "ECARTJOURS, ECARTARTISTE, POINTSORTIE, TRANCHE01, TRANCHE02, TRANCHE03, TRANCHE04, "
            "TRANCHE05, TRANCHE06, "
            "TRANCHE07) VALUES('"
         << files.back() << "', 180000, 'ARTIST " << i
         << "', 'T', 'POP', 'NATIONAL', 9, 0, 0, 0, 1";
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
  const std::string station = " --station " + folder + "/station";
  const std::string hour =
      " --from '2026-11-21 10:00:30' --for 59m --script " + folder + "/play --trace /dev/null";
  Command(program + " simulate" + station + " --in-place --no-start --for 0 --script " + folder +
          "/make --trace /dev/null");

  const double plain = DecodePlainly(files);
  const double simulated = Command(program + " simulate" + station + hour);
  const double day = Command(program + " simulate" + station +
                             " --from '2026-11-21 00:00:00' --for 24h --trace /dev/null");
  const double cpuBefore = ChildCpuSeconds();
  const double rendered =
      Command(program + " render" + station + hour + " --audio " + folder + "/hour.wav");
  const double renderCpu = ChildCpuSeconds() - cpuBefore;
  const Run run = Air(program, folder, airSeconds);
  std::printf("plain decoding of an hour        %8.2f s\n", plain);
  std::printf(
      "render of 59 minutes             %8.2f s, %.2f s of processor, %.2f of plain decoding's "
      "speed\n",
      rendered, renderCpu, plain * 59 / 60 / renderCpu);
  std::printf("simulation of 59 minutes         %8.2f s\n", simulated);
  std::printf("simulation of a day              %8.2f s\n", day);
  std::printf("first sound after process start  %8.0f ms\n", run.firstSoundMs);
  std::printf("processor a second of air        %8.2f ms\n", run.cpuMsPerSecond);
  std::printf("resident memory on air           %8.1f MB\n",
              static_cast<double>(run.residentKb) / 1024);
  std::filesystem::remove_all(folder);
  return 0;
}
