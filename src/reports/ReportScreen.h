// What the controls of the report screen do. None of the routines throws: faults are logged under
// the control's name. Those that go over many rows yield in between. Thread: the logic's.
#pragma once

#include <string>

#include "library/LibraryPrint.h"
#include "platform/Clock.h"
#include "platform/FileInParts.h"
#include "reports/ReportEditor.h"

namespace zemo {

class SpreadsheetWriter;
struct Sheet;
struct Station;

namespace Report {

// In the routines' words, as station/OperatorWords.h has them; under "Alerte".
inline constexpr const char* kNothingListed = "Vous n'avez rien dans la liste";

// --- opening and closing ---
// The menu entry MnuRapport; nothing while the menus are locked. Opens on today.
void MnuRapport_Click(Station& station, ReportEditor& editor);
void Form_Unload(ReportEditor& editor);

// --- what is listed ---
// Lists the rows of the span that begin as the filters say, and forgets the statistics. They are
// listed as soon as they are read where the report has them; then those that stand elsewhere in it
// are looked for. Asked for while a reading is at work, by what that one's yields serve, it comes
// back at once: the one at work begins anew.
void VoirRapport(Station& station, ReportEditor& editor);
// Others have stored something: where rows came or went the span is read anew beside the list,
// which keeps its order and its chosen row; the statistics stay as they were counted. Yields.
void TakeOver(Station& station, ReportEditor& editor);
// A day from the calendar.
void CmdCalend_Click(Station& station, ReportEditor& editor, const LocalDateTime& day);
void BtnDateFin_Click(Station& station, ReportEditor& editor, const LocalDateTime& day);
void BtnDateFin_RightClick(Station& station, ReportEditor& editor);  // the first day alone
void FiltreArtiste_Change(Station& station, ReportEditor& editor, const std::string& text);
void FiltreGenre_Change(Station& station, ReportEditor& editor, const std::string& text);
void FiltreVariete_Change(Station& station, ReportEditor& editor, const std::string& text);
// A click on a column's head sorts by it, ascending, the next one on the same head descending.
void ListRap_ColumnClick(Station& station, ReportEditor& editor, int column);
void ListStat_ColumnClick(Station& station, ReportEditor& editor, int column);

// --- what is made of it ---
void BtnStats_Click(Station& station, ReportEditor& editor);
// Whether there is anything to put out of a list; if not, it is told. Ask ahead of a dialogue.
bool AnyListed(Station& station, size_t count);
// Text, a row a line, its cells between tabs; a spreadsheet where the path ends in ".xlsx" and
// there is a writer of those. `path` is one of this system. A fault of the file is told, too.
struct ExportFiles {
  OpenFileInParts open;
  SpreadsheetWriter* spreadsheets = nullptr;
};
void BtnExport_Click(Station& station, ReportEditor& editor, const std::string& path,
                     const ExportFiles& files);
void ExportStat(Station& station, ReportEditor& editor, const std::string& path,
                const ExportFiles& files);
// In Courier. No page without a row.
PrintedPages BtnImprimer_Click(Station& station, ReportEditor& editor);
PrintedPages ImprimeStat(Station& station, ReportEditor& editor);
// The titles listed that have a card become PL, which the panel of stored lists takes as a new
// list.
void BtnIntoPlaylist_Click(Station& station, ReportEditor& editor);

// --- VoirRapport, BtnStats and what is exported, for who has to know of a fault: throw StoreError
// and FileError, ReportSheet and RotationSheet std::length_error for more rows than a sheet has ---
void ReadSpan(Station& station, ReportEditor& editor);
void CountSpan(Station& station, ReportEditor& editor);
void WriteReport(Station& station, ReportEditor& editor, const std::string& path,
                 const OpenFileInParts& begin);
void WriteRotations(Station& station, ReportEditor& editor, const std::string& path,
                    const OpenFileInParts& begin);
Sheet ReportSheet(Station& station, ReportEditor& editor);
Sheet RotationSheet(Station& station, ReportEditor& editor);

}  // namespace Report

}  // namespace zemo
