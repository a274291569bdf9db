// A small automaton for tests: `zemo_automaton DEVICE` answers the wire protocol on a device. What
// it receives is a line each on standard output ("E", "S 13"); standard input tells it its contacts
// and how to answer:
//   contacts N         the byte of its next answers
//   answers whole      each at once
//   answers late       each kept until "release"
//   answers torn       the first character at once, the second at "release"
//   answers doubled    each twice
//   answers missing    none
//   answers wrong      another first character
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace {

class Automaton {
 public:
  explicit Automaton(int line) : line_(line) {}

  void Order(const std::string& order) {
    if (order.rfind("contacts ", 0) == 0) contacts_ = static_cast<char>(std::stoi(order.substr(9)));
    if (order.rfind("answers ", 0) == 0) answers_ = order.substr(8);
    if (order == "release") Send(std::exchange(kept_, {}));
    Say("ok");
  }

  void Receive(char byte) {
    if (relaysNext_) {
      relaysNext_ = false;
      return Say("S " + std::to_string(static_cast<unsigned char>(byte)));
    }
    relaysNext_ = byte == 'S';
    if (byte != 'E') return;
    Answer({'E', contacts_});
    Say("E");  // behind the answer: whoever hears it knows that it was sent
  }

 private:
  void Answer(const std::string& reply) {
    if (answers_ == "whole") Send(reply);
    if (answers_ == "doubled") Send(reply + reply);
    if (answers_ == "wrong") Send("X" + reply.substr(1));
    if (answers_ == "late") kept_ += reply;
    if (answers_ == "torn") {
      Send(reply.substr(0, 1));
      kept_ += reply.substr(1);
    }
  }
  void Send(const std::string& bytes) const {
    if (!bytes.empty() && write(line_, bytes.data(), bytes.size()) < 0) std::exit(1);
  }
  static void Say(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
  }

  int line_;
  char contacts_ = 0;
  std::string answers_ = "whole";
  std::string kept_;
  bool relaysNext_ = false;
};

void MakeRaw(int line) {
  termios form{};
  if (tcgetattr(line, &form) != 0) return;
  cfmakeraw(&form);
  tcsetattr(line, TCSANOW, &form);
}

}  // namespace

int main(int argc, char** argv) {
  const int line = argc == 2 ? open(argv[1], O_RDWR | O_NOCTTY) : -1;
  if (line < 0) return 2;
  MakeRaw(line);
  Automaton automaton(line);
  std::puts("ready");
  std::fflush(stdout);
  std::string orders;
  while (true) {
    pollfd ready[2] = {{STDIN_FILENO, POLLIN, 0}, {line, POLLIN, 0}};
    if (poll(ready, 2, -1) < 0) return 1;
    char buffer[256];
    if (ready[0].revents != 0) {
      const ssize_t size = read(STDIN_FILENO, buffer, sizeof buffer);
      if (size <= 0) return 0;  // the test is over
      orders.append(buffer, static_cast<size_t>(size));
      for (size_t end; (end = orders.find('\n')) != std::string::npos; orders.erase(0, end + 1))
        automaton.Order(orders.substr(0, end));
    }
    if (ready[1].revents != 0) {
      const ssize_t size = read(line, buffer, sizeof buffer);
      if (size <= 0) return 1;  // the line is gone
      for (ssize_t i = 0; i < size; ++i) automaton.Receive(buffer[i]);
    }
  }
}
