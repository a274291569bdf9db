// The hour pips on the library screen: the 24 rows of Toph.
#pragma once

#include <string>
#include <string_view>

#include "library/LibraryEditor.h"

namespace zemo {

struct Station;

// "Load": GTopH from Toph, by the hour of each row. "Save": GTopH into its rows, which are hour 0
// to 23 from the first on. Any other word does nothing. Throws StoreError.
// Where others have stored some of them since, theirs and the operator's meet by the fields that
// each has changed, and "Save" asks where both changed one; unanswered, it stores nothing.
void LoadTopH(Station& station, LibraryEditor& editor, std::string_view action);

// Others have stored something: the rows as they are now, but for what the operator has changed.
void TakeOverPips(Station& station, LibraryEditor& editor);

// A cell as a script and a print have it: column 0 the hour, 1 the file, 2 the overlay mark, 3 the
// days.
std::string HourPipCell(const LibraryEditor& editor, size_t hour, int column);

namespace Library {

// A click on a cell selects its hour; one on the overlay mark turns it.
void GTopH_Click(LibraryEditor& editor, size_t hour, int column);
// A text typed into a cell of columns 1 to 3.
void GTopH_Change(LibraryEditor& editor, size_t hour, int column, const std::string& text);

}  // namespace Library

}  // namespace zemo
