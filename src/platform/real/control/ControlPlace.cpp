#include "platform/real/control/ControlPlace.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace zemo {

namespace {

constexpr mode_t kOwnerAlone = 0600;
constexpr int kWaitingToBeAccepted = 32;

[[noreturn]] void Fail(const std::string& what, int error) {
  throw ControlError(what + ": " + std::strerror(error));
}

int MakeSocket() {
  return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

// A socket's address has room for little more than a hundred bytes: a longer path goes by way of
// the folder's handle.
sockaddr_un AddressOf(const std::string& path, int folder) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::string name = path;
  if (name.size() >= sizeof address.sun_path)
    name = "/proc/self/fd/" + std::to_string(folder) + "/" + kControlSocketName;
  std::memcpy(address.sun_path, name.c_str(), name.size() + 1);
  return address;
}

}  // namespace

ControlPlace::ControlPlace(std::string folder)
    : folder_(std::move(folder)), handle_(open(folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {
  if (handle_ < 0) Fail("cannot open the machine folder " + folder_, errno);
}

ControlPlace::~ControlPlace() {
  close(handle_);
}

std::string ControlPlace::Path() const {
  return folder_ + "/" + kControlSocketName;
}

void ControlPlace::TakeAwayDead() const {
  struct stat there {};
  if (fstatat(handle_, kControlSocketName, &there, AT_SYMLINK_NOFOLLOW) != 0) return;
  if (!S_ISSOCK(there.st_mode))
    throw ControlError(Path() + " is no socket, so that nobody can be listened to there");
  const int probe = Connect();
  const int error = errno;
  if (probe >= 0) close(probe);
  if (probe >= 0 || error == EAGAIN)
    throw ControlError(Path() + " is another program's, which is listening there");
  unlinkat(handle_, kControlSocketName, 0);
}

// Nobody can connect before it listens, and by then it is the owner's alone.
int ControlPlace::Bind() {
  node_ = 0;
  TakeAwayDead();
  const int made = MakeSocket();
  const sockaddr_un address = AddressOf(Path(), handle_);
  struct stat there {};
  if (made < 0 || bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      fchmodat(handle_, kControlSocketName, kOwnerAlone, 0) != 0 ||
      fstatat(handle_, kControlSocketName, &there, AT_SYMLINK_NOFOLLOW) != 0 ||
      listen(made, kWaitingToBeAccepted) != 0) {
    const int error = errno;
    if (made >= 0) close(made);
    Fail("cannot listen at " + Path(), error);
  }
  device_ = there.st_dev;
  node_ = there.st_ino;
  return made;
}

bool ControlPlace::StandsThere() const {
  struct stat there {};
  return fstatat(handle_, kControlSocketName, &there, AT_SYMLINK_NOFOLLOW) == 0 && node_ != 0 &&
         there.st_ino == node_ && there.st_dev == device_;
}

void ControlPlace::Remove() const {
  if (StandsThere()) unlinkat(handle_, kControlSocketName, 0);
}

int ControlPlace::Connect() const {
  const int made = MakeSocket();
  if (made < 0) return -1;
  const sockaddr_un address = AddressOf(Path(), handle_);
  if (connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return made;
  const int error = errno;
  close(made);
  errno = error;
  return -1;
}

}  // namespace zemo
