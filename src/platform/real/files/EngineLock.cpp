#include "platform/real/files/EngineLock.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace zemo {

namespace fs = std::filesystem;

namespace {

constexpr const char* kEngineLockName = "Engine.Lock";

// The text of the file: the process, and in a line below its station.
struct Holder {
  std::string process, station;
};

void Write(int file, const Holder& holder) {
  const std::string text =
      holder.process.empty() ? "" : holder.process + "\n" + holder.station + "\n";
  // What a full disk does not take is missing in another program's refusal, and nowhere else.
  if (ftruncate(file, 0) != 0 || pwrite(file, text.data(), text.size(), 0) < 0) return;
}

Holder Read(int file) {
  std::array<char, 5000> bytes{};
  const ssize_t count = pread(file, bytes.data(), bytes.size(), 0);
  std::istringstream text(std::string(bytes.data(), static_cast<size_t>(count > 0 ? count : 0)));
  Holder holder;
  std::getline(text, holder.process);
  std::getline(text, holder.station);
  return holder;
}

// Of the open file and not of the process: no other descriptor that is closed loses it.
bool IsHeldByAnother(int file) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;  // from 0 to the end: all of the file
  return fcntl(file, F_OFD_SETLK, &lock) != 0 && (errno == EAGAIN || errno == EACCES);
}

std::string WhoHas(const Holder& holder) {
  if (holder.process.empty()) return "another program";
  return "process " + holder.process + " with the station " + holder.station;
}

}  // namespace

EngineLock::EngineLock(const std::string& machineFolder, const std::string& station) {
  std::error_code error;
  fs::create_directories(machineFolder, error);
  const fs::path path = fs::path(machineFolder) / kEngineLockName;
  file_ = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_CREAT, 0666);
  if (file_ < 0) return;
  if (IsHeldByAnother(file_)) {
    const std::string who = WhoHas(Read(file_));
    ::close(file_);
    throw std::runtime_error("the machine folder " + machineFolder + " is in use by " + who +
                             "; a second engine needs a folder of its own (--machine)");
  }
  Write(file_, {std::to_string(::getpid()), fs::absolute(station, error).string()});
}

EngineLock::~EngineLock() {
  if (file_ < 0) return;
  Write(file_, {});
  ::close(file_);
}

}  // namespace zemo
