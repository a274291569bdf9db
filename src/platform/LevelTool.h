// Brings a whole sound file to a loudness. Both routines may wait in yields of the loop.
#pragma once

#include <string>

namespace zemo {

class Folder;

// Thread: the logic's.
class LevelTool {
 public:
  struct Level {
    double loudnessLufs = 0;     // integrated, EBU R 128
    double mostTruePeakDb = -1;  // dBTP; a file whose peaks would pass it stays softer
  };

  virtual ~LevelTool() = default;

  // Writes the file `path` (of this system) at that level as a WAV file (44.1 kHz, 16 bits) into
  // the folder, whole or not at all; both may be the same file. False: there is nothing in it to
  // be heard, and nothing was written. Throws SoundError or FileError.
  virtual bool BringTo(const Level& level, const std::string& path, Folder& folder,
                       const std::string& name) = 0;
  // Of a file in the folder, whole or not at all; throws FileError where there is none.
  virtual void Copy(Folder& folder, const std::string& from, const std::string& to) = 0;
};

}  // namespace zemo
