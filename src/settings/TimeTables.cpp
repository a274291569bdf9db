// The times of a weekday: "StartStop.n" with the start and stop times, "Topage.n" with the times at
// which the air goes to another program. The tick looks for both anew in the first minute of each
// hour, and reads what has changed.
#include <exception>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr std::string_view kStart = "START";
constexpr std::string_view kStop = "STOP";

std::string DayFile(std::string_view word, int day) {
  return std::string(word) + "." + std::to_string(day);
}

using Times = std::vector<std::string>;

// The lists that a file fills: the engine's, or those of the settings screen, which may show
// another day.
struct StartStopLists {
  Times& start;
  Times& stop;
};

StartStopLists ListsOf(Station& station, bool listsOnly) {
  if (listsOnly) return {station.lists.ComboHeure, station.lists.HeureArretSystem};
  return {station.settings.ComboHeure, station.settings.HeureArretSystem};
}

// A marker and the time behind it, wherever the lines end. A marker without a time is passed over.
void ReadStartStop(const StartStopLists& lists, std::string_view text) {
  Times* list = nullptr;
  for (const SideField& field : ReadFields(text)) {
    const std::string entry = Trim(field.text);
    if (EqualNoCase(entry, kStart)) {
      list = &lists.start;
    } else if (EqualNoCase(entry, kStop)) {
      list = &lists.stop;
    } else if (list != nullptr) {
      if (!entry.empty()) list->push_back(entry);
      list = nullptr;
    }
  }
}

std::string StartStopText(const StartStopLists& lists) {
  std::string text;
  for (const std::string& time : lists.start)
    text += QuotedField(kStart) + "," + QuotedField(time) + "\r\n";
  for (const std::string& time : lists.stop)
    text += QuotedField(kStop) + "," + QuotedField(time) + "\r\n";
  return text;
}

// What stands in the day's files, as far as it can be told without reading them.
std::string DayStamp(const Folder& folder, int day) {
  return std::to_string(day) + "\t" + folder.Stamp(DayFile("StartStop", day)) + "\t" +
         folder.Stamp(DayFile("Topage", day));
}

}  // namespace

void ReloadDayTimes(Station& station, int day) {
  try {
    std::string stamp = DayStamp(station.platform.stationFolder, day);
    if (stamp == station.lists.dayTimesStamp) return;
    const bool times = LoadSaveStartStop(station, "Load", day, true);
    const bool markers = LoadSaveTopage(station, "Load", day, true);
    station.lists.dayTimesStamp = times && markers ? std::move(stamp) : std::string();
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveStartStop");
  }
}

bool LoadSaveStartStop(Station& station, std::string_view action, int day, bool listsOnly) {
  Folder& folder = station.platform.stationFolder;
  const StartStopLists lists = ListsOf(station, listsOnly);
  const std::string name = DayFile("StartStop", day);
  try {
    if (IsSave(action)) WriteSideFileDurably(folder, name, StartStopText(lists));
    if (!IsLoad(action)) return true;
    const auto text =
        ReadSideFile(folder, name);  // a file that cannot be read leaves the day's times
    lists.start.clear();
    lists.stop.clear();
    if (text) ReadStartStop(lists, *text);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveStartStop");
    return false;
  }
}

bool LoadSaveTopage(Station& station, std::string_view action, int day, bool listsOnly) {
  Folder& folder = station.platform.stationFolder;
  Times& times = listsOnly ? station.lists.Topage : station.settings.Topage;
  const std::string name = DayFile("Topage", day);
  try {
    if (IsSave(action)) {
      std::string text;
      for (const std::string& time : times) text += QuotedField(time) + "\r\n";
      WriteSideFileDurably(folder, name, text);
    }
    if (!IsLoad(action)) return true;
    const std::string text = ReadSideFile(folder, name).value_or(std::string());
    times.clear();
    for (const SideField& field : ReadFields(text))
      if (std::string time = Trim(field.text); !time.empty()) times.push_back(std::move(time));
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveTopage");
    return false;
  }
}

}  // namespace zemo
