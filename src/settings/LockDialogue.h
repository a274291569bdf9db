// The dialogue of the menu entry MnuPasseWord, by which the settings are locked and unlocked. It
// shows the station's LockDialogue: its title, and a label beside the masked box.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

struct Station;

namespace Lock {

// Opens it: locked, it asks for the password; otherwise for the new one at once.
void MnuPasseWord_Click(Station& station);

// The OK button. The right password leads to the question for the new one; any other closes the
// dialogue. A new password locks, the empty one unlocks, and the dialogue closes.
void BtnOk_Click(Station& station, std::string_view typed);

// The engine's ScreenLocked, which bars menus, by lists.Locked.
void ShowLock(Station& station);

}  // namespace Lock

}  // namespace zemo
