// A sound chain of its own beside the air's, by which a join of the list is heard ahead of air on
// another output.
#pragma once

#include <functional>

namespace zemo {

class SoundChain;

// Thread: the logic's.
class PreviewChain {
 public:
  virtual ~PreviewChain() = default;
  virtual SoundChain& Sound() = 0;  // the same one for the whole run
  // Output by its number in the machine's list of devices, from 0, for the next opening of the
  // chain's output, which is closed. Throws SoundError for one that refuses at once; one that does
  // not begin later, or is lost, is told by OnLost.
  virtual void UseDevice(int number) = 0;
  // Called from the event loop, once for each start of the output: what waits to be heard stands
  // still.
  virtual void OnLost(std::function<void()> lost) = 0;
  // Highest level heard since the last question, 0 to 1, left and right.
  struct Levels {
    float left = 0, right = 0;
  };
  virtual Levels HeardLevels() = 0;
};

}  // namespace zemo
