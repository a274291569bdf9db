// The order of the check: folder, base, what the base names, side files.
#include "app/check/Check.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <ostream>

#include "app/TempFolder.h"
#include "app/check/CheckParts.h"
#include "app/check/Findings.h"
#include "app/check/ReadOnlyBase.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"
#include "station/BaseFiles.h"
#include "station/BasePlaces.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "store/CarryOver.h"
#include "store/Database.h"
#include "store/StoreError.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

// A day of reports, a base rebuilt beside the old one and an exported list fit in the first; a week
// of recorded links in the second.
constexpr int64_t kLeastFreeBytes = 20 * 1000 * 1000;
constexpr int64_t kFewFreeBytes = 200 * 1000 * 1000;

// Whether the process as it runs now may do that.
bool May(const std::string& path, int what) {
  return faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
}

// What keeps the file from being opened at all; nullopt when it can be.
std::optional<std::string> WhyNoBaseFile(const std::string& path) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (fs::is_directory(status)) return "is a folder, not a database";
  if (!fs::is_regular_file(status)) return "is no file";
  if (!May(path, R_OK)) return "cannot be read: no permission";
  if (fs::file_size(path, failed) == 0) return "is empty";
  return std::nullopt;
}

// The lock of the writers, asked for and given back.
std::string WhyNothingCanBeStored(Database& server) {
  try {
    server.BeginTrans();
    server.RollbackTrans();
    return {};
  } catch (const StoreError& error) {
    return error.what();
  }
}

// The base file whatever the case of its name, also where it is no regular file; empty without one.
std::string FindBase(const LocalFolder& station, Findings& findings) {
  std::string found;
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(station.Path(), failed)) {
    const std::string name = entry.path().filename().string();
    if (!EqualNoCase(name, BaseFile::kBase)) continue;
    if (!found.empty())
      findings.Warning("base", name, "stands twice, in another spelling: only one is used");
    if (found.empty() || name == BaseFile::kBase) found = entry.path().string();
  }
  return found;
}

// The days are composed on a copy, for which the base has to be at rest.
void CheckDays(const ReadOnlyBase& base, const CheckOptions& options, const LocalDateTime& now,
               Findings& findings) {
  if (base.Interrupted() || base.HeldForWriting()) return;
  if (AsInt(base.Rows("SELECT COUNT(*) FROM GrillePub")[0][0]) == 0) return;
  try {
    CheckBreaks(options, now, findings);
  } catch (const std::exception& error) {
    findings.Error("break", "the coming days", std::string("cannot be composed: ") + error.what());
  }
}

// What a file that is sound can still lack.
void CheckRows(const ReadOnlyBase& base, const LocalFolder& station, const SoundFiles& files,
               const CheckOptions& options, Findings& findings) {
  if (!CheckStructure(base, findings)) return;
  const LocalDateTime now = options.now.value_or(RealClock().LocalNow());
  CheckSettings(base, findings);
  CheckModels(base, findings);
  CheckLibrary(base, now, findings);
  CheckTitles(base, findings);
  CheckElements(base, station, files, findings);
  CheckStoredLists(base, findings);
  CheckVoiceTracks(base, findings);
  CheckDays(base, options, now, findings);
}

// Read over into a file, which is looked at as any other: so that no question of the check is asked
// twice, and nothing on the server waits for it.
void CheckServerBase(const BasePlace& place, const LocalFolder& station, const SoundFiles& files,
                     const CheckOptions& options, Findings& findings) {
  if (!place.fault.empty()) {
    findings.Error("base", BaseFile::kIni, place.fault);
    return;
  }
  try {
    const auto server = place.closed(std::make_shared<LockWait>(options.lockWaitMs));
    server->Open(false);
    if (const std::string why = WhyNothingCanBeStored(*server); !why.empty())
      findings.Error("base", BaseFile::kIni, why);
    const TempFolder temp;
    const std::string path = temp.Path() + '/' + BaseFile::kBase;
    ReadOverToFile(*server, path);
    CheckRows(ReadOnlyBase(path, options.lockWaitMs), station, files, options, findings);
  } catch (const std::exception& error) {
    findings.Error("base", BaseFile::kIni, error.what());
  }
}

void CheckBase(const LocalFolder& station, const SoundFiles& files, const CheckOptions& options,
               Findings& findings) {
  if (const BasePlace place = PlaceOfBase(station); !place.isFile) {
    CheckBaseFiles(station, findings);
    return CheckServerBase(place, station, files, options, findings);
  }
  const std::string path = FindBase(station, findings);
  if (path.empty()) {
    findings.Error("base", BaseFile::kBase, WhyBaseIsMissing(station));
    return;
  }
  CheckBaseFiles(station, findings);
  if (const std::optional<std::string> why = WhyNoBaseFile(path)) {
    findings.Error("base", BaseFile::kBase, *why);
    return;
  }
  try {
    const ReadOnlyBase base(path, options.lockWaitMs);
    if (base.Interrupted()) {
      findings.Warning(
          "base", BaseFile::kBase,
          "a run was interrupted while it wrote; the next start takes its last change back");
    }
    if (base.HeldForWriting()) {
      findings.Error("base", BaseFile::kBase,
                     "is locked by another process, nothing can be stored");
    }
    if (!May(path, W_OK))
      findings.Error("base", BaseFile::kBase, "cannot be written: no permission");
    CheckRows(base, station, files, options, findings);
  } catch (const BaseError& error) {
    findings.Error("base", BaseFile::kBase, error.what());
  }
}

}  // namespace

void CheckFolder(const std::string& station, Findings& findings) {
  if (!May(station, W_OK | X_OK)) {
    findings.Error("folder", station, "cannot be written: no permission");
  }
  struct statvfs disk {};
  if (statvfs(station.c_str(), &disk) != 0) return;
  const int64_t freeBytes =
      static_cast<int64_t>(disk.f_bavail) * static_cast<int64_t>(disk.f_frsize);
  const std::string left = std::to_string(freeBytes / 1000000) + " MB are left on its disk";
  if (freeBytes < kLeastFreeBytes) {
    findings.Error("disk", station, "is full: " + left);
  } else if (freeBytes < kFewFreeBytes) {
    findings.Warning("disk", station, "is nearly full: " + left);
  }
}

void CheckStation(const CheckOptions& options, const std::function<void(const Finding&)>& found) {
  Findings findings(found);
  std::error_code failed;
  if (!fs::is_directory(options.station, failed)) {
    findings.Error("folder", options.station, "the station folder is missing");
    return;
  }
  LocalFolder machine(options.machine);
  const LocalFolder station(options.station);
  const StoredPaths files(machine);
  try {
    CheckFolder(options.station, findings);
    CheckBase(station, files, options, findings);
    CheckSideFiles(station, files, findings);
    CheckEmergencyFolder(machine, findings);
  } catch (const std::exception& error) {
    findings.Error("folder", options.station, error.what());
  }
}

int RunCheck(const CheckOptions& options, std::ostream& out) {
  int errors = 0, warnings = 0;
  CheckStation(options, [&](const Finding& finding) {
    const bool warning = finding.severity == Severity::kWarning;
    ++(warning ? warnings : errors);
    out << OneLine("check: " + finding.kind + ": " + finding.what + ": " + finding.why)
        << (warning ? " (warning)\n" : "\n");
  });
  if (errors + warnings == 0) {
    out << "check: nothing found" << std::endl;
    return 0;
  }
  const auto count = [](int n, const char* word) {
    return std::to_string(n) + " " + word + (n == 1 ? "" : "s");
  };
  out << "check: " << count(errors, "error") << ", " << count(warnings, "warning") << std::endl;
  return 1;
}

}  // namespace zemo
