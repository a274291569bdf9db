#include "traffic/AffidavitScreen.h"

#include <utility>

#include "library/LibraryHandler.h"
#include "library/LibraryMessages.h"
#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "reports/ReportScreen.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "station/WaitPointer.h"

namespace zemo {

namespace {

// The affidavit of a day is none of another's.
void Forget(AffidavitEditor& editor) {
  editor.made.reset();
  editor.ListDiff.clear();
  editor.LblTotaux.clear();
}

LocalDateTime DayOf(const std::string& text) {
  const std::string key = DateKeyOfText(text);
  return FromDateSerial(
      DaySerial(ValInt(key.substr(0, 4)), ValInt(key.substr(4, 2)), ValInt(key.substr(6, 2))));
}

}  // namespace

void Attestation::Form_Load(Station& station, AffidavitEditor& editor) {
  HandleControl(station, "FrmAttestation", [&] {
    if (editor.open) return;
    editor = {};
    editor.open = true;
    editor.langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
    LocalDateTime day = station.Now();
    editor.LblDateFin = DateText(day);
    day.day = 1;
    editor.LblDate = DateText(day);
    editor.advertisers = Advertisers(station);
  });
}

void Attestation::Form_Unload(AffidavitEditor& editor) {
  editor.open = false;
}

void Attestation::CmdCalend_Click(AffidavitEditor& editor, const LocalDateTime& day) {
  editor.LblDate = DateText(day);
  Forget(editor);
}

void Attestation::BtnDateFin_Click(AffidavitEditor& editor, const LocalDateTime& day) {
  editor.LblDateFin = DateText(day);
  Forget(editor);
}

void Attestation::BtnEtablir_Click(Station& station, AffidavitEditor& editor) {
  HandleControl(station, "BtnEtablir", [&] {
    Forget(editor);
    if (Trim(editor.Annonceur).empty()) return;
    const WaitPointer wait(station.notices);
    AffidavitHead head{Trim(editor.Annonceur), editor.LblDate, editor.LblDateFin};
    Affidavit made = MakeAffidavit(station, head.advertiser, DayOf(head.from), DayOf(head.to),
                                   [&] { station.platform.loop.Yield(); });
    editor.ListDiff = AffidavitRows(made, editor.langue);
    editor.LblTotaux = head.advertiser + " - " + TotalsInWords(TotalsOf(made), editor.langue);
    editor.made = std::move(made);
    editor.madeOf = std::move(head);
  });
}

bool Attestation::AnyListed(Station& station, const AffidavitEditor& editor) {
  return Report::AnyListed(station, editor.ListDiff.size());
}

PrintedPages Attestation::BtnImprimer_Click(Station& station, AffidavitEditor& editor) {
  PrintedPages printed;
  HandleControl(station, "BtnImprimer", [&] {
    if (AnyListed(station, editor))
      printed = AffidavitPages(editor.madeOf, *editor.made, editor.langue);
  });
  return printed;
}

void Attestation::BtnTableur_Click(Station& station, AffidavitEditor& editor,
                                   const std::string& path, SpreadsheetWriter& spreadsheets) {
  HandleControl(station, "BtnTableur", [&] {
    if (!AnyListed(station, editor)) return;
    try {
      spreadsheets.Write(path, AffidavitSheet(editor.madeOf, *editor.made, editor.langue));
    } catch (const FileError& error) {
      LogCurrentException(station, "BtnTableur");
      ShowNotWritten(station, error.what());
    }
  });
}

}  // namespace zemo
