#include "office/StationWithWindows.h"

#include <QApplication>
#include <utility>

#include "app/demo/NewStation.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo::test {

namespace {

constexpr int64_t kTurnMs = 10 * 60 * 1000;

LibrarySources SourcesOfLibrary(ImportFiles& importFiles) {
  LibrarySources sources;
  sources.import.files = &importFiles;
  return sources;
}

OfficeWindow::FileChooser SelectorOf(LibraryDesk& library) {
  return [&library](QWidget* over, const std::string& currentFile,
                    const std::vector<std::string>& known, OfficeWindow::TakeFiles take) {
    library.Selector().Choose(*over, currentFile, known, std::move(take));
  };
}

ReportSources SourcesOfReport(AffidavitDesk& affidavit) {
  ReportSources sources;
  sources.files = {ReplaceFileInParts, nullptr};
  sources.openAffidavit = [&affidavit] { affidavit.Open(); };
  return sources;
}

}  // namespace

StationWithWindows::StationWithWindows(const std::string& begin)
    : on(begin, MakeNewStation(home_.Path() + "/radio")),
      library_(on.station, SourcesOfLibrary(importFiles)),
      campaigns_(on.station, {.chooseFiles = SelectorOf(library_), .questions = {}}),
      models_(on.station, {}),
      affidavit_(on.station, {}),
      report_(on.station, SourcesOfReport(affidavit_)),
      settings_(on.station, {.devices = &devices_, .chooseFiles = SelectorOf(library_)}) {}

StationWithWindows::~StationWithWindows() {
  models_.Leave();
  settings_.Leave();
  campaigns_.Leave();
  affidavit_.Leave();
  report_.Leave();
  library_.Leave();
}

void StationWithWindows::OpenMainScreen() {
  on.Load();
  on.station.base.Db().Execute("PRAGMA synchronous = OFF");  // a day of writes, no power loss
  ScreenSources sources;
  sources.openLibrary = [this] { library_.Open(); };
  sources.openCampaigns = [this] { campaigns_.Open(); };
  sources.openModels = [this] { models_.Open(); };
  sources.openReport = [this] { report_.Open(); };
  sources.openSettings = [this] { settings_.Open(); };
  main_ = std::make_unique<OnAirWindow>(on.station, sources);
  main_->resize(1280, 800);
  main_->show();
  main_->Begin();
  QApplication::processEvents();
}

void StationWithWindows::Run(int64_t untilMs) {
  for (int64_t turnMs = on.loop.MonotonicMs() + kTurnMs; turnMs < untilMs; turnMs += kTurnMs)
    on.At(turnMs, [] { QApplication::processEvents(); });
  on.RunUntil(untilMs);  // at once: the end of a run breaks off what waits there
}

}  // namespace zemo::test
