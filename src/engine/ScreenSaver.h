// The screen saver: when it comes, what it says, and what ends it. The engine goes on under it.
#pragma once

#include <string>

namespace zemo {

struct Station;

void OpenScreenSaver(Station& station);  // opens it, unless a text box holds the keyboard
// The tick's step: opens it where nobody was at the screen for as long as the settings say.
void ServeScreenSaver(Station& station);
// The setting TextVeille as it was when the saver opened; what is on air where that is empty.
std::string SaverText(const Station& station);
void CloseScreenSaver(Station& station);  // a key or a click

}  // namespace zemo
