// Who looks after the program from outside: begins it with the machine, and anew where it has ended
// or hangs.
#pragma once

namespace zemo {

// Never waits and never throws: what cannot be told now is told at one of the next turns. Thread:
// the logic's.
class ServiceManager {
 public:
  virtual ~ServiceManager() = default;
  virtual void Ready() = 0;  // the engine stands
  // The tick turns. Where it has not for longer than the manager allows, he ends the program.
  virtual void Alive() = 0;
  virtual void Stopping() = 0;  // it was told to end, and may take its time
};

}  // namespace zemo
