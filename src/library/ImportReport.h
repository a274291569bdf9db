// What an import has to say, a file at a time and at its end, in the four languages.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "library/CardImport.h"

namespace zemo {

// What there is to say of a file besides its result: why it was refused, the card of the same
// sound, which of its texts were cut. One line; empty where there is nothing.
std::string ImportRemark(const ImportedFile& file, int langue);

class ImportReport {
 public:
  void TakeUnknownGenres(std::vector<UnknownGenre> genres) { unknownGenres_ = std::move(genres); }
  void Add(const std::string& path, const ImportedFile& file);
  size_t Count(ImportedFile::Result result) const { return counts_[static_cast<size_t>(result)]; }
  size_t Done() const { return counts_[0] + counts_[1] + counts_[2]; }

  // "3 added, 1 known already, 2 refused"
  std::string Counts(int langue) const;
  // What there is to say of the whole: how many of the added titles no model will ask for, and what
  // their tags call their genres; the lines of the map of genres that lead nowhere; the files in
  // which hardly anything is heard. A line each, with its end.
  std::string Notes(int langue) const;
  // A line a file of which there is something to say, under a heading each for what that is: those
  // refused first.
  std::string Lines(int langue) const;

 private:
  std::string ForeignGenres(int langue) const;
  std::string HardlySound(int langue) const;

  struct Told {
    std::string path;
    ImportedFile file;
  };
  std::array<size_t, 3> counts_{};  // by result
  std::vector<Told> refused_, cut_, same_, hardlySound_;
  std::vector<UnknownGenre> unknownGenres_;
  std::map<std::string, size_t> foreignGenres_;
};

}  // namespace zemo
