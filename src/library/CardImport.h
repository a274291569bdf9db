// Sound files from outside become cards, many at a time: as the library screen adds a lot, with
// what the files' tags say where no exchange file speaks, and no file twice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/LibraryEditor.h"
#include "platform/ImportFiles.h"

namespace zemo {

struct Station;

struct ImportedFile {
  enum class Result { kAdded, kKnown, kRefused };
  Result result = Result::kAdded;
  int32_t code = 0;         // of the card; 0 where there is none. Of a trial: that it would have
  std::string reason;       // of a refusal, in one line
  int32_t sameSoundAs = 0;  // CODE of a card with another path and the same sound
  std::vector<const char*> cut;  // names of the texts that were longer than their field
  // Of a card that no model will ask for, as its genre is none of the station's: the one of its
  // tags, empty where they have none.
  std::optional<std::string> foreignGenre;
  bool exitIsBare = false;    // the exit point is the station's default: no hand has set it
  bool hardlySounds = false;  // less than a second of sound in all of the file
};

// A line of the file kGenreMapFile that names a genre which the station does not have.
struct UnknownGenre {
  size_t line = 0;  // from 1
  std::string genre;
};

// Thread: the logic's.
class CardImport {
 public:
  // One kind of cards, none of the hour pips. The station is not owned. With `dryRun` each row is
  // written and taken back at once, and nothing else is written. Throws StoreError.
  CardImport(Station& station, LibraryTab kind, bool dryRun);

  // The cards that there are, a slice of them at a time; first of all. False when all are known.
  // Throws StoreError.
  bool ReadCardsSlice();
  std::vector<std::string> Known() const;  // stored paths of these cards

  // Of the music; none where the station has no list of genres yet.
  const std::vector<UnknownGenre>& UnknownGenres() const { return unknownGenres_; }

  // One file. What goes wrong with it is its result; StoreError, with nothing stored, where the
  // base itself is out of reach.
  ImportedFile Enter(const SoundFileReading& file);

 private:
  void TakeTags(const TagTexts& tags, MusicCard& card) const;
  std::string StationGenre(const std::string& foreign) const;
  bool HasGenre(std::string_view name) const;
  int32_t Add(const SoundFileReading& file, ImportedFile& imported);
  int32_t AddMusic(const SoundFileReading& file, ImportedFile& imported);
  // CODE that the card would have behind those that this run would have added before.
  template <typename Insert>
  int32_t Try(Insert insert);

  Station& station_;
  LibraryTab kind_;
  bool dryRun_;
  int32_t tried_ = 0;                               // cards that a dry run would have added
  int64_t lastCode_ = -1;                           // of the cards that are known
  std::unordered_map<std::string, int32_t> cards_;  // by stored path
  std::vector<std::string> genres_;                 // the station's
  std::map<std::string, std::string> genreMap_;     // from capitals
  std::vector<UnknownGenre> unknownGenres_;
};

// "ImportGenres.Txt" in the station's folder: FOREIGN = STATION'S a line.
inline constexpr const char* kGenreMapFile = "ImportGenres.Txt";

// At most n characters, cut behind a word where one ends in the second half of it.
std::string CutAtWord(const std::string& text, int n);

}  // namespace zemo
