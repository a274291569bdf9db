// What of the join's time line is in view: the whole of it, or a part that is a power of two
// closer.
#pragma once

#include <cstdint>

namespace zemo {

class JoinZoom {
 public:
  struct Span {
    int32_t fromMs = 0, toMs = 1;
    bool operator==(const Span&) const = default;
  };
  // In view of that whole, never outside of it.
  Span Of(const Span& whole) const;
  bool Closer() const { return step_ > 0; }
  // Each step doubles, each below 0 halves; what stands at `aroundMs` stays where it is.
  void By(int steps, int32_t aroundMs, const Span& whole);
  void Scroll(int32_t ms, const Span& whole);
  void Reveal(int32_t ms, const Span& whole);  // scrolls where that is out of view

 private:
  int64_t LengthOf(const Span& whole) const;

  int step_ = 0;
  int32_t fromMs_ = 0;  // of the view, where step_ is not 0
};

}  // namespace zemo
