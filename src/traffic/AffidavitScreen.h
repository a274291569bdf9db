// The affidavit's window without Qt: what it shows, under the names of its controls, and what they
// do. None of the routines throws: faults are logged under the control's name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "traffic/AffidavitTable.h"

namespace zemo {

class SpreadsheetWriter;
struct Station;

// Thread: the logic's. Owner: the window or a test; it outlives every routine that works on it.
// Writers: its owner (what was typed and chosen) and the routines.
struct AffidavitEditor {
  bool open = false;
  int langue = 0;  // Langue at the opening
  std::string Annonceur;
  std::vector<std::string> advertisers;
  std::string LblDate, LblDateFin;  // "dd/mm/yyyy"
  std::string LblTotaux;            // in words, with what was asked for; none before it was made
  std::vector<AffidavitRow> ListDiff;
  std::optional<Affidavit> made{};
  AffidavitHead madeOf;  // what was asked for
};

namespace Attestation {

// On the advertisers that there are, from the first of the month to today.
void Form_Load(Station& station, AffidavitEditor& editor);
void Form_Unload(AffidavitEditor& editor);
void CmdCalend_Click(AffidavitEditor& editor, const LocalDateTime& day);
void BtnDateFin_Click(AffidavitEditor& editor, const LocalDateTime& day);
// Asks the base and the grid files, with yields. What was made before goes.
void BtnEtablir_Click(Station& station, AffidavitEditor& editor);
// No page, and no file, of an empty list, which is told. The writer's fault is told, too.
PrintedPages BtnImprimer_Click(Station& station, AffidavitEditor& editor);
void BtnTableur_Click(Station& station, AffidavitEditor& editor, const std::string& path,
                      SpreadsheetWriter& spreadsheets);
bool AnyListed(Station& station, const AffidavitEditor& editor);  // told if not

}  // namespace Attestation

}  // namespace zemo
