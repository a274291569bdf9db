#include "traffic/CampaignMerge.h"

#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "station/RecordMerge.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignTexts.h"

namespace zemo {

namespace {

constexpr int kGrid = 1, kSound = 2;  // groups of fields

// A form, with its crosses and its kind as fields.
struct Sheet {
  CampaignForm form;
  std::string crosses;
  bool spot = true;
};

Sheet SheetOf(const CampaignForm& form) {
  return {form, GridFileText(form.GPub, [] {}), form.OptPub[0]};
}

RecordFields FieldsOf(Sheet& sheet) {
  CampaignForm& form = sheet.form;
  RecordFields fields = {{"For.LblDepartPub", &form.LblDepartPub, kGrid},
                         {"For.LblFinPub", &form.LblFinPub, kGrid},
                         {"For.HDepPub", &form.HDepPub, kGrid},
                         {"For.HFinPub", &form.HFinPub, kGrid}};
  for (std::string& mark : form.DecoupagePub) fields.push_back({"For.DecoupagePub", &mark, kGrid});
  fields.push_back({"For.GPub", &sheet.crosses, kGrid});
  fields.push_back({"For.FichierAudio", &form.FichierAudio, kSound});
  fields.push_back({"For.Longeur", &form.Longeur, kSound});
  fields.push_back({"For.ChAnnonceur", &form.ChAnnonceur});
  fields.push_back({"For.Categorie", &form.Categorie});
  fields.push_back({"For.ComboPriority", &form.ComboPriority});
  fields.push_back({"For.ChContact", &form.ChContact});
  fields.push_back({"For.GenreAssocie", &form.GenreAssocie});
  fields.push_back({"OptPub.0", &sheet.spot});
  return fields;
}

bool HasGridOf(const Sheet& sheet, const Sheet& other) {
  const auto shape = [](const CampaignForm& form) {
    return std::tie(form.LblDepartPub, form.LblFinPub, form.HDepPub, form.HFinPub,
                    form.DecoupagePub);
  };
  return sheet.crosses == other.crosses && shape(sheet.form) == shape(other.form);
}

// What hangs on the fields of a sheet that took some of another one.
void PutBack(CampaignForm& to, Sheet sheet, const Sheet& theirs) {
  CampaignForm& form = sheet.form;
  if (HasGridOf(sheet, theirs)) {
    form.GPub = theirs.form.GPub;
    form.gridDays = theirs.form.gridDays;
    form.damage = theirs.form.damage;
    form.LblTotalMsg = theirs.form.LblTotalMsg;
    form.LblTotalJours = theirs.form.LblTotalJours;
  }
  if (form.FichierAudio == theirs.form.FichierAudio)
    form.FILENAMEGRILLE = theirs.form.FILENAMEGRILLE;
  form.LblTemp = FormatDuration(ValInt(form.Longeur));
  form.OptPub = {sheet.spot, !sheet.spot};
  to = std::move(form);
}

// None where the record is gone.
std::optional<Sheet> ReadTheirs(Station& station, const CampaignEditor& editor) {
  const auto row = station.base.Table("GrillePub");
  if (!SeekCode(*row, ValInt(editor.LblCode))) return std::nullopt;
  CampaignForm form;
  LoadCampaign(station, *row, form, RowYields::kNone);
  return SheetOf(form);
}

// Nobody has stored anything: the base tells of its rows, and the grid file stands beside it.
bool IsAsLoaded(const Station& station, const CampaignEditor& editor, int64_t counter) {
  return counter == editor.counter &&
         CampaignFile(editor.FILENAMEGRILLE).Stamp(station) == editor.gridStamp;
}

std::string WordOf(Station& station, const char* name) {
  const char* word =
      FindWord(CampaignCaptions(), name, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
  return word ? word : name;
}

}  // namespace

bool MergeShownCampaign(Station& station, CampaignEditor& editor) {
  RecordMerge merge;
  for (;;) {
    const int64_t counter = station.base.Db().ForeignCounter();
    if (IsAsLoaded(station, editor, counter)) return true;
    auto theirs = ReadTheirs(station, editor);
    if (!theirs) return true;  // who stores it finds that out
    Sheet loaded = SheetOf(editor.stored), mine = SheetOf(editor);
    const auto step = merge.Next(station, {FieldsOf(loaded), FieldsOf(*theirs), FieldsOf(mine)},
                                 [&](const char* name) { return WordOf(station, name); });
    if (step == RecordMerge::Step::kLeave) return false;
    if (step == RecordMerge::Step::kReadAgain) continue;
    PutBack(editor, std::move(mine), *theirs);
    PutBack(editor.stored, std::move(loaded), *theirs);
    editor.counter = counter;
    editor.gridStamp = CampaignFile(editor.FILENAMEGRILLE).Stamp(station);
    return true;
  }
}

void TakeOverShownCampaign(Station& station, CampaignEditor& editor) {
  if (editor.BtnAjouterEnabled || ValInt(editor.LblCode) < 1) return;
  auto theirs = ReadTheirs(station, editor);
  if (!theirs) {
    if (editor.PLPubVisible) return;  // another one is being looked for
    editor.gone = true;
    return KeepAsNew(editor);
  }
  Sheet loaded = SheetOf(editor.stored), mine = SheetOf(editor);
  if (!TakeOverFields({FieldsOf(loaded), FieldsOf(*theirs), FieldsOf(mine)})) return;
  PutBack(editor, std::move(mine), *theirs);
  PutBack(editor.stored, std::move(loaded), *theirs);
}

void KeepAsNew(CampaignEditor& editor) {
  editor.BtnReplacerEnabled = editor.BtnDeleteEnabled = false;
  editor.BtnAjouterEnabled = editor.BtnNewEnabled = true;
}

}  // namespace zemo
