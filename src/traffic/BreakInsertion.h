// Insertion of the grid's breaks in the on-air list. A break stands in PL as: "Jingle avant Pubs",
// its elements in the order of their columns, "Jingle après Pubs"; which of it an inserter takes is
// told at each. A file that is missing or unreadable gets its row all the same, with no length.
//
// Each inserter is an error boundary, logs under the name that docs/glossary.md has for it and
// leaves what it had put in. Thread: the logic's.
#pragma once

#include <string>

#include "station/OnAirElement.h"

namespace zemo {

struct Station;

// The tick's and the operator's spot break: at the head of PL, behind an hour pip or a jingle
// there, with jingles, the titles tied to spots, and the announcement of coming titles. With
// PrioritePubs the element on air gives way now. Holds MainTimer, yields after each element.
void InsertSpotBreak(Station& station, int gridRow);
// The same for a news break, without jingles and announcement; PrioriteRubriques decides.
void InsertNewsBreak(Station& station, int gridRow);
// The operator's break in that row of PL, row 1 when there is no such row: with jingles, always as
// spots, and without titles.
void InsertBreakAtRow(Station& station, int gridRow, int selectedRow);
// The end-of-hour fitting's break, from that row of PL on, each row with its exit point: a spot
// break with jingles for the word "PUBS", a news break for any other. The fitting tells the event
// `break`.
void InsertBreakForFitting(Station& station, int gridRow, int position, const std::string& word);

// In: the break's length, seconds. Out: its air time, each element running into the next by its
// mix.
void ComputeBreakAirTime(Station& station, double& seconds, int gridRow);
// Tells the outside which spot or news element has begun ("Artiste-Titre.Txt"). Nothing on a
// machine without reports.
void TellBreakElement(Station& station, const OnAirElement& element);

}  // namespace zemo
