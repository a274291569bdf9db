// The sound inputs and outputs of the machine by name, asked for without waiting for them.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zemo {

// Thread: the logic's.
class SoundDeviceList {
 public:
  struct Device {
    std::string name;  // for people
    std::string key;   // what it is known again by when others come and go
  };
  struct Devices {
    std::vector<Device> inputs, outputs;  // by their numbers, from 0
  };

  virtual ~SoundDeviceList() = default;
  // The answer comes from the event loop, some seconds later at most; a question asked meanwhile
  // takes the place of the one before.
  virtual void Ask(std::function<void(const Devices&)> answer) = 0;
  virtual void Forget() = 0;  // the answer that is on its way is not wanted any more
};

}  // namespace zemo
