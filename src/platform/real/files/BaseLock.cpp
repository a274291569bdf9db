#include "platform/real/files/BaseLock.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

#include "platform/real/files/NoCaseNames.h"

namespace zemo {

namespace fs = std::filesystem;

namespace {

constexpr const char* kBaseLockName = "Triskin.LDB";

bool IsNumber(const std::string& name) {
  return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

// Processes of other users hide their files; they are left out.
bool HasOpen(const fs::path& process, const std::string& file) {
  std::error_code failed;
  for (fs::directory_iterator entry(process / "fd", failed), end; !failed && entry != end;
       entry.increment(failed)) {
    std::error_code gone;
    if (fs::read_symlink(entry->path(), gone) == file && !gone) return true;
  }
  return false;
}

std::string NameOf(const fs::path& process) {
  std::string name;
  std::ifstream comm(process / "comm");
  std::getline(comm, name);
  return name.empty() ? "a program" : name;
}

}  // namespace

BaseLock::BaseLock(const std::string& folder, Kind kind, int waitMs) : kind_(kind) {
  const std::string existing = EntryNamed(folder, kBaseLockName);
  path_ = (fs::path(folder) / (existing.empty() ? kBaseLockName : existing)).string();
  const int create = kind == Kind::kProgram ? O_CREAT : 0;
  file_ = ::open(path_.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | create, 0666);
  if (file_ < 0) reason_ = errno;
  // Who may not write there can still be seen by those who may.
  if (file_ < 0) file_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  constexpr int kStepMs = 20;
  for (int waited = 0; !Lock(F_RDLCK) && waited < waitMs; waited += kStepMs)
    std::this_thread::sleep_for(std::chrono::milliseconds(kStepMs));
}

BaseLock::~BaseLock() {
  if (file_ >= 0) ::close(file_);
}

// A lock of the open file and not of the process: closing another descriptor of the file does not
// lose it, and a lock that is refused leaves the one that was held.
bool BaseLock::Lock(short type) const {
  if (file_ < 0) return true;
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;  // from 0 to the end: all of the file
  if (fcntl(file_, F_OFD_SETLK, &lock) == 0) return true;
  return type == F_RDLCK && errno != EAGAIN &&
         errno != EACCES;  // no locks here: nothing to wait for
}

std::string BaseLock::TakeAlone(const std::string& basePath) {
  if (kind_ == Kind::kGuest && file_ < 0) return {};
  if (reason_ != 0)
    return "nobody can be kept off it: " + path_ + ": " + std::system_category().message(reason_);
  if (!Lock(F_WRLCK)) {
    const int reason = errno;
    if (reason == EAGAIN || reason == EACCES)
      return basePath + " is open in another program of the station";
    return "nobody can be kept off it: " + path_ + ": " + std::system_category().message(reason);
  }
  std::string other = OtherUser(basePath);
  if (!other.empty()) Share();
  return other;
}

void BaseLock::Share() {
  Lock(F_RDLCK);
}

std::string BaseLock::OtherUser(const std::string& path) const {
  if (kind_ == Kind::kGuest) return {};
  std::error_code failed;
  const std::string file = fs::canonical(path, failed).string();
  if (failed) return {};
  const std::string own = std::to_string(::getpid());
  for (fs::directory_iterator entry("/proc", failed), end; !failed && entry != end;
       entry.increment(failed)) {
    const std::string process = entry->path().filename().string();
    if (IsNumber(process) && process != own && HasOpen(entry->path(), file))
      return path + " is open in another program (" + NameOf(entry->path()) + ", process " +
             process + ")";
  }
  return {};
}

}  // namespace zemo
