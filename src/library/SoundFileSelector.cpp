#include "library/SoundFileSelector.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>
#include <unordered_set>

#include "library/LibraryHandler.h"
#include "library/PrelistenOutput.h"
#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/Prelisten.h"
#include "station/LanguageTexts.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kTimerMs = 100;
constexpr size_t kFilesBetweenYields = 40;
constexpr std::array<std::string_view, 4> kSoundEndings = {".wav", ".mp3", ".flac", ".ogg"};

constexpr const char* kAnalysing = "Analyse en cours...";
constexpr const char* kDone = "Fini";
constexpr const char* kFilter = "Filtrer les fiches existantes";
constexpr LanguageTexts kFilterTexts = {kFilter, kFilter, "Filtrar as fichas existentes", kFilter};

bool IsSound(const std::string& name) {
  return std::any_of(kSoundEndings.begin(), kSoundEndings.end(), [&](std::string_view ending) {
    return name.size() > ending.size() &&
           EqualNoCase(std::string_view(name).substr(name.size() - ending.size()), ending);
  });
}

bool HasDrive(const std::string& path) {
  return path.size() > 1 && path[1] == ':';
}

std::string DriveOf(const std::string& path) {
  return HasDrive(path) ? path.substr(0, 2) : "/";
}

void TakeOutput(Station& station, SoundFileSelector& selector) {
  selector.btnPlayEnabled = ChoosePrelistenOutput(station);
  selector.LblOut = selector.btnPlayEnabled ? "" : kSamePrelistenOutput;
}

void StopTimer(SoundFileSelector& selector) {
  if (selector.Timer) selector.Timer->SetEnabled(false);
}

void RunTimer(Station& station, SoundFileSelector& selector) {
  if (!selector.Timer)
    selector.Timer = station.platform.loop.MakeTimer(
        kTimerMs, [&] { Selector::Timer_Timer(station, selector); });
  selector.Timer->SetEnabled(true);
}

void ShowAt(SoundFileSelector& selector, int32_t ms) {
  selector.TrackBar = ms;
  selector.LblTemp = ClockText(ms);
}

void TakeStopState(SoundFileSelector& selector) {
  StopTimer(selector);
  ShowAt(selector, 0);
}

void ClosePlayer(Station& station, SoundFileSelector& selector) {
  TakeStopState(selector);
  if (Prelisten* player = station.platform.prelisten) {
    player->Stop();
    player->Close();
  }
}

bool FilterWanted(Station& station) {
  const auto langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
  return station.platform.messages.Show("Alerte", InLanguage(kFilterTexts, langue),
                                        Buttons::kOkCancel) == Answer::kOk;
}

// A path that was typed is the choice in place of what was selected.
void KeepSelectionOf(SoundFileSelector& selector, const std::string& path) {
  const auto chosen = [&](const SoundFileSelector::File& file) {
    return file.selected && Selector::PathIn(selector.Dir1, file.name) == path;
  };
  if (std::any_of(selector.File1.begin(), selector.File1.end(), chosen)) return;
  for (SoundFileSelector::File& file : selector.File1) file.selected = false;
}

// Unselects what has a card already.
void FilterKnown(Station& station, SoundFileSelector& selector) {
  std::unordered_set<std::string> known;
  for (const std::string& path : selector.List1Tmp) known.insert(Trim(path));
  selector.LblOut = kAnalysing;
  selector.TrackBarMax = static_cast<int32_t>(selector.File1.size());
  for (size_t row = 0; row < selector.File1.size(); ++row) {
    selector.TrackBar = static_cast<int32_t>(row + 1);
    SoundFileSelector::File& file = selector.File1[row];
    if (known.contains(Trim(Selector::PathIn(selector.Dir1, file.name)))) file.selected = false;
    if ((row + 1) % kFilesBetweenYields == 0) station.platform.loop.Yield();
  }
  selector.LblOut = kDone;
  const Prelisten* player = station.platform.prelisten;
  if (player && player->LengthMs() > 0) selector.TrackBarMax = player->LengthMs();
}

}  // namespace

std::string Selector::PathIn(const std::string& folder, const std::string& name) {
  const char slash = HasDrive(folder) || folder.find('\\') != std::string::npos ? '\\' : '/';
  if (folder.empty() || folder.back() == '/' || folder.back() == '\\') return folder + name;
  return folder + slash + name;
}

std::string Selector::FolderOf(const std::string& path) {
  const size_t slash = path.find_last_of("/\\");
  if (slash == std::string::npos) return {};
  const bool root = slash == 0 || (slash == 2 && HasDrive(path));
  return path.substr(0, root ? slash + 1 : slash);
}

void Selector::Open(Station& station, SoundFileSelector& selector, const std::string& currentFile,
                    const std::vector<std::string>& known) {
  HandleControl(station, "FileSelector", [&] {
    selector.selectorOk = false;
    selector.open = true;
    selector.SelectAll = false;
    selector.List1Tmp = known;
    TakeStopState(selector);
    selector.TrackBarMax = 0;
    TakeOutput(station, selector);
    selector.FileName.clear();
    const std::string folder = currentFile.empty() ? selector.Dir1 : FolderOf(currentFile);
    Dir1_Change(station, selector,
                folder.empty() ? FolderOf(station.platform.stationFolder.Path()) : folder);
    if (currentFile.empty()) return;
    for (SoundFileSelector::File& file : selector.File1)
      file.selected = PathIn(selector.Dir1, file.name) == currentFile;
    FileName_Change(station, selector, currentFile);
  });
}

bool Selector::Drive1_Change(Station& station, SoundFileSelector& selector,
                             const std::string& drive) {
  return Dir1_Change(station, selector, HasDrive(drive) ? drive.substr(0, 2) + "\\" : "/");
}

bool Selector::Dir1_Change(Station& station, SoundFileSelector& selector,
                           const std::string& folder) {
  bool found = false;
  HandleControl(station, "Dir1", [&] {
    FolderListing listing = station.platform.soundFiles.List(folder);
    if (!listing.exists) return;
    found = true;
    selector.Dir1 = folder;
    selector.Drive1 = DriveOf(folder);
    selector.folders = std::move(listing.folders);
    selector.FileName.clear();
    selector.File1.clear();
    for (std::string& name : listing.files)
      if (IsSound(name)) selector.File1.push_back({std::move(name), false});
  });
  return found;
}

void Selector::File1_Click(Station& station, SoundFileSelector& selector,
                           const std::vector<size_t>& rows) {
  for (SoundFileSelector::File& file : selector.File1) file.selected = false;
  for (const size_t row : rows)
    if (row < selector.File1.size()) selector.File1[row].selected = true;
  if (!rows.empty() && rows.back() < selector.File1.size())
    FileName_Change(station, selector, PathIn(selector.Dir1, selector.File1[rows.back()].name));
}

void Selector::FileName_Change(Station& station, SoundFileSelector& selector,
                               const std::string& path) {
  HandleControl(station, "FileName", [&] {
    selector.FileName = path;
    const std::string file = Trim(path);
    KeepSelectionOf(selector, file);
    Prelisten* player = station.platform.prelisten;
    if (!player || !station.platform.soundFiles.Exists(file)) return;
    ClosePlayer(station, selector);
    selector.TrackBarMax = 0;
    player->Open(station.platform.soundFiles.Resolve(file));
    selector.TrackBarMax = player->LengthMs();
  });
}

void Selector::SelectAll_Click(Station& station, SoundFileSelector& selector, bool ticked) {
  HandleControl(station, "SelectAll", [&] {
    selector.SelectAll = ticked;
    if (!ticked) return;
    for (SoundFileSelector::File& file : selector.File1) file.selected = true;
    station.platform.loop.Yield();
    if (FilterWanted(station)) FilterKnown(station, selector);
  });
}

void Selector::btnPlay_Click(Station& station, SoundFileSelector& selector) {
  if (!selector.btnPlayEnabled) return;
  HandleControl(station, "btnPlay", [&] {
    Prelisten* player = station.platform.prelisten;
    if (!player || player->PlayerState() == Prelisten::State::kClosed) return;
    player->OnEnd([&](bool lost) {
      TakeStopState(selector);
      if (lost) TellPrelistenRefused(station);
    });
    try {
      player->Start();
    } catch (const std::exception&) {
      return TellPrelistenRefused(station);
    }
    selector.TrackBarMax = player->LengthMs();
    RunTimer(station, selector);
  });
}

void Selector::btnPause_Click(Station& station, SoundFileSelector& selector) {
  HandleControl(station, "btnPause", [&] {
    StopTimer(selector);
    if (Prelisten* player = station.platform.prelisten) player->Pause();
  });
}

void Selector::btnRestart_Click(Station& station, SoundFileSelector& selector) {
  HandleControl(station, "btnRestart", [&] {
    Prelisten* player = station.platform.prelisten;
    if (!player || player->PlayerState() != Prelisten::State::kPaused) return;
    player->Restart();
    RunTimer(station, selector);
  });
}

void Selector::BtnStop_Click(Station& station, SoundFileSelector& selector) {
  HandleControl(station, "BtnStop", [&] {
    TakeStopState(selector);
    if (Prelisten* player = station.platform.prelisten) player->Stop();
  });
}

void Selector::TrackBar_Change(Station& station, SoundFileSelector& selector, int32_t ms) {
  HandleControl(station, "TrackBar", [&] {
    Prelisten* player = station.platform.prelisten;
    if (!player) return;
    player->SetPositionMs(ms);
    ShowAt(selector, player->PositionMs());
  });
}

void Selector::Timer_Timer(Station& station, SoundFileSelector& selector) {
  if (const Prelisten* player = station.platform.prelisten) ShowAt(selector, player->PositionMs());
}

void Selector::BtnOk_Click(Station& station, SoundFileSelector& selector) {
  HandleControl(station, "BtnOk", [&] { ClosePlayer(station, selector); });
  selector.selectorOk = true;
  selector.open = false;
}

void Selector::BtnCancel_Click(Station& station, SoundFileSelector& selector) {
  HandleControl(station, "BtnCancel", [&] { ClosePlayer(station, selector); });
  selector.selectorOk = false;
  selector.open = false;
}

std::vector<std::string> Selector::ChosenFiles(const Station& station,
                                               const SoundFileSelector& selector) {
  std::vector<std::string> files;
  for (const SoundFileSelector::File& file : selector.File1)
    if (file.selected) files.push_back(PathIn(selector.Dir1, file.name));
  const std::string typed = Trim(selector.FileName);
  if (files.empty() && station.platform.soundFiles.Exists(typed)) files.push_back(typed);
  return files;
}

}  // namespace zemo
