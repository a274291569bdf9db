// One engine for a machine's folder: two would share the flag of what was on air, the devices and
// the rows that wait for a base.
#pragma once

#include <string>

namespace zemo {

// Has the folder from its making on. The lock is the system's and ends with the process, however
// that ends; the file "Engine.Lock" that carries it stays in the folder, and tells who has it.
// Thread: one.
class EngineLock {
 public:
  // Makes the folder where it is missing, and waits for nothing. Throws std::runtime_error with
  // one line where another program has it. A folder that cannot be written or is on a file system
  // without locks is had without: the air must begin.
  EngineLock(const std::string& machineFolder, const std::string& station);
  ~EngineLock();
  EngineLock(const EngineLock&) = delete;

 private:
  int file_ = -1;  // -1: none could be made
};

}  // namespace zemo
