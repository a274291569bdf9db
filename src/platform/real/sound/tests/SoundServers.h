// Sound servers of the tests' own: each in a folder of its own, reached by nobody else, with sinks
// that play into nothing and recorders at their monitors; all of it ends with the test.
#pragma once

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/real/sound/tests/SoundTestSupport.h"

namespace zemo::testing {

// A program with all that it starts, ended with it.
class ServerProcess {
 public:
  // `words`: the program and its arguments; what it writes goes to the file.
  ServerProcess(const std::vector<std::string>& words, const std::string& output) {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    process_ = fork();
    if (process_ != 0) return;
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, 0);
    dup2(file, 1);
    dup2(nothing, 2);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  ~ServerProcess() { End(SIGTERM); }
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  void Send(int signal) const { kill(-process_, signal); }
  void End(int signal) {
    if (process_ <= 0) return;
    kill(-process_, signal);
    if (!Within(5000, [this] { return waitpid(process_, nullptr, WNOHANG) != 0; })) {
      kill(-process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
    kill(-process_, SIGKILL);  // what it left behind
    process_ = -1;
  }

 private:
  pid_t process_ = -1;
};

enum class ServerKind { kPulseAudio, kPipeWire };

inline void PrintTo(ServerKind kind, std::ostream* out) {
  *out << (kind == ServerKind::kPulseAudio ? "PulseAudio" : "PipeWire");
}

// Programs that ask for a sound server find this one, and no other, while it lives.
class SoundServer {
 public:
  explicit SoundServer(ServerKind kind) : kind_(kind) {
    for (const char* name : {"run", "home"}) mkdir(folder_.Path(name).c_str(), 0700);
    setenv("HOME", folder_.Path("home").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder_.Path("run").c_str(), 1);
    setenv("PULSE_RUNTIME_PATH", folder_.Path("run").c_str(), 1);
    setenv("PULSE_SERVER", ("unix:" + folder_.Path("run/native")).c_str(), 1);
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "DBUS_SESSION_BUS_ADDRESS",
                             "PULSE_SINK", "PULSE_COOKIE", "PIPEWIRE_REMOTE", "DISPLAY"})
      unsetenv(name);
    LeaveOutBluetooth();
  }

  // Empty when it answers, else why it cannot run here.
  std::string Start() {
    if (kind_ == ServerKind::kPulseAudio) {
      process_ = std::make_unique<ServerProcess>(
          std::vector<std::string>{
              "pulseaudio", "--daemonize=no", "-n", "--exit-idle-time=-1", "--log-target=null",
              "-L", "module-native-protocol-unix socket=" + folder_.Path("run/native")},
          "/dev/null");
    } else {
      process_ = std::make_unique<ServerProcess>(
          std::vector<std::string>{"dbus-run-session", "--", "sh", "-c",
                                   "pipewire & sleep 0.2; wireplumber & "
                                   "PULSE_RUNTIME_PATH=$XDG_RUNTIME_DIR exec pipewire-pulse"},
          "/dev/null");
    }
    if (Within(10000, [this] { return Order("info"); })) return "";
    return kind_ == ServerKind::kPulseAudio ? "pulseaudio does not run here"
                                            : "pipewire-pulse does not run here";
  }
  void Kill() { process_->End(SIGKILL); }
  void Halt() { process_->Send(SIGSTOP); }  // as a machine that gives it no time
  void GoOn() { process_->Send(SIGCONT); }

  // One order of pactl; true when it was done.
  static bool Order(const std::string& words) {
    return std::system(("pactl " + words + " >/dev/null 2>&1").c_str()) == 0;
  }
  // The session manager of PipeWire refuses it until it has taken up its work.
  static bool MakeDefault(const std::string& sink) {
    return Within(5000, [&] { return Order("set-default-sink " + sink); });
  }
  // Its answer, without the line's end.
  static std::string Answer(const std::string& words) {
    FILE* pipe = popen(("pactl " + words + " 2>/dev/null").c_str(), "r");
    std::string text;
    for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) text += static_cast<char>(c);
    pclose(pipe);
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
  }
  // A sink that plays into nothing; what `UnloadSink` takes.
  static std::string LoadSink(const std::string& name) {
    return Answer("load-module module-null-sink sink_name=" + name +
                  " rate=44100 sink_properties=device.description=Sink_" + name);
  }
  static bool UnloadSink(const std::string& module) { return Order("unload-module " + module); }

  std::string Path(const std::string& name) const { return folder_.Path(name); }

 private:
  // PipeWire's session manager ends at once where its part for Bluetooth finds no logind, as in a
  // bare container.
  void LeaveOutBluetooth() const {
    const std::string folder = folder_.Path("home/.config/wireplumber/bluetooth.lua.d");
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/80-none.lua") << "bluez_monitor.enabled = false\n";
  }

  ServerKind kind_;
  TestFolder folder_;
  std::unique_ptr<ServerProcess> process_;
};

// Records a sink's monitor from its making on: 44.1 kHz, the left channel of it to be looked at.
class SinkRecorder {
 public:
  // A patient recorder lets the server work seconds ahead, an eager one some milliseconds.
  SinkRecorder(const std::string& sink, const std::string& path, bool eager) : path_(path) {
    std::vector<std::string> words{"parec",          "-d",           sink + ".monitor", "--raw",
                                   "--format=s16le", "--rate=44100", "--channels=2"};
    if (eager) words.push_back("--latency-msec=20");
    process_ = std::make_unique<ServerProcess>(words, path);
    begin_ = std::chrono::steady_clock::now();
  }
  void End() { process_->End(SIGTERM); }
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  }

  std::vector<int16_t> Left() const {
    std::ifstream file(path_, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::vector<int16_t> left;
    for (size_t i = 0; i + 3 < bytes.size(); i += 4)
      left.push_back(static_cast<int16_t>(static_cast<uint8_t>(bytes[i]) |
                                          static_cast<uint8_t>(bytes[i + 1]) << 8));
    return left;
  }
  // Whether anything sounds in what was recorded behind so many frames.
  bool SoundsBehind(size_t frames) const {
    const std::vector<int16_t> left = Left();
    return std::any_of(left.begin() + static_cast<long>(std::min(frames, left.size())), left.end(),
                       [](int16_t x) { return std::abs(x) > 100; });
  }

 private:
  std::string path_;
  std::unique_ptr<ServerProcess> process_;
  std::chrono::steady_clock::time_point begin_;
};

// What is to be heard in a recording of a steady tone. Times in seconds.
struct Heard {
  double first = -1, last = -1;  // sound; -1: none
  double longestGap = 0;         // between them
  int turns = 0;                 // of the tone, between them
  int peak = 0;                  // the highest sample
  int jump = 0;                  // the largest step between two samples
};

inline Heard HeardIn(const std::vector<int16_t>& left) {
  constexpr int kSilent = 100;
  Heard heard;
  int lastSound = -1, sign = -1;
  for (int i = 0; i < static_cast<int>(left.size()); ++i) {
    const int x = left[static_cast<size_t>(i)];
    heard.peak = std::max(heard.peak, std::abs(x));
    if (i > 0) heard.jump = std::max(heard.jump, std::abs(x - left[static_cast<size_t>(i) - 1]));
    if (std::abs(x) <= kSilent) continue;
    if (lastSound < 0) heard.first = static_cast<double>(i) / kSampleRate;
    if (lastSound >= 0)
      heard.longestGap =
          std::max(heard.longestGap, static_cast<double>(i - lastSound) / kSampleRate);
    if (x > 0 && sign < 0) ++heard.turns;
    sign = x > 0 ? 1 : -1;
    lastSound = i;
  }
  if (lastSound >= 0) heard.last = static_cast<double>(lastSound) / kSampleRate;
  return heard;
}

}  // namespace zemo::testing
