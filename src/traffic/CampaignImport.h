// Campaigns that another program left in "ExportPubs.Txt".
#pragma once

#include <string>
#include <string_view>

namespace zemo {

struct Station;

// Puts field number `field`, from 1, of a line of tab-separated fields in `result`. A field past
// the last gives the last.
void ImportedField(std::string_view line, int field, std::string& result);

// Takes the lines of "ExportPubs.Txt" into GrillePub, then empties cell (0,53) of GPubJour, so that
// the grid is composed again while its breaks keep firing, and deletes the file. A line whose sound
// file the table knew when the import began is passed over; one that the base refuses, or with an
// hour or a mark that no clock shows, is logged under "SurveilleNewBase" and the others go on.
// Tells the event `import`. Nothing without the file.
//
// Yields over a long file; the lines then go in as one transaction. Throws FileError and
// StoreError: no line is in then and the file stays for the next try, which adds no line twice.
void ImportExportedCampaigns(Station& station);

}  // namespace zemo
