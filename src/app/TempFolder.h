// A folder for the length of one run, which leaves nothing behind: not at the end, not after an
// interruption.
#pragma once

#include <string>
#include <thread>

namespace zemo {

// Made before other threads are: it keeps SIGINT, SIGTERM and SIGHUP from the thread that makes it,
// and from those started after it, and waits for them on a thread of its own. Such a signal removes
// the folder and ends the process. Throws std::runtime_error with one line.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  std::string MakeFolder(const std::string& name) const;  // one in it; its path
  void Remove() const;  // at once, for an end of the process that runs no destructor

 private:
  void WaitForSignals() const;

  std::string path_;
  int signals_ = -1;  // signalfd
  int end_ = -1;      // eventfd: the folder goes
  std::thread watcher_;
};

}  // namespace zemo
