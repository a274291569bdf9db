// A serial line, on which the automaton sits: opened by number, written to and read without
// waiting.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace zemo {

// What the line refuses; what() is one line with its name and the reason.
struct SerialError : std::runtime_error {
  SerialError(int givenNumber, const std::string& text)
      : std::runtime_error(text), number(givenNumber) {}
  int number;  // the system's, or that of the serial library
};

// Bytes, in both directions; nothing here waits. Thread: the logic's.
class SerialPort {
 public:
  virtual ~SerialPort() = default;
  // Port `port`, from 1, with line parameters as "4800,N,8,1": baud, parity (N, E, O, M or S), data
  // bits (5 to 8) and stop bits (1, 1.5 or 2). Closes what was open. Throws SerialError.
  virtual void Open(int port, const std::string& setting) = 0;
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  // Throws SerialError when the port is closed or the line is lost. A lost line is tried again at
  // later writes.
  virtual void Write(std::string_view bytes) = 0;
  // All that has come since the last read; empty for nothing.
  virtual std::string Read() = 0;
};

}  // namespace zemo
