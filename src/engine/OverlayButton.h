// The overlay button: an element of the browse list, or of a shortcut key, heard over the air.
#pragma once

#include <string>

namespace zemo {

struct BrowseRows;
struct Station;

namespace OnAir {

// Stored path of a row (from 0) of the browse list; empty where it has none.
std::string FileOfBrowseRow(const BrowseRows& browsed, int row);

// Plays that row's file in slot 2 over what is on air; nothing without a file. Faults are logged.
void BtnSurImpression_Click(Station& station, int browseRow);

// In place of whatever sounds in slot 2, at the volume of overlays. Throws SoundError.
void PlayOverAir(Station& station, const std::string& storedPath);

// The same with the sound of a key of the numeric pad, 1 to 9, told as that key's. False: the key
// has none.
bool PlayShortcut(Station& station, int key);

}  // namespace OnAir

}  // namespace zemo
