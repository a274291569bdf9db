// Cards, jingles, short elements, campaigns, pips, voice tracks and the jingles around breaks, each
// with its sound file.
#include <cstdlib>
#include <map>

#include "app/check/CheckParts.h"
#include "app/check/SoundFileCheck.h"
#include "station/TextForms.h"
#include "traffic/CampaignFiles.h"

namespace zemo {
namespace {

// Cards made by other programs may count an MP3's encoder delay in; a difference that can be heard
// at an exit point is more.
constexpr int64_t kLengthToleranceMs = 100;

// One table whose records name a sound file. The queries give: number, label, file, length, exit
// point (both ms; Null where the record has none).
struct ElementTable {
  const char* kind;
  const char* query;
};

constexpr ElementTable kTables[] = {
    {"music",
     "SELECT CODE, TRIM(AUTEUR) || ' - ' || TRIM(TITRE), FILENAME, DUREE, POINTSORTIE "
     "FROM Discotheque ORDER BY CODE"},
    {"jingle",
     "SELECT CODE, LIBELLE, FILENAME, DUREE, POINTSORTIE FROM DiscothequeJingle ORDER BY CODE"},
    {"short",
     "SELECT CODE, LIBELLE, FILENAME, DUREE, POINTSORTIE FROM DiscothequeVirgule ORDER BY CODE"},
    {"campaign", "SELECT CODE, ANNONCEUR, FILENAMEAUDIO, DUREE, NULL FROM GrillePub ORDER BY CODE"},
    // The editor leaves a record without a file where it was opened and nothing was stored.
    {"voicetrack",
     "SELECT CODE, LIBELLE, FILENAME, DUREE, POINTSORTIE FROM VT WHERE TRIM(FILENAME) <> '' ORDER "
     "BY CODE"},
};

class ElementCheck {
 public:
  ElementCheck(const SoundFiles& files, Findings& findings) : files_(files), findings_(findings) {}

  void Look(const std::string& kind, const std::string& what, const std::string& file,
            const Value& lengthMs, const Value& exitPointMs) {
    if (Trim(file).empty()) {
      findings_.Error(kind, what, "names no sound file");
      return;
    }
    const SoundFileLook& look = LookAt(file);
    for (const SoundFault& fault : look.faults) {
      const std::string why = file + ": " + fault.why;
      fault.severity == Severity::kError ? findings_.Error(kind, what, why)
                                         : findings_.Warning(kind, what, why);
    }
    if (look.lengthMs < 0) return;
    if (!IsNull(lengthMs) && std::abs(AsInt(lengthMs) - look.lengthMs) > kLengthToleranceMs) {
      findings_.Warning(kind, what,
                        "its card says " + std::to_string(AsInt(lengthMs)) +
                            " ms, the sound file has " + std::to_string(look.lengthMs));
    }
    if (AsInt(exitPointMs) >= look.lengthMs) {
      findings_.Warning(kind, what,
                        "its exit point of " + std::to_string(AsInt(exitPointMs)) +
                            " ms leaves nothing of its " + std::to_string(look.lengthMs) + " ms");
    }
  }

 private:
  // A file that several records name is opened once.
  const SoundFileLook& LookAt(const std::string& file) {
    const auto [place, isNew] = looks_.try_emplace(files_.Resolve(file));
    if (isNew) place->second = LookAtSoundFile(place->first);
    return place->second;
  }

  const SoundFiles& files_;
  Findings& findings_;
  std::map<std::string, SoundFileLook> looks_;
};

void CheckPips(const ReadOnlyBase& base, ElementCheck& check, Findings& findings) {
  std::string silent;
  std::map<std::string, std::string> hoursOf;  // by file: a pip is one file for many hours
  base.Query("SELECT HEURE, FICHIER FROM Toph ORDER BY HEURE", [&](const ReadOnlyBase::Row& row) {
    const std::string file = Trim(AsText(row[1]));
    std::string& hours = file.empty() ? silent : hoursOf[file];
    if (!hours.empty()) hours += ", ";
    hours += TwoDigits(static_cast<int>(AsInt(row[0])));
  });
  // A station may have no pip at all, but hardly one for some of its hours.
  if (!silent.empty() && !hoursOf.empty())
    findings.Warning("pip", "hours " + silent, "no sound file");
  for (const auto& [file, hours] : hoursOf) check.Look("pip", "hours " + hours, file, {}, {});
}

}  // namespace

void CheckElements(const ReadOnlyBase& base, const Folder& station, const SoundFiles& files,
                   Findings& findings) {
  ElementCheck check(files, findings);
  for (const ElementTable& table : kTables) {
    base.Query(table.query, [&](const ReadOnlyBase::Row& row) {
      check.Look(table.kind, AsText(row[0]) + " " + AsText(row[1]), AsText(row[2]), row[3], row[4]);
    });
  }
  CheckPips(base, check, findings);
  for (const char* field : {"JingleAvantPubs", "JingleApresPubs"}) {
    base.Query("SELECT " + std::string(field) + " FROM Cnf", [&](const ReadOnlyBase::Row& row) {
      if (!Trim(AsText(row[0])).empty()) check.Look("settings", field, AsText(row[0]), {}, {});
    });
  }
  base.Query("SELECT CODE, ANNONCEUR, FILENAMEGRILLE FROM GrillePub ORDER BY CODE",
             [&](const ReadOnlyBase::Row& row) {
               if (CampaignFile(AsText(row[2])).Exists(station, files)) return;
               findings.Warning("campaign", AsText(row[0]) + " " + AsText(row[1]),
                                "has no grid file and is never on air: " + AsText(row[2]));
             });
}

}  // namespace zemo
