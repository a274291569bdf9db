// Lists that campaigns and cards choose from: an entry a line of a file, written in capitals, and
// the varieties of the base.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zemo {

struct Station;

// "Categori.Ini", "Labels.Txt" and "CD.Txt". Load: the list becomes the file's lines; a missing
// file leaves it as it is. Save: rewrites the file. Faults are logged and leave list and file as
// they were. Thread: the logic's.
void LoadSaveCategories(Station& station, std::string_view action, std::vector<std::string>& list);
void LoadSaveLabels(Station& station, std::string_view action, std::vector<std::string>& list);
void LoadSaveCD(Station& station, std::string_view action, std::vector<std::string>& list);

// Load: the names of the table Variete. Nothing is ever saved back.
void LoadVarieties(Station& station, std::string_view action, std::vector<std::string>& list);

}  // namespace zemo
