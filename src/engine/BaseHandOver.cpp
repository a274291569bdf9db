// The base "New.mdb" that another machine dropped takes the place of the station's. What holds at
// every step, so that a loss of power between any two leaves a whole base: the new file has passed
// its check before the old one is touched; between the two renames it is the only one, and the
// start finishes what was begun.
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "engine/BaseMaintenance.h"
#include "engine/OperatorControls.h"
#include "library/HotKeys.h"
#include "platform/BaseUse.h"
#include "platform/Folder.h"
#include "station/BaseFiles.h"
#include "station/Station.h"
#include "station/WaitPointer.h"
#include "store/DatabaseFiles.h"
#include "store/StoreError.h"
#include "traffic/CampaignImport.h"

namespace zemo {

namespace {

constexpr const char* kHandOverRoutine = "SurveilleNewBase";

// Once for the same file and fault; it is tried again at each element.
void TellOnce(Station& station, const std::string& stamp, const std::exception& error) {
  std::string told = stamp + "\t" + error.what();
  if (told == station.engine.newBaseTold) return;
  LogCurrentException(station, kHandOverRoutine);
  station.engine.newBaseTold = std::move(told);
}

// A base that is damaged past all opening may be replaced as well: nobody works with it.
std::unique_ptr<HeldDatabase> HoldOld(const std::string& path) {
  try {
    return std::make_unique<HeldDatabase>(path, 0);
  } catch (const StoreError& error) {
    if (error.Number() != kErrBadDatabase) throw;
    return nullptr;
  }
}

// With the base closed.
void ExchangeFiles(Station& station) {
  Folder& folder = station.platform.stationFolder;
  const std::string& path = station.base.Path();
  const bool hadBase = DBEngine::DatabaseExists(path);
  std::unique_ptr<HeldDatabase> held = hadBase ? HoldOld(path) : nullptr;
  // The copy of a compaction that failed must not be found in the place of this base.
  RemoveBaseFile(station, BaseFile::kCopy);
  if (hadBase) SetBaseAside(station);
  try {
    folder.Rename(BaseFile::kNew, BaseFileName(station));
  } catch (const FileError&) {
    if (hadBase) folder.Rename(BaseFile::kBackup, BaseFileName(station));
    throw;
  }
  station.base.KeepFromOthers(std::move(held));
}

void GoOnWithTheOldBase(Station& station) {
  try {
    OpenBaseAgain(station);
  } catch (const std::exception&) {
    LogCurrentException(station, kHandOverRoutine);
  }
}

void TakeNewBase(Station& station) {
  const std::string path = station.platform.stationFolder.PathOf(BaseFile::kNew);
  if (const BaseUse* use = station.platform.baseUse)
    if (const std::string other = use->OtherUser(path); !other.empty())
      throw StoreError(kErrLocked, other);
  const BaseAlone alone(station, 0);
  const WaitPointer wait(station.notices);
  station.base.Close();
  try {
    ExchangeFiles(station);
  } catch (const std::exception&) {
    GoOnWithTheOldBase(station);
    throw;
  }
  station.events.Base("swapped");
  ForgetAnswers(station);
  OpenBaseAgain(station);
  CheckStructures(station);  // it may come from an older version
  LoadHotKeys(station);
}

void LookForNewBase(Station& station) {
  const Folder& folder = station.platform.stationFolder;
  EngineState& engine = station.engine;
  const std::string stamp = folder.Stamp(BaseFile::kNew);
  if (stamp.empty() || stamp == engine.newBaseRefused) return;
  try {
    if (!station.base.IsFile()) {
      engine.newBaseRefused = stamp;
      throw StoreError(kErrFileExists, folder.PathOf(BaseFile::kNew) +
                                           " is not taken: the base stands on a server, where "
                                           "all machines work on one");
    }
    if (stamp != engine.newBasePassed) {
      if (const std::string why = WhyNoBase(folder, BaseFile::kNew); !why.empty()) {
        engine.newBaseRefused = stamp;
        throw StoreError(kErrBadDatabase, why);
      }
      engine.newBasePassed = stamp;
    }
    TakeNewBase(station);
  } catch (const std::exception& error) {
    TellOnce(station, stamp, error);
  }
}

}  // namespace

// A copy of a compaction stands there only until the renames are done, so that it is newer than the
// others.
std::string FileForMissingBase(const Folder& station) {
  for (const char* name : {BaseFile::kCopy, BaseFile::kNew})
    if (station.Exists(name) && WhyNoBase(station, name).empty()) return name;
  // Set aside by a change whose new file is damaged: the old base is better than none.
  const bool changing = station.Exists(BaseFile::kCopy) || station.Exists(BaseFile::kNew);
  return changing && station.Exists(BaseFile::kBackup) ? BaseFile::kBackup : std::string();
}

namespace {

// The base is about to be made anew without a row: the backup may be all that is left of it, and
// the next compaction would put the empty one in its place.
void KeepBackupOfLostBase(Station& station) {
  Folder& folder = station.platform.stationFolder;
  if (!folder.Exists(BaseFile::kBackup)) return;
  const std::string kept = DatedName(station, "Triskin ", ".BAK");
  const std::string journal = std::string(BaseFile::kBackup) + BaseFile::kJournal;
  if (folder.Exists(journal)) folder.Rename(journal, kept + BaseFile::kJournal);
  folder.Rename(BaseFile::kBackup, kept);
  LogError(station, "OpenOrCreateDatabase", kErrNoSuchFile,
           BaseFileName(station) + " was missing or empty: it is made anew, and " +
               BaseFile::kBackup + " is kept as " + kept);
}

// The base was moved to its server; what names it has still to get its name.
void FinishMove(Folder& folder) {
  if (!folder.Exists(BaseFile::kIni) && folder.Exists(BaseFile::kMovedIni))
    folder.Rename(BaseFile::kMovedIni, BaseFile::kIni);
}

}  // namespace

void FinishInterruptedChange(Station& station) {
  try {
    Folder& folder = station.platform.stationFolder;
    if (!station.base.IsFile()) return FinishMove(folder);
    if (station.base.IsThere()) return;
    const std::string file = FileForMissingBase(folder);
    if (file.empty()) return KeepBackupOfLostBase(station);
    const std::string name = BaseFileName(station);
    const std::string journal = name + BaseFile::kJournal;
    const std::string backupJournal = std::string(BaseFile::kBackup) + BaseFile::kJournal;
    // No journal may be played into a base that it is not of.
    if (file != BaseFile::kBackup)
      folder.Remove(journal);
    else if (folder.Exists(backupJournal))
      folder.Rename(backupJournal, journal);
    folder.Rename(file, name);
    LogError(station, "OpenOrCreateDatabase", kErrNoSuchFile,
             name + " was missing after an interrupted change: " + file + " has taken its place");
    if (file == BaseFile::kNew) station.events.Base("swapped");
  } catch (const std::exception&) {
    LogCurrentException(station, "OpenOrCreateDatabase");
  }
}

void TakeDroppedBase(Station& station) {
  try {
    LookForNewBase(station);
    if (station.base.IsOpen()) ImportExportedCampaigns(station);
  } catch (const std::exception&) {
    LogCurrentException(station, kHandOverRoutine);
  }
}

}  // namespace zemo
