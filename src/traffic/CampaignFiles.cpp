#include "traffic/CampaignFiles.h"

#include <exception>
#include <utility>

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

bool InStationFolder(const std::string& path) {
  return path.find_first_of("/\\") == std::string::npos;
}

void TakeDecoupe(const std::vector<SideField>& fields, CampaignForm& form) {
  const auto take = [&](size_t at, std::string& to) {
    if (at < fields.size()) to = fields[at].text;
  };
  take(0, form.HDepPub);
  take(1, form.HFinPub);
  for (size_t i = 0; i < form.DecoupagePub.size(); ++i) take(i + 2, form.DecoupagePub[i]);
}

void RequireDivision(const Station& station, const CampaignForm& form) {
  if (const auto wrong = FindWrongMark(form))
    throw FileError(station.files.Decoupe + ": " + WrongMarkFault(*wrong));
}

}  // namespace

std::string CampaignFilePath(std::string_view soundFile, std::string_view ending) {
  const std::string upper = UpperAscii(soundFile);
  for (const std::string_view kind : {".WAV", ".MP3"}) {
    const size_t point = upper.find(kind);
    if (point != std::string::npos)
      return std::string(soundFile.substr(0, point + 1)) + std::string(ending);
  }
  return std::string(ending);
}

int64_t CampaignFileSizeBytes(Station& station, const std::string& path) {
  if (path.empty()) return -1;
  return InStationFolder(path) ? station.platform.stationFolder.SizeBytes(path)
                               : station.platform.soundFiles.SizeBytes(path);
}

std::optional<std::string> ReadCampaignFile(Station& station, const std::string& path) {
  if (path.empty()) return std::nullopt;
  if (InStationFolder(path)) return ReadSideFile(station.platform.stationFolder, path);
  const auto bytes = ReadBounded(station.platform.soundFiles, path);
  return bytes ? std::optional(DecodeSideFile(*bytes)) : std::nullopt;
}

void WriteCampaignFile(Station& station, const std::string& path, std::string_view utf8) {
  if (InStationFolder(path))
    WriteSideFileDurably(station.platform.stationFolder, path, utf8);
  else
    station.platform.soundFiles.WriteDurably(path, EncodeSideFile(utf8));
}

bool CampaignFileExists(const Folder& station, const SoundFiles& soundFiles,
                        const std::string& path) {
  if (path.empty()) return false;
  return InStationFolder(path) ? station.Exists(path) : soundFiles.Exists(path);
}

bool CampaignFileExists(Station& station, const std::string& path) {
  return CampaignFileExists(station.platform.stationFolder, station.platform.soundFiles, path);
}

std::string CampaignFilePlace(Station& station, const std::string& path) {
  if (path.empty()) return {};
  return InStationFolder(path) ? station.platform.stationFolder.PathOf(path)
                               : station.platform.soundFiles.Resolve(path);
}

void RemoveCampaignFile(Station& station, const std::string& path) {
  if (InStationFolder(path))
    station.platform.stationFolder.Remove(path);
  else
    station.platform.soundFiles.Remove(path);
}

std::string CampaignProgram(const CampaignForm& form) {
  std::vector<std::string> lines = {form.LblDepartPub, form.LblFinPub, form.HDepPub, form.HFinPub};
  lines.insert(lines.end(), form.DecoupagePub.begin(), form.DecoupagePub.end());
  lines.insert(lines.end(), {form.ChAnnonceur, form.Categorie, form.ComboPriority,
                             form.OptPub[0] ? "True" : "False", form.GenreAssocie});
  for (std::string& line : lines) line = OneLine(line);
  return JoinLines(lines);
}

std::string DecoupeText(const CampaignForm& form) {
  std::string text = QuotedField(form.HDepPub) + "," + QuotedField(form.HFinPub);
  for (const std::string& mark : form.DecoupagePub) text += "," + QuotedField(mark);
  return text + "\r\n";
}

void LoadSaveDecoupe(Station& station, std::string_view action, CampaignForm& form) {
  Folder& folder = station.platform.stationFolder;
  try {
    if (IsSave(action)) {
      RequireDivision(station, form);
      WriteSideFileDurably(folder, station.files.Decoupe, DecoupeText(form));
    }
    if (!IsLoad(action)) return;
    const auto text = ReadSideFile(folder, station.files.Decoupe);
    if (!text) return;
    CampaignForm taken = form;
    TakeDecoupe(ReadFields(*text), taken);
    RequireDivision(station, taken);
    form = std::move(taken);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveDecoupe");
  }
}

void WriteMajGrillePub(Station& station) {
  WriteSideFileDurably(station.platform.stationFolder, station.files.MajGrillePub,
                       DateText(station.Now()) + "\r\n");
}

}  // namespace zemo
