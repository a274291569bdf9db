// What holds at every step, so that a loss of power between any two leaves a whole base: up to the
// renames the base is untouched; between them the copy is whole and on the disk, and the start
// takes it (engine/BaseHandOver).
#include "station/BaseCompaction.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "station/BaseFiles.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/DatabaseFiles.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "CompactageTriskin";
constexpr const char* kLastCompactage = "LastCompactage";
constexpr int kLockWaitMs = 1000;  // for a tool that is at work on the base just now

// The copy becomes the base. Where it cannot, the base has its place again.
void ExchangeFiles(Station& station) {
  Folder& folder = station.platform.stationFolder;
  const std::string name = BaseFileName(station);
  SetBaseAside(station);
  try {
    folder.Rename(BaseFile::kCopy, name);
  } catch (const FileError&) {
    folder.Rename(BaseFile::kBackup, name);
    throw;
  }
}

// With the base closed.
void CompactClosed(Station& station) {
  Folder& folder = station.platform.stationFolder;
  const std::string& path = station.base.Path();
  DBEngine::RepairDatabase(path);
  RemoveBaseFile(station, BaseFile::kCopy);
  auto held = std::make_unique<HeldDatabase>(path, kLockWaitMs);
  held->CopyTo(folder.Path() + BaseFile::kCopy);
  ExchangeFiles(station);
  station.base.KeepFromOthers(std::move(held));
  try {
    folder.Remove(BaseFile::kCopyLock);
  } catch (const FileError&) {
    // The base is compacted; the file is in nobody's way.
  }
}

// Nobody needs half a copy. Without a base in its place, a whole one is left to the next start.
void GoOnWithTheOldBase(Station& station) {
  try {
    OpenBaseAgain(station);
    station.events.Base("opened");
  } catch (const std::exception&) {
    return LogCurrentException(station, kRoutine);
  }
  try {
    RemoveBaseFile(station, BaseFile::kCopy);
  } catch (const FileError&) {
    // The next compaction removes it first, and says what is in its way.
  }
}

}  // namespace

void RepairAndCompact(Station& station) {
  if (!station.base.IsFile() && !station.base.IsOpen()) OpenBaseAgain(station);
  if (station.base.IsOpen() && station.base.Db().CompactInPlace())
    return station.events.Base("compacted");
  const BaseAlone alone(station, kLockWaitMs);
  station.base.Close();
  try {
    CompactClosed(station);
  } catch (const std::exception&) {
    GoOnWithTheOldBase(station);
    throw;
  }
  OpenBaseAgain(station);
  station.events.Base("compacted");
}

bool CompactStationBase(Station& station) {
  try {
    RepairAndCompact(station);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
    return false;
  }
}

void CompactOnceAMonth(Station& station) {
  if (!station.base.IsOpen()) return;             // why not was told as it was opened
  constexpr size_t kMonthAt = 3, kMonthSize = 2;  // "dd/mm/yyyy hh:mm:ss"
  const std::string today = DateText(station.Now());
  const std::string last = station.platform.localValues.GetText(kLastCompactage, "");
  if (last.size() >= kMonthAt + kMonthSize &&
      last.substr(kMonthAt, kMonthSize) == today.substr(kMonthAt, kMonthSize))
    return;
  if (!CompactStationBase(station)) return;
  try {
    KeepLastCompaction(station);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
  }
}

void KeepLastCompaction(Station& station) {
  const LocalDateTime now = station.Now();
  station.platform.localValues.Set(kLastCompactage, DateText(now) + " " + TimeText(now));
}

}  // namespace zemo
