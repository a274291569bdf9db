#include "traffic/BreakInsertion.h"

#include "station/Station.h"

namespace zemo {

// No break is inserted yet: spots and news play where a stored list or the operator put them.
void AjoutPubPlaylist(Station&, int) {}
void AjoutRubriquePlaylist(Station&, int) {}
void AjoutPubRubFinHeure(Station&, int, int, const std::string&) {}
void CalculJinglePubs(Station&, double&, int) {}
void FindInfoPubRub(Station&) {}

}  // namespace zemo
