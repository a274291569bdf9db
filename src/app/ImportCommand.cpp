// `zemoradio import`: sound files and folders of them become cards of a station's library. The
// cards are there at once; then the exit points of the new titles are found by ear, one after the
// other.
#include <unistd.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <utility>

#include "app/Commands.h"
#include "app/ErrorLine.h"
#include "app/OwnStation.h"
#include "library/CardImport.h"
#include "library/ImportReport.h"
#include "library/ImportRun.h"
#include "library/ImportedExit.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/analysis/TagReader.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/ImportReader.h"
#include "platform/real/files/SoundFilesBelow.h"
#include "settings/SideFiles.h"
#include "station/LanguageTexts.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

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

void PrintLine(const std::string& file, const ImportedFile& imported) {
  const bool known = imported.result == ImportedFile::Result::kKnown;
  std::cout << (known ? "known already" : ResultWord(imported.result)) << "  " << Printable(file);
  if (imported.code > 0) std::cout << "  card " << imported.code;
  const std::string remark = ImportRemark(imported, kEnglish);
  if (!remark.empty()) std::cout << ": " << Printable(remark);
  std::cout << '\n';
}

Json JsonOf(const std::string& file, const ImportedFile& imported) {
  return {{"file", file},
          {"result", ResultWord(imported.result)},
          {"code", imported.code},
          {"reason", ImportRemark(imported, kEnglish)}};
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
    std::cerr << "\r\033[K" << what_ << " " << done << " of " << count_;
    if (const auto leftMs = TimeLeftMs(NowMs() - begunMs_, done, count_))
      std::cerr << ", " << FormatDuration(*leftMs) << " left";
    std::cerr << std::flush;
  }

 private:
  static int64_t NowMs() { return RealClock().MonotonicMs(); }
  const char* what_;
  size_t count_;
  bool shown_;
  int64_t begunMs_;
};

class Import {
 public:
  explicit Import(const ImportOptions& options)
      : options_(options), sim_(MakeOwnStation(options, BaseLock::Kind::kGuest)) {
    OpenOwnBase(sim_.station);
    LoadMachineState(sim_.station);
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
    return report_.Count(ImportedFile::Result::kRefused) > 0 ? 1 : 0;
  }

 private:
  static std::vector<std::string> FilesOf(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const std::string& path : paths)
      FindSoundFiles(path, [&](std::string file) {
        files.push_back(std::move(file));
        return true;
      });
    return files;
  }

  void AddAll(const std::vector<std::string>& files) {
    CardImport import(sim_.station, KindOf(options_.kind), options_.dryRun);
    report_.TakeUnknownGenres(import.UnknownGenres());
    while (import.ReadCardsSlice()) {
    }
    ImportReader reader(opener_, tags_, *sim_.soundFiles, import.Known());
    const auto bareExitMs = static_cast<int32_t>(sim_.station.base.CnfInt(Cnf::kPmixDef));
    Progress progress("file", files.size());
    for (const std::string& file : files) {
      const ImportedFile imported = import.Enter(reader.Read(file));
      report_.Add(file, imported);
      if (imported.exitIsBare && imported.code > 0 && !options_.dryRun)
        KeepBareExit(sim_.station, {imported.code, bareExitMs, file});
      if (options_.json)
        told_.push_back(JsonOf(file, imported));
      else
        PrintLine(file, imported);
      progress.Done(report_.Done());
    }
  }

  // For a program the notes stand apart from what it reads.
  void TellResult() const {
    if (options_.json) {
      std::cout << told_.dump(1, ' ', false, Json::error_handler_t::replace) << std::endl;
      for (const std::string& note : SplitLines(report_.Notes(kEnglish)))
        std::cerr << "import: " << Printable(note) << std::endl;
      return;
    }
    std::cout << report_.Counts(kEnglish) << '\n';
    for (const std::string& note : SplitLines(report_.Notes(kEnglish)))
      std::cout << Printable(note) << '\n';
    if (options_.dryRun) std::cout << "a dry run: nothing was written\n";
    std::cout << std::flush;
  }

  // Those of a run that was interrupted as well.
  void FindExits() {
    const std::vector<BareExit> bare = KeptBareExits(sim_.station);
    Progress progress("by ear: title", bare.size());
    for (size_t i = 0; i < bare.size(); ++i) {
      FindExit(bare[i]);
      progress.Done(i + 1);
    }
    if (!bare.empty()) ForgetBareExits(sim_.station);
  }

  void FindExit(const BareExit& bare) {
    const SoundFiles& files = *sim_.soundFiles;
    try {
      const auto stamp = files.Stamp(bare.file);
      if (!stamp || TakeKnownMeasures(sim_.station, bare, *stamp)) return;
      const auto measures = MeasureSound(opener_, files.Resolve(bare.file));
      if (measures) TakeMeasures(sim_.station, bare, *stamp, *measures);
    } catch (const StoreError& error) {
      if (error.MayPass()) throw;  // all of them are kept for the next run
      PrintError(error.what());
    } catch (const std::exception& error) {
      PrintError(error.what());
    }
  }

  const ImportOptions& options_;
  SimStation sim_;
  SoundFileOpener opener_;
  TagReader tags_;
  ImportReport report_;
  Json told_ = Json::array();
};

}  // namespace

int RunImportCommand(const ImportOptions& options) {
  return Import(options).Run();
}

}  // namespace zemo
