// The simulated wires: an automaton that answers the wire protocol, and a joystick on every port.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Joystick.h"
#include "platform/SerialPort.h"

namespace zemo {

// The automaton and its line in one, whatever the port's number and its line parameters. It answers
// "E" at once by "E" and a byte with the contacts, and takes relays by "S" and a byte.
class SimAutomaton : public SerialPort {
 public:
  static constexpr int kContacts = 4;

  // --- the studio's side ---
  void SetContact(int contact, bool closed);               // 0 to 3
  uint8_t Relays() const { return relays_; }               // bit i: output i is on
  const std::string& Setting() const { return setting_; }  // as last opened

  // --- SerialPort ---
  void Open(int port, const std::string& setting) override;
  void Close() override;
  bool IsOpen() const override { return port_ > 0; }
  void Write(std::string_view bytes) override;
  std::string Read() override;

 protected:
  virtual void Answer(const std::string& reply) { Arrive(reply); }
  void Arrive(std::string_view bytes) { arrived_ += bytes; }

 private:
  int port_ = 0;  // 0 while closed
  std::string setting_;
  uint8_t contacts_ = 0;
  uint8_t relays_ = 0;
  bool relayByteNext_ = false;
  std::string arrived_;  // at the program, unread
};

class SimJoystick : public Joystick {
 public:
  void Press(int button) { Tell(button, true); }
  void Release(int button) { Tell(button, false); }
  int Port() const { return port_; }  // 0 while closed

  void OnButton(std::function<void(int button, bool down)> heard) override {
    heard_ = std::move(heard);
  }
  bool Open(int port) override {
    port_ = port;
    return true;
  }
  void Close() override { port_ = 0; }

 private:
  void Tell(int button, bool down) {
    if (port_ > 0 && heard_) heard_(button, down);
  }
  std::function<void(int button, bool down)> heard_;
  int port_ = 0;
};

}  // namespace zemo
