// Two small files that the music requests follow: the hours of instrumentals, and how much of the
// library a request reads.
#include <exception>
#include <limits>
#include <optional>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr int kErrNoNumber = 13;

// "LectureBase.Txt" as it is made: no group limit, and behind it what the number means.
constexpr std::string_view kLectureBaseText =
    "0\r\n"
    "\"/*--------------------------------------------------------------------------------"
    "--------------------*/\"\r\n"
    "\"/* Paramètre pour calculer le nombre de fiches dans la discothèque musique\"\r\n"
    "\"/* à analyser dans un requête ex: 0 = lecture total de la disothèque 15 = 15x30 minutes = "
    "450 titres\"\r\n"
    "\"/*--------------------------------------------------------------------------------"
    "--------------------*/\"\r\n";

void ReadLectureBase(Station& station, std::string_view text) {
  const std::vector<SideField> fields = ReadFields(text);
  const std::string first = fields.empty() ? std::string() : fields[0].text;
  const std::optional<int32_t> groups = fields.empty() ? std::nullopt : fields[0].Number();
  if (!groups) {
    LogError(station, "LoadLectureBase", kErrNoNumber,
             station.files.LectureBase + ": \"" + FirstCharacters(first, 40) + "\" is no number");
    return;
  }
  if (*groups < std::numeric_limits<int16_t>::min() ||
      *groups > std::numeric_limits<int16_t>::max()) {
    LogError(station, "LoadLectureBase", kErrOverflow,
             station.files.LectureBase + ": " + std::to_string(*groups) + " is out of range");
    return;
  }
  station.lists.LectureBase = *groups;
}

}  // namespace

void LoadSaveInstrumental(Station& station, std::string_view action) {
  Folder& folder = station.platform.stationFolder;
  auto& hours = station.lists.Instru;
  try {
    if (IsSave(action)) {
      std::string text;
      for (const bool instrumental : hours) text += BoolField(instrumental) + "\r\n";
      WriteSideFileDurably(folder, station.files.Instrumental, text);
    }
    if (!IsLoad(action)) return;
    hours.fill(true);
    const auto text = ReadSideFile(folder, station.files.Instrumental);
    const std::vector<SideField> fields = ReadFields(text.value_or(std::string()));
    for (size_t hour = 0; hour < hours.size() && hour < fields.size(); ++hour)
      hours[hour] = fields[hour].AsBool(true);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveInstrumental");
  }
}

void LoadReadSettingsOfBase(Station& station) {
  Folder& folder = station.platform.stationFolder;
  station.lists.LectureBase = 0;
  try {
    if (const auto text = ReadSideFile(folder, station.files.LectureBase)) {
      ReadLectureBase(station, *text);
    } else {
      WriteSideFileDurably(folder, station.files.LectureBase, kLectureBaseText);
    }
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadLectureBase");
  }
}

}  // namespace zemo
