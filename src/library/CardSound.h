// The sound of the music card shown: its marks on the waveform, of which ChIntro and PointSortie
// are the same data, and what is heard of it on the prelisten.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/SoundMarkers.h"
#include "settings/ExtractMarks.h"

namespace zemo {

struct LibraryEditor;
struct Station;

// Writers: the routines below.
struct CardSound {
  SoundMarkers markers;
  std::string file;          // stored path whose sound it is; empty until it is looked at
  std::string path;          // the same as a path of this system
  int32_t code = 0;          // of its card
  ExtractMarks storedMarks;  // of its marks file
  int32_t partner = 0;       // CODE of the title that joins are heard with; 0: the card's neighbour
  std::vector<std::string> heard;  // files of this system that it plays on the prelisten
  std::string joined;              // artist and title of the other one of a join
  std::string refusal;             // why nothing is heard
};

// None of these throws but where it says so: faults are logged under the control's name. Thread:
// the logic's.
namespace Library {

// --- marks ---
// What is known of the card's sound: its marks file, its measures, its length. Nothing where it is
// looked at already. Waits for no lock of the base.
void LookAtSound(Station& station, LibraryEditor& editor);
// What was measured of the file by now. Waits for no lock of the base.
void LookForMeasures(Station& station, LibraryEditor& editor);
// Marks that are not stored are given up.
void ForgetSound(LibraryEditor& editor);
// ChIntro and PointSortie go into the markers; from there back to them. A box is left as it was
// typed where it says the same.
void TakeMarkBoxes(LibraryEditor& editor);
void PutMarkBoxes(LibraryEditor& editor);
bool ExtractIsChanged(const LibraryEditor& editor);
// The marks file, where the operator changed its marks. Throws FileError.
void StoreExtract(Station& station, LibraryEditor& editor);

// --- listening ---
// Plays on from the cursor, or pauses with the cursor where it was heard to.
void BtnEcoute_Click(Station& station, LibraryEditor& editor);
void StopListening(Station& station, LibraryEditor& editor);
bool IsListening(const Station& station, const LibraryEditor& editor);
// What stands beside the waveform: a refusal, or the other title of a join while that is heard.
std::string ListeningNote(const Station& station, const LibraryEditor& editor);
// Where the card's file is heard, ms; -1 while it is not.
int32_t HeardAtMs(const Station& station, const LibraryEditor& editor);
// The cursor, and what is heard of the card with it.
void ListenAt(Station& station, LibraryEditor& editor, int32_t ms);

// --- joins, as they would air: exit point, fade and gains ---
enum class JoinSide { kBefore, kBehind };  // of the card shown
struct JoinTitle {
  std::string file, name;  // a stored path; artist and title
  int32_t exitMs = 0;      // 0: the setting's
};
// The title kept, else the card ahead or behind in the order of the screen; none without one.
JoinTitle PartnerOf(Station& station, LibraryEditor& editor, JoinSide side);
// The card shown is the one that others are heard with; again: no longer.
void BtnRetenir_Click(LibraryEditor& editor);
// From some seconds ahead of it on.
void BtnRaccord_Click(Station& station, LibraryEditor& editor, JoinSide side);

}  // namespace Library

}  // namespace zemo
