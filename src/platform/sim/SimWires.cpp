#include "platform/sim/SimWires.h"

namespace zemo {

void SimAutomaton::SetContact(int contact, bool closed) {
  const auto bit = static_cast<uint8_t>(1U << contact);
  contacts_ = static_cast<uint8_t>(closed ? contacts_ | bit : contacts_ & ~bit);
}

void SimAutomaton::Open(int port, const std::string& setting) {
  Close();
  port_ = port;
  setting_ = setting;
}

void SimAutomaton::Close() {
  port_ = 0;
  arrived_.clear();
}

void SimAutomaton::Write(std::string_view bytes) {
  if (!IsOpen()) throw SerialError(0, "the serial port is closed");
  for (const char byte : bytes) {
    if (relayByteNext_) {
      relays_ = static_cast<uint8_t>(byte);
      relayByteNext_ = false;
    } else if (byte == 'S') {
      relayByteNext_ = true;
    } else if (byte == 'E') {
      Answer({'E', static_cast<char>(contacts_)});
    }
  }
}

std::string SimAutomaton::Read() {
  std::string bytes;
  bytes.swap(arrived_);
  return bytes;
}

}  // namespace zemo
