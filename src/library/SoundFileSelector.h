// The sound file selector without its window: folders and files, the choice, and the prelisten on
// the second output. One serves all screens that choose sound files; who opened it takes the files.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/EventLoop.h"

namespace zemo {

struct Station;

// Under the names of its controls. Thread: the logic's. Owner: the window, a script or a test.
struct SoundFileSelector {
  bool open = false;
  bool selectorOk = false;  // left by BtnOk

  std::string Drive1;                // "/", or a drive of the stored paths
  std::string Dir1;                  // the folder, as it is stored in paths
  std::vector<std::string> folders;  // in it
  struct File {
    std::string name;
    bool selected = false;
  };
  std::vector<File> File1;
  std::string FileName;  // the chosen path
  bool SelectAll = false;
  std::vector<std::string> List1Tmp;  // files that have a card already, for the filter

  bool btnPlayEnabled = true;
  int32_t TrackBar = 0, TrackBarMax = 0;  // ms of the file, or entries while they are filtered
  std::string LblTemp, LblOut;
  std::unique_ptr<LoopTimer> Timer;  // moves the bar while the player plays
};

namespace Selector {

// None of these throws: a fault ends the handler, and the selector stays open.

// On the folder of the current file when there is one, else where it was left. `known` are the
// stored paths that have cards.
void Open(Station& station, SoundFileSelector& selector, const std::string& currentFile,
          const std::vector<std::string>& known);
// A drive or a folder that is not there changes nothing: false.
bool Drive1_Change(Station& station, SoundFileSelector& selector, const std::string& drive);
bool Dir1_Change(Station& station, SoundFileSelector& selector, const std::string& folder);
// `rows` from 0: these are selected, and the last is the chosen one.
void File1_Click(Station& station, SoundFileSelector& selector, const std::vector<size_t>& rows);
void FileName_Change(Station& station, SoundFileSelector& selector, const std::string& path);
void SelectAll_Click(Station& station, SoundFileSelector& selector, bool ticked);
void btnPlay_Click(Station& station, SoundFileSelector& selector);
void btnPause_Click(Station& station, SoundFileSelector& selector);
void btnRestart_Click(Station& station, SoundFileSelector& selector);
void BtnStop_Click(Station& station, SoundFileSelector& selector);
void TrackBar_Change(Station& station, SoundFileSelector& selector, int32_t ms);
void Timer_Timer(Station& station, SoundFileSelector& selector);
void BtnOk_Click(Station& station, SoundFileSelector& selector);
void BtnCancel_Click(Station& station, SoundFileSelector& selector);

// What was chosen, as stored paths: the selected files, else FileName where it is a file.
std::vector<std::string> ChosenFiles(const Station& station, const SoundFileSelector& selector);

// A name in a folder as a stored path, with the folder's own slash between.
std::string PathIn(const std::string& folder, const std::string& name);
// The folder of a stored path, without its last slash but for a root.
std::string FolderOf(const std::string& path);

}  // namespace Selector

}  // namespace zemo
