// The voice track editor without its window: what it shows, under the names of its controls. What
// its controls do: voicetrack/VoiceTrackScreen.h.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/EventLoop.h"
#include "platform/SoundChain.h"
#include "platform/SoundDeviceList.h"
#include "station/TrackNeighbours.h"

namespace zemo {

// How far the join has come, by the preview's slots.
struct JoinProgress {
  static constexpr int kBefore = 0, kAfter = 1, kTrack = kOverlaySlot;

  bool on = false;
  bool beforeFaded = false, afterStarted = false, trackStarted = false;
  bool trackEnded = false;                // and its neighbours have their volume again
  int32_t recordAtMs = -1;                // of the join, where a retake begins; -1: none waits
  std::array<std::string, kSlots> files;  // stored paths
};

// The track as it is stored, or as it stands.
struct TrackState {
  std::string file;
  int32_t positionMs = 0, exitMs = 0;
  bool cut = false;
  int takes = 0;  // recordings, and changes of the level, in this file
  bool operator==(const TrackState&) const = default;
};

// Thread: the logic's. Owner: the window, a script or a test; it outlives every routine that works
// on it. Writers: the routines.
struct VoiceTrackEditor {
  bool open = false;

  // --- the element before and the one after ---
  std::string FileAvant, Avant, InfoPS;
  int32_t PS1 = 0;  // exit point of the element before, ms
  std::string FileApres, Apres, Intro, Diffusion;
  int32_t LblIntro = 0;  // seconds

  // --- the track ---
  std::string FileVoiceTrack;  // stored path; empty: none yet
  int32_t LblCodeVT = 0;       // CODE of VT
  int32_t LblPositionVT = 0;   // ms of the element before at which it begins
  std::string LblTimeVT;
  int32_t PointSortie = 0;  // ms before its end; counts with CheckCut
  std::string LblPS;
  bool CheckCut = false, CheckTest = false;

  // --- the join: what is left of the element before, positions of the two others ---
  std::string PoAvant, PoApres, PoVT;

  // --- kept for the machine ---
  int32_t VoiceTrackInputID = 0, VoiceTrackOututID = 0;  // devices, from 0
  std::string inputKey, outputKey;                       // what these are known by; empty: nothing
  int32_t LevelNormalize = 0;                            // LUFS
  int32_t SpinPreRoll = 0;                               // seconds heard ahead of the join
  std::string LblEditeur;                                // program for sound files
  int32_t LblLatence = -1;    // round trip of these devices, ms; -1: not measured
  bool CheckLatence = false;  // it places what is recorded in the join

  // Of the machine; empty until it has answered. One that was chosen and is not there stands at the
  // end, its key for a name.
  SoundDeviceList::Devices devices;

  // --- levels, 0 to 1: of the microphone left and right, of the join left and right ---
  float MMLevelX1 = 0, MMLevelX2 = 0, MMLevelX3 = 0, MMLevelX4 = 0;
  bool LblMicroVisible = false;  // the microphone gives nothing

  bool GaugeVisible = false;  // the level is being changed, or the round trip measured
  bool BtnRecordEnabled = true, BtnStopEnabled = false, BtnPlay1Enabled = false,
       BtnNormalizeEnabled = false, BtnEditVTEnabled = false, BntLoadVTEnabled = true,
       CheckTestEnabled = false, BtnUndoNormalizeEnabled = false;
  std::unique_ptr<LoopTimer> TimerVT;

  int32_t beforeLengthMs = 0, afterLengthMs = 0;
  int32_t trackLengthMs = 0;   // slot 3
  TrackNeighbours madeFor;     // the neighbours that the presenter speaks between
  int64_t beforeKey = 0;       // of the element before in PL; 0: there is none
  int64_t rowKey = 0;          // of the track's own row; 0: it has none yet
  std::string fileBefore;      // FileVoiceTrack before what is recorded
  bool silenceLogged = false;  // of this recording
  std::string untouchedFile;   // FileVoiceTrack before its level was changed; empty: it was not
  TrackState stored;           // with what was taken over since
  int64_t counter = 0;         // ForeignCounter, as of which it is what the base holds
  int takes = 0;               // see TrackState
  int32_t takeAtMs = -1;       // of the join, where the last recording began; -1: it was not heard
  JoinProgress join;
  std::unique_ptr<SoundObserver> joinEvents;  // tells what the preview's slots do
};

}  // namespace zemo
