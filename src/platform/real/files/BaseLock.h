// Who works on a station's base: a lock on a file beside it, which every program of ours on every
// machine holds, and a look at the open files of this machine, where other tools are seen as well.
#pragma once

#include <string>

#include "platform/BaseUse.h"

namespace zemo {

// Shares the base from its making on. The lock is the system's and ends with the process; the empty
// file "Triskin.LDB" that carries it stays in the folder. Thread: one.
class BaseLock : public BaseUse {
 public:
  enum class Kind {
    kProgram,  // on air, or at work on the base: makes the file, and looks at the machine
    kGuest,    // beside a program: takes the lock where its file stands, and looks at nothing
  };
  static constexpr int kWaitMs = 10000;  // longer than any base takes to be copied and renamed

  // `folder` is the station's. Waits for whoever has the base alone, at most `waitMs`; then it goes
  // on without the lock, since the air must begin. Throws nothing.
  explicit BaseLock(const std::string& folder, Kind kind = Kind::kProgram, int waitMs = kWaitMs);
  ~BaseLock() override;
  BaseLock(const BaseLock&) = delete;

  std::string TakeAlone(const std::string& basePath) override;
  void Share() override;
  std::string OtherUser(const std::string& path) const override;

 private:
  bool Lock(short type) const;

  Kind kind_;
  std::string path_;
  int file_ = -1;   // -1: none could be made, or none is needed
  int reason_ = 0;  // why
};

}  // namespace zemo
