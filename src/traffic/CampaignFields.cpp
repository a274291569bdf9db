// Fields of the campaign editor with a procedure of their own: sound file, category, dates, memo.
#include <algorithm>
#include <exception>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/SoundLengths.h"
#include "settings/LineLists.h"
#include "settings/SideFileIo.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/Schema.h"
#include "traffic/CampaignEditor.h"
#include "traffic/CampaignMessages.h"

namespace zemo {

namespace {

// The file's name without folder and without its last four characters, whatever they are.
std::string AdvertiserOf(const std::string& path) {
  const std::string name = path.substr(path.find_last_of("/\\") + 1);
  return FirstCharacters(name, std::max(0, CharacterCount(name) - 4));
}

// Advertiser of the campaign that has the file.
std::optional<std::string> AdvertiserWith(Station& station, const std::string& path) {
  const auto campaigns = station.base.Table("GrillePub");
  campaigns->SetIndex("FILENAMEAUDIO");
  campaigns->Seek("=", path);
  return campaigns->NoMatch() ? std::nullopt : std::optional(campaigns->Text("ANNONCEUR"));
}

bool Confirmed(Station& station, const std::string& question) {
  return station.platform.messages.Show(kAlertTitle, question, Buttons::kYesNo) == Answer::kYes;
}

// Another machine may have changed them. Throws where they cannot be read: written without those of
// the file they would be lost.
void ReadCategoriesAnew(Station& station, CampaignEditor& editor) {
  ReadSideFile(station.platform.stationFolder, station.files.Categori);
  LoadSaveCategories(station, "Load", editor.CategorieList);
}

// Builds the grid, unless an hour or a mark that was typed is none.
void BuildGrid(Station& station, CampaignEditor& editor) {
  station.base.CheckCnf();
  if (Campaigns::RefuseWrongMark(station, editor)) return;
  BuildDatedGrid(station, editor, RowYields::kNone);
  editor.LblTotalMsg = std::to_string(CountCrosses(editor));
}

}  // namespace

std::optional<Campaigns::Hindrance> Campaigns::FindHindrance(const CampaignEditor& editor) {
  for (const auto& [control, date] :
       {std::pair("LblDepartPub", &editor.LblDepartPub), std::pair("LblFinPub", &editor.LblFinPub)})
    if (*date == kNoDate) return Hindrance{control, 0};
  const TableDef& table = *FindSchemaTable("GrillePub");
  for (const auto& [control, column, text] :
       {std::tuple("ChAnnonceur", "ANNONCEUR", &editor.ChAnnonceur),
        std::tuple("Categorie", "CATEGORIE", &editor.Categorie),
        std::tuple("ChContact", "CONTACT", &editor.ChContact),
        std::tuple("FichierAudio", "FILENAMEAUDIO", &editor.FichierAudio)})
    if (const int most = table.FindField(column)->Size; CharacterCount(*text) > most)
      return Hindrance{control, most};
  return std::nullopt;
}

bool Campaigns::EndsBeforeItBegins(const CampaignForm& form) {
  if (form.LblDepartPub == kNoDate || form.LblFinPub == kNoDate) return false;
  return form.LblDepartPub != kDailyCampaign &&
         TurnedDate(form.LblFinPub) < TurnedDate(form.LblDepartPub);
}

bool Campaigns::IsChanged(const CampaignEditor& editor) {
  const CampaignForm& now = editor;
  const CampaignForm& stored = editor.stored;
  const auto fields = [](const CampaignForm& form) {
    return std::tie(form.LblDepartPub, form.LblFinPub, form.HDepPub, form.HFinPub,
                    form.DecoupagePub, form.FichierAudio, form.Longeur, form.ChAnnonceur,
                    form.Categorie, form.ComboPriority, form.ChContact, form.GenreAssocie,
                    form.OptPub);
  };
  if (fields(now) != fields(stored) || now.GPub.RowCount() != stored.GPub.RowCount()) return true;
  // Above the moments marks leave their counts.
  for (int row = kFirstMomentRow; row < now.GPub.RowCount(); ++row)
    if (now.GPub.At(row) != stored.GPub.At(row)) return true;
  return false;
}

bool Campaigns::RefuseWrongMark(Station& station, const CampaignEditor& editor) {
  const auto wrong = FindWrongMark(editor);
  if (wrong) ShowAlert(station, WrongMarkText(station, *wrong));
  return wrong.has_value();
}

bool Campaigns::CmdLoadFile_Click(Station& station, CampaignEditor& editor, const std::string& path,
                                  int32_t lengthMs) {
  try {
    if (const auto advertiser = AdvertiserWith(station, path)) {
      ShowAlert(station, kFileInUse + *advertiser);
      return false;
    }
    editor.FichierAudio = path;
    Longeur_Change(editor, std::to_string(lengthMs));
    editor.ChAnnonceur = AdvertiserOf(path);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "CmdLoadFile");
    return false;
  }
}

void Campaigns::Longeur_Change(CampaignEditor& editor, const std::string& text) {
  editor.Longeur = text;
  editor.LblTemp = FormatDuration(ValInt(text));
}

void Campaigns::OptPub_Click(CampaignEditor& editor, int option) {
  editor.OptPub = {option == 0, option != 0};
}

std::string Campaigns::FileForSelector(Station& station, const CampaignEditor& editor) {
  const std::string& file = editor.FichierAudio;
  return !file.empty() && station.platform.soundFiles.Exists(file) ? file : std::string();
}

void Campaigns::TakeFiles(Station& station, CampaignEditor& editor,
                          const std::vector<std::string>& files) {
  try {
    if (files.empty()) return;
    CmdLoadFile_Click(station, editor, files.front(),
                      station.platform.lengths.LengthMs(files.front()));
  } catch (const std::exception&) {
    LogCurrentException(station, "CmdLoadFile");
  }
}

void Campaigns::Categorie_KeyEnter(Station& station, CampaignEditor& editor) {
  try {
    if (!Confirmed(station, kAddCategory + std::string("\r\n") + editor.Categorie)) {
      editor.Categorie.clear();
      return;
    }
    ReadCategoriesAnew(station, editor);
    editor.CategorieList.push_back(UpperLatin(editor.Categorie));
    LoadSaveCategories(station, "Save", editor.CategorieList);
  } catch (const std::exception&) {
    LogCurrentException(station, "Categorie");
  }
}

void Campaigns::Categorie_KeyDelete(Station& station, CampaignEditor& editor) {
  try {
    if (!Confirmed(station, kDeleteCategory + editor.Categorie)) return;
    ReadCategoriesAnew(station, editor);
    auto& list = editor.CategorieList;
    const auto found =
        std::find_if(list.begin(), list.end(),
                     [category = UpperLatin(editor.Categorie)](const std::string& entry) {
                       return UpperLatin(entry) == category;
                     });
    if (found != list.end()) list.erase(found);
    LoadSaveCategories(station, "Save", list);
  } catch (const std::exception&) {
    LogCurrentException(station, "Categorie");
  }
}

void Campaigns::LblDepartPub_RightClick(Station& station, CampaignEditor& editor) {
  try {
    editor.LblDepartPub = editor.LblFinPub = kDailyCampaign;
    BuildGrid(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, "PubJournaliere");
  }
}

void Campaigns::PickDay(Station& station, CampaignEditor& editor, int mode,
                        const std::string& date) {
  try {
    if (mode == 1) editor.LblDepartPub = date;
    if (mode != 2) return;
    editor.LblFinPub = date;
    BuildGrid(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, "CmdInitGrille");
  }
}

void Campaigns::CmdInitGrille_Click(Station& station, CampaignEditor& editor) {
  try {
    BuildGrid(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, "CmdInitGrille");
  }
}

void Campaigns::ImgMemo_Click(Station& station) {
  try {
    station.platform.messages.Show(MemoTitle(station), MemoText(station), Buttons::kOk);
  } catch (const std::exception&) {
    LogCurrentException(station, "ImgMemo");
  }
}

}  // namespace zemo
