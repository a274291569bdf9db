// What happens in real time, on another thread or in another program: waited for, with a bound.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace zemo::test {

// Asked every 5 ms; false: it did not come true.
inline bool Comes(const std::function<bool()>& condition,
                  std::chrono::seconds bound = std::chrono::seconds(30)) {
  const auto until = std::chrono::steady_clock::now() + bound;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > until) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace zemo::test
