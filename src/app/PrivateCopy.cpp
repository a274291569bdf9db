#include "app/PrivateCopy.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <stdexcept>

#include "app/BaseBackup.h"
#include "app/ServerBaseCopy.h"
#include "app/ServerLink.h"
#include "app/StationPaths.h"
#include "engine/EmergencyFolder.h"
#include "platform/real/files/FolderNames.h"
#include "platform/real/files/NoCaseNames.h"
#include "platform/real/files/WholeFiles.h"
#include "station/BaseFiles.h"
#include "station/BasePlaces.h"
#include "traffic/CampaignArchive.h"

namespace zemo {

namespace fs = std::filesystem;

namespace {
void CopyFile(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
  if (error) throw std::runtime_error("cannot copy " + from.string() + ": " + error.message());
}

void CopyBase(const fs::path& from, const fs::path& to) {
  if (BackUpBase(from.string(), to.string())) return;
  // As it stands, with the journal by which the next one to open it mends it.
  CopyFile(from, to);
  const fs::path journal = from.string() + BaseFile::kJournal;
  if (fs::exists(journal)) CopyFile(journal, to.string() + BaseFile::kJournal);
}

bool IsSoundFile(const fs::path& path) {
  const std::string ending = FoldedName(path.extension().string());
  constexpr std::array kEndings{".wav", ".mp3", ".flac", ".ogg", ".aif", ".aiff", ".mp2"};
  for (const char* sound : kEndings)
    if (ending == FoldedName(sound)) return true;
  return false;
}

template <typename Wanted>
void CopyWanted(const std::string& from, const std::string& to, Wanted wanted) {
  std::error_code error;
  fs::directory_iterator entries(from, error);
  if (error) throw std::runtime_error("cannot read the folder " + from + ": " + error.message());
  for (const fs::directory_entry& entry : entries)
    if (entry.is_regular_file(error) && wanted(entry.path()))
      CopyFile(entry.path(), fs::path(to) / entry.path().filename());
}

// Files of a change of the base: without a use where the base stands in its place.
bool IsBesideBase(const std::string& name) {
  constexpr std::array kBeside{BaseFile::kBackup,   BaseFile::kCopy, BaseFile::kCopyLock,
                               BaseFile::kMovedIni, BaseFile::kIni,  BaseFile::kMovedPart,
                               "Triskin.LDB"};
  for (const char* beside : kBeside)
    if (FoldedName(name) == FoldedName(beside)) return true;
  return false;
}
}  // namespace

void CopyStation(const std::string& from, const std::string& to, const std::string& machine) {
  RefuseIrregularBase(from);
  const BasePlace place = PlaceOfBase(LocalFolder(from));
  const std::string base = place.isFile ? EntryNamed(from, BaseFile::kBase) : std::string();
  CopyWanted(from, to, [&](const fs::path& path) {
    const std::string name = path.filename().string();
    if ((!base.empty() || !place.isFile) && IsBesideBase(name)) return false;
    return name != base && name != base + BaseFile::kJournal && !IsSoundFile(path);
  });
  const std::string archive = EntryNamed(from, kEndedCampaigns);
  std::error_code error;
  if (!archive.empty() && fs::is_directory(fs::path(from) / archive, error)) {
    const fs::path folder = fs::path(to) / archive;
    fs::create_directory(folder, error);
    CopyFiles(fs::path(from) / archive, folder);
  }
  if (!place.isFile)
    CopyServerBase(place, machine, (fs::path(to) / BaseFile::kBase).string());
  else if (!base.empty())
    CopyBase(fs::path(from) / base, fs::path(to) / base);
}

void CopyFiles(const std::string& from, const std::string& to) {
  if (fs::exists(from)) CopyWanted(from, to, [](const fs::path&) { return true; });
}

// Replicas are not copied: whoever reads one past SQLite takes the locks from those who have it
// open in this process.
void CopyMachine(const std::string& from, const std::string& to) {
  if (fs::exists(from))
    CopyWanted(from, to, [](const fs::path& path) {
      return !path.filename().string().starts_with(kReplicaName);
    });
  const std::string emergency = EntryNamed(from, kEmergencyFolder);
  std::error_code error;
  const fs::path folder = fs::absolute(from, error) / emergency;
  if (emergency.empty() || error || !fs::is_directory(folder, error)) return;
  fs::create_directory_symlink(folder, fs::path(to) / emergency, error);
  if (error) throw std::runtime_error("cannot link " + folder.string() + ": " + error.message());
}

PrivateFiles::PrivateFiles(Folder& machine, std::string station, Folder& copy, std::string changed)
    : real_(machine),
      station_(std::move(station)),
      copy_(copy),
      changedFolder_(std::move(changed)) {}

std::string_view PrivateFiles::NameInStation(const std::string& path) const {
  if (!path.starts_with(station_)) return {};
  const std::string_view name = std::string_view(path).substr(station_.size());
  return name.find('/') == std::string_view::npos ? name : std::string_view();
}

std::string PrivateFiles::Resolve(std::string_view storedPath) const {
  std::string path = real_.Resolve(storedPath);
  if (const auto own = own_.find(path); own != own_.end()) return own->second;
  const std::string_view name = NameInStation(path);
  if (!name.empty() && (!IsSoundFile(name) || copy_.Exists(name))) return copy_.PathOf(name);
  return path;
}

bool PrivateFiles::Exists(std::string_view storedPath) const {
  return IsRegularFile(Resolve(storedPath));
}

int64_t PrivateFiles::SizeBytes(std::string_view storedPath) const {
  return RegularFileSizeBytes(Resolve(storedPath));
}

std::optional<SoundFileStamp> PrivateFiles::Stamp(std::string_view storedPath) const {
  return RegularFileStamp(Resolve(storedPath));
}

std::optional<std::string> PrivateFiles::Read(std::string_view storedPath) const {
  return ReadWholeFile(Resolve(storedPath));
}

FolderListing PrivateFiles::List(std::string_view storedFolder) const {
  const std::string folder = real_.ResolveFolder(storedFolder);
  FolderListing listing = ListFolder(folder);
  if (folder + "/" == station_) ListCopied(listing.files);
  ListOwn(folder, listing);
  SortNames(listing.files);
  return listing;
}

// Of the station's folder: the copy's files, and the sound files that it lacks.
void PrivateFiles::ListCopied(std::vector<std::string>& files) const {
  std::set<std::string> copied;
  std::vector<std::string> names = ListFolder(copy_.Path()).files;
  for (const std::string& name : names) copied.insert(FoldedName(name));
  for (std::string& name : files)
    if (IsSoundFile(name) && !copied.contains(FoldedName(name))) names.push_back(std::move(name));
  files = std::move(names);
}

// What the run changed in that folder.
void PrivateFiles::ListOwn(const std::string& folder, FolderListing& listing) const {
  for (const auto& [path, own] : own_) {
    const fs::path changed(path);
    const std::string name = changed.filename().string();
    if (changed.parent_path() != folder || name.starts_with('.')) continue;
    const auto listed = std::find(listing.files.begin(), listing.files.end(), name);
    const bool exists = IsRegularFile(own);
    if (!exists && listed != listing.files.end()) listing.files.erase(listed);
    if (!exists || own.starts_with(copy_.Path())) continue;  // there it is listed already
    if (listed == listing.files.end()) listing.files.push_back(name);
    listing.exists = true;
  }
}

void PrivateFiles::Write(std::string_view storedPath, std::string_view bytes) {
  ReplaceWholeFile(MakeOwn(storedPath), bytes);
}

void PrivateFiles::Remove(std::string_view storedPath) {
  RemoveFile(MakeOwn(storedPath));
}

std::string PrivateFiles::MakeOwn(std::string_view storedPath) {
  const std::string path = real_.Resolve(storedPath);
  if (path.starts_with(copy_.Path())) return path;
  if (const auto own = own_.find(path); own != own_.end()) return own->second;
  const std::string_view name = NameInStation(path);
  const std::string own = name.empty() ? changedFolder_ + std::to_string(own_.size()) + "-" +
                                             fs::path(path).filename().string()
                                       : copy_.PathOf(name);
  return own_.emplace(path, own).first->second;
}

}  // namespace zemo
