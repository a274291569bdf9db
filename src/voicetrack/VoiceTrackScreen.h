// What the controls of the voice track editor do. None of the routines throws: faults are logged
// under the control's name. Thread: the logic's.
#pragma once

#include <cstdint>
#include <string>

#include "voicetrack/VoiceTrackEditor.h"

namespace zemo {

struct Station;

namespace VoiceTracks {

// In the routines' words, as station/OperatorWords.h has them; under "Alerte".
inline constexpr const char* kNoIntro = "Action impossible car pas d'intro";
inline constexpr const char* kDoesNotFit =
    "Action impossible car\r\nle Voice Track est plus court que l'intro\r\nou le Voice Track est "
    "trop long";
inline constexpr const char* kFitted = "Voice Track recalé sur intro";
inline constexpr const char* kNoSound = "Ce fichier ne contient pas de son";
inline constexpr const char* kNoPlace =
    "L'élément précédent n'est plus dans la liste :\r\nle Voice Track n'est pas enregistré";
inline constexpr const char* kNoEditor = "Choisissez d'abord un éditeur audio";
inline constexpr const char* kNoMixer = "Cette machine n'a pas de table de mixage";
inline constexpr const char* kAskSave = "Le Voice Track n'est pas sauvé. Le sauver ?";
inline constexpr const char* kRecordingEnded = "L'enregistrement s'est arrêté";
// With the reason behind them.
inline constexpr const char* kNotMeasured = "La latence n'a pas pu être mesurée :\r\n";
inline constexpr const char* kNotNormalized = "Le niveau n'a pas pu être changé :\r\n";
inline constexpr const char* kNotOpened = "Le Voice Track n'a pas pu être ouvert :\r\n";

// What the fields of the machine's values take.
inline constexpr int32_t kMostPreRollSec = 600;
inline constexpr int32_t kLeastLufs = -40, kMostLufs = -5;

// --- opening and closing ---
// On that row of PL (from 1), a voice track or the element that one is to follow; what was open is
// closed first. Nothing where there is no such row.
void Open(Station& station, VoiceTrackEditor& editor, int row);
void Form_Unload(Station& station, VoiceTrackEditor& editor);
// There is a track that BtnSave would store otherwise than it is stored.
bool IsUnsaved(const VoiceTrackEditor& editor);

// --- the devices, by their numbers from 0 ---
void VoiceTrackInputID_Change(Station& station, VoiceTrackEditor& editor, int32_t number);
void VoiceTrackOututID_Change(Station& station, VoiceTrackEditor& editor, int32_t number);
// Measures their round trip, which ends the join and what plays or is recorded. Takes seconds.
void BtnLatence_Click(Station& station, VoiceTrackEditor& editor);
// What is heard in the editor leaves by the output that was chosen for the air. Where none was, the
// air's is the machine's default, which is not known here: false.
bool PlaysOnTheAirsOutput(const Station& station, const VoiceTrackEditor& editor);
void CheckLatence_Click(VoiceTrackEditor& editor, bool ticked);
// What the microphone and the join give; for a window as often as it likes.
void ShowLevels(Station& station, VoiceTrackEditor& editor);

// --- the track ---
void BtnRecord_Click(Station& station, VoiceTrackEditor& editor);
void BtnStop_Click(Station& station, VoiceTrackEditor& editor);
// Once more: what is recorded goes, and the recording begins where it began in the join, which is
// heard from SpinPreRoll ahead of there; without a join at once.
void BtnReprise_Click(Station& station, VoiceTrackEditor& editor);
void BtnPlay1_Click(Station& station, VoiceTrackEditor& editor);
void BntLoadVT_Click(Station& station, VoiceTrackEditor& editor, const std::string& file);
void BtnEditVT_Click(Station& station, VoiceTrackEditor& editor);
void BtnChoseEditeur_Click(VoiceTrackEditor& editor, const std::string& program);
void BtnNormalize_Click(Station& station, VoiceTrackEditor& editor);
void BtnUndoNormalize_Click(Station& station, VoiceTrackEditor& editor);
void BtnTableMixage_Click(Station& station);

// --- its place ---
void PointSortie_Change(VoiceTrackEditor& editor, int32_t ms);
void LblPositionVT_Change(VoiceTrackEditor& editor, int32_t ms);  // by hand on the time line
void CheckCut_Click(VoiceTrackEditor& editor, bool ticked);
void CmdVTToIntro_Click(Station& station, VoiceTrackEditor& editor);
// The record, and the row of PL: its own one, else a new one behind the element before.
void BtnSave_Click(Station& station, VoiceTrackEditor& editor);

// --- the join ---
void CheckTest_Click(Station& station, VoiceTrackEditor& editor, bool ticked);
void BtnPplay2_Click(Station& station, VoiceTrackEditor& editor);
// The join from there on, ms of the element before: all that would be heard by then is under way.
void PlayJoinFrom(Station& station, VoiceTrackEditor& editor, int32_t ms);
void BtnStop2_Click(Station& station, VoiceTrackEditor& editor);
void TimerVT_Timer(Station& station, VoiceTrackEditor& editor);

}  // namespace VoiceTracks

}  // namespace zemo
