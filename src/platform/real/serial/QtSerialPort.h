// A serial line of this machine. Which device a port's number means, the machine's values PortCom1
// to PortCom4 say ("PortCom2=/dev/ttyUSB0"); without them they are /dev/ttyS0 to /dev/ttyS3.
#pragma once

#include <memory>
#include <string>

#include "platform/SerialPort.h"

class QSerialPort;

namespace zemo {

class Clock;
class LocalValues;

// Needs a QCoreApplication and its loop, which moves the bytes. A line that is lost (a plug pulled)
// is opened again by the writes that follow, every two seconds. Thread: the logic's.
class QtSerialPort : public SerialPort {
 public:
  QtSerialPort(const LocalValues& localValues, const Clock& clock);  // not owned
  ~QtSerialPort() override;

  void Open(int port, const std::string& setting) override;
  void Close() override;
  bool IsOpen() const override { return wanted_; }  // a lost line counts as open
  void Write(std::string_view bytes) override;
  std::string Read() override;

 private:
  void OpenLine();
  void Lose(const std::string& reason);  // throws SerialError

  const LocalValues& localValues_;
  const Clock& clock_;
  std::unique_ptr<QSerialPort> line_;  // null while closed or lost
  bool wanted_ = false;
  std::string device_;
  std::string setting_;
  int64_t triedMs_ = 0;  // last opening, monotonic
};

}  // namespace zemo
