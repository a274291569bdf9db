#include "platform/real/desktop/ScreenlessDesktop.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace zemo {

namespace {
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; },
      ' ');
  return text;
}
}  // namespace

Answer ScreenlessMessageBoxes::Show(const std::string& title, const std::string& text,
                                    Buttons buttons, Icon) {
  const std::string line = OneLine(title.empty() ? text : title + ": " + text);
  std::fprintf(stderr, "zemoradio: message: %s\n", line.c_str());
  return SafeAnswer(buttons);
}

RealSystem::RealSystem(std::vector<std::string> shutdown) : shutdown_(std::move(shutdown)) {}

void RealSystem::Shutdown() {
  std::vector<char*> arguments;
  for (std::string& word : shutdown_) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const std::string what = "the machine cannot be shut down: ";
  // The command must be open to the signals that this program may hold back from itself.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t child = 0;
  const int error =
      posix_spawnp(&child, arguments[0], nullptr, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  if (error != 0) throw std::runtime_error(what + shutdown_[0] + ": " + std::strerror(error));
  int status = 0;
  while (waitpid(child, &status, 0) < 0)
    if (errno != EINTR) throw std::runtime_error(what + std::strerror(errno));
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error(what + shutdown_[0] + " was refused");
}

void RealSystem::SetDate(const LocalDateTime& moment) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);  // the time of day stays
  local.tm_year = moment.year - 1900;
  local.tm_mon = moment.month - 1;
  local.tm_mday = moment.day;
  local.tm_isdst = -1;
  now.tv_sec = mktime(&local);
  if (now.tv_sec == static_cast<time_t>(-1) || clock_settime(CLOCK_REALTIME, &now) != 0)
    throw std::runtime_error(std::string("the date cannot be set: ") + std::strerror(errno));
}

bool RealSystem::Run(const std::string& program, const std::string& argument) {
  QStringList arguments;
  if (!argument.empty()) arguments << QString::fromStdString(argument);
  return QProcess::startDetached(QString::fromStdString(program), arguments);
}

bool RealSystem::RunMixer() {
  const auto is = [](const char* name) { return !QStandardPaths::findExecutable(name).isEmpty(); };
  if (is("pavucontrol")) return QProcess::startDetached("pavucontrol", {});
  return is("alsamixer") && is("x-terminal-emulator") &&
         QProcess::startDetached("x-terminal-emulator", {"-e", "alsamixer"});
}

}  // namespace zemo
