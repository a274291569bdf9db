// What an import wants to know of sound files, one after the other.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/Folder.h"
#include "platform/ImportFiles.h"
#include "platform/SoundSource.h"
#include "platform/SoundTags.h"

namespace zemo {

// Thread: one at a time, with what it is given.
class ImportReader {
 public:
  // None of the references is owned. `known` as ImportFiles has it.
  ImportReader(SoundOpener& opener, SoundTags& tags, const SoundFiles& files,
               std::vector<std::string> known);

  // By its stored path. Opens the file and decodes its first two seconds, and those of every known
  // file of its size; of one that is silent at its begin up to ten minutes more, for its
  // sound. Throws nothing.
  SoundFileReading Read(const std::string& path);

 private:
  struct Begin {
    int64_t lengthFrames = 0;
    uint64_t hash = 0;
    bool hardlySounds = false;  // where that was wanted
  };
  enum class Heard { kIdle, kWanted };
  using Sound = std::pair<int64_t, uint64_t>;  // size in bytes, and what its begin decodes to

  void MeasureKnown();
  Begin BeginOf(const std::string& path, Heard heard);  // throws SoundError
  std::string SameSound(const Sound& sound);

  SoundOpener& opener_;
  SoundTags& tags_;
  const SoundFiles& files_;
  std::vector<std::string> toMeasure_;         // known, their sizes not
  std::unordered_set<std::string> known_;      // paths
  std::multimap<int64_t, std::string> sizes_;  // of known files that were not decoded: path
  std::map<Sound, std::string> sounds_;        // of those that were: path
};

}  // namespace zemo
