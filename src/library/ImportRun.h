// An import beside the air: the files are found and read in the background, the rows written in
// slices of some milliseconds, so that neither thousands of files nor a slow disk holds a tick.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "library/CardImport.h"
#include "library/ImportReport.h"

namespace zemo {

// How far it is.
struct ImportProgress {
  size_t done = 0, found = 0;       // files
  bool foundAll = false;            // no more will be found
  std::optional<int64_t> leftMs{};  // none while that cannot be known
};

// As it went so far; none before that is a measure.
std::optional<int64_t> TimeLeftMs(int64_t passedMs, size_t done, size_t all);

// Thread: the logic's.
class ImportRun {
 public:
  // A music card whose exit point nobody has set; for the measuring of its file.
  using BareCard = std::function<void(int32_t code, const std::string& file)>;

  // Sound files, and folders with all that is in them. Station and files are not owned. Throws
  // StoreError.
  ImportRun(Station& station, ImportFiles& files, LibraryTab kind, std::vector<std::string> paths,
            BareCard bareCard);
  ~ImportRun() { files_.Stop(); }
  ImportRun(const ImportRun&) = delete;

  enum class Turn {
    kDone,   // nothing is left to do
    kMore,   // call again
    kLater,  // no file was read yet, or another program has the base: call again after some ms
  };
  // One file, or a slice of what must be known ahead of the first. Waits for nothing. A fault that
  // is none of a file ends the import and is logged under "Ajouter".
  Turn Slice();

  LibraryTab Kind() const { return kind_; }
  ImportProgress Progress() const;
  const ImportReport& Report() const { return report_; }

 private:
  Turn Step();

  Station& station_;
  ImportFiles& files_;
  LibraryTab kind_;
  std::vector<std::string> paths_;
  BareCard bareCard_;
  CardImport import_;
  ImportReport report_;
  bool cardsKnown_ = false;
  std::optional<SoundFileReading> reading_;  // one that the base could not take yet
  int64_t begunMs_ = 0;                      // of the first file, by the clock that never jumps
};

}  // namespace zemo
