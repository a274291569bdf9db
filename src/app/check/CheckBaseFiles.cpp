// What stands beside the base: a base that is handed over, and what a change of the base left.
#include "app/check/CheckParts.h"
#include "engine/BaseMaintenance.h"
#include "station/BaseFiles.h"
#include "station/BasePlaces.h"

namespace zemo {

std::string WhyBaseIsMissing(const Folder& station) {
  const std::string file = FileForMissingBase(station);
  if (!file.empty()) return "is missing: the next start puts " + file + " in its place";
  if (station.Exists(BaseFile::kBackup))
    return std::string("is missing: the next start makes an empty one, although ") +
           BaseFile::kBackup + " holds the base before its last change";
  return "is missing";
}

void CheckBaseFiles(const Folder& station, Findings& findings) {
  if (station.Exists(BaseFile::kNew) && !PlaceOfBase(station).isFile) {
    findings.Warning("base", BaseFile::kNew,
                     "is not taken: the base stands on a server, where all machines work on one");
  } else if (station.Exists(BaseFile::kNew)) {
    const std::string path = station.PathOf(BaseFile::kNew);
    const std::string why = WhyNoBase(station, BaseFile::kNew);
    if (!why.empty())
      findings.Warning("base", BaseFile::kNew,
                       "cannot take the place of the base:" + why.substr(path.size()));
  }
  if (station.Exists(BaseFile::kMovedPart))
    findings.Warning("base", BaseFile::kMovedPart,
                     "is left of a move that was interrupted; the next one removes it");
  if (station.Exists(BaseFile::kMovedIni) && PlaceOfBase(station).isFile)
    findings.Warning("base", BaseFile::kMovedIni, "is left of a move: Triskin.MDB is the base");
  if (station.Exists(BaseFile::kCopy))
    findings.Warning("base", BaseFile::kCopy,
                     "is left of a compaction that was interrupted; the next one removes it");
}

}  // namespace zemo
