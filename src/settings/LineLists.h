// Lists kept as line files: an entry a line, written in capitals.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zemo {

struct Station;

// "Categori.Ini", the categories of campaigns. Load: `categories` becomes the file's lines; a
// missing file leaves it. Save: rewrites the file. Faults are logged.
void LoadSaveCategories(Station& station, std::string_view action,
                        std::vector<std::string>& categories);

}  // namespace zemo
