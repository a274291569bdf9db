// The sound files that an import is given, by their paths or by the folders above them.
#pragma once

#include <functional>
#include <string>

namespace zemo {

// Absolute paths in the order of what was given, those of a folder in the order of their bytes:
// what is named itself as it is, of a folder every sound file (WAV, MP3, FLAC, Ogg by its ending)
// below it, and the path of each folder that cannot be read in place of what is in it. Folders that
// are links are not followed. `found` says whether to go on. Throws nothing of its own.
void FindSoundFiles(const std::string& path, const std::function<bool(std::string file)>& found);

}  // namespace zemo
