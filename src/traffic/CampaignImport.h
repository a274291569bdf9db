// Campaigns that another program left in "ExportPubs.Txt".
#pragma once

#include <string>
#include <string_view>

namespace zemo {

struct Station;

// Puts field number `field`, from 1, of a line of tab-separated fields in `result`. A field past
// the last gives the last.
void ImportPub(std::string_view line, int field, std::string& result);

// Takes the lines of "ExportPubs.Txt" into GrillePub, then empties cell (0,53) of GPubJour, so that
// the grid is composed again while its breaks keep firing, and deletes the file. A line whose sound
// file the table knew when the import began is passed over; one that the base refuses is logged
// under "SurveilleNewBase" and the others go on. Tells the event `import`. Nothing without the
// file. Throws FileError and StoreError; the file then stays, and lines already taken are known at
// the next try.
void ImportExportPubs(Station& station);

}  // namespace zemo
