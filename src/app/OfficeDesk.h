// The office of a simulation: the screens that a script opens, and the answers that it has ready
// for their dialogues. Each screen's routines are those that its window calls.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/OfficeScreen.h"
#include "library/LibraryEditor.h"
#include "library/SoundFileSelector.h"
#include "platform/Clock.h"
#include "platform/real/spreadsheet/XlsxWriter.h"
#include "platform/sim/SimDevices.h"
#include "reports/ReportEditor.h"
#include "traffic/CampaignEditor.h"
#include "voicetrack/VoiceTrackEditor.h"

namespace zemo {

struct Station;
struct Word;

// Thread: the logic's. What cannot be done throws OrderError.
class OfficeDesk {
 public:
  explicit OfficeDesk(Station& station);  // not owned, outlives the desk
  OfficeDesk(const OfficeDesk&) = delete;

  // --- the orders ---
  void Open(const std::string& screen);
  void OpenVoiceTrack(int row);  // of PL, from 1
  void Close(const std::string& screen);
  void Show(const std::string& screen);  // an event `screen`
  // CONTROL, CONTROL.ELEMENT or GRID.ROW.COLUMN, of the screen opened last that has it.
  void Put(const std::string& control, const std::string& value);
  void Press(const std::string& control, bool right);
  void Key(const std::string& control, ControlKey key);
  void Click(const std::string& grid, CellClick click);
  void Choose(const std::string& list, const std::vector<std::string>& values);

  // --- what the next dialogue gives; without it, it is cancelled ---
  struct SelectorAnswer {
    enum class Kind { kFiles, kAll, kStaysOpen } kind = Kind::kFiles;
    std::vector<std::string> paths;  // files, the folder, or the file it opens on
  };
  std::deque<SelectorAnswer> files;
  std::deque<LocalDateTime> days;
  std::deque<std::string> paths;
  std::deque<int32_t> colours;  // 0xBBGGRR

  // --- dialogues, for the tables of the screens ---
  using TakeFiles = std::function<void(const std::vector<std::string>& files)>;
  // `known`: stored paths for the selector's filter.
  void ChooseFiles(const std::string& currentFile, const std::vector<std::string>& known,
                   TakeFiles take);
  std::optional<LocalDateTime> PickDay();
  std::optional<std::string> PickPath();
  std::optional<int32_t> PickColour();

  Station& station;
  LibraryEditor library;
  ReportEditor report;
  CampaignEditor campaigns;
  VoiceTrackEditor voiceTrack;
  SoundFileSelector selector;
  SimDevices devices;  // of the settings
  XlsxWriter spreadsheets;

  // BtnOk or BtnCancel of the selector.
  void EndSelection(bool ok);

 private:
  OfficeScreen& Named(const std::string& screen);
  // Of the screen opened last that has one of that name; null where none has.
  template <typename Item>
  Item* Look(std::vector<Item> OfficeScreen::*items, const std::string& name);
  template <typename Item>
  Item& Find(std::vector<Item> OfficeScreen::*items, const std::string& name);
  struct Target {
    OfficeControl& control;
    int element;
  };
  Target FindControl(const std::string& name);
  // Selects the files in their folder. Those that the folder does not list are chosen all the same.
  std::vector<std::string> Select(const std::vector<std::string>& files);
  void End(bool ok, const std::vector<std::string>& chosen);
  void Settle();  // screens that were closed leave the order of opening, others come into it

  std::vector<OfficeScreen> screens_;
  std::vector<std::string> openOrder_;  // names, the one opened last at the end
  TakeFiles take_;                      // of the open selector
  // The cell clicked last, for a double click.
  std::string clickedGrid_;
  CellClick clicked_;
  int64_t clickedMs_ = -1;
};

// --- the tables of the screens ---
// What a control is called, in the language of its screen; empty for a name that the captions do
// not hold. They outlive it.
std::function<std::string()> CaptionIn(const OfficeScreen& screen, std::span<const Word> captions,
                                       std::string name);
// A group whose value is what its elements are called, from NAME.0 on; likewise.
OfficeControl CaptionGroup(const OfficeScreen& screen, std::span<const Word> captions,
                           std::string name, int count);

OfficeScreen LibraryScreenOf(OfficeDesk& desk);
OfficeScreen ReportScreenOf(OfficeDesk& desk);
OfficeScreen SettingsScreenOf(OfficeDesk& desk);
OfficeScreen CampaignScreenOf(OfficeDesk& desk);
OfficeScreen ModelsScreenOf(OfficeDesk& desk);
OfficeScreen VoiceTrackScreenOf(OfficeDesk& desk);
OfficeScreen SelectorScreenOf(OfficeDesk& desk);

}  // namespace zemo
