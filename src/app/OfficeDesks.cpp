#include "app/OfficeDesks.h"

#include <QCoreApplication>
#include <memory>
#include <utility>

#include "app/RealStation.h"
#include "app/RunFolders.h"
#include "engine/screens/ScreenSources.h"
#include "platform/real/analysis/TagReader.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {

namespace {

LibrarySources SourcesOfLibrary(SpreadsheetWriter& spreadsheets, ImportThread& importFiles,
                                BackgroundMeasuring& measuring, Waveforms& waveforms) {
  LibrarySources sources;
  sources.spreadsheets = &spreadsheets;
  sources.import.files = &importFiles;
  sources.import.bareCard = [&measuring](int32_t code, const std::string& file) {
    measuring.Add(code, file);
  };
  sources.waveforms = &waveforms;
  return sources;
}

OfficeWindow::FileChooser SelectorOf(LibraryDesk& library) {
  return [&library](QWidget* over, const std::string& currentFile,
                    const std::vector<std::string>& known, OfficeWindow::TakeFiles take) {
    library.Selector().Choose(*over, currentFile, known, std::move(take));
  };
}

ImportTools MakeImportTools() {
  return {std::make_unique<SoundFileOpener>(), std::make_unique<TagReader>()};
}

AffidavitSources SourcesOfAffidavit(SpreadsheetWriter& spreadsheets) {
  AffidavitSources sources;
  sources.spreadsheets = &spreadsheets;
  return sources;
}

ReportSources SourcesOfReport(SpreadsheetWriter& spreadsheets, AffidavitDesk& affidavit) {
  ReportSources sources;
  sources.files = {ReplaceFileInParts, &spreadsheets};
  sources.openAffidavit = [&affidavit] { affidavit.Open(); };
  return sources;
}

}  // namespace

OfficeDesks::OfficeDesks(RealStation& real, const RunFolders& folders, Waveforms& waveforms)
    : spreadsheets_(real.loop),
      importFiles_(MakeImportTools, folders.machine),
      measuring_(real.station),
      weekForecast_(QCoreApplication::applicationFilePath().toStdString(), folders.station,
                    folders.machine),
      dayForecast_(weekForecast_),
      library_(real.station, SourcesOfLibrary(spreadsheets_, importFiles_, measuring_, waveforms)),
      campaigns_(real.station, {.chooseFiles = SelectorOf(library_), .questions = {}}),
      models_(real.station, {&spreadsheets_, &dayForecast_}),
      affidavit_(real.station, SourcesOfAffidavit(spreadsheets_)),
      report_(real.station, SourcesOfReport(spreadsheets_, affidavit_)),
      settings_(real.station, {.devices = &real.devices, .chooseFiles = SelectorOf(library_)}),
      voiceTracks_(real.station, {&waveforms}) {}

void OfficeDesks::OfferTo(ScreenSources& sources, std::function<QWidget*()> mainScreen) {
  sources.openLibrary = [this] { library_.Open(); };
  sources.openCampaigns = [this] { campaigns_.Open(); };
  sources.openModels = [this] { models_.Open(); };
  sources.openReport = [this] { report_.Open(); };
  sources.openSettings = [this] { settings_.Open(); };
  sources.openMusicCard = [this](int32_t code) { library_.OpenOnCard(code); };
  sources.openVoiceTrack = [this, mainScreen](int64_t key) {
    voiceTracks_.Open(*mainScreen(), key);
  };
  sources.openSelector = [this, mainScreen = std::move(mainScreen)](const std::string& path) {
    library_.OpenSelector(*mainScreen(), path);
  };
  sources.leaveOthers = [this] { return Leave(); };
}

bool OfficeDesks::Leave() {
  if (!models_.Leave()) return false;  // which may ask
  const bool voiceTracksLeft = voiceTracks_.Leave();
  const bool settingsLeft = settings_.Leave();
  const bool campaignsLeft = campaigns_.Leave();
  const bool affidavitLeft = affidavit_.Leave();
  const bool reportLeft = report_.Leave();
  return library_.Leave() && campaignsLeft && affidavitLeft && reportLeft && settingsLeft &&
         voiceTracksLeft;
}

}  // namespace zemo
