// What the routines of the voice track editor share. Thread: the logic's.
#pragma once

#include <functional>
#include <string>

#include "platform/Folder.h"
#include "voicetrack/VoiceTrackEditor.h"

namespace zemo {

struct Station;

namespace VoiceTracks {

// --- files of the station's own tracks: one for each CODE of VT ---
Folder& TrackFolder(Station& station);  // "VoiceTrack" in the station's folder
std::string TrackName(int32_t code);    // "00000012.Wav"
std::string LevelName(int32_t code);    // of a chosen file at its level, beside a recording
std::string UntouchedName(int32_t code);
std::string PathInFolder(Station& station, const std::string& name);  // as a stored path

// --- the track's file ---
// Slot 3 and what hangs on it: the length is read and shown, what works on a file is usable where
// there is one.
void TakeTrackFile(Station& station, VoiceTrackEditor& editor);
// Its form before its level was changed is no longer needed.
void ForgetUntouched(Station& station, VoiceTrackEditor& editor);
void StopTrack(Station& station, VoiceTrackEditor& editor);   // the recorder or the track's player
void StopPlayer(Station& station, VoiceTrackEditor& editor);  // of the track alone
// Another program may have changed the file since it was taken.
void ReadTrackLength(Station& station, VoiceTrackEditor& editor);
bool IsRecording(const Station& station);

// --- the machine's values and devices ---
void TakeMachineValues(Station& station, VoiceTrackEditor& editor);
void KeepMachineValues(Station& station, const VoiceTrackEditor& editor);
// Hears the microphone from now on, and asks the machine for its devices.
void OpenDevices(Station& station, VoiceTrackEditor& editor);
void CloseDevices(Station& station);

// --- the join ---
void RunTimer(Station& station, VoiceTrackEditor& editor);
// Where the element before reaches its exit point, ms.
inline int32_t ExitOfBefore(const VoiceTrackEditor& editor) {
  return editor.beforeLengthMs - editor.PS1;
}
void FreeTrackSlot(Station& station, VoiceTrackEditor& editor);
int32_t JoinPositionMs(const Station& station);  // of the element before
void EndJoin(Station& station, VoiceTrackEditor& editor);

TrackState StateOf(const VoiceTrackEditor& editor);

void Tell(Station& station, const std::string& text);  // a box titled "Alerte"
// Runs what a control does as HandleControl does; a fault is shown as well, behind `message`.
void HandleTold(Station& station, const char* routine, const char* message,
                const std::function<void()>& work);

}  // namespace VoiceTracks

}  // namespace zemo
