// A ring of whole messages between one writing and one reading thread: no lock, and no memory that
// the one allocates and the other frees.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/real/sound/SpscRing.h"

namespace zemo {

class MessageRing {
 public:
  struct Head {
    uint64_t client = 0;
    uint32_t kind = 0;
    uint32_t bytes = 0;  // of the text behind it
  };

  explicit MessageRing(uint64_t capacityBytes) : ring_(capacityBytes) {}

  // Writing thread.
  bool HasRoom(size_t bytes) const { return ring_.Free() >= sizeof(Head) + bytes; }
  // False without room: nothing is written then.
  bool Put(uint64_t client, uint32_t kind, std::string_view text) {
    if (!HasRoom(text.size())) return false;
    const Head head{client, kind, static_cast<uint32_t>(text.size())};
    ring_.Write(reinterpret_cast<const char*>(&head), sizeof head);
    ring_.Write(text.data(), text.size());
    return true;
  }

  // Reading thread. False: no whole message is there. The text keeps its memory from one to the
  // next.
  bool Take(Head& head, std::string& text) {
    if (!headTaken_) {
      if (ring_.Filled() < sizeof head_) return false;
      ring_.Read(reinterpret_cast<char*>(&head_), sizeof head_);
      headTaken_ = true;
    }
    if (ring_.Filled() < head_.bytes) return false;
    text.resize(head_.bytes);
    ring_.Read(text.data(), head_.bytes);
    head = head_;
    headTaken_ = false;
    return true;
  }

 private:
  SpscRing<char> ring_;
  Head head_;  // of the message that is coming
  bool headTaken_ = false;
};

}  // namespace zemo
