// What the cards choose from: record labels and CD references, an entry a line of their files, and
// the varieties.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zemo {

struct Station;

// Load: the list becomes the lines of the file; a missing file leaves it as it is. Save: the file
// is rewritten, each entry in capitals. `action` is "Load" or "Save"; faults are logged and leave
// list and file as they were. Thread: the logic's.
void LoadSaveLabels(Station& station, std::string_view action, std::vector<std::string>& list);
void LoadSaveCD(Station& station, std::string_view action, std::vector<std::string>& list);

// Load: the names of the table Variete. Nothing is ever saved back.
void LoadVarietes(Station& station, std::string_view action, std::vector<std::string>& list);

}  // namespace zemo
