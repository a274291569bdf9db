// The sorting of the report screen's two lists. Thread: the logic's.
#pragma once

namespace zemo {

struct ReportEditor;
struct Station;

// Ascending. Both yield where there is much to sort, and give it up where the list becomes another
// one meanwhile: false.
bool SortReport(Station& station, ReportEditor& editor, int column);     // RapCol
bool SortRotations(Station& station, ReportEditor& editor, int column);  // StatCol

// The last line becomes the first.
void TurnReport(ReportEditor& editor);
void TurnRotations(ReportEditor& editor);

}  // namespace zemo
