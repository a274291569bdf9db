// What a simulation works on so that the station stays untouched: copies of the base, the side
// files and the machine's files in a folder of their own, and sound files that are the station's
// until they are changed.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/TempFolder.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"

namespace zemo {

// The base as one consistent state, also while another program writes to it, and every other file
// of the folder but sound files and what a change of the base leaves beside it. Of a base on a
// server the copy has a file, and no Base.Ini: by the replica of that machine folder, where it has
// one (ServerBaseCopy.h). Waits up to 5 s for a locked base. Folders in it are not copied. Throws
// std::exception with one line.
void CopyStation(const std::string& from, const std::string& to, const std::string& machine = {});
// Every file of the folder; nothing when it does not exist. Throws as above.
void CopyFiles(const std::string& from, const std::string& to);
// The same of a machine folder, whose emergency folder is linked to, since a run only reads it.
void CopyMachine(const std::string& from, const std::string& to);

// Sound files and what lies beside them: the real ones until one is written or removed, which from
// then on is the run's own. What stands in the station's folder is looked for in its copy, so that
// what a run drops or removes there is seen under the paths that cards store; sound files, which
// the copy lacks, are the station's until then.
class PrivateFiles : public SoundFiles {
 public:
  // `machine` holds the path map; `station` is the station's folder, ending in '/', and `copy` its
  // copy; what else is changed goes to the folder `changed`, ending in '/'. Folders are not owned.
  PrivateFiles(Folder& machine, std::string station, Folder& copy, std::string changed);

  std::string Resolve(std::string_view storedPath) const override;
  bool Exists(std::string_view storedPath) const override;
  int64_t SizeBytes(std::string_view storedPath) const override;
  std::optional<SoundFileStamp> Stamp(std::string_view storedPath) const override;
  std::optional<std::string> Read(std::string_view storedPath) const override;
  FolderListing List(std::string_view storedFolder) const override;
  // The run's own files are writable.
  void ClearReadOnly(std::string_view /*storedPath*/) override {}
  void Write(std::string_view storedPath, std::string_view bytes) override;
  // The copy goes with the run: nothing in it has to outlive the machine.
  void WriteDurably(std::string_view storedPath, std::string_view bytes) override {
    Write(storedPath, bytes);
  }
  void Remove(std::string_view storedPath) override;

 private:
  // The plain name of a file that stands in the station's folder; empty for any other.
  std::string_view NameInStation(const std::string& path) const;
  std::string MakeOwn(std::string_view storedPath);
  void ListCopied(std::vector<std::string>& files) const;
  void ListOwn(const std::string& folder, FolderListing& listing) const;

  StoredPaths real_;
  std::string station_;
  Folder& copy_;
  std::string changedFolder_;
  std::map<std::string, std::string>
      own_;  // real path to the run's own, where there may be nothing
};

}  // namespace zemo
