// What the settings screen tries out on the machine while it is open: sound outputs, the
// automaton's serial port, the joystick port.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace zemo {

// A device that refused; the number is the one shown to the operator.
struct DeviceError : std::runtime_error {
  DeviceError(int errorNumber, const std::string& text)
      : std::runtime_error(text), number(errorNumber) {}
  int number;
};

// Thread: the logic's. All but the questions throw DeviceError.
class SettingsDevices {
 public:
  virtual ~SettingsDevices() = default;

  virtual std::vector<std::string> OutputNames() = 0;  // in device order
  virtual void SelectOutput(int device) = 0;           // of the broadcast, from 0
  virtual bool PrelistenClosed() const = 0;
  virtual void SelectPrelisten(int device) = 0;

  virtual bool PortOpen() const = 0;
  virtual void OpenPort(int port, const std::string& lineParameters) = 0;  // as "4800,N,8,1"
  virtual void ClosePort() = 0;

  virtual int JoystickPorts() const = 0;  // ports that can be chosen: 1 to this
  // Listens to that port with this polling interval; false where no joystick answers. 0 listens to
  // none.
  virtual bool CaptureJoystick(int port, int pollingMs) = 0;
};

// A machine on which nothing can be tried out: the choices are only stored.
class NoSettingsDevices : public SettingsDevices {
 public:
  std::vector<std::string> OutputNames() override { return {}; }
  void SelectOutput(int) override {}
  bool PrelistenClosed() const override { return true; }
  void SelectPrelisten(int) override {}
  bool PortOpen() const override { return false; }
  void OpenPort(int, const std::string&) override { throw DeviceError(8002, "no serial port"); }
  void ClosePort() override {}
  int JoystickPorts() const override { return 0; }
  bool CaptureJoystick(int, int) override { return false; }
};

}  // namespace zemo
