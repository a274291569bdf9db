// The search of the live mode: titles found by text or by genre into ListRech, from where the
// operator takes them into PL. No rotation rule is asked. Those of OnAir are one event of a control
// each; failures are logged and leave ListRech as far as it got. Thread: the logic's.
#pragma once

#include <string>

namespace zemo {

struct Station;

// --- complete when they return ---

namespace OnAir {

// Rech's text changed. Texts shorter than three characters, four in a library of more than 1000
// cards, only clear the list; "*" lists the whole library; any other is looked for in artist and
// title joined, without regard to case, in table order.
void Rech_Change(Station& station);

// A genre was chosen; it may hold the pattern characters of the query language. Where a head was
// clicked, its titles come sorted.
void RechGenre_Click(Station& station, const std::string& genre);

// A click on the head of a column, 0 the text's: sorts by it, ascending, without regard to case.
void ListRech_ColumnClick(Station& station, int column);

}  // namespace OnAir

// --- the same begun only, for a screen that ticks and draws meanwhile: SearchSlice does the work.
// A new search drops the one before; rows stand in ListRech as soon as they are found. ---

void BeginTextSearch(Station& station);
void BeginGenreSearch(Station& station, const std::string& genre);
void BeginColumnClick(Station& station, int column);

enum class SearchTurn {
  kDone,   // nothing is left to do
  kMore,   // call again
  kLater,  // another process has the base for a moment: call again after kAskAgainMs
};
inline constexpr int kAskAgainMs = 50;

// One slice of the work that was begun: 10 ms at most with any number of cards.
SearchTurn SearchSlice(Station& station);

// One slice of reading ahead what a search will need; false when all of it is known already or
// cannot be read now. For moments without a search.
bool ReadAheadSlice(Station& station);

// The list will show something else: drops the search and the sorting that are at work.
void StopSearch(Station& station);

}  // namespace zemo
