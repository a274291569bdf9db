// Slot 2 of the sound chain, which plays over the element on air: jingles over an introduction,
// hour pips, voice tracks and the sounds of keys.
#pragma once

#include <string>

namespace zemo {

struct Station;

// Puts a file on slot 2, at its gain, which does not sound before StartOverlay. `storedPath` is as
// cards name it. Throws SoundError; the slot's former file is then still named in `OverlayFile`.
void LoadOverlay(Station& station, const std::string& storedPath);

// Lets slot 2 sound and tells it with `reason` ("pip", "jingle", "voicetrack", "key"); nothing is
// told when it has nothing to play.
void StartOverlay(Station& station, const char* reason);

}  // namespace zemo
