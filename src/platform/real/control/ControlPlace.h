// Where the control socket stands: in a folder, under a path of any length, for one program and its
// user alone.
#pragma once

#include <sys/types.h>

#include <stdexcept>
#include <string>

namespace zemo {

inline constexpr const char* kControlSocketName = "Control.Sock";

struct ControlError : std::runtime_error {
  using std::runtime_error::runtime_error;  // one line
};

// A folder with the socket in it. Thread: one.
class ControlPlace {
 public:
  explicit ControlPlace(std::string folder);  // throws ControlError where there is no such folder
  ~ControlPlace();
  ControlPlace(const ControlPlace&) = delete;

  // A listening socket, which is the caller's to close; what a dead program left there is
  // replaced. Throws ControlError where a living one has it, or something else stands there.
  int Bind();
  // What was bound last still stands there.
  bool StandsThere() const;
  // Takes it away, unless something else stands there by now.
  void Remove() const;

  // A connected socket, which is the caller's to close. -1 with errno where nobody listens.
  int Connect() const;

 private:
  std::string Path() const;
  void TakeAwayDead() const;

  std::string folder_;
  int handle_ = -1;  // of the folder
  dev_t device_ = 0;
  ino_t node_ = 0;  // what was bound last; 0: nothing
};

}  // namespace zemo
