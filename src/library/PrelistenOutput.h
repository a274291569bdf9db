// The output of the prelisten, as the machine's settings choose it, and what is told of one that
// cannot be used. For whatever plays on it.
#pragma once

namespace zemo {

struct Station;

// What stands beside a player whose output is the air's while the engine runs.
inline constexpr const char* kSamePrelistenOutput = "Mauvais choix de sortie PFL";

// What stands there where nobody has chosen an output.
inline constexpr const char* kNoPrelistenOutput =
    "Aucune sortie de préécoute choisie : écran d'antenne, Options > Paramétrage...";

// Gives the player its device while it is closed. False: the air has this output now. Throws what
// the files of the settings do.
bool ChoosePrelistenOutput(Station& station);

bool PrelistenOutputIsChosen(Station& station);  // throws as above

void TellPrelistenRefused(Station& station);

}  // namespace zemo
