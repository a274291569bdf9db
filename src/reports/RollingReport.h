// "rapportzemo.txt": the newest rows of the report, for outside programs that show the last titles.
#pragma once

namespace zemo {

struct Station;

// Writes the file anew with the newest rows, as many as the machine's value XRapport says (20
// without one); with 0 nothing is done. Run after each music row. A failure is logged.
void ExportReport(Station& station);

}  // namespace zemo
