// Lines of text from a sound thread to the logic, without a lock.
#pragma once

#include <array>
#include <cstring>
#include <functional>
#include <string>

#include "platform/real/sound/SpscRing.h"

namespace zemo {

class Notices {
 public:
  // The writing thread. `tell`: the operator is to be told; otherwise it is only what the output is
  // now.
  void Put(const std::string& text, bool tell) {
    Line line{};
    line.tell = tell;
    std::strncpy(line.text.data(), text.c_str(), line.text.size() - 1);
    ring_.Push(line);  // with a reader that far behind the line is lost
  }

  // The logic's thread. Gives every line that came since.
  void Take(const std::function<void(const std::string& text, bool tell)>& give) {
    Line line;
    while (ring_.Pop(line)) give(line.text.data(), line.tell);
  }

 private:
  struct Line {
    bool tell;
    std::array<char, 240> text;
  };
  SpscRing<Line> ring_{32};
};

}  // namespace zemo
