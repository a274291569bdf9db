// The joins of the list that a presenter goes through: what is done, and what is missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "station/TrackNeighbours.h"

namespace zemo {

class OnAirList;
struct Station;
struct VoiceTrackEditor;

struct TrackJoin {
  int64_t before = 0, track = 0;  // keys in PL; 0: nothing stands before, there is no track
  std::string titleBefore, titleAfter;
  NeighbourFault fault = NeighbourFault::kNone;  // of the track
  bool open = false;                             // in the editor
  bool operator==(const TrackJoin&) const = default;
};

// Each place behind a music title that another element follows, each voice track, and the place
// that is open in the editor; in the order of the list.
std::vector<TrackJoin> JoinsOf(const OnAirList& list, const VoiceTrackEditor& editor);
// Without a track.
size_t MissingTracks(const std::vector<TrackJoin>& joins);

namespace VoiceTracks {

// Opens that join; nothing where it is gone. What is not stored of the track before is stored
// first, and where that cannot be the editor stays.
void OpenJoin(Station& station, VoiceTrackEditor& editor, const TrackJoin& join);
// The next and the previous one; where the open one is gone from the list, the first.
void BtnSuivant_Click(Station& station, VoiceTrackEditor& editor);
void BtnPrecedent_Click(Station& station, VoiceTrackEditor& editor);

}  // namespace VoiceTracks

}  // namespace zemo
