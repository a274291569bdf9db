// The search of the live mode: titles found by text or by genre into ListRech, from where the
// operator takes them into PL. No rotation rule is asked. Each procedure is one event of a control;
// failures are logged and leave ListRech as far as it got. Thread: the logic's.
#pragma once

#include <string>

namespace zemo {

struct Station;

// Rech's text changed. Texts shorter than three characters, four in a library of more than 1000
// cards, only clear the list; "*" lists the whole library; any other is looked for in artist and
// title joined, without regard to case, in table order.
void Rech_Change(Station& station);

// A genre was chosen; it may hold the pattern characters of the query language.
void RechGenre_Click(Station& station, const std::string& genre);

// A click on the head of a column, 0 the text's: sorts by it, ascending, without regard to case.
void ListRech_ColumnClick(Station& station, int column);

}  // namespace zemo
