// The sound outputs of the machine, as the settings screen offers and tries them.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace zemo {

// A device that refused; what() is one line.
struct DeviceError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Thread: the logic's. All but the question throw DeviceError.
class SettingsDevices {
 public:
  virtual ~SettingsDevices() = default;

  virtual std::vector<std::string> OutputNames() = 0;  // in device order
  // Of the same devices, what each is known again by when others come and go.
  virtual std::vector<std::string> OutputKeys() { return OutputNames(); }
  virtual void SelectOutput(int device) = 0;  // of the broadcast, from 0
  virtual bool PrelistenClosed() const = 0;
  virtual void SelectPrelisten(int device) = 0;
};

// A machine on which nothing can be tried: the choices are only stored.
class NoSettingsDevices : public SettingsDevices {
 public:
  std::vector<std::string> OutputNames() override { return {}; }
  void SelectOutput(int) override {}
  bool PrelistenClosed() const override { return true; }
  void SelectPrelisten(int) override {}
};

}  // namespace zemo
