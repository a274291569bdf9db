// What an import has to say, a file at a time and at its end, in the four languages.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "library/CardImport.h"

namespace zemo {

// What there is to say of a file besides its result: why it was refused, the card of the same
// sound, which of its texts were cut. One line; empty where there is nothing.
std::string ImportRemark(const ImportedFile& file, int langue);

class ImportReport {
 public:
  void Add(const std::string& path, const ImportedFile& file);
  size_t Count(ImportedFile::Result result) const { return counts_[static_cast<size_t>(result)]; }
  size_t Done() const { return counts_[0] + counts_[1] + counts_[2]; }

  // "3 added, 1 known already, 2 refused"
  std::string Counts(int langue) const;
  // How many of the added titles no model will ask for, and what their tags call their genres; one
  // line, empty where there is none.
  std::string ForeignGenres(int langue) const;
  // A line a file of which there is something to say, those refused first.
  std::string Lines(int langue) const;

 private:
  struct Told {
    std::string path;
    ImportedFile file;
  };
  std::array<size_t, 3> counts_{};  // by result
  std::vector<Told> refused_, remarked_;
  std::map<std::string, size_t> foreignGenres_;
};

}  // namespace zemo
