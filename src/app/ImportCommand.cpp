// `zemoradio import`: sound files and folders of them become cards of a station's library. The
// cards are there at once; then the exit points of the new titles are found by ear, one after the
// other.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "app/Commands.h"
#include "app/SimStation.h"
#include "app/StationPaths.h"
#include "library/CardImport.h"
#include "library/ImportedExit.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/analysis/TagReader.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/desktop/RealClock.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 4> kSoundEndings = {".wav", ".mp3", ".flac", ".ogg"};

bool IsSound(const fs::path& path) {
  const std::string ending = path.extension().string();
  return std::any_of(kSoundEndings.begin(), kSoundEndings.end(),
                     [&](std::string_view sound) { return EqualNoCase(ending, sound); });
}

// Every sound file below a folder, in the order of the paths.
std::vector<std::string> FilesBelow(const fs::path& folder) {
  std::vector<std::string> files;
  std::error_code error;
  for (fs::recursive_directory_iterator
           entry(folder, fs::directory_options::skip_permission_denied, error),
       end;
       entry != end; entry.increment(error))
    if (entry->is_regular_file(error) && IsSound(entry->path()))
      files.push_back(entry->path().string());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> FilesOf(const std::vector<std::string>& paths) {
  std::vector<std::string> files;
  for (const std::string& given : paths) {
    const fs::path path = fs::absolute(given).lexically_normal();
    std::error_code error;
    if (!fs::is_directory(path, error)) {
      files.push_back(path.string());
      continue;
    }
    for (std::string& file : FilesBelow(path)) files.push_back(std::move(file));
  }
  return files;
}

LibraryTab KindOf(const std::string& word) {
  if (word == "jingle") return LibraryTab::kJingles;
  if (word == "other") return LibraryTab::kShortElements;
  return LibraryTab::kMusic;
}

const char* ResultWord(ImportedFile::Result result) {
  switch (result) {
    case ImportedFile::Result::kKnown:
      return "known";
    case ImportedFile::Result::kRefused:
      return "refused";
    case ImportedFile::Result::kAdded:
      break;
  }
  return "added";
}

// What there is to say of a file besides its result.
std::string Remark(const ImportedFile& imported) {
  std::string remark = imported.reason;
  const auto add = [&](const std::string& more) { remark += (remark.empty() ? "" : "; ") + more; };
  if (imported.sameSoundAs > 0)
    add("the same sound as card " + std::to_string(imported.sameSoundAs));
  for (const std::string& text : imported.cut) add(text + " cut to its field");
  return OneLine(remark);
}

void PrintLine(const std::string& file, const ImportedFile& imported) {
  const bool known = imported.result == ImportedFile::Result::kKnown;
  std::cout << (known ? "known already" : ResultWord(imported.result)) << "  " << file;
  if (imported.code > 0) std::cout << "  card " << imported.code;
  const std::string remark = Remark(imported);
  if (!remark.empty()) std::cout << ": " << remark;
  std::cout << '\n';
}

Json JsonOf(const std::string& file, const ImportedFile& imported) {
  return {{"file", file},
          {"result", ResultWord(imported.result)},
          {"code", imported.code},
          {"reason", Remark(imported)}};
}

// How far a long piece of work is, where somebody sees it.
class Progress {
 public:
  explicit Progress(const char* what, size_t count)
      : what_(what), count_(count), shown_(isatty(STDERR_FILENO) == 1), begunMs_(NowMs()) {}
  ~Progress() {
    if (shown_) std::cerr << "\r\033[K" << std::flush;
  }
  Progress(const Progress&) = delete;

  void Done(size_t done) {
    if (!shown_ || done == 0) return;
    const int64_t leftSec = (NowMs() - begunMs_) * static_cast<int64_t>(count_ - done) /
                            static_cast<int64_t>(done) / 1000;
    std::cerr << "\r\033[K" << what_ << " " << done << " of " << count_ << ", "
              << FormatDuration(leftSec * 1000) << " left" << std::flush;
  }

 private:
  static int64_t NowMs() { return RealClock().MonotonicMs(); }
  const char* what_;
  size_t count_;
  bool shown_;
  int64_t begunMs_;
};

// A card whose exit point nobody has set.
struct BareCard {
  int32_t code = 0;
  std::string file;
};

class Import {
 public:
  explicit Import(const ImportOptions& options)
      : options_(options),
        sim_(FoldersOf(options), RealClock().LocalNow(),
             std::make_unique<LengthOnlyOpener>(std::make_unique<SoundFileOpener>())) {
    Station& station = sim_.station;
    SetSideFileNames(station);
    station.base.OpenOrCreateDatabase();
    station.base.OpenAllTables();
    LoadMachineState(station);
  }

  int Run() {
    try {
      AddAll(FilesOf(options_.paths));
    } catch (...) {
      TellResult();  // of what was done before the base went out of reach
      throw;
    }
    TellResult();
    if (!options_.dryRun) FindExits();
    return counts_[2] > 0 ? 1 : 0;
  }

 private:
  static SimFolders FoldersOf(const ImportOptions& options) {
    SimFolders folders;
    folders.station = options.station.empty() ? DefaultStationFolder() : options.station;
    folders.machine = options.machine.empty() ? DefaultMachineFolder() : options.machine;
    RequireStation(folders.station);
    return folders;
  }

  void AddAll(const std::vector<std::string>& files) {
    CardImport import(sim_.station, opener_, tags_, KindOf(options_.kind), options_.dryRun);
    Progress progress("file", files.size());
    for (size_t i = 0; i < files.size(); ++i) {
      const ImportedFile imported = import.Take(files[i]);
      ++counts_[static_cast<size_t>(imported.result)];
      if (imported.exitIsBare && imported.code > 0) bare_.push_back({imported.code, files[i]});
      if (options_.json)
        told_.push_back(JsonOf(files[i], imported));
      else
        PrintLine(files[i], imported);
      progress.Done(i + 1);
    }
  }

  void TellResult() const {
    if (options_.json)
      std::cout << told_.dump(1, ' ', false, Json::error_handler_t::replace) << std::endl;
    else
      std::cout << counts_[0] << " added, " << counts_[1] << " known already, " << counts_[2]
                << " refused" << std::endl;
  }

  void FindExits() {
    const auto bareExitMs = static_cast<int32_t>(sim_.station.base.CnfInt(Cnf::kPmixDef));
    Progress progress("by ear: title", bare_.size());
    for (size_t i = 0; i < bare_.size(); ++i) {
      FindExit(bare_[i], bareExitMs);
      progress.Done(i + 1);
    }
  }

  void FindExit(const BareCard& card, int32_t bareExitMs) {
    const SoundFiles& files = *sim_.soundFiles;
    const auto stamp = files.Stamp(card.file);
    if (!stamp) return;
    try {
      const auto measures = MeasureSound(opener_, files.Resolve(card.file));
      if (measures) TakeMeasures(sim_.station, card.code, card.file, *stamp, *measures, bareExitMs);
    } catch (const std::exception& error) {
      std::cerr << "zemoradio: " << error.what() << std::endl;
    }
  }

  const ImportOptions& options_;
  SimStation sim_;
  SoundFileOpener opener_;
  TagReader tags_;
  std::array<int, 3> counts_{};  // by result
  std::vector<BareCard> bare_;
  Json told_ = Json::array();
};

}  // namespace

int RunImportCommand(const ImportOptions& options) {
  return Import(options).Run();
}

}  // namespace zemo
