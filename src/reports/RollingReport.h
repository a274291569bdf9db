// "rapportzemo.txt": the newest rows of the report, for outside programs that show the last titles.
#pragma once

namespace zemo {

struct Station;

// Writes the file anew with the newest rows, as many as the machine's value XRapport says (20
// without one); with 0 nothing is done. Run after each music row. A failure is logged. What other
// programs add and delete counts; an old row that one of them gave a newer moment is not seen
// before the base is opened again. While a long report is not known yet (reports/KnownReport.h) the
// rows are those of its last stretch.
void ExportReport(Station& station);
// Writes it again where it was written while the report was not known, and it is now. For each tick
// that has read on.
void ExportReportOnceKnown(Station& station);

}  // namespace zemo
