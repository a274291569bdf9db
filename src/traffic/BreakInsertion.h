// Insertion of the grid's breaks in the on-air list.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

struct Station;

void AjoutPubPlaylist(Station& station, int gridRow);       // a spot break
void AjoutRubriquePlaylist(Station& station, int gridRow);  // a news break
// The end-of-hour fitting's break, from that row of PL on: a spot break for the word "PUBS", a news
// break for any other. The fitting tells the event `break`.
void AjoutPubRubFinHeure(Station& station, int gridRow, int position, const std::string& word);
// In: the break's length, seconds. Out: its air time, each element running into the next by its
// mix.
void CalculJinglePubs(Station& station, double& seconds, int gridRow);
// Tells the outside which spot or news element has begun; row 1 of PL is still its row.
void FindInfoPubRub(Station& station);

}  // namespace zemo
