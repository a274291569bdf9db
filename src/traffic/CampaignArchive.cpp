#include "traffic/CampaignArchive.h"

#include <optional>
#include <utility>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "traffic/CampaignFiles.h"

namespace zemo {

namespace {

constexpr std::string_view kRecordEnding = ".Txt", kGridEnding = ".GPB";

Folder& Archive(Station& station) {
  return station.platform.stationFolder.Subfolder(kEndedCampaigns);
}

constexpr std::pair<const char*, std::string CampaignForm::*> kFields[] = {
    {"CODE", &CampaignForm::LblCode},
    {"CAMPAGNEDEPART", &CampaignForm::LblDepartPub},
    {"CAMPAGNEFIN", &CampaignForm::LblFinPub},
    {"HDEPART", &CampaignForm::HDepPub},
    {"HFIN", &CampaignForm::HFinPub},
    {"FILENAMEAUDIO", &CampaignForm::FichierAudio},
    {"DUREE", &CampaignForm::Longeur},
    {"ANNONCEUR", &CampaignForm::ChAnnonceur},
    {"CATEGORIE", &CampaignForm::Categorie},
    {"FILENAMEGRILLE", &CampaignForm::FILENAMEGRILLE},
    {"PRIORITY", &CampaignForm::ComboPriority},
    {"CONTACT", &CampaignForm::ChContact},
    {"GENREASSOCIE", &CampaignForm::GenreAssocie}};

std::string MarkName(size_t mark) {
  return "DECOUPEH" + std::to_string(mark + 1);
}

void TakeField(const std::string& name, const SideField& field, CampaignForm& form) {
  for (const auto& [known, place] : kFields)
    if (name == known) form.*place = field.text;
  for (size_t i = 0; i < form.DecoupagePub.size(); ++i)
    if (name == MarkName(i)) form.DecoupagePub[i] = field.text;
  if (name == "PUB") form.OptPub = {field.AsBool(true), !field.AsBool(true)};
}

CampaignForm FormOfRecord(const std::string& text) {
  CampaignForm form;
  for (const FieldRecord& line : ReadRecords(text))
    if (line.size() == 2) TakeField(line[0].text, line[1], form);
  return form;
}

std::optional<CampaignForm> ReadRecord(const Folder& archive, const std::string& name) {
  const auto text = ReadSideFile(archive, name + std::string(kRecordEnding));
  return text ? std::optional(FormOfRecord(*text)) : std::nullopt;
}

bool SameCampaign(const CampaignForm& a, const CampaignForm& b) {
  return a.LblCode == b.LblCode && a.FichierAudio == b.FichierAudio &&
         a.LblDepartPub == b.LblDepartPub;
}

// Of the campaign where it is kept already, else of nobody yet.
std::string NameOf(const Folder& archive, const CampaignForm& form) {
  for (int number = 1;; ++number) {
    const std::string name = form.LblCode + (number == 1 ? "" : "-" + std::to_string(number));
    const auto kept = ReadRecord(archive, name);
    if (!kept || SameCampaign(*kept, form)) return name;
  }
}

// Of a file too large to be a grid nothing is kept but that it is none: an empty one fits no grid.
std::optional<std::string> ReadGrid(Station& station, const std::string& path) {
  const CampaignFile file(path);
  if (file.SizeBytes(station) > kMostGridFileBytes) return std::string();
  return file.Read(station);
}

}  // namespace

std::string CampaignRecordText(const CampaignForm& form) {
  std::string text;
  const auto add = [&text](const std::string& name, const std::string& value) {
    text += QuotedField(name) + "," + value + "\r\n";
  };
  for (const auto& [name, place] : kFields) add(name, QuotedField(form.*place));
  for (size_t i = 0; i < form.DecoupagePub.size(); ++i)
    add(MarkName(i), QuotedField(form.DecoupagePub[i]));
  add("PUB", BoolField(form.OptPub[0]));
  return text;
}

// The record last: it makes the campaign one of the archive.
void ArchiveCampaign(Station& station, const CampaignForm& form) {
  Folder& archive = Archive(station);
  const std::string name = NameOf(archive, form);
  const std::string gridName = name + std::string(kGridEnding);
  if (const auto grid = ReadGrid(station, form.FILENAMEGRILLE))
    WriteSideFileDurably(archive, gridName, *grid);
  else
    archive.Remove(gridName);
  WriteSideFileDurably(archive, name + std::string(kRecordEnding), CampaignRecordText(form));
}

std::vector<CampaignForm> ArchivedCampaigns(Station& station) {
  Folder& archive = Archive(station);
  std::vector<CampaignForm> campaigns;
  for (const std::string& file : archive.Names()) {
    if (!file.ends_with(kRecordEnding)) continue;
    const std::string name = file.substr(0, file.size() - kRecordEnding.size());
    const auto kept = ReadRecord(archive, name);
    if (!kept) continue;
    campaigns.push_back(*kept);
    const std::string grid = name + std::string(kGridEnding);
    campaigns.back().FILENAMEGRILLE = archive.Exists(grid) ? archive.PathOf(grid) : std::string();
  }
  return campaigns;
}

}  // namespace zemo
