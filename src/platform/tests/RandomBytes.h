// The same bytes in every run, for sweeps over whatever a file may hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zemo {

class RandomBytes {
 public:
  explicit RandomBytes(uint64_t seed) : state_(seed * 2654435761u + 88172645463325252u) {}

  uint32_t Below(uint32_t limit) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<uint32_t>(state_ >> 33) % limit;
  }

  // Up to `most` bytes. Half of the texts are noise; the other half is mostly made of what the
  // readers look for, so that their branches meet in every order.
  std::string Text(uint32_t most) {
    static constexpr std::string_view kPieces[] = {"\"",
                                                   "\"\"",
                                                   ",",
                                                   "\r\n",
                                                   "\n",
                                                   "\r",
                                                   "\t",
                                                   " ",
                                                   "#TRUE#",
                                                   "#FALSE#",
                                                   "START",
                                                   "STOP",
                                                   "06:00",
                                                   "-F",
                                                   "-1",
                                                   "99999999999",
                                                   "=",
                                                   "<",
                                                   "src=",
                                                   ".JPG",
                                                   "\xC3\xA9",
                                                   "\xE9",
                                                   "\xEF\xBB\xBF",
                                                   "\xF0\x9F\x8E\xB5",
                                                   "\xED\xA0\x80",
                                                   "\x81",
                                                   std::string_view("\0", 1)};
    const bool noise = Below(2) == 0;
    const uint32_t length = Below(most + 1);
    std::string text;
    while (text.size() < length) {
      if (noise) {
        text += static_cast<char>(Below(256));
      } else {
        text += kPieces[Below(sizeof kPieces / sizeof kPieces[0])];
      }
    }
    return text;
  }

 private:
  uint64_t state_;
};

}  // namespace zemo
