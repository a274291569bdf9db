// What the main screen is given besides the station: measures, pictures and helpers that the
// machine provides, and the questions that it asks through dialogues, so that a test can answer
// them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "engine/HealthLine.h"
#include "ui/Questions.h"

namespace zemo {

class ForecastSource;
class Waveforms;

// Every member may be left empty; the screen then shows less. References are not owned and outlive
// the screen. Thread: the logic's.
struct ScreenSources {
  std::function<OutputFigures()> output;   // of the output, since the last question
  std::function<int64_t()> freeDiskBytes;  // where the station stands; -1 unknown
  Waveforms* waveforms = nullptr;
  ForecastSource* forecast = nullptr;

  // Screens that stand elsewhere; empty where the program has none yet.
  std::function<void()> openLibrary, openCampaigns, openModels, openReport, openSettings;
  std::function<void(int32_t code)> openMusicCard;
  std::function<void(const std::string& storedPath)> openSelector;
  std::function<void(int64_t key)> openVoiceTrack;  // on that row of PL
  std::function<bool()> leaveOthers;  // ahead of the end; false while one of them is at work

  Questions questions;  // with a dialogue of the system by default

  std::function<void()> closed;  // the window was left in order
};

}  // namespace zemo
