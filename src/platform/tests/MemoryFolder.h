// Folders and sound files in memory, for tests: the names of a real folder, and faults on demand.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Folder.h"

namespace zemo {

inline std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + 0x20);
  return lower;
}

class MemoryFolder : public Folder {
 public:
  std::map<std::string, std::string> files;  // by the name under which each was made
  bool readsFail = false;
  bool writesFail = false;
  int writes = 0;
  int durableWrites = 0;            // of these, those that were to be durable
  std::set<std::string> secrets{};  // names that were written for their owner alone

  const std::string& Path() const override { return path_; }
  std::string PathOf(std::string_view name) const override {
    const auto found = Find(name);
    return path_ + (found == files.end() ? std::string(name) : found->first);
  }
  bool Exists(std::string_view name) const override { return Find(name) != files.end(); }
  std::optional<std::string> Read(std::string_view name) const override {
    if (readsFail) throw FileError(std::string(name) + ": Input/output error");
    const auto found = Find(name);
    if (found == files.end()) return std::nullopt;
    return found->second;
  }
  void Write(std::string_view name, std::string_view bytes) override { Place(name) = bytes; }
  void Append(std::string_view name, std::string_view bytes) override { Place(name) += bytes; }
  void WriteDurably(std::string_view name, std::string_view bytes) override {
    Write(name, bytes);
    ++durableWrites;
  }
  void WriteSecret(std::string_view name, std::string_view bytes) override {
    WriteDurably(name, bytes);
    secrets.insert(std::string(name));
  }
  void AppendDurably(std::string_view name, std::string_view bytes) override {
    Append(name, bytes);
    ++durableWrites;
  }
  void PutBytes(std::string_view name, int64_t offset, std::string_view bytes) override {
    std::string& content = Place(name);
    const auto at = static_cast<size_t>(offset);
    if (content.size() < at + bytes.size()) content.resize(at + bytes.size(), '\0');
    content.replace(at, bytes.size(), bytes);
  }
  void Remove(std::string_view name) override {
    if (const auto found = Find(name); found != files.end()) files.erase(found->first);
  }
  void Rename(std::string_view from, std::string_view to) override {
    const std::string bytes = Read(from).value();
    Remove(from);
    Write(to, bytes);
  }
  int64_t SizeBytes(std::string_view name) const override {
    const auto bytes = Read(name);
    return bytes ? static_cast<int64_t>(bytes->size()) : -1;
  }
  std::string Stamp(std::string_view name) const override {
    const auto found = Find(name);
    return found == files.end() ? std::string() : std::to_string(writes) + " " + found->second;
  }
  Folder& Subfolder(std::string_view name) override {
    auto& folder = subfolders_[LowerAscii(name)];
    if (!folder) folder = std::make_unique<MemoryFolder>();
    return *folder;
  }
  std::vector<std::string> Names() const override {
    if (readsFail) throw FileError(path_ + ": Input/output error");
    std::vector<std::string> names;
    for (const auto& file : files) names.push_back(file.first);
    return names;
  }

 private:
  std::map<std::string, std::string>::const_iterator Find(std::string_view name) const {
    for (auto file = files.begin(); file != files.end(); ++file)
      if (LowerAscii(file->first) == LowerAscii(name)) return file;
    return files.end();
  }
  std::string& Place(std::string_view name) {
    if (writesFail) throw FileError(std::string(name) + ": No space left on device");
    ++writes;
    const auto found = Find(name);
    return files[found == files.end() ? std::string(name) : found->first];
  }

  std::string path_ = "/memory/";
  std::map<std::string, std::unique_ptr<MemoryFolder>> subfolders_;
};

// Stored paths are the keys as they stand. A folder is there while a file is in it or below it.
class MemorySoundFiles : public SoundFiles {
 public:
  std::map<std::string, std::string, std::less<>> files;
  std::map<std::string, int64_t, std::less<>> changedMs;  // of those that were not changed at 0
  bool writesFail = false;

  std::string Resolve(std::string_view path) const override { return std::string(path); }
  bool Exists(std::string_view path) const override { return files.find(path) != files.end(); }
  int64_t SizeBytes(std::string_view path) const override {
    const auto found = files.find(path);
    return found == files.end() ? -1 : static_cast<int64_t>(found->second.size());
  }
  std::optional<SoundFileStamp> Stamp(std::string_view path) const override {
    if (!Exists(path)) return std::nullopt;
    const auto changed = changedMs.find(path);
    return SoundFileStamp{SizeBytes(path), changed == changedMs.end() ? 0 : changed->second};
  }
  std::optional<std::string> Read(std::string_view path) const override {
    const auto found = files.find(path);
    if (found == files.end()) return std::nullopt;
    return found->second;
  }
  FolderListing List(std::string_view folder) const override {
    FolderListing listing;
    for (const auto& file : files) {
      std::string_view rest = file.first;
      if (!rest.starts_with(folder)) continue;
      rest.remove_prefix(folder.size());
      if (!folder.ends_with('/') && !folder.ends_with('\\')) {
        if (!rest.starts_with('/') && !rest.starts_with('\\')) continue;
        rest.remove_prefix(1);
      }
      listing.exists = true;
      const size_t end = rest.find_first_of("/\\");
      AddName(end < rest.size() ? listing.folders : listing.files, rest.substr(0, end));
    }
    return listing;
  }
  void ClearReadOnly(std::string_view) override {}
  void Write(std::string_view path, std::string_view bytes) override {
    if (writesFail) throw FileError(std::string(path) + ": No space left on device");
    files[std::string(path)] = bytes;
  }
  void WriteDurably(std::string_view path, std::string_view bytes) override { Write(path, bytes); }
  void Remove(std::string_view path) override { files.erase(std::string(path)); }

 private:
  // Where it belongs in their order, unless it is hidden or there already.
  static void AddName(std::vector<std::string>& names, std::string_view name) {
    if (name.empty() || name.starts_with('.')) return;
    const auto key = [](std::string_view of) { return LowerAscii(of) + '/' + std::string(of); };
    const auto at = std::lower_bound(
        names.begin(), names.end(), name,
        [&](const std::string& one, std::string_view other) { return key(one) < key(other); });
    if (at == names.end() || *at != name) names.emplace(at, name);
  }
};

}  // namespace zemo
