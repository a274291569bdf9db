// Sound files from outside become cards, many at a time: as the library screen adds a lot, with
// what the files' tags say where no exchange file speaks, and no file twice.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "library/LibraryEditor.h"
#include "platform/SoundTags.h"

namespace zemo {

class SoundOpener;
struct Station;

struct ImportedFile {
  enum class Result { kAdded, kKnown, kRefused };
  Result result = Result::kAdded;
  int32_t code = 0;         // of the card; 0 where there is none. Of a trial: that it would have
  std::string reason;       // of a refusal, in one line
  int32_t sameSoundAs = 0;  // CODE of a card with another path and the same sound
  std::vector<std::string> cut;  // names of the texts that were longer than their field
  bool exitIsBare = false;       // the exit point is the station's default: no hand has set it
};

// Thread: the logic's.
class CardImport {
 public:
  // One kind of cards, none of the hour pips. None of the arguments is owned. With `dryRun` each
  // row is written and taken back at once, and nothing else is written. Throws StoreError.
  CardImport(Station& station, SoundOpener& opener, SoundTags& tags, LibraryTab kind, bool dryRun);

  // One file, by its stored path. What goes wrong with it is its result; StoreError where the base
  // itself is out of reach.
  ImportedFile Take(const std::string& file);

 private:
  using Sound = std::pair<int64_t, uint64_t>;  // size in bytes, and what its begin decodes to

  void ReadKnown();
  // The begin of the sound, decoded. Throws SoundError.
  Sound SoundOf(const std::string& file);
  int32_t CardOfSameSound(const Sound& sound);
  void TakeTags(const TagTexts& tags, MusicCard& card) const;
  std::string StationGenre(const std::string& foreign) const;
  int32_t AddMusic(const std::string& file, ImportedFile& imported);
  int32_t AddOther(const std::string& file, ImportedFile& imported);
  // CODE that the card would have behind those that this run would have added before.
  template <typename Insert>
  int32_t Try(Insert insert);

  Station& station_;
  SoundOpener& opener_;
  SoundTags& tags_;
  LibraryTab kind_;
  bool dryRun_;
  int32_t tried_ = 0;                     // cards that a dry run would have added
  std::map<std::string, int32_t> cards_;  // by stored path
  std::multimap<int64_t, std::pair<std::string, int32_t>> sizes_;  // of their files: path and card
  std::map<Sound, int32_t> sounds_;                                // of those that were looked into
  std::vector<std::string> genres_;                                // the station's
  std::map<std::string, std::string> genreMap_;                    // from capitals
};

// "ImportGenres.Txt" in the station's folder: FOREIGN = STATION'S a line.
inline constexpr const char* kGenreMapFile = "ImportGenres.Txt";

// At most n characters, cut behind a word where one ends in the second half of it.
std::string CutAtWord(const std::string& text, int n);

}  // namespace zemo
