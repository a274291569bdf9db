#include "engine/UnplayableRows.h"

#include "platform/Folder.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr const char* kPlace = "PlayWave";
constexpr int kWholeFolder = 10;  // rows in a row
constexpr int kNotice = 0;        // no fault of a kind that has a number

std::string WhyNot(const std::string& file, const std::string& reason) {
  if (reason == "empty") return "it names no file";
  if (reason == "missing") return "its file is missing: " + file;
  return "its file is damaged or holds no sound: " + file;
}

std::string NextStep(const Station& station) {
  return "; next: zemoradio check " + station.platform.stationFolder.Path();
}

}  // namespace

void TellUnplayable(Station& station, const OnAirElement& row, const std::string& reason) {
  int& rows = station.engine.unplayableRows;
  if (rows >= kWholeFolder) return;
  ++rows;
  if (reason == "missing") ++station.engine.missingRows;
  if (rows < kWholeFolder)
    return LogNotice(station, kPlace, kNotice,
                     '"' + Trim(TitleOf(row)) + "\" cannot be played, " + WhyNot(row.file, reason) +
                         NextStep(station));
  const bool gone = station.engine.missingRows == kWholeFolder;
  LogNotice(station, kPlace, kNotice,
            std::to_string(kWholeFolder) + " rows in a row cannot be played" +
                (gone ? ": the folder of the sounds is gone or not mounted (" +
                            row.file.substr(0, row.file.find_last_of("/\\")) + ")"
                      : "") +
                NextStep(station));
}

void NoteRowSounds(Station& station) {
  station.engine.unplayableRows = station.engine.missingRows = 0;
}

}  // namespace zemo
