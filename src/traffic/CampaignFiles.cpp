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

void TakeMarks(const std::vector<SideField>& fields, CampaignForm& form) {
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

CampaignFile::CampaignFile(std::string named)
    : in_(named.empty()                                     ? In::kNone
          : named.find_first_of("/\\") == std::string::npos ? In::kStationFolder
                                                            : In::kSoundFiles),
      name_(std::move(named)) {}

int64_t CampaignFile::SizeBytes(const Station& station) const {
  switch (in_) {
    case In::kStationFolder:
      return station.platform.stationFolder.SizeBytes(name_);
    case In::kSoundFiles:
      return station.platform.soundFiles.SizeBytes(name_);
    case In::kNone:
      break;
  }
  return -1;
}

std::optional<std::string> CampaignFile::Read(const Station& station) const {
  if (in_ == In::kNone) return std::nullopt;
  if (in_ == In::kStationFolder) return ReadSideFile(station.platform.stationFolder, name_);
  const auto bytes = ReadBounded(station.platform.soundFiles, name_);
  return bytes ? std::optional(DecodeSideFile(*bytes)) : std::nullopt;
}

// The station's folder refuses to write or remove what has no name.
void CampaignFile::Write(Station& station, std::string_view utf8) const {
  if (in_ == In::kSoundFiles)
    station.platform.soundFiles.WriteDurably(name_, EncodeSideFile(utf8));
  else
    WriteSideFileDurably(station.platform.stationFolder, name_, utf8);
}

std::string CampaignFile::Stamp(const Station& station) const {
  if (in_ == In::kNone) return {};
  if (in_ == In::kStationFolder) return station.platform.stationFolder.Stamp(name_);
  const auto stamp = station.platform.soundFiles.Stamp(name_);
  return stamp ? std::to_string(stamp->sizeBytes) + " " + std::to_string(stamp->changedMs)
               : std::string();
}

bool CampaignFile::Exists(const Folder& station, const SoundFiles& soundFiles) const {
  switch (in_) {
    case In::kStationFolder:
      return station.Exists(name_);
    case In::kSoundFiles:
      return soundFiles.Exists(name_);
    case In::kNone:
      break;
  }
  return false;
}

bool CampaignFile::Exists(const Station& station) const {
  return Exists(station.platform.stationFolder, station.platform.soundFiles);
}

std::string CampaignFile::Path(const Station& station) const {
  switch (in_) {
    case In::kStationFolder:
      return station.platform.stationFolder.PathOf(name_);
    case In::kSoundFiles:
      return station.platform.soundFiles.Resolve(name_);
    case In::kNone:
      break;
  }
  return {};
}

void CampaignFile::Remove(Station& station) const {
  if (in_ == In::kSoundFiles)
    station.platform.soundFiles.Remove(name_);
  else
    station.platform.stationFolder.Remove(name_);
}

std::string CampaignProgram(const CampaignForm& form) {
  std::vector<std::string> lines = {form.LblDepartPub, form.LblFinPub, form.HDepPub, form.HFinPub};
  lines.insert(lines.end(), form.DecoupagePub.begin(), form.DecoupagePub.end());
  lines.insert(lines.end(), {form.ChAnnonceur, form.Categorie, form.ComboPriority,
                             form.OptPub[0] ? "True" : "False", form.GenreAssocie});
  for (std::string& line : lines) line = OneLine(line);
  return JoinLines(lines);
}

std::string MarksText(const CampaignForm& form) {
  std::string text = QuotedField(form.HDepPub) + "," + QuotedField(form.HFinPub);
  for (const std::string& mark : form.DecoupagePub) text += "," + QuotedField(mark);
  return text + "\r\n";
}

void LoadSaveMarks(Station& station, std::string_view action, CampaignForm& form) {
  Folder& folder = station.platform.stationFolder;
  try {
    if (IsSave(action)) {
      RequireDivision(station, form);
      WriteSideFileDurably(folder, station.files.Decoupe, MarksText(form));
    }
    if (!IsLoad(action)) return;
    const auto text = ReadSideFile(folder, station.files.Decoupe);
    if (!text) return;
    CampaignForm taken = form;
    TakeMarks(ReadFields(*text), taken);
    RequireDivision(station, taken);
    form = std::move(taken);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveDecoupe");
  }
}

void WriteGridSignal(Station& station) {
  WriteSideFileDurably(station.platform.stationFolder, station.files.MajGrillePub,
                       DateText(station.Now()) + "\r\n");
}

}  // namespace zemo
