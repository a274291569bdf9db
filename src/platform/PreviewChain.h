// A sound chain of its own beside the air's, by which a join of the list is heard ahead of air on
// another output.
#pragma once

namespace zemo {

class SoundChain;

// Thread: the logic's.
class PreviewChain {
 public:
  virtual ~PreviewChain() = default;
  virtual SoundChain& Sound() = 0;  // the same one for the whole run
  // Output by its number in the machine's list of devices, from 0, for the next opening of the
  // chain's output, which is closed. Throws SoundError for one that refuses.
  virtual void UseDevice(int number) = 0;
};

}  // namespace zemo
