// A disk of its own that can be filled without harm: a tmpfs, mounted in a mount namespace of this
// process, so that it is gone with the process and nobody else sees it.
#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

namespace zemo::bench {

// Mounts it over `folder`, as root or in a user namespace of its own. Empty when it did, else why
// the system refuses. To be called before there are threads and children.
inline std::string MountSmallDisk(const std::string& folder, int mb) {
  const std::string uid = std::to_string(getuid()), gid = std::to_string(getgid());
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return std::strerror(errno);
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << uid + " " + uid + " 1";
    std::ofstream("/proc/self/gid_map") << gid + " " + gid + " 1";
  }
  const std::string size = "size=" + std::to_string(mb) + "m";
  if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
      mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) != 0)
    return std::strerror(errno);
  return {};
}

}  // namespace zemo::bench
