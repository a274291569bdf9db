#include "platform/real/files/LocalFolder.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace zemo {

namespace {

bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

}  // namespace

LocalFolder::LocalFolder(const std::string& path, const DiskSync& disk)
    : disk_(disk), entries_(!disk.IsForGood()) {
  std::error_code failed;
  const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
  path_ = failed ? path : absolute.lexically_normal().string();
  if (path_.empty() || path_.back() != '/') path_ += '/';
}

std::string LocalFolder::PathOf(std::string_view name) const {
  const std::string existing = IsPlainName(name) ? entries_.Named(path_, name) : std::string();
  return path_ + (existing.empty() ? std::string(name) : existing);
}

bool LocalFolder::Exists(std::string_view name) const {
  return IsPlainName(name) && IsRegularFile(PathOf(name));
}

std::optional<std::string> LocalFolder::Read(std::string_view name) const {
  if (!IsPlainName(name)) return std::nullopt;
  return ReadWholeFile(PathOf(name));
}

int64_t LocalFolder::SizeBytes(std::string_view name) const {
  return IsPlainName(name) ? RegularFileSizeBytes(PathOf(name)) : -1;
}

void LocalFolder::Write(std::string_view name, std::string_view bytes) {
  ReplaceWholeFile(ToWrite(name), bytes, disk_);
}

void LocalFolder::Append(std::string_view name, std::string_view bytes) {
  AppendToFile(ToWrite(name), bytes);
}

void LocalFolder::WriteDurably(std::string_view name, std::string_view bytes) {
  ReplaceWholeFileDurably(ToWrite(name), bytes, disk_);
}

void LocalFolder::AppendDurably(std::string_view name, std::string_view bytes) {
  AppendToFileDurably(ToWrite(name), bytes, disk_);
}

void LocalFolder::WriteSecret(std::string_view name, std::string_view bytes) {
  ReplaceSecretFile(ToWrite(name), bytes, disk_);
}

void LocalFolder::PutBytes(std::string_view name, int64_t offset, std::string_view bytes) {
  PutIntoFile(ToWrite(name), offset, bytes);
}

void LocalFolder::Remove(std::string_view name) {
  if (IsPlainName(name)) RemoveFile(PathOf(name));
}

void LocalFolder::Rename(std::string_view from, std::string_view to) {
  if (!IsPlainName(from)) throw FileError("\"" + std::string(from) + "\" names no file");
  const std::string source = PathOf(from);
  const std::string target = ToWrite(to);
  // A file that is only to change its case is found under its new name as well.
  RenameFile(source, target == source ? path_ + std::string(to) : target, disk_);
}

std::string LocalFolder::Stamp(std::string_view name) const {
  return IsPlainName(name) ? FileStamp(PathOf(name)) : std::string();
}

Folder& LocalFolder::Subfolder(std::string_view name) {
  if (!IsPlainName(name)) throw FileError("\"" + std::string(name) + "\" names no folder");
  auto& folder = subfolders_[std::string(name)];
  if (!folder) folder = std::make_unique<LocalFolder>(PathOf(name), disk_);
  folder->path_ = PathOf(name) + "/";  // made since, maybe in another case
  return *folder;
}

std::vector<std::string> LocalFolder::Names() const {
  std::vector<std::string> names;
  std::error_code failed;
  std::filesystem::directory_iterator entry(path_, failed);
  if (failed == std::errc::no_such_file_or_directory || failed == std::errc::not_a_directory)
    return names;
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    std::error_code none;
    if (entry->is_regular_file(none)) names.push_back(entry->path().filename().string());
  }
  if (failed) throw FileError(path_ + ": " + failed.message());
  std::sort(names.begin(), names.end());
  return names;
}

std::string LocalFolder::ToWrite(std::string_view name) const {
  if (!IsPlainName(name)) throw FileError("\"" + std::string(name) + "\" names no file");
  std::error_code failed;
  std::filesystem::create_directories(path_, failed);
  if (failed) throw FileError(path_ + ": " + failed.message());
  return PathOf(name);
}

}  // namespace zemo
