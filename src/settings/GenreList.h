// "Genre.Txt": the genres that cards and models choose from, one a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zemo {

struct Station;

// Load: `genres` becomes the file's lines, and "INSTRUMENTAL" is added where none reads so. A
// missing file is made with the seven fixed genres when `genres` is empty, else `genres` stays.
// Save: rewrites the file, each entry in capitals. Faults are logged.
void LoadSaveGenres(Station& station, std::string_view action, std::vector<std::string>& genres);

}  // namespace zemo
